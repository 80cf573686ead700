// What a report costs the runner's thread, from the runtime's callback to the waiting queue, and a
// bare locked list that takes the same record.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "logic/run/RunInbox.h"
#include "logic/run/runProcessState.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/RunFeedHub.h"
#include "shell/bridge/notify_callbacks.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

namespace {

constexpr int Steps = 10000;

std::vector<std::string> blockIds(const logic_samples::Sample& sample)
{
    std::vector<std::string> ids;
    for (const QString& uuid : sample.blockUuids)
        ids.push_back(uuid.toStdString());
    return ids;
}

/// n reports of which none is taken meanwhile.
void report_cost(benchmark::State& state)
{
    LogicMaster::instance();
    const logic_samples::Builder builder(Steps);
    const logic_samples::Sample& sample = builder.sample();
    const std::vector<std::string> ids = blockIds(sample);
    const std::string appName = sample.appName.toStdString();
    const std::string sequence = sample.sequenceId.toStdString();
    LogicView view;
    view.setCAppletName(sample.appName);
    RunFeedHub::instance()->add(view.inbox());
    view.inbox()->setRunningApp(sample.appName);
    for (auto _ : state) {
        state.PauseTiming();
        view.setRunMode(true, sample.appName, sample.sequenceId, QString());
        state.ResumeTiming();
        std::thread runner([&] {
            for (int report = 0; report < state.range(0); ++report)
                notify_callbacks::blockState(appName.c_str(), sequence.c_str(),
                                             ids[std::size_t(report % Steps)].c_str(),
                                             report / Steps, 0);
        });
        runner.join();
        state.PauseTiming();
        view.setRunMode(false, QString(), QString(), QString());
        QApplication::processEvents();
        state.ResumeTiming();
    }
    RunFeedHub::instance()->remove(view.inbox());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void report_cost_yardstick(benchmark::State& state)
{
    const logic_samples::Builder builder(Steps);
    const std::vector<std::string> ids = blockIds(builder.sample());
    const std::string sequence = builder.sample().sequenceId.toStdString();
    std::mutex mutex;
    for (auto _ : state) {
        std::vector<runProcessState> waiting;
        std::thread runner([&] {
            for (int report = 0; report < state.range(0); ++report) {
                runProcessState record;
                record.seqUuid = QString::fromUtf8(sequence.c_str());
                record.blockuuid = QString::fromUtf8(ids[std::size_t(report % Steps)].c_str());
                record.iProgress = report / Steps;
                const std::lock_guard<std::mutex> lock(mutex);
                waiting.push_back(std::move(record));
            }
        });
        runner.join();
        state.PauseTiming();
        waiting.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// A view that follows a run of many steps.
struct RunningView
{
    RunningView()
    {
        view.resize(900, 700);
        view.setCAppletName(sample.appName);
        view.show();
        view.setRunMode(true, sample.appName, sample.sequenceId, QString());
        QApplication::processEvents();
    }
    ~RunningView() { view.setRunMode(false, QString(), QString(), QString()); }

    /// Reports a million a second.
    void flood(const std::atomic<bool>& isOver)
    {
        auto next = std::chrono::steady_clock::now();
        for (int report = 0; !isOver; ++report) {
            view.notifyRunState(sample.sequenceId, sample.blockUuids[report % Steps], 0,
                                report / Steps % 101);
            if (report % 1000 == 999)
                std::this_thread::sleep_until(next += std::chrono::milliseconds(1));
        }
    }

    const logic_samples::Builder builder{Steps};
    const logic_samples::Sample& sample = builder.sample();
    LogicView view;
};

/// The longest of the run tab's ticks, of 30 ms each, while a thread reports.
double longestTick(bool isFlooded)
{
    constexpr int Ticks = 40;
    RunningView run;
    std::atomic<bool> isOver{false};
    std::thread runner([&] {
        if (isFlooded)
            run.flood(isOver);
    });
    double longest = 0.0;
    int ticks = 0;
    QElapsedTimer sinceTick;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed() / 1e9);
        sinceTick.start();
        ++ticks;
    });
    sinceTick.start();
    timer.start(30);
    while (ticks < Ticks)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    isOver = true;
    runner.join();
    return longest;
}

/// From the last report of a run to its row on screen.
double lastState(bool isFlooded)
{
    RunningView run;
    auto* tree = run.view.findChild<QTreeView*>(QStringLiteral("runTreeView"));
    const QAbstractItemModel* rows = tree->model();
    const QModelIndex row = rows->index(0, logic_columns::State, rows->index(1, 0));
    std::atomic<bool> isOver{false};
    std::chrono::steady_clock::time_point said;
    std::thread runner([&] {
        if (isFlooded)
            run.flood(isOver);
        while (!isOver)
            std::this_thread::yield();
        run.view.notifyRunState(run.sample.sequenceId, run.sample.blockUuids.first(), -1, 99.5);
        said = std::chrono::steady_clock::now();
    });
    QTimer::singleShot(500, [&isOver] { isOver = true; });
    const QString failed = QStringLiteral("执行失败");
    while (row.data().toString() != failed)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    tree->viewport()->repaint();
    const auto shown = std::chrono::steady_clock::now();
    runner.join();
    return std::chrono::duration<double>(shown - said).count();
}

void last_state(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(lastState(true));
}

void last_state_yardstick(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(lastState(false));
}

void tick_under_flood(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(longestTick(true));
}

void tick_under_flood_yardstick(benchmark::State& state)
{
    for (auto _ : state)
        state.SetIterationTime(longestTick(false));
}

} // namespace

BENCHMARK(report_cost)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(report_cost_yardstick)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(last_state)->Arg(Steps)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
BENCHMARK(last_state_yardstick)
    ->Arg(Steps)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK(tick_under_flood)
    ->Arg(Steps)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK(tick_under_flood_yardstick)
    ->Arg(Steps)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);
