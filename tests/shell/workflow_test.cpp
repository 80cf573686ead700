#include "tests/shell/EditorFixture.h"

#include "logic/LogicView.h"
#include "model/services/widget_bases.h"
#include "shell/bridge/notify_callbacks.h"
#include "shell/documents/applet_folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/told_context.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTextCodec>
#include <QTreeView>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

// What a host hears, in order, from a press of a button to the end of what it started.
class WorkflowTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init() { openFlow("flow"); }
    void cleanup();
    void runThenSkip();
    void compileThenSkip();
    void failedCompile();
    void refusals();
    void refusedRun();
    void rebuildRule();
    void diagnosisNeverForcesARebuild();
    void backAfterARun();
    void resultsOfOthers();
    void checkCallbackStopsTheBuild();
    void boundPanel();
    void stopAsksFirst();
    void crashEndsTheRun();
    void removalWaitsForTheRun();
    void whatIsTheHostsAndWhatIsNotYet();

private:
    /// An editor of a main sequence and another one, a statement in each.
    void openFlow(const char* name);
    QStringList untilFinished();
    /// Presses, and hears all of what that started.
    QStringList heardAfter(int function)
    {
        press(function);
        return untilFinished();
    }
    void startEndlessRun();

    QTextCodec* const m_codec = QTextCodec::codecForLocale();
    QString m_main;
    QString m_other;
    std::shared_ptr<StatementProcessBlock> m_step; ///< of the main sequence
    std::shared_ptr<StatementProcessBlock> m_otherStep;
};

void WorkflowTest::openFlow(const char* name)
{
    m_name = text(name);
    openEditor();
    standalone::setRunnerPath(QString());
    m_main = sequence();
    m_step = addStatement(m_main, "log_info(\"A\");");
    m_other = processedit::createSeuqence(m_name, text("other"));
    m_otherStep = addStatement(m_other, "log_info(\"B\");");
    m_editor->loadDataToUI(m_name, false);
    m_record->take();
}

void WorkflowTest::cleanup()
{
    closeEditor();
    QTextCodec::setCodecForLocale(m_codec);
}

QStringList WorkflowTest::untilFinished()
{
    // A run's end, and the end of a compile that starts none.
    const bool isOver = QTest::qWaitFor(
        [this] {
            return m_record->has("runFinish") && m_record->toolBar() == QLatin1String("idle");
        },
        Patience);
    if (!isOver)
        m_record->lines << text("no end came");
    QCoreApplication::processEvents();
    return m_record->take();
}

void WorkflowTest::startEndlessRun()
{
    setCode(m_main, m_step, "while (true) {}");
    press(ProcessEditToolBar::RunMain);
    QTRY_COMPARE_WITH_TIMEOUT(m_record->toolBar(), text("running"), Patience);
    m_record->take();
}

void WorkflowTest::runThenSkip()
{
    m_editor->onSaveProcessTreeWidthSlot(lines("211\n172\n63\n94"), true);
    press(ProcessEditToolBar::RunMain);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "compileStart [idle]\n"
                                     "output 1 即将开始编译 [idle]\n"
                                     "runStart [started]\n"));
    QCOMPARE(untilFinished(), lines("compileFinish 1 [started]\n"
                                    "saved flow\n"
                                    "mode 1 [started]\n"
                                    "output 1 <time>Sequence_0编译成功|即将开始运行| [running]\n"
                                    "finished 1\n"
                                    "output 1 A [running]\n"
                                    "output 1 flow 运行结束|<rule> [idle]\n"
                                    "runFinish [idle]\n"));
    QVERIFY(QFile::exists(folder() + text("quickStep.json")));
    QVERIFY(m_editor->getProgressHandle() < 0); // no run is shown any more
    QCOMPARE(find<QTreeView>(find<LogicView>("center_wgt"), "runTreeView")->columnWidth(1), 172);
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
    QCOMPARE(m_record->toolBar(), text("started"));
    QCOMPARE(untilFinished(), lines("compileFinish 1 [started]\n"
                                    "saved flow\n"
                                    "runFinish [idle]\n"
                                    "output 1 <time>Sequence_0编译成功|<rule> [idle]\n"
                                    "finished 1\n"));
    press(ProcessEditToolBar::Compile);
    QCOMPARE(m_record->take(), lines("prepare\n"
                                     "finished 1\n"
                                     "output 1 内容无更新, 跳过编译。 [idle]\n"));
    QCOMPARE(m_record->toolBar(), text("idle"));
    // A skipped press turns the next run into a compile; when that one is over, a press runs.
    setCode(m_main, m_step, "log_info(\"C\");");
    const QStringList heard = heardAfter(ProcessEditToolBar::RunMain);
    QCOMPARE(heard.mid(heard.size() - 2),
             lines("output 1 <time>Sequence_0编译成功|<rule> [idle]\nfinished 1"));
    QVERIFY(heardAfter(ProcessEditToolBar::RunMain).contains(text("output 1 C [started]")));
}

void WorkflowTest::failedCompile()
{
    setCode(m_main, m_step, "no code at all");
    press(ProcessEditToolBar::RunMain);
    m_record->take();
    QVERIFY(!m_editor->getControlWgt()->isEnabled());
    QVERIFY(!find<QTabWidget>("attribute_tab")->isEnabled());
    QCOMPARE(untilFinished(), lines("compileFinish 0 [started]\n"
                                    "runFinish [idle]\n"
                                    "output 0 <time>Sequence_0编译失败|<rule> [idle]\n"
                                    "finished 0\n"));
    QVERIFY(m_editor->getControlWgt()->isEnabled());
    m_editor->loadDataToUI(m_name, false);
    QVERIFY(m_editor->getControlWgt()->isEnabled());
    QVERIFY(!QFile::exists(document()));
}

void WorkflowTest::refusals()
{
    const auto refusal = [this](int function) {
        m_dialogs.clear();
        press(function);
        return m_record->take() == lines("prepare\nfinished 0") ? m_dialogs.join(u'\n') : QString();
    };
    SequenceInfo info = processedit::getSequence(m_name, m_main);
    info.isMain = false;
    processedit::updateSequence(m_name, info);
    QCOMPARE(refusal(ProcessEditToolBar::RunMain),
             text("警告:未选择主序列，请选择主序列后再次运行"));
    m_editor->onRemoveSelectSequence({m_main});
    QCOMPARE(refusal(ProcessEditToolBar::RunCurrent),
             text("警告:未选择序列，请选择序列后再次运行"));
    m_editor->clearCAppletData(true, true);
    QCOMPARE(refusal(ProcessEditToolBar::Compile), text("警告:无序列信息，请添加序列"));
    const ToldContext context;
    QVERIFY2(refusal(ProcessEditToolBar::RunMain)
                 .startsWith(text("ProcessEditWidget:警告:LogicMaster:")),
             qPrintable(m_dialogs.join(u'\n')));
}

void WorkflowTest::refusedRun()
{
    heardAfter(ProcessEditToolBar::RunMain);
    const rows::Table<int, bool> table{{"current", ProcessEditToolBar::RunCurrent, false},
                                       {"main", ProcessEditToolBar::RunMain, true}};
    for (const auto& [row, function, staysInRunMode] : table) {
        const rows::Named named(row);
        standalone::setRunnerPath(folder() + text("no_runner"));
        press(function);
        QCOMPARE(m_record->take(), lines("prepare\n"
                                         "finished 1\n"
                                         "output 1 内容无更新, 跳过编译即将运行。运行失败 [idle]\n"
                                         "runStart [started]\n"));
        QCOMPARE(m_editor->getProgressHandle() >= 0, staysInRunMode);
        // The bar stays as it is: there is nothing to stop, and the next result brings it back.
        press(ProcessEditToolBar::Stop);
        QCoreApplication::processEvents();
        QCOMPARE(m_record->toolBar(), text("started"));
        QVERIFY(m_dialogs.isEmpty());
        standalone::setRunnerPath(QString());
        press(function);
        QVERIFY(m_editor->getProgressHandle() >= 0);
        QVERIFY(untilFinished().contains(text("runFinish [idle]")));
    }
}

void WorkflowTest::rebuildRule()
{
    const auto compiles = [this](int function) {
        return heardAfter(function).contains(text("compileStart [idle]"));
    };
    QVERIFY(compiles(ProcessEditToolBar::RunMain));
    // Another target, and back to the first. A compile is looked at in the edit tab.
    m_editor->setCurrentShowSequence(m_other);
    QVERIFY(heardAfter(ProcessEditToolBar::RunCurrent)
                .join(u'|')
                .contains(text("mode 0 [idle]|compileStart [idle]")));
    QVERIFY(compiles(ProcessEditToolBar::RunMain));
    QVERIFY(!compiles(ProcessEditToolBar::RunMain));
    // A module that is gone.
    QVERIFY(QFile::remove(applet_folders::moduleFolder(m_name) + text("/flow.mp")));
    QVERIFY(compiles(ProcessEditToolBar::Compile));
    // An editor that has built nothing yet.
    const auto second = makeEditor();
    second->setProcessEditReset(false);
    EditorRecorder heard(second.get());
    second->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Compile);
    QVERIFY(heard.has("compileStart"));
    QTRY_VERIFY_WITH_TIMEOUT(heard.has("finished"), Patience);
}

void WorkflowTest::diagnosisNeverForcesARebuild()
{
    heardAfter(ProcessEditToolBar::RunMain);
    const auto diagnosis = makeEditor("Diagnosis");
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

void WorkflowTest::backAfterARun()
{
    auto* view = m_editor->findChild<LogicView*>();
    const QString edited = QString::fromStdString(m_otherStep->uuid);
    for (const bool choosesInTheRun : {false, true}) {
        m_editor->setCurrentShowSequence(m_other);
        view->chooseStep(edited);
        press(ProcessEditToolBar::RunMain);
        QCOMPARE(sequence(), m_main);
        if (choosesInTheRun)
            view->chooseStep(QString::fromStdString(m_step->uuid));
        untilFinished();
        QCOMPARE(sequence(), choosesInTheRun ? m_main : m_other);
        QCOMPARE(view->currentStepId() == edited, !choosesInTheRun);
    }
}

void WorkflowTest::resultsOfOthers()
{
    CAppCompileResult result;
    result.appName = text("somebody");
    result.result = CompileSucceeded;
    m_editor->onNotifyCompileResult(result, QString());
    m_editor->onNotifyRunResult(text("somebody"), true, text("x"));
    QCOMPARE(m_record->take(), lines("compileFinish 1 [idle]"));
    // Its own applet's, which another part of the host has compiled and run.
    result.appName = m_name;
    result.result = CompileFailed;
    m_editor->onNotifyCompileResult(result, QString());
    QCOMPARE(m_record->take(), lines("compileFinish 0 [idle]\n"
                                     "runFinish [idle]\n"
                                     "output 0 <rule> [idle]\n"
                                     "finished 0\n"));
    m_editor->onNotifyRunResult(m_name, true, text("x"));
    QCOMPARE(m_record->take(), lines("output 1 x [idle]\nrunFinish [idle]"));
}

void WorkflowTest::checkCallbackStopsTheBuild()
{
    click(m_step);
    find<QLineEdit>(m_editor->getSettingWgt(), "nameLineEdit")->setText(text("typed"));
    QStringList asked;
    m_editor->setCompileCheckCallback(
        [&](const QString& sequence, const QString& app, const QString& path, bool forVci) {
            m_record->lines << text("check");
            asked << sequence << app << path << QString::number(forVci);
            asked << QString::fromStdString(m_step->name); // what is typed is in the document
            return QList<int>{1};
        });
    press(ProcessEditToolBar::RunCurrent);
    QCOMPARE(m_record->take(), lines("prepare\ncheck\nfinished 0\n"));
    QCOMPARE(asked, QStringList({m_main, m_name, folder(), text("0"), text("typed")}));
    QVERIFY(m_dialogs.isEmpty());
}

void WorkflowTest::boundPanel()
{
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    ProcessEditWidget::updateUniversalPanelBindState(m_name, true);
    for (int function :
         {ProcessEditToolBar::RunCurrent, ProcessEditToolBar::RunMain, ProcessEditToolBar::Compile})
        press(function);
    QCOMPARE(m_record->take(), QStringList());
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
    ProcessEditWidget::updateUniversalPanelBindState(text("stranger"), true);
    QVERIFY(!LogicMaster::instance()->isPanelBound(text("stranger")));
}

/// In any locale: the names of runners are in its encoding.
void WorkflowTest::stopAsksFirst()
{
    for (const char* codec : {"UTF-8", "GBK"}) {
        closeEditor();
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(codec));
        openFlow("检测");
        startEndlessRun();
        press(ProcessEditToolBar::Pause);
        m_agrees = false;
        press(ProcessEditToolBar::Stop);
        QCOMPARE(m_dialogs,
                 lines("警告:当前流程正在运行，若存在死循环，强制停止流程可能会导致未知的风险"
                       "（有可能会卡死），是否继续？"));
        QCOMPARE(m_record->toolBar(), text("running"));
        // A compile can't start meanwhile.
        QString message;
        bool skipped = false;
        QVERIFY(!LogicMaster::instance()->compile(m_name, m_main, message, false, skipped, false,
                                                  true));
        QCOMPARE(message, text("流程正在运行中, 请等待流程结束后再次运行。"));
        m_agrees = true;
        press(ProcessEditToolBar::Stop);
        // Before it a run that had to be killed tells its last steps.
        const QStringList heard = untilFinished();
        QCOMPARE(heard.mid(heard.size() - 2), lines("output 1 检测 运行中止|<rule> [idle]\n"
                                                    "runFinish [idle]\n"));
    }
}

void WorkflowTest::crashEndsTheRun()
{
    setCode(m_main, m_step, "__builtin_trap();");
    const QStringList heard = heardAfter(ProcessEditToolBar::RunMain);
    QVERIFY2(heard.contains(text("output 0 flow 运行崩溃, 即将停止运行| [idle]")),
             qPrintable(heard.join(u'\n')));
}

void WorkflowTest::removalWaitsForTheRun()
{
    startEndlessRun();
    m_editor->resetCApplet();
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), folder());
    QVERIFY(processedit::getCAppletDataIsExist(m_name));
    const auto* loading = m_editor->findChild<LoadingUI*>();
    QVERIFY(loading->isVisible());
    untilFinished();
    QVERIFY(!loading->isVisible());
    QVERIFY(!processedit::getCAppletDataIsExist(m_name));
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), QString());
}

void WorkflowTest::whatIsTheHostsAndWhatIsNotYet()
{
    for (int function : {4, 5, 6, 7, 12, -1, 1000})
        press(function);
    m_editor->runCApplet(m_main);
    m_editor->toVciCode();
    QCOMPARE(m_record->take(), QStringList());
    QSignalSpy notices(&standalone::Host::instance(), &standalone::Host::noticeShown);
    m_editor->onImportTemplateButtonClicked();
    m_editor->onExportTemplateButtonClicked();
    QCOMPARE(notices.count(), 2);
    press(ProcessEditToolBar::OpenCodeFolder);
    QCOMPARE(m_dialogs, lines("提示:当前代码文件夹不存在"));
    // Whether a stale hint is shown is the host's matter.
    QStringList stale;
    m_editor->setOnRuntimeStaleCallback([&stale](const QString& name) { stale << name; });
    emit m_editor->findChild<LogicView*>()->sigUdsRuntimeStaleRequired();
    QCOMPARE(stale, QStringList{m_name});
}

PE_WIDGET_TEST("workflow_test", WorkflowTest)
#include "workflow_test.moc"
