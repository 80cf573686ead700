#include "tests/shell/EditorFixture.h"

#include "logic/LogicView.h"
#include "sequences/wgtSequenceTable.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSettings>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

class ProcessEditWidgetTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void sequenceThatIsShownFirst();
    void whatIsTypedIsSaved();
    void compileResultsOfOthers();
    void panelsFollowTheClickedStep();
    void runTabKeepsTheUsersSizes();
    void widthsGoToTheSettings();
    void settingsAreReadOnce();
    void tablesAreReadOnce();
    void droppedFiles();
    void draggedSequenceShowsTheTemplates();
    void loadTellsTheHost();

private:
    QString settingsFile() const { return folder() + text("settings.ini"); }
    QString setting(const char* key) const
    {
        return QSettings(settingsFile(), QSettings::IniFormat).value(text(key)).toString();
    }
    void reopen(const QByteArray& settings);
    QList<int> sizes() const { return find<QSplitter>("splitter")->sizes(); }
    /// What is typed there is written a second later.
    QPlainTextEdit* remark() const
    {
        return find<QPlainTextEdit>(m_editor->getSettingWgt(), "textEdit");
    }
};

void ProcessEditWidgetTest::sequenceThatIsShownFirst()
{
    const auto sequences = processedit::getAllSequenceByAppName(m_name);
    QCOMPARE(int(sequences.size()), 1);
    QCOMPARE(QString::fromStdString(sequences[0].name), text("Sequence_0"));
    QCOMPARE(sequence(), QString::fromStdString(sequences[0].id));
    QVERIFY(m_editor->currentShowSequenceIsEmpty());

    QStringList ids{sequence()};
    for (const char* name : {"b", "c"})
        ids << processedit::createSeuqence(m_name, text(name));
    const auto mark = [&](int row, bool isMain) {
        SequenceInfo info = processedit::getSequence(m_name, ids[row]);
        info.isMain = isMain;
        processedit::updateSequence(m_name, info);
        m_editor->loadDataToUI(m_name, false);
    };
    mark(0, false);
    QCOMPARE(sequence(), ids[0]);
    mark(1, true);
    QCOMPARE(sequence(), ids[1]);
}

void ProcessEditWidgetTest::whatIsTypedIsSaved()
{
    const auto step = addDelay(10);
    click(step);
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    m_record->take();
    remark()->setPlainText(text("改"));
    QCOMPARE(step->remark, std::string());
    m_editor->save(QString());
    QCOMPARE(step->remark, std::string("改"));
    QCOMPARE(modified.count(), 1);
    QCOMPARE(m_record->take(), QStringList{text("saved ") + m_name});
    QVERIFY(saved().contains("改"));
    remark()->setPlainText(text("再改"));
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    QCOMPARE(step->remark, std::string("再改"));
    // A press on the tool bar doesn't take the focus away from an open editor.
    auto* table = m_editor->findChild<wgtSequenceTable*>()->findChild<QTableWidget*>();
    table->setCurrentCell(0, 2);
    table->editItem(table->item(0, 2));
    table->findChild<QLineEdit*>()->setText(text("typed"));
    press(ProcessEditToolBar::Save);
    QVERIFY(saved().contains("typed"));
    QCOMPARE(modified.count(), 3);
}

/// One of another applet is nobody's here; one of this applet that another part of the host has
/// started ends what the tool bar shows.
void ProcessEditWidgetTest::compileResultsOfOthers()
{
    CAppCompileResult result;
    const auto ends = [&](const QString& appName) {
        m_record->take();
        result.appName = appName;
        result.result = CompileFailed;
        emit LogicMaster::instance()->NotifyCompileResultSig(result, QString());
        QCoreApplication::processEvents();
        return m_record->has("runFinish");
    };
    QVERIFY(!ends(text("somebody")));
    QVERIFY(ends(m_name));
}

void ProcessEditWidgetTest::panelsFollowTheClickedStep()
{
    const auto first = addDelay(10);
    const auto second = addDelay(20);
    click(first);
    remark()->setPlainText(text("第一"));
    click(second);
    // What was typed goes to the step that it was typed for.
    QCOMPARE(first->remark, std::string("第一"));
    QCOMPARE(second->remark, std::string());
    QCOMPARE(remark()->toPlainText(), QString());
    QCOMPARE(find<QLineEdit>(m_editor->getSettingWgt(), "editPreview")->text(),
             QString::fromStdString(second->description()));

    const auto* message = find<QLabel>(m_editor->getControlWgt(), "label_12");
    QVERIFY(message->isHidden());
    m_editor->processItemClickedSlot(MainFlow, text("1"));
    QCOMPARE(message->text(), text("该节点不可编辑"));
    m_editor->processItemClickedSlot(NoBlock, QString());
    QCOMPARE(message->text(), text("当前未选中步骤节点"));
    // Not of the sequence in sight, as the rows know it.
    click(addStatement(sequence(), ""));
    QVERIFY(!message->isHidden());
}

void ProcessEditWidgetTest::runTabKeepsTheUsersSizes()
{
    find<QSplitter>("splitter")->setSizes({250, 600, 350});
    const QList<int> chosen = sizes();
    for (int again = 0; again < 2; ++again) {
        m_editor->onLogicWidgetTabChanged(1);
        QVERIFY(sizes() != chosen);
    }
    QVERIFY(!find<QWidget>("treeWidget")->isEnabled());
    QVERIFY(!find<QTabWidget>("attribute_tab")->isTabEnabled(1));
    m_editor->onLogicWidgetTabChanged(0);
    QCOMPARE(sizes(), chosen);
    QVERIFY(find<QWidget>("treeWidget")->isEnabled());
    QCOMPARE(m_record->count("mode"), 3);
}

void ProcessEditWidgetTest::widthsGoToTheSettings()
{
    m_editor->onSaveProcessTreeWidthSlot({text("11"), text("12")}, false);
    m_editor->onSaveVarTreeWidthSlot({text("15"), text("16")});
    m_editor->onSaveVarTreeWidthSlot({}); // of no columns
    QCOMPARE(setting("Widget/ProcessWidgetWidth"), text("11,12"));
    QCOMPARE(setting("Widget/VarWidgetWidth"), text("15,16"));
}

void ProcessEditWidgetTest::reopen(const QByteArray& settings)
{
    m_record.reset();
    m_editor.reset();
    QVERIFY(test_support::putFile(settingsFile(), "[Widget]\n" + settings));
    m_editor = makeEditor();
    m_editor->show();
}

void ProcessEditWidgetTest::settingsAreReadOnce()
{
    const QList<int> own = sizes();
    const auto width = [this](const char* panel, const char* tree) {
        return find<QTreeView>(find<QWidget>(panel), tree)->columnWidth(1);
    };
    reopen("WidgetWidth=250,600\nVarWidgetWidth=\"111,72,63,94\"\n"
           "ProcessWidgetWidth=200,173,150\n");
    QCOMPARE(sizes(), own); // two values are no sizes
    QCOMPARE(width("widget_para", "treeView"), 72);
    QCOMPARE(width("center_wgt", "treeView"), 173);
    reopen("WidgetWidth=260,610,310\n");
    QVERIFY(sizes() != own);
    // What the user has dragged since stays when the document is loaded again.
    find<QSplitter>("splitter")->setSizes({300, 500, 380});
    const QList<int> dragged = sizes();
    m_editor->load(false);
    QCOMPARE(sizes(), dragged);
    // On the run tab the sizes to come back to are kept, not the run tab's own.
    m_editor->saveSplitterSizes();
    m_editor->onLogicWidgetTabChanged(1);
    m_editor->saveSplitterSizes();
    QCOMPARE(setting("Widget/WidgetWidth"),
             text("%1,%2,%3").arg(dragged[0]).arg(dragged[1]).arg(dragged[2]));
}

void ProcessEditWidgetTest::tablesAreReadOnce()
{
    QVERIFY(test_support::putFile(
        folder() + text("globalVariable.json"),
        R"({"variables": [{"name": "late", "type": "s32", "uuid": "g1", "value": "1"}]})"));
    const ProcessEditWidget second(text("Test"));
    for (const processVariable& variable : process_edit::getAllGlobalVariable())
        QVERIFY(variable.name != "late");
}

void ProcessEditWidgetTest::droppedFiles()
{
    const QString first = text("导入:存在多个文件, 即将默认导入第一个文件");
    const rows::Table<QString, QString, int> table{
        {"one", text("a.dpe"), QString(), 1},
        {"encrypted, in capitals", text("a.DPEENC"), QString(), 1},
        {"several", text("a.dpe b.dpe"), first, 1},
        {"another among them", text("a.txt b.dpe"), QString(), 1},
        {"none of them", text("a.txt"), QString(), 0}};
    for (const auto& [row, files, dialogs, imports] : table) {
        const rows::Named named(row);
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& file : files.split(u' '))
            urls << QUrl::fromLocalFile(u'/' + file);
        data.setUrls(urls);
        m_dialogs.clear();
        QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_editor.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_editor.get(), &drop);
        QCOMPARE(m_dialogs.join(u'\n'), dialogs);
        QCOMPARE(notices.count(), imports);
    }
}

void ProcessEditWidgetTest::draggedSequenceShowsTheTemplates()
{
    auto* tabs = find<QTabWidget>("tabWidget");
    QMimeData other;
    other.setText(text("x"));
    QMimeData sequence;
    sequence.setData(text("application/sequence_drag"), QByteArray());
    for (const QMimeData* data : {&other, &sequence}) {
        QCOMPARE(tabs->currentIndex(), 0);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tabs->tabBar(), &enter);
    }
    QCOMPARE(tabs->currentIndex(), 1);
}

void ProcessEditWidgetTest::loadTellsTheHost()
{
    QStringList told;
    m_editor->setShouldDeferCodeGenCallback([&told] {
        told << text("defer?");
        return false;
    });
    const auto loaded = [&told](const QString& name, bool dataOnly) {
        told << name + QString::number(dataOnly);
    };
    m_editor->setOnCAppletLoadedCallback(loaded);
    m_editor->load(true);
    QCOMPARE(told, QStringList({text("defer?"), m_name + u'1'}));
    // Before it has an applet there is nothing to load or save.
    ProcessEditWidget fresh(text("Test"));
    fresh.setOnCAppletLoadedCallback(loaded);
    QSignalSpy refused(&fresh, &ProcessEditWidget::sigSave);
    fresh.load(false);
    fresh.save(QString());
    fresh.saveSplitterSizes();
    QCOMPARE(told.size(), 2);
    QCOMPARE(refused.count(), 0);
}

PE_WIDGET_TEST("process_edit_widget_test", ProcessEditWidgetTest)
#include "process_edit_widget_test.moc"
