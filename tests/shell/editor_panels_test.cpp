#include "tests/shell/EditorFixture.h"

#include "logic/LogicView.h"
#include "sequences/wgtSequenceTable.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

// What the panels around the tree make of the document, and the document of them.
class EditorPanelsTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init();
    void sequencesBecomeTemplates();
    void paletteAddsSteps();
    void quickStepsComeAndGo();
    void textTypedInAnotherSequence();
    void sequenceTableDrivesThePanels();
    void removedSequencesLeaveThePanels();
    void hostAddsVariables();
    void changedSystemVariableReloadsThePanel();
    void usersOfAVariableAreKnown();

private:
    QTreeWidgetItem* paletteItem(int stepType) const;
    void chooseInPalette(QTreeWidgetItem* item, const char* menuEntry) const;
    QTreeView* variables() const { return find<QWidget>("widget_para")->findChild<QTreeView*>(); }
    QStringList rowsOf(const QString& sequenceId, const QList<int>& columns = {0}) const
    {
        return test_support::printTree(*m_view->editModel(sequenceId), columns);
    }
    /// Below the main flow.
    QStringList mainRows(const QList<int>& columns = {0}) const
    {
        const auto* model = m_view->editModel(sequence());
        return test_support::printTree(*model, columns, model->index(MainFlow, 0));
    }
    void chooseFirstStep() const
    {
        auto* tree = find<QTreeView>(m_view, "treeView");
        tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(MainFlow, 0)));
    }
    static QVector<QPair<QString, QString>> usersOfSpeed()
    {
        return LogicMaster::instance()->usersOfSystemVariable(text("speed"));
    }

    LogicView* m_view = nullptr;
};

void EditorPanelsTest::init()
{
    openEditor();
    m_view = m_editor->findChild<LogicView*>();
}

void EditorPanelsTest::sequencesBecomeTemplates()
{
    addDelay(10);
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::sigUpdateTemplateWidget);
    m_editor->onAddTemplateSequence({text("no such sequence")});
    QCOMPARE(told.count(), 0);
    m_editor->onAddTemplateSequence({sequence()});
    QCOMPARE(told.count(), 1);
    QCOMPARE(find<QTabWidget>("tabWidget")->currentIndex(), 1);
    const auto* templates = find<QTreeView>("template_treeView")->model();
    QCOMPARE(templates->rowCount(), 1);
    QCOMPARE(templates->index(0, 0).data(Qt::UserRole).toString(),
             QString::fromStdString(processedit::getAllProcessTemplate().front().id));
    QVERIFY(test_support::content(folder() + text("processtemplate.peTemp")).contains("等待"));
    processedit::removeAllProcessTemplate(false);
}

QTreeWidgetItem* EditorPanelsTest::paletteItem(int stepType) const
{
    for (QTreeWidgetItemIterator it(find<QTreeWidget>("treeWidget")); *it; ++it) {
        if ((*it)->data(0, Qt::UserRole).toInt() == BasicStep &&
            (*it)->data(0, Qt::UserRole + 1).toInt() == stepType)
            return *it;
    }
    return nullptr;
}

void EditorPanelsTest::chooseInPalette(QTreeWidgetItem* item, const char* menuEntry) const
{
    delete find<QMenu>("paletteMenu"); // of an earlier choice
    auto* palette = find<QTreeWidget>("treeWidget");
    palette->expandAll();
    palette->scrollToItem(item);
    m_editor->contextMenuEvent(palette->visualItemRect(item).center());
    const auto* menu = find<QMenu>("paletteMenu");
    QVERIFY(menu);
    for (QAction* action : menu->actions()) {
        if (action->text() == text(menuEntry))
            return action->trigger();
    }
    QFAIL(menuEntry);
}

void EditorPanelsTest::paletteAddsSteps()
{
    auto* palette = find<QTreeWidget>("treeWidget");
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    emit palette->itemDoubleClicked(paletteItem(step_type::If), 0);
    QTRY_COMPARE(mainRows(), lines("[x] if\n[x] endif"));
    QCOMPARE(modified.count(), 1);
    // The new row is the one to edit, and the next step goes into it.
    chooseInPalette(paletteItem(step_type::Delay), "添加流程");
    QCOMPARE(mainRows(), lines("[x] if\n  [x] 延时\n[x] endif"));
    QTRY_COMPARE(find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->text(), text("延时"));
    // A click whose item goes before the step is made, and a click beside all items.
    emit palette->itemDoubleClicked(paletteItem(step_type::Delay), 0);
    m_editor->resetCustomStepList();
    QTRY_COMPARE(mainRows(), lines("[x] if\n  [x] 延时\n  [x] 延时\n[x] endif"));
    delete find<QMenu>("paletteMenu");
    m_editor->contextMenuEvent(QPoint(5, 5000));
    QVERIFY(!find<QMenu>("paletteMenu"));
}

void EditorPanelsTest::quickStepsComeAndGo()
{
    const QTreeWidgetItem* folder = paletteItem(step_type::QuickStepFolder);
    addDelay(77);
    chooseFirstStep();
    m_view->onQucikAddSlot();
    QCOMPARE(folder->childCount(), 1);
    chooseInPalette(folder->child(0), "添加流程");
    QCOMPARE(mainRows({0, 1}), lines("[x] 等待 | 延时 77 毫秒\n[x] 等待 | 延时 77 毫秒"));
    chooseInPalette(folder->child(0), "从快捷添加中移除");
    QCOMPARE(folder->childCount(), 0);
    QVERIFY(processedit::getQuickStepInfo().isEmpty());
}

// A press of Run shows the main sequence: what is still being typed belongs to the one before.
void EditorPanelsTest::textTypedInAnotherSequence()
{
    const QString main = sequence();
    const QString other = processedit::createSeuqence(m_name, text("other"));
    const auto step = addStatement(other, "speed = 1;");
    m_editor->loadDataToUI(m_name, false);
    m_editor->setCurrentShowSequence(other);
    click(step);
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(text("typed"));
    press(ProcessEditToolBar::RunMain);
    QCOMPARE(sequence(), main);
    QVERIFY(rowsOf(other).contains(text("  [x] typed")));
    QCOMPARE(usersOfSpeed(), (QVector<QPair<QString, QString>>{{m_name, other}}));
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("runFinish"), Patience);
}

void EditorPanelsTest::sequenceTableDrivesThePanels()
{
    auto* table = m_editor->findChild<wgtSequenceTable*>();
    const QString first = sequence();
    auto call = applet_fixture::addStep<SequenceProcessBlock>(m_name, first, text("1"),
                                                              step_type::Sequence, "调用");
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    table->addSequenceSlot();
    const QString added = sequence();
    QVERIFY(added != first && m_view->editModel(added));
    QCOMPARE(modified.count(), 1);
    call->sourceKind = SequenceProcessBlock::AppletSequence;
    call->sequenceId = added.toStdString();
    call->sequenceName = "Sequence_1";
    processedit::updateProcess(m_name, first, call);
    m_editor->loadDataToUI(m_name, false);
    QCOMPARE(sequence(), first);
    // A new name reaches the row that calls the sequence.
    table->findChild<QTableWidget*>()->item(1, 0)->setText(text("renamed"));
    const QString shown = rowsOf(first, {0, 1}).join(u'\n');
    QVERIFY2(shown.contains(text("renamed")), qPrintable(shown));
}

void EditorPanelsTest::removedSequencesLeaveThePanels()
{
    const QString first = sequence();
    const QString second = processedit::createSeuqence(m_name, text("second"));
    m_editor->loadDataToUI(m_name, false);
    QVERIFY(variables()->model() && m_view->editModel(second));
    m_editor->onRemoveSelectSequence({first});
    QVERIFY(!m_view->editModel(first) && m_view->editModel(second));
    QVERIFY(!variables()->model());
    QMimeData nothing;
    QDropEvent drop(QPointF(5, 5), Qt::MoveAction, &nothing, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(variables()->viewport(), &drop); // there are no rows to deselect
    QCOMPARE(sequence(), QString());
    m_editor->setCurrentShowSequence(second);
    QVERIFY(variables()->model());
    m_editor->onRemoveAllSequence();
    QVERIFY(!m_view->editModel(second) && !variables()->model());
}

void EditorPanelsTest::hostAddsVariables()
{
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    m_editor->addVarToCurrentView(text("title"), text("x"), DrelCharPtr, ProcessVariable, false);
    const QStringList shown = test_support::printTree(*variables()->model(), {0, 1, 2});
    QVERIFY2(shown.contains(text("  title | x | char*")), qPrintable(shown.join(u'\n')));
    QCOMPARE(modified.count(), 1);
}

void EditorPanelsTest::changedSystemVariableReloadsThePanel()
{
    addStatement(sequence(), "speed = 1;");
    m_editor->updateUseSystemVarItemInfo(m_name, false);
    process_edit::addVariable(m_name.toStdString(), SequenceVariable, sequence().toStdString());
    const QAbstractItemModel* model = variables()->model();
    const auto ownRows = [model] { return model->rowCount(model->index(0, 0)); };
    QCOMPARE(ownRows(), 0);
    auto& system = standalone::SystemVariables::instance();
    system.define({text("speed"), QString(), 1, DoubleCategory, QString(), 2});
    system.setValue(text("speed"), text("3"));
    system.waitForListeners();
    QTRY_COMPARE(ownRows(), 1);
}

// A step that no longer uses it, or is gone, is no user any more.
void EditorPanelsTest::usersOfAVariableAreKnown()
{
    const auto step = addStatement(sequence(), "speed = 1;");
    m_editor->load(true);
    m_editor->loadDataToUI(m_name, false);
    QCOMPARE(usersOfSpeed().size(), 1);
    click(step);
    auto* code = find<QPlainTextEdit>(m_editor->getControlWgt(), "textEdit");
    for (const char* name : {"torque", "speed"}) {
        code->setPlainText(text(name) + text(" = 2;"));
        m_editor->syncAuthoringPanelsToSdk();
        QCOMPARE(usersOfSpeed().size(), name == QByteArray("speed") ? 1 : 0);
    }
    chooseFirstStep();
    m_view->removeRowSlot();
    QCOMPARE(usersOfSpeed().size(), 0);
    // Steps that the host adds, into a file of their own where it says so.
    m_editor->addStatementStepToCurerentView({text("speed = 3;"), text("b;")}, {1});
    QCOMPARE(usersOfSpeed().size(), 1);
    for (const auto& added : processedit::getProcessListBySequenceID(m_name, sequence())) {
        const auto statement = std::dynamic_pointer_cast<StatementProcessBlock>(added);
        QCOMPARE(statement->getSplitFile(), statement->customCode() == "b;");
    }
}

PE_WIDGET_TEST("editor_panels_test", EditorPanelsTest)
#include "editor_panels_test.moc"
