#include "tests/shell/EditorFixture.h"

#include "model/services/processedit.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/notify_callbacks.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <atomic>
#include <thread>

namespace processedit = sdk_ui_interface::processedit;

namespace {

// The thread sanitizer sees more the longer it looks.
#if defined(__SANITIZE_THREAD__)
constexpr int StormMs = 10000;
#else
constexpr int StormMs = 1500;
#endif

} // namespace

// Compile, run, log and variable callbacks, each from a thread of its own, while editors come and
// go on the GUI thread.
class CallbackStormTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init();
    void storm();

private:
    std::unique_ptr<ProcessEditWidget> makePassingEditor() const
    {
        auto editor = makeEditor();
        editor->setProcessEditReset(false);
        editor->updateUseSystemVarItemInfo(m_name, false);
        return editor;
    }
    template <class Act> std::thread repeat(Act act)
    {
        return std::thread([this, act] {
            for (int round = 0; !m_isOver; ++round) {
                act(round);
                // As fast as the receivers are, and no faster: what waits must fit in memory.
                while (m_waiting > MostWaiting && !m_isOver)
                    std::this_thread::yield();
            }
        });
    }

    static constexpr int MostWaiting = 2000;
    std::atomic<bool> m_isOver{false};
    std::atomic<int> m_waiting{0}; ///< queued signals that have not arrived
};

void CallbackStormTest::init()
{
    m_name = text("storm");
    openEditor(); // stays to the end, and nobody looks at it
    m_editor->hide();
    m_record.reset();
}

void CallbackStormTest::storm()
{
    const QString shown = sequence();
    const std::string block = addStatement(shown, "speed = speed + 1;")->uuid;
    LogicMaster* master = LogicMaster::instance();
    const ProcessEditNotifyTool* tool = ProcessEditNotifyTool::instance();
    auto editor = makePassingEditor();

    std::atomic<int> compilesSent{0};
    std::atomic<int> runsSent{0};
    std::atomic<int> valuesSent{0};
    int compilesHeard = 0;
    int runsHeard = 0;
    int usesHeard = 0;
    int logsHeard = 0;
    connect(
        tool, &ProcessEditNotifyTool::compileFinishSignal, this,
        [&](const CAppCompileResult& result) {
            QCOMPARE(result.appName, m_name);
            QVERIFY(result.sequenceId.isEmpty() && !result.runAfterCompile);
            QCOMPARE(int(result.elapsed), compilesHeard++); // none lost, none overtaken
            --m_waiting;
        },
        Qt::QueuedConnection);
    connect(
        tool, &ProcessEditNotifyTool::runFinishSignal, this,
        [&] {
            ++runsHeard;
            --m_waiting;
        },
        Qt::QueuedConnection);
    connect(
        tool, &ProcessEditNotifyTool::systemVarChange, this, [&] { ++usesHeard; },
        Qt::QueuedConnection);
    connect(m_editor.get(), &ProcessEditWidget::notifyRunResultSig, this,
            [&](bool, const QString& said) { logsHeard += said == QLatin1String("line"); });

    const std::string sequence = shown.toStdString();
    const QString speed = text("speed");
    auto& variables = standalone::SystemVariables::instance();
    variables.define({speed, QString(), 1, DoubleCategory, text("0"), 2});

    std::thread threads[] = {
        repeat([&](int round) {
            ++m_waiting;
            notify_callbacks::compileFinished(CompileFailed, quint64(round), "storm",
                                              "warnings generated.");
            ++compilesSent;
        }),
        repeat([&](int round) {
            notify_callbacks::sequenceEntry("storm", sequence.c_str(), false);
            for (int report = 0; report < 100; ++report)
                notify_callbacks::blockState("storm", sequence.c_str(), block.c_str(), report, 0);
            notify_callbacks::templateSequenceEntry("storm", "t", "s", true);
            if (round % 50 == 0) {
                processedit::RunInfo info{"storm", sequence};
                ++m_waiting;
                notify_callbacks::runEvent(&info, 1);
                ++runsSent;
            }
        }),
        repeat([&](int) {
            notify_callbacks::logText("storm", LogInfo, "line");
            std::this_thread::yield();
        }),
        repeat([&](int round) {
            variables.setValue(speed, QString::number(round));
            variables.define(
                {speed, QString(), 1, round % 2 ? DoubleCategory : SignedCategory, text("0"), 2});
            variables.waitForListeners();
            ++valuesSent;
        })};

    QElapsedTimer timer;
    timer.start();
    int editors = 0;
    while (timer.elapsed() < StormMs) {
        // The editor that shows the run comes and goes; maps change under everybody's eyes.
        editor->onNotifyStateResult(m_name, shown, QString::fromStdString(block), 1.0, 0);
        master->setPaths(m_name, folder() + text("a/"), QString());
        ProcessEditWidget::updateUniversalPanelBindState(m_name, false);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (++editors % 5 == 0) {
            editor.reset();
            editor = makePassingEditor();
        }
    }
    m_isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    variables.waitForListeners();

    QTRY_COMPARE_WITH_TIMEOUT(compilesHeard, compilesSent.load(), 60000);
    QTRY_COMPARE_WITH_TIMEOUT(runsHeard, runsSent.load(), 60000);
    QTRY_COMPARE_WITH_TIMEOUT(usesHeard, valuesSent.load(), 60000);
    QTRY_VERIFY(logsHeard > 0);
    qInfo("%d compile results, %d run ends, %d changes of a variable, %d log lines, %d editors",
          compilesHeard, runsHeard, usesHeard, logsHeard, editors / 5);
}

PE_WIDGET_TEST("callback_storm_test", CallbackStormTest)
#include "callback_storm_test.moc"
