#include "tests/shell/EditorFixture.h"

#include "logic/LogicView.h"
#include "model/process_blocks.h"
#include "sequences/wgtSequenceTable.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QDropEvent>
#include <QLabel>
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
    void init() { openEditor(); }
    void cleanup() { closeEditor(); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void sequencesBecomeTemplates();
    void paletteAddsSteps();
    void quickStepsComeAndGo();
    void hostAppendsStatements();
    void typedTextIsSaved_data();
    void typedTextIsSaved();
    void textTypedInAnotherSequence();
    void sequenceTableDrivesThePanels();
    void removedSequencesLeaveThePanels();
    void hostAddsVariables();
    void changedSystemVariableReloadsThePanel();
    void stepsOfUnknownKindsAreShownAndKept();

private:
    QTreeWidgetItem* paletteItem(int stepType) const;
    QStringList mainRows(const QList<int>& columns = {0}) const;
    void choose(const char* menuEntry) const;
};

void EditorPanelsTest::sequencesBecomeTemplates()
{
    addDelay(10);
    QSignalSpy told(LogicMaster::instance(), &LogicMaster::sigUpdateTemplateWidget);
    m_editor->onAddTemplateSequence({QStringLiteral("no such sequence")});
    QCOMPARE(told.count(), 0);
    m_editor->onAddTemplateSequence({sequence()});
    QCOMPARE(told.count(), 1);
    QCOMPARE(find<QTabWidget>(m_editor.get(), "tabWidget")->currentIndex(), 1);
    const auto* templates = find<QTreeView>(m_editor.get(), "template_treeView")->model();
    QCOMPARE(templates->rowCount(), 1);
    QCOMPARE(templates->index(0, 0).data(Qt::UserRole).toString(),
             QString::fromStdString(processedit::getAllProcessTemplate().front().id));
    QFile file(folder() + QStringLiteral("processtemplate.peTemp"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("等待"));
    processedit::removeAllProcessTemplate(false);
}

QTreeWidgetItem* EditorPanelsTest::paletteItem(int stepType) const
{
    for (QTreeWidgetItemIterator it(find<QTreeWidget>(m_editor.get(), "treeWidget")); *it; ++it) {
        if ((*it)->data(0, Qt::UserRole).toInt() == BasicStep &&
            (*it)->data(0, Qt::UserRole + 1).toInt() == stepType)
            return *it;
    }
    return nullptr;
}

QStringList EditorPanelsTest::mainRows(const QList<int>& columns) const
{
    const QStandardItemModel* model = m_editor->findChild<LogicView*>()->editModel(sequence());
    return test_support::printTree(*model, columns, model->index(MainFlow, 0));
}

// The palette's menu is up: takes one of its entries.
void EditorPanelsTest::choose(const char* menuEntry) const
{
    const auto* menu = find<QMenu>(m_editor.get(), "paletteMenu");
    QVERIFY(menu);
    for (QAction* action : menu->actions()) {
        if (action->text() == QString::fromUtf8(menuEntry))
            return action->trigger();
    }
    QFAIL(menuEntry);
}

void EditorPanelsTest::paletteAddsSteps()
{
    auto* palette = find<QTreeWidget>(m_editor.get(), "treeWidget");
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    emit palette->itemDoubleClicked(paletteItem(step_type::If), 0);
    QTRY_COMPARE(mainRows(), QStringList({QStringLiteral("[x] if"), QStringLiteral("[x] endif")}));
    QCOMPARE(modified.count(), 1);
    // The new row is the one to edit, and the next step goes into it.
    m_editor->contextMenuEvent(palette->visualItemRect(paletteItem(step_type::Delay)).center());
    choose("添加流程");
    QCOMPARE(mainRows().at(1), QStringLiteral("  [x] 延时"));
    QTRY_COMPARE(find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->text(),
                 QStringLiteral("延时"));
    // A click whose item goes before the step is made, and a click beside all items.
    emit palette->itemDoubleClicked(paletteItem(step_type::Delay), 0);
    m_editor->resetCustomStepList();
    QTRY_COMPARE(mainRows().size(), 4);
    QCOMPARE(mainRows().at(2), QStringLiteral("  [x] 延时"));
    delete find<QMenu>(m_editor.get(), "paletteMenu");
    m_editor->contextMenuEvent(QPoint(5, 5000));
    QVERIFY(!find<QMenu>(m_editor.get(), "paletteMenu"));
}

void EditorPanelsTest::quickStepsComeAndGo()
{
    auto* palette = find<QTreeWidget>(m_editor.get(), "treeWidget");
    const QTreeWidgetItem* folder = paletteItem(step_type::QuickStepFolder);
    QVERIFY(folder);
    addDelay(77);
    auto* view = m_editor->findChild<LogicView*>();
    auto* tree = view->findChild<QTreeView*>(QStringLiteral("treeView"));
    tree->setCurrentIndex(tree->model()->index(0, 0, tree->model()->index(MainFlow, 0)));
    view->onQucikAddSlot();
    QCOMPARE(folder->childCount(), 1);
    palette->expandAll();
    palette->scrollToItem(folder->child(0));
    m_editor->contextMenuEvent(palette->visualItemRect(folder->child(0)).center());
    choose("添加流程");
    const QStringList rows = mainRows({0, 1});
    QCOMPARE(rows.count(QStringLiteral("[x] 等待 | 延时 77 毫秒")), 2);
    delete find<QMenu>(m_editor.get(), "paletteMenu");
    m_editor->contextMenuEvent(palette->visualItemRect(folder->child(0)).center());
    choose("从快捷添加中移除");
    QCOMPARE(folder->childCount(), 0);
    QVERIFY(processedit::getQuickStepInfo().isEmpty());
}

void EditorPanelsTest::hostAppendsStatements()
{
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    m_editor->addStatementStepToCurerentView({QStringLiteral("a = 1;"), QStringLiteral("b;\nc;")},
                                             {1});
    QCOMPARE(mainRows({1}),
             QStringList({QStringLiteral("[x] a = 1;"), QStringLiteral("[x] b;...")}));
    const auto blocks = processedit::getProcessListBySequenceID(m_name, sequence());
    QVERIFY(!std::dynamic_pointer_cast<StatementProcessBlock>(blocks[0])->getSplitFile());
    QVERIFY(std::dynamic_pointer_cast<StatementProcessBlock>(blocks[1])->getSplitFile());
    QVERIFY(modified.count() > 0);
}

void EditorPanelsTest::typedTextIsSaved_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("name") << 0;
    QTest::newRow("comment") << 2;
}

// A press on the tool bar doesn't take the focus away from an open editor.
void EditorPanelsTest::typedTextIsSaved()
{
    QFETCH(int, column);
    auto* table = m_editor->findChild<wgtSequenceTable*>()->findChild<QTableWidget*>();
    table->setCurrentCell(0, column);
    table->editItem(table->item(0, column));
    auto* editor = table->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->setText(QStringLiteral("typed"));
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Save);
    QFile file(folder() + QStringLiteral("processInfo.pedt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("typed"));
    QCOMPARE(modified.count(), 1);
}

// A press of Run shows the main sequence: what is still being typed belongs to the one before.
void EditorPanelsTest::textTypedInAnotherSequence()
{
    const QString main = sequence();
    const QString other = processedit::createSeuqence(m_name, QStringLiteral("other"));
    auto step = applet_fixture::addStep<StatementProcessBlock>(m_name, other, QStringLiteral("1"),
                                                               step_type::Statement, "语句");
    step->setCustomCode("speed = 1;");
    m_editor->loadDataToUI(m_name, false);
    m_editor->setCurrentShowSequence(other);
    click(step);
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(QStringLiteral("typed"));
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QCOMPARE(sequence(), main);
    const QStandardItemModel* rows = m_editor->findChild<LogicView*>()->editModel(other);
    QVERIFY(test_support::printTree(*rows).contains(QStringLiteral("  [x] typed")));
    using Users = QVector<QPair<QString, QString>>;
    QCOMPARE(LogicMaster::instance()->usersOfSystemVariable(QStringLiteral("speed")),
             Users({{m_name, other}}));
    QSignalSpy ended(LogicMaster::instance(), &LogicMaster::NotifyRunResultSig);
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, 60000);
}

void EditorPanelsTest::sequenceTableDrivesThePanels()
{
    auto* table = m_editor->findChild<wgtSequenceTable*>();
    const auto* view = m_editor->findChild<LogicView*>();
    const QString first = sequence();
    auto call = applet_fixture::addStep<SequenceProcessBlock>(m_name, first, QStringLiteral("1"),
                                                              step_type::Sequence, "调用");
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    table->addSequenceSlot();
    const QString added = sequence();
    QVERIFY(added != first && view->editModel(added));
    QCOMPARE(modified.count(), 1);
    call->sourceKind = SequenceProcessBlock::AppletSequence;
    call->sequenceId = added.toStdString();
    call->sequenceName = "Sequence_1";
    processedit::updateProcess(m_name, first, call);
    m_editor->loadDataToUI(m_name, false);
    QCOMPARE(sequence(), first);
    // A new name reaches the row that calls the sequence.
    auto* rows = table->findChild<QTableWidget*>();
    rows->item(1, 0)->setText(QStringLiteral("renamed"));
    const QString text =
        test_support::printTree(*view->editModel(first), {0, 1}).join(QLatin1Char('\n'));
    QVERIFY2(text.contains(QStringLiteral("renamed")), qPrintable(text));
}

void EditorPanelsTest::removedSequencesLeaveThePanels()
{
    addDelay(10);
    const QString second = processedit::createSeuqence(m_name, QStringLiteral("second"));
    m_editor->loadDataToUI(m_name, false);
    const QString first = sequence();
    auto* variables = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
    const auto* view = m_editor->findChild<LogicView*>();
    QVERIFY(variables->model() && view->editModel(second));
    m_editor->onRemoveSelectSequence({first});
    QVERIFY(!view->editModel(first) && view->editModel(second));
    QVERIFY(!variables->model());
    QMimeData nothing;
    QDropEvent drop(QPointF(5, 5), Qt::MoveAction, &nothing, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(variables->viewport(), &drop); // there are no rows to deselect
    QCOMPARE(sequence(), QString());
    m_editor->setCurrentShowSequence(second);
    QVERIFY(variables->model());
    m_editor->onRemoveAllSequence();
    QVERIFY(!view->editModel(second) && !variables->model());
}

void EditorPanelsTest::hostAddsVariables()
{
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    const auto rows = [this] {
        const auto* tree = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
        const QStringList lines = test_support::printTree(*tree->model(), {0, 1, 2});
        return QString(lines.join(QLatin1Char('\n')));
    };
    m_editor->addVarToCurrentView(QStringLiteral("speed"), QStringLiteral(" 12 "), DrelU16,
                                  SequenceVariable, false);
    m_editor->addVarToCurrentView(QStringLiteral("title"), QString(), DrelString, ProcessVariable,
                                  false);
    QVERIFY2(rows().contains(QStringLiteral("speed | 12 | u16")), qPrintable(rows()));
    QVERIFY2(rows().contains(QStringLiteral("title | NULL | string")), qPrintable(rows()));
    // The one that is there takes the new value, wherever it stands.
    m_editor->addVarToCurrentView(QStringLiteral("title"), QStringLiteral("x"), DrelCharPtr,
                                  SequenceVariable, false);
    QVERIFY2(rows().contains(QStringLiteral("title | x | char*")), qPrintable(rows()));
    QCOMPARE(rows().count(QStringLiteral("title")), 1);
    QCOMPARE(modified.count(), 3);
    // A name that no variable may have.
    m_editor->addVarToCurrentView(QStringLiteral("1a"), QString(), DrelU8, SequenceVariable, true);
    QCOMPARE(modified.count(), 3);
}

void EditorPanelsTest::changedSystemVariableReloadsThePanel()
{
    auto step = applet_fixture::addStep<StatementProcessBlock>(
        m_name, sequence(), QStringLiteral("1"), step_type::Statement, "语句");
    step->setCustomCode("speed = 1;");
    m_editor->updateUseSystemVarItemInfo(m_name, false);
    process_edit::addVariable(m_name.toStdString(), SequenceVariable, sequence().toStdString());
    const auto* tree = find<QWidget>(m_editor.get(), "widget_para")->findChild<QTreeView*>();
    const auto ownRows = [tree] { return tree->model()->rowCount(tree->model()->index(0, 0)); };
    QCOMPARE(ownRows(), 0);
    auto& variables = standalone::SystemVariables::instance();
    variables.define({QStringLiteral("speed"), QString(), 1, DoubleCategory, QString(), 2});
    variables.setValue(QStringLiteral("speed"), QStringLiteral("3"));
    variables.waitForListeners();
    QTRY_COMPARE(ownRows(), 1);

    // A step that no longer uses it, or is gone, is no user any more.
    const auto users = [] {
        return LogicMaster::instance()->usersOfSystemVariable(QStringLiteral("speed")).size();
    };
    m_editor->loadDataToUI(m_name, false);
    QCOMPARE(users(), 1);
    click(step);
    auto* code = m_editor->getControlWgt()->findChild<QPlainTextEdit*>(QStringLiteral("textEdit"));
    code->setPlainText(QStringLiteral("torque = 1;"));
    m_editor->syncAuthoringPanelsToSdk();
    QCOMPARE(users(), 0);
    code->setPlainText(QStringLiteral("speed = 2;"));
    m_editor->syncAuthoringPanelsToSdk();
    QCOMPARE(users(), 1);
    auto* view = m_editor->findChild<LogicView*>();
    const auto* rows = view->editModel(sequence());
    find<QTreeView>(view, "treeView")->setCurrentIndex(rows->index(0, 0, rows->index(MainFlow, 0)));
    view->removeRowSlot();
    QCOMPARE(users(), 0);
    view->appendStatements({QStringLiteral("speed = 3;")}, {});
    QCOMPARE(users(), 1);
}

void EditorPanelsTest::stepsOfUnknownKindsAreShownAndKept()
{
    addDelay(10);
    m_editor->save(QString());
    QFile file(folder() + QStringLiteral("processInfo.pedt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    file.close();
    text.replace("\"stepType\": 24", "\"stepType\": 977,\n\"wings\": {\"span\": [1.50, null]}");
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();

    m_editor->load(false);
    QCOMPARE(mainRows(), QStringList(QStringLiteral("[x] 等待")));
    auto* tree =
        m_editor->findChild<LogicView*>()->findChild<QTreeView*>(QStringLiteral("treeView"));
    const QModelIndex step = tree->model()->index(0, 0, tree->model()->index(MainFlow, 0));
    emit tree->clicked(step);
    const auto says = [](const QWidget* panel) {
        for (const QLabel* label : panel->findChildren<QLabel*>()) {
            if (label->isVisibleTo(panel) && label->text() == QStringLiteral("该节点不可编辑"))
                return true;
        }
        return false;
    };
    QTRY_VERIFY(says(m_editor->getControlWgt()) && says(m_editor->getSettingWgt()));
    addDelay(20);
    m_editor->save(QString());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray saved = file.readAll().simplified();
    QVERIFY2(saved.contains("\"stepType\": 977") &&
                 saved.contains("\"wings\": { \"span\": [ 1.50, null ] }"),
             saved.constData());
    QVERIFY(saved.contains("\"delay\": 20"));
}

PE_WIDGET_TEST("editor_panels_test", EditorPanelsTest)
#include "editor_panels_test.moc"
