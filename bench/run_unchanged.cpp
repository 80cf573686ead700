// From a press of Run on an applet that needs no compile to the first state that the run reports,
// and the bare toolkit starting a program that does nothing.

#include "bench/EditorBench.h"

#include <QProcess>

#include <benchmark/benchmark.h>

namespace {

void run_unchanged(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_unchanged"));
    for (int step = 0; step < int(state.range(0)); ++step)
        bench.addStatement("");
    bench.show();
    bench.pressRun();
    bench.waitForEnd();
    for (auto _ : state) {
        bench.pressRun();
        state.PauseTiming();
        bench.waitForEnd();
        state.ResumeTiming();
    }
}

void run_unchanged_yardstick(benchmark::State& state)
{
    for (auto _ : state) {
        QProcess process;
        process.start(QStringLiteral("/bin/true"), {});
        QEventLoop loop;
        QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                         &loop, &QEventLoop::quit);
        if (process.state() != QProcess::NotRunning)
            loop.exec();
    }
}

} // namespace

BENCHMARK(run_unchanged)->Arg(10)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(run_unchanged_yardstick)
    ->Arg(10)
    ->Arg(1000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
