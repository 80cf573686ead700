// Steps of a compiled applet that loops over three of them, as fast as it can, with the run view
// open; and a program of the same loop without steps, by the same compiler. How fluid the window
// stays meanwhile: the longest of its ticks, and that of a window without a run.

#include "bench/EditorBench.h"
#include "standalone/compiler/compiler_command.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

constexpr int StepsOfATurn = 3;
const char* const stepCode = "n = n + 1;";

void addLoop(EditorBench& bench, qint64 steps)
{
    const QString loop =
        bench.addStep<ForProcessBlock>(step_type::For, [steps](ForProcessBlock& block) {
            block.setCustom(true);
            block.setFun1("int i = 0");
            block.setFun2("i < " + std::to_string(steps / StepsOfATurn));
            block.setFun3("++i");
        });
    for (int step = 0; step < StepsOfATurn; ++step)
        bench.addStatement("static int n = 0; n = n + 1;", loop);
    bench.show();
}

void step_rate(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_rate"));
    addLoop(bench, state.range(0));
    bench.pressRun();
    bench.waitForEnd();
    for (auto _ : state) {
        bench.pressRun();
        bench.waitForEnd();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void step_rate_yardstick(benchmark::State& state)
{
    QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("loop.cpp"));
    const QString program = folder.filePath(QStringLiteral("loop"));
    QFile file(source);
    if (!file.open(QIODevice::WriteOnly)) {
        state.SkipWithError("no file");
        return;
    }
    QByteArray text = "int main()\n{\n    int n = 0;\n    for (int i = 0; i < " +
                      QByteArray::number(qint64(state.range(0)) / StepsOfATurn) + "; ++i) {\n";
    for (int step = 0; step < StepsOfATurn; ++step)
        text += QByteArray("        ") + stepCode + '\n';
    file.write(text + "    }\n    return n == 0;\n}\n");
    file.close();
    const standalone::CompilerCommand command = standalone::compilerCommand();
    if (QProcess::execute(command.program,
                          {QStringLiteral("-O0"), source, QStringLiteral("-o"), program}) != 0) {
        state.SkipWithError("the compiler refused the loop");
        return;
    }
    for (auto _ : state)
        QProcess::execute(program, {});
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Of a timer of 30 ms, in seconds, until the event loop ends.
class LongestTick
{
public:
    LongestTick()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = std::max(m_longest, double(m_since.nsecsElapsed()) / 1e9);
            m_since.start();
            ++m_ticks;
        });
        m_since.start();
        m_timer.start(30);
    }
    double longest() const { return m_longest; }
    int ticks() const { return m_ticks; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longest = 0;
    int m_ticks = 0;
};

void step_rate_tick(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_rate"));
    addLoop(bench, state.range(0));
    bench.pressRun();
    bench.waitForEnd();
    for (auto _ : state) {
        bench.pressRun();
        const LongestTick tick;
        bench.waitForEnd();
        state.SetIterationTime(tick.longest());
    }
}

void step_rate_tick_yardstick(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_rate"));
    addLoop(bench, state.range(0));
    for (auto _ : state) {
        const LongestTick tick;
        while (tick.ticks() < 30)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.SetIterationTime(tick.longest());
    }
}

} // namespace

constexpr int Steps = 30000000;
BENCHMARK(step_rate)->Arg(Steps)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(step_rate_yardstick)->Arg(Steps)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(step_rate_tick)
    ->Arg(Steps)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(step_rate_tick_yardstick)
    ->Arg(Steps)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
