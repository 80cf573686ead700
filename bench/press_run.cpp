// From a press of Run to the first state that the run reports: generation, compile, start of the
// child process and the way of its first report. A step is changed before each press. Beside it the
// bare compiler on the file of the sequence, and the bare link.

#include "bench/EditorBench.h"
#include "standalone/compiler/compiler_command.h"

#include <QProcess>

#include <benchmark/benchmark.h>

namespace {

/// Every second step an expression, the others statements.
void addSteps(EditorBench& bench, int steps)
{
    for (int step = 0; step < steps; ++step) {
        if (step % 2)
            bench.addStep<ExpressionProcessBlock>(
                step_type::Expression, [](auto& block) { block.rightExpression = "1 + 2"; });
        else
            bench.addStatement("int value = 1;\nvalue = value + 2;");
    }
    bench.show();
}

void press_run(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_run"));
    addSteps(bench, int(state.range(0)));
    for (auto _ : state) {
        bench.change();
        bench.pressRun();
        state.PauseTiming();
        bench.waitForEnd();
        state.ResumeTiming();
    }
}

void press_run_yardstick(benchmark::State& state)
{
    EditorBench bench(QStringLiteral("bench_run"));
    addSteps(bench, int(state.range(0)));
    bench.pressRun();
    bench.waitForEnd();
    const standalone::CompilerCommand command = standalone::compilerCommand();
    const QDir code = bench.codeFolder();
    const QStringList files =
        code.entryList({QStringLiteral("sequence_*.cpp"), QStringLiteral("a_capplet.cpp")});
    const QString object = bench.scratchFile("sequence.o");
    const QString module = bench.scratchFile("a_capplet.o");
    const auto compile = [&](const QString& file, const QString& to) {
        return QProcess::execute(command.program,
                                 command.compileArguments({code.filePath(file)}, to)) == 0;
    };
    const QStringList link = command.linkArguments({module, object}, bench.scratchFile("bare.mp"));
    bool good = files.size() == 2 && compile(files.first(), module);
    for (auto _ : state) {
        good =
            good && compile(files.last(), object) && QProcess::execute(command.program, link) == 0;
        if (!good) {
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
