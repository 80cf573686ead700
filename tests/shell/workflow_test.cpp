#include "shell/ProcessEditWidget.h"

#include "logic/LogicView.h"
#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "model/services/widget_bases.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/notify_callbacks.h"
#include "shell/documents/applet_folders.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/shell/EditorRecorder.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"

#include <QTabWidget>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

namespace {

using Lines = QStringList;

Lines lines(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

// What a host hears, in order, from a press of a button to the end of what it started.
class WorkflowTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void runThenSkip();
    void compileThenSkip();
    void skippedCompilePressTurnsTheNextRunIntoACompile();
    void failedCompile();
    void refusedRun_data();
    void refusedRun();
    void runThatCannotStartAfterItsCompile();
    void rebuildRule();
    void diagnosisNeverForcesARebuild();
    void checkCallbackStopsTheBuild();
    void boundPanel();
    void stopAsksFirst();
    void crashEndsTheRun();
    void removalWaitsForTheRun();
    void placeholdersAndUnknownNumbers();
    void staleHintIsTheHostsMatter();
    void twoEditorsRunSideBySide();

private:
    QString addSequence(const QString& appName, const QString& name, const QString& code,
                        bool isMain);
    std::unique_ptr<ProcessEditWidget> makeEditor(const QString& appName, const QString& business);
    void setCode(const QString& sequenceId, const QString& code);
    void press(int function) { m_editor->onToolWidgetButtonClickedSlot(function); }
    Lines untilFinished();

    static constexpr int Patience = 60000;
    const QString m_name = QStringLiteral("flow");
    std::unique_ptr<QTemporaryDir> m_project;
    std::unique_ptr<ProcessEditWidget> m_editor;
    std::unique_ptr<EditorRecorder> m_record;
    QString m_main;
    QString m_other;
    Lines m_dialogs;
    user_dialogs::Button m_answer = user_dialogs::Button::Yes;
};

void WorkflowTest::init()
{
    m_dialogs.clear();
    m_answer = user_dialogs::Button::Yes;
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        m_dialogs << message.title + QLatin1Char(':') + message.text;
        return user_dialogs::Answer{m_answer, QString()};
    });
    m_project = std::make_unique<QTemporaryDir>();
    standalone::Host::instance().setProjectPath(m_project->path());
    standalone::setRunnerPath(QString());
    m_other =
        addSequence(m_name, QStringLiteral("other"), QStringLiteral("log_info(\"B\");"), false);
    m_main =
        addSequence(m_name, QStringLiteral("main_seq"), QStringLiteral("log_info(\"A\");"), true);
    m_editor = makeEditor(m_name, QStringLiteral("Test"));
    m_record = std::make_unique<EditorRecorder>(m_editor.get());
}

void WorkflowTest::cleanup()
{
    m_record.reset();
    m_editor.reset();
    user_dialogs::setHandler({});
}

QString WorkflowTest::addSequence(const QString& appName, const QString& name, const QString& code,
                                  bool isMain)
{
    const QString id = processedit::createSeuqence(appName, name);
    SequenceInfo info = processedit::getSequence(appName, id);
    info.isMain = isMain;
    processedit::updateSequence(appName, info);
    auto step = applet_fixture::addStep<StatementProcessBlock>(appName, id, QStringLiteral("1"),
                                                               step_type::Statement, "语句");
    step->setCustomCode(code.toStdString());
    processedit::updateProcess(appName, id, step);
    return id;
}

std::unique_ptr<ProcessEditWidget> WorkflowTest::makeEditor(const QString& appName,
                                                            const QString& business)
{
    auto editor = std::make_unique<ProcessEditWidget>(business);
    editor->createCApplet(appName);
    const QString folder = m_project->path() + QStringLiteral("/doc_%1/").arg(appName);
    QDir().mkpath(folder);
    editor->setProcessJsonAndVciPath(folder, folder);
    editor->loadDataToUI(appName, false);
    return editor;
}

void WorkflowTest::setCode(const QString& sequenceId, const QString& code)
{
    const auto blocks = processedit::getProcessListBySequenceID(m_name, sequenceId);
    auto step = std::dynamic_pointer_cast<StatementProcessBlock>(blocks.at(0));
    step->setCustomCode(code.toStdString());
    processedit::updateProcess(m_name, sequenceId, step);
}

Lines WorkflowTest::untilFinished()
{
    // A run's end, and the end of a compile that starts none.
    const bool isOver = QTest::qWaitFor(
        [this] {
            return m_record->has("runFinish") && m_record->toolBar() == QLatin1String("idle");
        },
        Patience);
    if (!isOver)
        m_record->lines << QStringLiteral("no end came");
    QCoreApplication::processEvents();
    return m_record->take();
}

void WorkflowTest::runThenSkip()
{
    press(ProcessEditToolBar::RunMain);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "compileStart [idle]\n"
                                     "output 1 即将开始编译 [idle]\n"
                                     "runStart [started]\n"));
    QCOMPARE(untilFinished(), lines("compileFinish 1 [started]\n"
                                    "saved flow\n"
                                    "mode 1 [started]\n"
                                    "output 1 <time>main_seq编译成功|即将开始运行| [running]\n"
                                    "finished 1\n"
                                    "output 1 A [running]\n"
                                    "output 1 flow 运行结束|<rule> [idle]\n"
                                    "runFinish [idle]\n"));
    QCOMPARE(m_editor->getCurrentShowSequenceId(), m_main);
    // The run tab is shown already.
    press(ProcessEditToolBar::RunMain);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "finished 1\n"
                                     "output 1 内容无更新, 跳过编译即将运行。 [idle]\n"
                                     "runStart [started]\n"));
    QCOMPARE(untilFinished(), lines("output 1 A [started]\n"
                                    "output 1 flow 运行结束|<rule> [idle]\n"
                                    "runFinish [idle]\n"));
}

void WorkflowTest::compileThenSkip()
{
    press(ProcessEditToolBar::Compile);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "compileStart [idle]\n"
                                     "output 1 即将开始编译 [idle]\n"));
    QCOMPARE(m_record->toolBar(), QStringLiteral("started"));
    QCOMPARE(untilFinished(), lines("compileFinish 1 [started]\n"
                                    "saved flow\n"
                                    "runFinish [idle]\n"
                                    "output 1 <time>main_seq编译成功|<rule> [idle]\n"
                                    "finished 1\n"));
    press(ProcessEditToolBar::Compile);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "finished 1\n"
                                     "output 1 内容无更新, 跳过编译。 [idle]\n"));
    QCOMPARE(m_record->toolBar(), QStringLiteral("idle"));
}

void WorkflowTest::skippedCompilePressTurnsTheNextRunIntoACompile()
{
    press(ProcessEditToolBar::Compile);
    untilFinished();
    press(ProcessEditToolBar::Compile);
    m_record->take();
    setCode(m_main, QStringLiteral("log_info(\"C\");"));
    press(ProcessEditToolBar::RunMain);
    Lines heard = untilFinished();
    QVERIFY2(heard.contains(QStringLiteral("output 1 <time>main_seq编译成功|<rule> [idle]")),
             qPrintable(heard.join(QLatin1Char('\n'))));
    QCOMPARE(heard.last(), QStringLiteral("finished 1"));
    // That one is over, so the next press runs.
    press(ProcessEditToolBar::RunMain);
    QVERIFY(untilFinished().contains(QStringLiteral("output 1 C [started]")));
}

void WorkflowTest::failedCompile()
{
    setCode(m_main, QStringLiteral("no code at all"));
    press(ProcessEditToolBar::RunMain);
    m_record->take();
    QVERIFY(!m_editor->getControlWgt()->isEnabled());
    const auto* attributes = m_editor->findChild<QTabWidget*>(QStringLiteral("attribute_tab"));
    QVERIFY(!attributes->isEnabled());
    QCOMPARE(untilFinished(), lines("compileFinish 0 [started]\n"
                                    "runFinish [idle]\n"
                                    "output 0 <time>main_seq编译失败|<rule> [idle]\n"
                                    "finished 0\n"));
    m_editor->loadDataToUI(m_name, false);
    QVERIFY(m_editor->getControlWgt()->isEnabled());
    QVERIFY(!QFile::exists(ProcessEditWidget::appletJsonPath(m_name) +
                           QStringLiteral("processInfo.pedt")));
}

void WorkflowTest::refusedRun_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<bool>("staysInRunMode");
    QTest::newRow("current") << int(ProcessEditToolBar::RunCurrent) << false;
    QTest::newRow("main") << int(ProcessEditToolBar::RunMain) << true;
}

void WorkflowTest::refusedRun()
{
    press(ProcessEditToolBar::RunMain);
    untilFinished();
    standalone::setRunnerPath(m_project->filePath(QStringLiteral("no_runner")));
    m_editor->setCurrentShowSequence(m_main);
    QFETCH(int, function);
    press(function);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "finished 1\n"
                                     "output 1 内容无更新, 跳过编译即将运行。运行失败 [idle]\n"
                                     "runStart [started]\n"));
    QTEST(m_editor->getProgressHandle() >= 0, "staysInRunMode");
    // The bar stays as it is: there is nothing to stop, and the next result brings it back.
    press(ProcessEditToolBar::Stop);
    QCoreApplication::processEvents();
    QCOMPARE(m_record->toolBar(), QStringLiteral("started"));
    QVERIFY(m_dialogs.isEmpty());
    standalone::setRunnerPath(QString());
    press(function);
    QVERIFY(untilFinished().contains(QStringLiteral("runFinish [idle]")));
}

void WorkflowTest::runThatCannotStartAfterItsCompile()
{
    standalone::setRunnerPath(m_project->filePath(QStringLiteral("no_runner")));
    press(ProcessEditToolBar::RunMain);
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("finished"), Patience);
    QVERIFY2(m_record->lines.contains(
                 QStringLiteral("output 1 <time>main_seq编译成功|即将开始运行|运行失败| [idle]")),
             qPrintable(m_record->lines.join(QLatin1Char('\n'))));
}

void WorkflowTest::rebuildRule()
{
    press(ProcessEditToolBar::RunMain);
    untilFinished();
    // Another target, and back to the first.
    m_editor->setCurrentShowSequence(m_other);
    press(ProcessEditToolBar::RunCurrent);
    QVERIFY(untilFinished().contains(QStringLiteral("compileStart [idle]")));
    press(ProcessEditToolBar::RunMain);
    QVERIFY(untilFinished().contains(QStringLiteral("compileStart [idle]")));
    press(ProcessEditToolBar::RunMain);
    QVERIFY(!untilFinished().contains(QStringLiteral("compileStart [idle]")));
    // A module that is gone.
    QVERIFY(QFile::remove(applet_folders::moduleFolder(m_name) + QStringLiteral("/flow.mp")));
    press(ProcessEditToolBar::Compile);
    QVERIFY(untilFinished().contains(QStringLiteral("compileStart [idle]")));
    // An editor that has built nothing yet.
    auto second = makeEditor(m_name, QStringLiteral("Test"));
    second->setProcessEditReset(false);
    EditorRecorder heard(second.get());
    second->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Compile);
    QVERIFY(heard.has("compileStart"));
    QTRY_VERIFY_WITH_TIMEOUT(heard.has("finished"), Patience);
}

void WorkflowTest::diagnosisNeverForcesARebuild()
{
    press(ProcessEditToolBar::RunMain);
    untilFinished();
    auto diagnosis = makeEditor(m_name, QStringLiteral("Diagnosis"));
    diagnosis->setProcessEditReset(false);
    EditorRecorder heard(diagnosis.get());
    diagnosis->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QVERIFY(!heard.has("compileStart"));
    QVERIFY(heard.has("output 1 内容无更新, 跳过编译即将运行。"));
    QTRY_VERIFY_WITH_TIMEOUT(heard.has("runFinish"), Patience);
    // The compile button knows no exemption.
    diagnosis->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Compile);
    QVERIFY(heard.has("compileStart"));
    QTRY_COMPARE_WITH_TIMEOUT(heard.count("finished"), 2, Patience);
}

void WorkflowTest::checkCallbackStopsTheBuild()
{
    QStringList asked;
    m_editor->setCompileCheckCallback(
        [&](const QString& sequence, const QString& app, const QString& path, bool forVci) {
            m_record->lines << QStringLiteral("check");
            asked << sequence << app << path << QString::number(forVci);
            return QList<int>{1};
        });
    press(ProcessEditToolBar::RunMain);
    QCOMPARE(m_record->take(), lines("prepare\ncheck\nfinished 0\n"));
    QCOMPARE(asked, QStringList({m_main, m_name, ProcessEditWidget::appletJsonPath(m_name),
                                 QStringLiteral("0")}));
    QVERIFY(m_dialogs.isEmpty());
}

void WorkflowTest::boundPanel()
{
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    ProcessEditWidget::updateUniversalPanelBindState(m_name, true);
    for (int function :
         {ProcessEditToolBar::RunCurrent, ProcessEditToolBar::RunMain, ProcessEditToolBar::Compile})
        press(function);
    QCOMPARE(m_record->take(), Lines());
    QCOMPARE(notices.count(), 3);
    QCOMPARE(notices.at(0).at(0).toInt(), 2);
    // Nor does its log reach the output, unless it is released.
    notify_callbacks::logText("flow", LogInfo, "bound");
    QCoreApplication::processEvents();
    ProcessEditWidget::updateUniversalPanelBindState(m_name, false);
    notify_callbacks::logText("flow", LogInfo, "");
    notify_callbacks::logText("flow", LogInfo, "free");
    notify_callbacks::logText("stranger", LogInfo, "not ours");
    QCoreApplication::processEvents();
    QCOMPARE(m_record->take(), lines("output 1 free [idle]\n"));
    // An applet that nobody knows isn't remembered.
    ProcessEditWidget::updateUniversalPanelBindState(QStringLiteral("stranger"), true);
    QVERIFY(!LogicMaster::instance()->isPanelBound(QStringLiteral("stranger")));
}

void WorkflowTest::stopAsksFirst()
{
    setCode(m_main, QStringLiteral("while (true) {}"));
    press(ProcessEditToolBar::RunMain);
    QTRY_COMPARE_WITH_TIMEOUT(m_record->toolBar(), QStringLiteral("running"), Patience);
    m_record->take();
    press(ProcessEditToolBar::Pause);
    m_answer = user_dialogs::Button::No;
    press(ProcessEditToolBar::Stop);
    QCOMPARE(m_dialogs, Lines{QStringLiteral(
                            "警告:当前流程正在运行，若存在死循环，强制停止流程可能会导致未知的风险"
                            "（有可能会卡死），是否继续？")});
    QCOMPARE(m_record->toolBar(), QStringLiteral("running"));
    // A compile can't start meanwhile.
    QString message;
    bool skipped = false;
    QVERIFY(
        !LogicMaster::instance()->compile(m_name, m_main, message, false, skipped, false, true));
    QCOMPARE(message, QStringLiteral("流程正在运行中, 请等待流程结束后再次运行。"));
    m_answer = user_dialogs::Button::Yes;
    press(ProcessEditToolBar::Stop);
    // Before it a run that had to be killed tells its last steps.
    const Lines heard = untilFinished();
    QVERIFY2(heard.mid(heard.size() - 2) == lines("output 1 flow 运行中止|<rule> [idle]\n"
                                                  "runFinish [idle]\n"),
             qPrintable(heard.join(QLatin1Char('\n'))));
}

void WorkflowTest::crashEndsTheRun()
{
    setCode(m_main, QStringLiteral("__builtin_trap();"));
    press(ProcessEditToolBar::RunMain);
    const Lines heard = untilFinished();
    QVERIFY2(heard.contains(QStringLiteral("output 0 flow 运行崩溃, 即将停止运行| [idle]")),
             qPrintable(heard.join(QLatin1Char('\n'))));
}

void WorkflowTest::removalWaitsForTheRun()
{
    setCode(m_main, QStringLiteral("while (true) {}"));
    press(ProcessEditToolBar::RunMain);
    QTRY_COMPARE_WITH_TIMEOUT(m_record->toolBar(), QStringLiteral("running"), Patience);
    const QString path = ProcessEditWidget::appletJsonPath(m_name);
    m_editor->show();
    m_editor->resetCApplet();
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), path);
    QVERIFY(processedit::getCAppletDataIsExist(m_name));
    const auto* loading = m_editor->findChild<LoadingUI*>();
    QVERIFY(loading->isVisible());
    untilFinished();
    QVERIFY(!loading->isVisible());
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), QString());
}

void WorkflowTest::placeholdersAndUnknownNumbers()
{
    for (int function : {4, 5, 6, 7, 12, -1, 1000})
        press(function);
    QCOMPARE(m_record->take(), Lines());
    m_editor->runCApplet(m_main);
    m_editor->toVciCode();
    QCOMPARE(m_record->take(), Lines());
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    m_editor->onImportTemplateButtonClicked();
    m_editor->onExportTemplateButtonClicked();
    QCOMPARE(notices.count(), 2);
    press(ProcessEditToolBar::OpenCodeFolder);
    QCOMPARE(m_dialogs, Lines{QStringLiteral("提示:当前代码文件夹不存在")});
}

void WorkflowTest::staleHintIsTheHostsMatter()
{
    QStringList stale;
    m_editor->setOnRuntimeStaleCallback([&stale](const QString& name) { stale << name; });
    emit m_editor->findChild<LogicView*>()->sigUdsRuntimeStaleRequired();
    QCOMPARE(stale, QStringList{m_name});
    m_editor->setRuntimeStaleHint(true);
    press(ProcessEditToolBar::Compile);
    untilFinished();
    const auto* compile =
        m_editor->getToolMenuBar()->findChild<QToolButton*>(QStringLiteral("compileBtn"));
    QCOMPARE(compile->toolTip(), QStringLiteral("编译（运行层已过期，需重新编译）"));
}

void WorkflowTest::twoEditorsRunSideBySide()
{
    const QString name = QStringLiteral("flow_two");
    addSequence(name, QStringLiteral("main_two"),
                QStringLiteral("for (int i = 0; i < 50; ++i) log_info(\"two\");"), true);
    setCode(m_main, QStringLiteral("for (int i = 0; i < 50; ++i) log_info(\"one\");"));
    auto second = makeEditor(name, QStringLiteral("Test"));
    EditorRecorder heard(second.get());
    press(ProcessEditToolBar::RunMain);
    second->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("runFinish") && heard.has("runFinish"), Patience);
    for (const EditorRecorder* record : {m_record.get(), &heard}) {
        const bool isFirst = record != &heard;
        QCOMPARE(record->count("output 1 one"), isFirst ? 50 : 0);
        QCOMPARE(record->count("output 1 two"), isFirst ? 0 : 50);
        QCOMPARE(record->count("finished 1"), 1);
        // Of the other one's compile its end is told, and nothing else.
        QCOMPARE(record->count("compileFinish 1"), 2);
        QCOMPARE(record->count("runFinish"), 1);
        QCOMPARE(record->count("saved"), 1);
        QVERIFY(record->lines.contains(
            QStringLiteral("output 1 %1 运行结束|<rule> [idle]").arg(isFirst ? m_name : name)));
    }
}

PE_WIDGET_TEST("workflow_test", WorkflowTest)
#include "workflow_test.moc"
