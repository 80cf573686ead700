// rebuild_step: one step of a large applet is changed and the applet is built again: generation,
// comparison of what was generated, one unit, the link. Beside it the bare compiler on that unit
// and the bare link of all, by the same command lines. first_build: an applet of two hundred
// sequences is built in an empty folder. Beside it the bare compiler on the same code in as many
// files as there are cores, all at once, and the bare link.

#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/applet_paths.h"

#include <QDir>
#include <QProcess>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const QString appName = QStringLiteral("bench_rebuild");
constexpr int Sequences = 20; ///< of rebuild_step

/// An applet of n steps in sequences that the first one calls.
class Bench
{
public:
    explicit Bench(int steps, int sequences = Sequences)
    {
        openProject();
        m_main = processedit::createSeuqence(appName, QStringLiteral("main"));
        for (int i = 1; i < sequences; ++i) {
            const QString sequence =
                processedit::createSeuqence(appName, QStringLiteral("part_%1").arg(i));
            addStep<SequenceProcessBlock>(m_main, step_type::Sequence, [&](auto& call) {
                call.sourceKind = SequenceProcessBlock::AppletSequence;
                call.sequenceId = sequence.toStdString();
            });
            for (int step = 0; step < steps / sequences; ++step)
                addStepOf(sequence, step);
        }
    }
    ~Bench() { processedit::removeApp(appName); }

    /// Where nothing has been built yet.
    void openProject()
    {
        m_project = std::make_unique<QTemporaryDir>();
        standalone::Host::instance().setProjectPath(m_project->path());
    }

    /// Changes one step; false if the compile fails.
    bool changeAndBuild()
    {
        m_changed->setCustomCode("int value = " + std::to_string(++m_value) + ";");
        processedit::updateProcess(appName, m_main, m_changed);
        QSemaphore finished;
        compileResult outcome = CompileFailed;
        bool skipped = false;
        const auto onFinished = [&](compileResult result, quint64, const char*, const char*) {
            outcome = result;
            finished.release();
        };
        if (!processedit::compileCApplet(appName, m_main, false, false, onFinished, skipped) ||
            skipped)
            return false;
        finished.acquire();
        return outcome == CompileSucceeded;
    }

private:
    template <class Block, class Change>
    std::shared_ptr<Block> addStep(const QString& sequence, int type, const Change& change)
    {
        const QString uuid =
            processedit::createProcess(appName, sequence, QStringLiteral("1"), BasicStep, type, -1);
        auto block = std::dynamic_pointer_cast<Block>(processedit::getProcess(appName, uuid));
        change(*block);
        processedit::updateProcess(appName, sequence, block);
        return block;
    }

    void addStepOf(const QString& sequence, int step)
    {
        if (step % 2)
            addStep<ExpressionProcessBlock>(sequence, step_type::Expression,
                                            [](auto& block) { block.rightExpression = "1 + 2"; });
        else
            m_changed =
                addStep<StatementProcessBlock>(sequence, step_type::Statement, [](auto& block) {
                    block.setCustomCode("int value = 1;\nlog_debug(\"%d\", value);");
                });
    }

    std::unique_ptr<QTemporaryDir> m_project;
    QString m_main;
    std::shared_ptr<StatementProcessBlock> m_changed; ///< of the last sequence
    int m_value = 0;
};

void rebuild_step(benchmark::State& state)
{
    Bench bench(int(state.range(0)));
    // The first change of all parts the group in which its unit was compiled.
    bool good = bench.changeAndBuild() && bench.changeAndBuild();
    for (auto _ : state)
        good = good && bench.changeAndBuild();
    if (!good)
        state.SkipWithError("the applet could not be compiled");
}

void rebuild_step_yardstick(benchmark::State& state)
{
    Bench bench(int(state.range(0)));
    bool good = bench.changeAndBuild();
    const standalone::CompilerCommand command = standalone::compilerCommand();
    QTemporaryDir scratch;
    const auto run = [&](const QStringList& arguments) {
        QProcess process;
        process.setWorkingDirectory(standalone::appletCodeFolder(appName));
        process.start(command.program, arguments);
        good = good && process.waitForFinished() && process.exitCode() == 0;
    };
    const auto compile = [&](const QString& unit) {
        run(command.compileArguments({unit}, scratch.filePath(unit + QStringLiteral(".o"))));
    };
    QStringList objects;
    const QStringList units =
        QDir(standalone::appletCodeFolder(appName)).entryList({QStringLiteral("*.cpp")});
    for (const QString& unit : units) {
        compile(unit);
        objects << scratch.filePath(unit + QStringLiteral(".o"));
    }
    const QString changed = QStringLiteral("sequence_part_%1.cpp").arg(Sequences - 1);
    for (auto _ : state) {
        compile(changed);
        run(command.linkArguments(objects, scratch.filePath(QStringLiteral("bare.mp"))));
    }
    if (!good || objects.size() != Sequences + 1)
        state.SkipWithError("the compiler refused the generated files");
}

constexpr int ManySequences = 200;

void first_build(benchmark::State& state)
{
    Bench bench(int(state.range(0)), ManySequences);
    bool good = true;
    for (auto _ : state) {
        state.PauseTiming();
        bench.openProject();
        state.ResumeTiming();
        good = good && bench.changeAndBuild();
    }
    if (!good)
        state.SkipWithError("the applet could not be compiled");
}

void first_build_yardstick(benchmark::State& state)
{
    Bench bench(int(state.range(0)), ManySequences);
    bool good = bench.changeAndBuild();
    const QDir code(standalone::appletCodeFolder(appName));
    const standalone::CompilerCommand command = standalone::compilerCommand();
    QTemporaryDir scratch;
    const int cores = QThread::idealThreadCount();
    QVector<QByteArray> texts(cores);
    int next = 0;
    for (const QString& unit : code.entryList({QStringLiteral("*.cpp")})) {
        QFile file(code.filePath(unit));
        good = good && file.open(QIODevice::ReadOnly);
        texts[next++ % cores] += file.readAll();
    }
    QStringList sources;
    QStringList objects;
    for (const QByteArray& text : qAsConst(texts)) {
        sources << scratch.filePath(QString::number(sources.size()) + QStringLiteral(".cpp"));
        objects << sources.last() + QStringLiteral(".o");
        QFile file(sources.last());
        good = good && file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    }
    const auto finish = [&](QProcess& process) {
        good = good && process.waitForFinished() && process.exitCode() == 0;
    };
    for (auto _ : state) {
        std::vector<std::unique_ptr<QProcess>> compilers;
        for (int i = 0; i < cores; ++i) {
            compilers.push_back(std::make_unique<QProcess>());
            compilers.back()->setWorkingDirectory(code.path());
            compilers.back()->start(command.program,
                                    QStringList(command.compileArguments({sources[i]}, objects[i]))
                                        << QStringLiteral("-I.")); // where the units stood
        }
        for (const auto& compiler : compilers)
            finish(*compiler);
        QProcess linker;
        linker.start(command.program,
                     command.linkArguments(objects, scratch.filePath(QStringLiteral("bare.mp"))));
        finish(linker);
    }
    if (!good)
        state.SkipWithError("the compiler refused the generated files");
}

} // namespace

BENCHMARK(first_build)->Arg(2000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(first_build_yardstick)->Arg(2000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(rebuild_step)->Arg(2000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(rebuild_step_yardstick)->Arg(2000)->UseRealTime()->Unit(benchmark::kMillisecond);
