#include "shell/ProcessEditWidget.h"

#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/bridge/notify_callbacks.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
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
class CallbackStormTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void storm();

private:
    std::unique_ptr<ProcessEditWidget> makeEditor();
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
    const QString m_name = QStringLiteral("storm");
    QTemporaryDir m_project;
    std::atomic<bool> m_isOver{false};
    std::atomic<int> m_waiting{0}; ///< queued signals that have not arrived
    QString m_sequence;
    std::string m_block;
};

void CallbackStormTest::initTestCase()
{
    standalone::Host::instance().setProjectPath(m_project.path());
    m_sequence = processedit::createSeuqence(m_name, QStringLiteral("main_seq"));
    auto step = applet_fixture::addStep<StatementProcessBlock>(
        m_name, m_sequence, QStringLiteral("1"), step_type::Statement, "语句");
    step->setCustomCode("speed = speed + 1;");
    processedit::updateProcess(m_name, m_sequence, step);
    m_block = step->uuid;
}

std::unique_ptr<ProcessEditWidget> CallbackStormTest::makeEditor()
{
    auto editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
    editor->setProcessEditReset(false);
    editor->createCApplet(m_name);
    editor->loadDataToUI(m_name, false);
    editor->updateUseSystemVarItemInfo(m_name, false);
    return editor;
}

void CallbackStormTest::storm()
{
    LogicMaster* master = LogicMaster::instance();
    const ProcessEditNotifyTool* tool = ProcessEditNotifyTool::instance();
    auto editor = makeEditor();
    auto reader = makeEditor(); // stays to the end

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
    connect(reader.get(), &ProcessEditWidget::notifyRunResultSig, this,
            [&](bool, const QString& text) { logsHeard += text == QLatin1String("line"); });

    const std::string sequence = m_sequence.toStdString();
    const QString speed = QStringLiteral("speed");
    auto& variables = standalone::SystemVariables::instance();
    variables.define({speed, QString(), 1, DoubleCategory, QStringLiteral("0"), 2});

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
                notify_callbacks::blockState("storm", sequence.c_str(), m_block.c_str(), report, 0);
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
            variables.define({speed, QString(), 1, round % 2 ? DoubleCategory : SignedCategory,
                              QStringLiteral("0"), 2});
            variables.waitForListeners();
            ++valuesSent;
        })};

    QElapsedTimer timer;
    timer.start();
    int editors = 0;
    while (timer.elapsed() < StormMs) {
        // The editor that shows the run comes and goes; maps change under everybody's eyes.
        editor->onNotifyStateResult(m_name, m_sequence, QString::fromStdString(m_block), 1.0, 0);
        master->setPaths(m_name, m_project.path() + QStringLiteral("/a/"), QString());
        ProcessEditWidget::updateUniversalPanelBindState(m_name, false);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (++editors % 5 == 0) {
            editor.reset();
            editor = makeEditor();
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
    editor.reset();
    reader.reset();
    ProcessEditWidget::deleteCApplet(m_name, true);
}

PE_WIDGET_TEST("callback_storm_test", CallbackStormTest)
#include "callback_storm_test.moc"
