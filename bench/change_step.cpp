// One step of a document read, handed back and moved in the model, in the middle of its flow; and
// the same in a document of a thousand steps: what an edit costs must not depend on what else there
// is. One step made and removed there; and the bare containers, with as many siblings.

#include "bench/logic_samples.h"
#include "edits/DocumentEdits.h"
#include "model/services/process_edit.h"

#include <QUuid>

#include <benchmark/benchmark.h>

#include <unordered_map>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int SmallDocument = 1000;
const QString flow = QStringLiteral("1");

/// A document, and a step in the middle of its main flow.
struct Place
{
    explicit Place(int steps) : builder(steps)
    {
        const auto top = processedit::getSequence(app(), sequence()).mainFlow;
        index = int(top.size() / 2);
        uuid = QString::fromStdString(top[std::size_t(index)]);
    }
    ~Place() { processedit::removeApp(app()); }

    const QString& app() const { return builder.sample().appName; }
    const QString& sequence() const { return builder.sample().sequenceId; }

    logic_samples::Builder builder;
    QString uuid;
    int index;
};

void get(benchmark::State& state, int steps)
{
    const Place place(steps);
    for (auto _ : state)
        benchmark::DoNotOptimize(processedit::getProcess(place.app(), place.uuid));
}

void update(benchmark::State& state, int steps)
{
    const Place place(steps);
    const auto block = processedit::getProcess(place.app(), place.uuid);
    for (auto _ : state)
        processedit::updateProcess(place.app(), place.sequence(), block);
}

void move(benchmark::State& state, int steps)
{
    const Place place(steps);
    const std::string app = place.app().toStdString();
    const std::string sequence = place.sequence().toStdString();
    const std::string uuid = place.uuid.toStdString();
    int by = 0;
    for (auto _ : state)
        process_edit::updateProcessInfoIndex(app, sequence, uuid, "1", place.index + (by ^= 1));
}

void makeAndRemove(benchmark::State& state)
{
    const Place place(int(state.range(0)));
    for (auto _ : state) {
        const QString made = processedit::createProcess(place.app(), place.sequence(), flow,
                                                        BasicStep, step_type::Delay, place.index);
        processedit::removeProcess(place.app(), place.sequence(), made);
    }
}

// A bare vector of blocks and a bare hash with a text for each.
void makeAndRemoveBare(benchmark::State& state)
{
    const Place place(int(state.range(0)));
    auto blocks = processedit::getProcessListBySequenceID(place.app(), place.sequence());
    std::unordered_map<std::string, std::shared_ptr<IProcessBlock>> byUuid;
    for (const auto& uuid : place.builder.sample().blockUuids)
        byUuid[uuid.toStdString()] = blocks.front();
    for (auto _ : state) {
        const QString made = QUuid::createUuid().toString(QUuid::WithoutBraces);
        auto block = blocks.front()->clone();
        byUuid[made.toStdString()] = block;
        const auto at = blocks.insert(blocks.begin() + place.index, std::move(block));
        byUuid.erase(made.toStdString());
        blocks.erase(at);
    }
}

void moveVariables(benchmark::State& state)
{
    const std::string app = "bench_variables";
    const std::string owners[] = {"one", "two"};
    std::vector<std::string> uuids;
    for (int left = int(state.range(0)); left > 0; --left)
        uuids.push_back(process_edit::addVariable(app, SequenceVariable, owners[0]));
    int owner = 0;
    for (auto _ : state) {
        owner ^= 1;
        const DocumentEdits::Act act;
        for (const auto& uuid : uuids) {
            auto variable = process_edit::getVariable(uuid);
            variable.ownerId = owners[owner];
            DocumentEdits::instance().updateVariable(app, variable, SequenceVariable);
        }
    }
    process_edit::removeAllVarByAppName(app);
}

// The same number of variables handed back where they are.
void keepVariables(benchmark::State& state)
{
    const std::string app = "bench_variables";
    std::vector<std::string> uuids;
    for (int left = int(state.range(0)); left > 0; --left)
        uuids.push_back(process_edit::addVariable(app, SequenceVariable, "one"));
    for (auto _ : state) {
        for (const auto& uuid : uuids)
            process_edit::updateVariable(app, process_edit::getVariable(uuid), SequenceVariable);
    }
    process_edit::removeAllVarByAppName(app);
}

int pairOf(const char* name, void (*measure)(benchmark::State&, int))
{
    const std::string yardstick = std::string(name) + "_yardstick";
    for (const int steps : {SmallDocument, 50000}) {
        benchmark::RegisterBenchmark(name, [=](auto& s) { measure(s, steps); })->Arg(steps);
        benchmark::RegisterBenchmark(yardstick.c_str(), [=](auto& s) {
            measure(s, SmallDocument);
        })->Arg(steps);
    }
    return 0;
}

const int registered =
    pairOf("model_get", get) + pairOf("model_update", update) + pairOf("model_move", move);

} // namespace

BENCHMARK(makeAndRemove)->Name("model_make_remove")->Arg(1000)->Arg(50000);
BENCHMARK(makeAndRemoveBare)->Name("model_make_remove_yardstick")->Arg(1000)->Arg(50000);
BENCHMARK(moveVariables)->Name("move_variables")->Arg(1000)->Arg(8000);
BENCHMARK(keepVariables)->Name("move_variables_yardstick")->Arg(1000)->Arg(8000);
