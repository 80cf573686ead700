#include "tests/shell/EditorFixture.h"

#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"

#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSettings>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

class ProcessEditWidgetTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init() { openEditor(); }
    void cleanup() { closeEditor(); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void emptyAppletGetsASequence();
    void mainSequenceIsShownFirst();
    void savingWritesWhatWaitsInAPanel();
    void panelsFollowTheClickedStep();
    void panelsSayWhyTheyAreEmpty();
    void runTabKeepsTheUsersSizes();
    void widthsGoToTheSettings();
    void settingsAreReadOnce();
    void refusedSaveIsASignal();
    void tablesAreReadOnce();
    void droppedFiles_data();
    void droppedFiles();
    void draggedSequenceShowsTheTemplates();
    void loadTellsTheHost();
    void destroyedInTheMiddleOfARun();
    void outlivesItsWidgetOnRequest();

private:
    static constexpr int Patience = 60000;
};

void ProcessEditWidgetTest::emptyAppletGetsASequence()
{
    const auto sequences = processedit::getAllSequenceByAppName(m_name);
    QCOMPARE(int(sequences.size()), 1);
    QCOMPARE(QString::fromStdString(sequences[0].name), QStringLiteral("Sequence_0"));
    QCOMPARE(sequence(), QString::fromStdString(sequences[0].id));
    QVERIFY(m_editor->currentShowSequenceIsEmpty());
}

void ProcessEditWidgetTest::mainSequenceIsShownFirst()
{
    QStringList ids{sequence()};
    for (const char* name : {"b", "c"})
        ids << processedit::createSeuqence(m_name, QString::fromLatin1(name));
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

void ProcessEditWidgetTest::savingWritesWhatWaitsInAPanel()
{
    const auto step = addDelay(10);
    click(step);
    QSignalSpy modified(m_editor.get(), &ProcessEditWidget::sigAuthoringModified);
    QStringList saved;
    m_editor->setOnAuthoringSavedCallback([&saved](const QString& name) { saved << name; });
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(QStringLiteral("改名"));
    QCOMPARE(step->name, std::string("等待"));
    m_editor->save(QString());
    QCOMPARE(step->name, std::string("改名"));
    QCOMPARE(modified.count(), 1);
    QCOMPARE(saved, QStringList{m_name});
    QFile document(folder() + QStringLiteral("processInfo.pedt"));
    QVERIFY(document.open(QIODevice::ReadOnly));
    QVERIFY(document.readAll().contains("改名"));
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(QStringLiteral("再改"));
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    QCOMPARE(step->name, std::string("再改"));
}

void ProcessEditWidgetTest::panelsFollowTheClickedStep()
{
    const auto first = addDelay(10);
    const auto second = addDelay(20);
    click(first);
    auto* name = find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit");
    name->setText(QStringLiteral("第一"));
    click(second);
    // What was typed goes to the step that it was typed for.
    QCOMPARE(first->name, std::string("第一"));
    QCOMPARE(second->name, std::string("等待"));
    QCOMPARE(name->text(), QStringLiteral("等待"));
    QCOMPARE(find<QLineEdit>(m_editor->getSettingWgt(), "editPreview")->text(),
             QString::fromStdString(second->description()));
}

void ProcessEditWidgetTest::panelsSayWhyTheyAreEmpty()
{
    const QWidget* panel = m_editor->getControlWgt();
    const auto* message = find<QLabel>(panel, "label_12");
    m_editor->processItemClickedSlot(MainFlow, QStringLiteral("1"));
    QCOMPARE(message->text(), QStringLiteral("该节点不可编辑"));
    m_editor->processItemClickedSlot(NoBlock, QString());
    QCOMPARE(message->text(), QStringLiteral("当前未选中步骤节点"));
    const auto step = applet_fixture::addStep<PlainProcessBlock>(
        m_name, sequence(), QStringLiteral("1"), step_type::Break, "跳出");
    step->property.editable = true;
    click(step);
    QVERIFY(!message->isHidden()); // not of the sequence in sight, as the rows know it
    m_editor->loadDataToUI(m_name, false);
    click(step);
    QVERIFY(message->isHidden());
    QCOMPARE(find<QLabel>(panel, "label_3")->text(), QStringLiteral("此步骤类型无需设置属性"));
}

void ProcessEditWidgetTest::runTabKeepsTheUsersSizes()
{
    auto* splitter = find<QSplitter>(m_editor.get(), "splitter");
    splitter->setSizes({250, 600, 350});
    const QList<int> sizes = splitter->sizes();
    QSignalSpy mode(m_editor.get(), &ProcessEditWidget::sigPrcoessMode);
    m_editor->onLogicWidgetTabChanged(1);
    QVERIFY(splitter->sizes() != sizes);
    QVERIFY(!find<QWidget>(m_editor.get(), "treeWidget")->isEnabled());
    QVERIFY(!find<QTabWidget>(m_editor.get(), "attribute_tab")->isTabEnabled(1));
    m_editor->onLogicWidgetTabChanged(1);
    QVERIFY(splitter->sizes() != sizes);
    m_editor->onLogicWidgetTabChanged(0);
    QCOMPARE(splitter->sizes(), sizes);
    QVERIFY(find<QWidget>(m_editor.get(), "treeWidget")->isEnabled());
    QCOMPARE(mode.count(), 3);
}

void ProcessEditWidgetTest::widthsGoToTheSettings()
{
    m_editor->onSaveProcessTreeWidthSlot({QStringLiteral("11"), QStringLiteral("12")}, true);
    m_editor->onSaveVarTreeWidthSlot({});
    const QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("Widget/ProcessRunWidgetWidth")).toString(),
             QStringLiteral("11,12"));
    QVERIFY(!settings.contains(QStringLiteral("Widget/VarWidgetWidth")));
}

void ProcessEditWidgetTest::settingsAreReadOnce()
{
    auto* splitter = find<QSplitter>(m_editor.get(), "splitter");
    const auto reopen = [this](const char* widths) {
        m_editor.reset();
        QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("Widget/WidgetWidth"), QString::fromLatin1(widths));
        settings.setValue(QStringLiteral("Widget/VarWidgetWidth"), QStringLiteral("111,72,63,94"));
        settings.sync();
        m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
        m_editor->resize(1200, 700);
        m_editor->createCApplet(m_name);
        m_editor->setProcessJsonAndVciPath(folder(), folder());
        m_editor->setSettingPath(folder());
        m_editor->show();
        const QList<int> sizes = find<QSplitter>(m_editor.get(), "splitter")->sizes();
        m_editor->load(false);
        return sizes;
    };
    // Two values are no sizes.
    const QList<int> own = reopen("250,600");
    splitter = find<QSplitter>(m_editor.get(), "splitter");
    QCOMPARE(splitter->sizes(), own);
    QCOMPARE(
        find<QTreeView>(find<QWidget>(m_editor.get(), "widget_para"), "treeView")->columnWidth(1),
        72);
    reopen("260,610,310");
    splitter = find<QSplitter>(m_editor.get(), "splitter");
    QVERIFY(splitter->sizes() != own);
    // What the user has dragged since stays when the document is loaded again.
    splitter->setSizes({300, 500, 380});
    const QList<int> dragged = splitter->sizes();
    m_editor->load(false);
    QCOMPARE(splitter->sizes(), dragged);
    // On the run tab the sizes to come back to are kept, not the run tab's own.
    m_editor->saveSplitterSizes();
    m_editor->onLogicWidgetTabChanged(1);
    m_editor->saveSplitterSizes();
    const QSettings settings(folder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
    QStringList texts;
    for (int size : dragged)
        texts << QString::number(size);
    QCOMPARE(settings.value(QStringLiteral("Widget/WidgetWidth")).toString(),
             texts.join(QLatin1Char(',')));
}

void ProcessEditWidgetTest::tablesAreReadOnce()
{
    const QString file = folder() + QStringLiteral("globalVariable.json");
    QVERIFY(test_support::putFile(
        file, R"({"variables": [{"name": "late", "type": "s32", "uuid": "g1", "value": "1"}]})"));
    const ProcessEditWidget second(QStringLiteral("Test"));
    for (const processVariable& variable : process_edit::getAllGlobalVariable())
        QVERIFY(variable.name != "late");
}

void ProcessEditWidgetTest::droppedFiles_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("dialogs");
    QTest::addColumn<int>("imports");
    const QStringList first{QStringLiteral("导入:存在多个文件, 即将默认导入第一个文件")};
    QTest::newRow("one") << QStringList{QStringLiteral("/x/a.dpe")} << QStringList() << 1;
    QTest::newRow("encrypted, in capitals")
        << QStringList{QStringLiteral("/x/a.DPEENC")} << QStringList() << 1;
    QTest::newRow("several") << QStringList{QStringLiteral("/x/a.dpe"), QStringLiteral("/x/b.dpe")}
                             << first << 1;
    QTest::newRow("another among them")
        << QStringList{QStringLiteral("/x/a.txt"), QStringLiteral("/x/b.dpe")} << QStringList()
        << 1;
    QTest::newRow("none of them") << QStringList{QStringLiteral("/x/a.txt")} << QStringList() << 0;
}

void ProcessEditWidgetTest::droppedFiles()
{
    QFETCH(QStringList, files);
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files)
        urls << QUrl::fromLocalFile(file);
    data.setUrls(urls);
    QStringList dialogs;
    user_dialogs::setHandler([&dialogs](const user_dialogs::Message& message) {
        dialogs << message.title + QLatin1Char(':') + message.text;
        return user_dialogs::Answer();
    });
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_editor.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_editor.get(), &drop);
    user_dialogs::setHandler({});
    QTEST(dialogs, "dialogs");
    QTEST(int(notices.count()), "imports");
}

void ProcessEditWidgetTest::draggedSequenceShowsTheTemplates()
{
    auto* tabs = find<QTabWidget>(m_editor.get(), "tabWidget");
    QMimeData other;
    other.setText(QStringLiteral("x"));
    QMimeData sequence;
    sequence.setData(QStringLiteral("application/sequence_drag"), QByteArray());
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
        told << QStringLiteral("defer?");
        return false;
    });
    m_editor->setOnCAppletLoadedCallback(
        [&told](const QString& name, bool dataOnly) { told << name + QString::number(dataOnly); });
    m_editor->load(true);
    QCOMPARE(told, QStringList({QStringLiteral("defer?"), m_name + QStringLiteral("1")}));
    // Before it has an applet there is nothing to load or save.
    ProcessEditWidget fresh(QStringLiteral("Test"));
    fresh.setOnCAppletLoadedCallback(
        [&told](const QString&, bool) { told << QStringLiteral("?"); });
    QSignalSpy refused(&fresh, &ProcessEditWidget::sigSave);
    fresh.load(false);
    fresh.save(QString());
    QCOMPARE(told.size(), 2);
    QCOMPARE(refused.count(), 0);
}

void ProcessEditWidgetTest::refusedSaveIsASignal()
{
    QSignalSpy refused(m_editor.get(), &ProcessEditWidget::sigSave);
    m_editor->save(folder() + QStringLiteral("missing/copy.pedt"));
    QCOMPARE(refused.count(), 1);
    QVERIFY(!m_editor->saveApp(m_name, false, folder() + QStringLiteral("missing/copy.pedt")));
    QVERIFY(m_editor->saveApp(m_name, false, folder() + QStringLiteral("copy.pedt")));
    QVERIFY(QFile::exists(folder() + QStringLiteral("copy.pedt")));
    QCOMPARE(refused.count(), 2);
}

void ProcessEditWidgetTest::destroyedInTheMiddleOfARun()
{
    addDelay(60000);
    // Told on the runner's thread: only a queued receiver may count.
    int states = 0;
    connect(
        ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runStateSignal, m_editor.get(),
        [&states] { ++states; }, Qt::QueuedConnection);
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QTRY_VERIFY_WITH_TIMEOUT(states > 0, Patience);
    m_editor.reset();
    QTRY_VERIFY_WITH_TIMEOUT(
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner").isEmpty(),
        Patience);
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
}

void ProcessEditWidgetTest::outlivesItsWidgetOnRequest()
{
    addDelay(10);
    m_editor->setProcessEditReset(false);
    m_editor.reset();
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), folder());
    QVERIFY(ProcessEditWidget::ensureAppPedtLoaded(m_name));
}

PE_WIDGET_TEST("process_edit_widget_test", ProcessEditWidgetTest)
#include "process_edit_widget_test.moc"
