// From a press of Run to the first state that the run reports: generation, compile, start of the
// child process and the way of its first report. Beside it the bare compiler on the same file.

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditNotifyTool.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/ProcessEditWidget.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/host/Host.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const QString appName = QStringLiteral("bench_run");

/// An editor on an applet of n steps in a project of its own: every second step an expression, the
/// others statements.
class Bench
{
public:
    explicit Bench(int steps) : m_editor(QStringLiteral("Bench"))
    {
        standalone::Host::instance().setProjectPath(m_project.path());
        const QString folder = m_project.path() + QLatin1Char('/');
        m_editor.createCApplet(appName);
        m_editor.setProcessJsonAndVciPath(folder, folder);
        m_editor.load(false);
        m_sequence = m_editor.getCurrentShowSequenceId();
        SequenceInfo info = processedit::getSequence(appName, m_sequence);
        info.isMain = true;
        processedit::updateSequence(appName, info);
        addSteps(steps);
        m_editor.loadDataToUI(appName, false);
    }

    /// Returns when the first state has been reported.
    void pressRun()
    {
        process_edit::appNeedUpdate(appName.toStdString());
        QEventLoop loop;
        QObject::connect(ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runStateSignal,
                         &loop, &QEventLoop::quit, Qt::QueuedConnection);
        QObject::connect(&m_editor, &ProcessEditWidget::sigRunFinish, &loop, &QEventLoop::quit);
        m_isRunning = true;
        QObject::connect(&m_editor, &ProcessEditWidget::sigRunFinish, &m_context,
                         [this] { m_isRunning = false; });
        m_editor.onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
        loop.exec();
    }

    void waitForEnd() const
    {
        while (m_isRunning)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QString sourceFile() const
    {
        const QDir code(m_editor.getCAppletCodePath());
        const QStringList files = code.entryList({QStringLiteral("*.cpp")}, QDir::Files);
        return files.isEmpty() ? QString() : code.filePath(files.first());
    }

    QString scratchFile() const { return m_project.filePath(QStringLiteral("bare.mp")); }

private:
    void addSteps(int steps)
    {
        const QString mainFlow = QStringLiteral("1");
        for (int step = 0; step < steps; ++step) {
            const int type = step % 2 ? step_type::Expression : step_type::Statement;
            const QString uuid =
                processedit::createProcess(appName, m_sequence, mainFlow, BasicStep, type, -1);
            const auto block = processedit::getProcess(appName, uuid);
            if (auto* statement = dynamic_cast<StatementProcessBlock*>(block.get()))
                statement->setCustomCode("int value = 1;\nvalue = value + 2;");
            if (auto* expression = dynamic_cast<ExpressionProcessBlock*>(block.get()))
                expression->rightExpression = "1 + 2";
            processedit::updateProcess(appName, m_sequence, block);
        }
    }

    QTemporaryDir m_project;
    ProcessEditWidget m_editor;
    QObject m_context;
    QString m_sequence;
    bool m_isRunning = false;
};

void press_run(benchmark::State& state)
{
    Bench bench(int(state.range(0)));
    for (auto _ : state) {
        bench.pressRun();
        state.PauseTiming();
        bench.waitForEnd();
        state.ResumeTiming();
    }
}

void press_run_yardstick(benchmark::State& state)
{
    Bench bench(int(state.range(0)));
    bench.pressRun();
    bench.waitForEnd();
    const standalone::CompilerCommand command = standalone::compilerCommand();
    const QStringList arguments =
        command.arguments +
        QStringList{bench.sourceFile(), QStringLiteral("-o"), bench.scratchFile()};
    for (auto _ : state) {
        if (QProcess::execute(command.program, arguments) != 0) {
            state.SkipWithError("the compiler refused the generated file");
            break;
        }
    }
}

} // namespace

BENCHMARK(press_run)->Arg(10)->Arg(100)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(press_run_yardstick)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
