// What a report costs the runner's thread, from the runtime's callback to the waiting queue, and a
// bare locked list that takes the same record.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "logic/runProcessState.h"
#include "shell/LogicMaster.h"
#include "shell/RunFeeds.h"
#include "shell/notify_callbacks.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

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
    RunFeeds feeds(&view, nullptr);
    feeds.setRunningApp(sample.appName);
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

/// The longest of the run tab's ticks, of 30 ms each, while a thread reports a million a second.
double longestTick(bool isFlooded)
{
    constexpr int Ticks = 40;
    const logic_samples::Builder builder(Steps);
    const logic_samples::Sample& sample = builder.sample();
    LogicView view;
    view.resize(900, 700);
    view.setCAppletName(sample.appName);
    view.show();
    view.setRunMode(true, sample.appName, sample.sequenceId, QString());
    QApplication::processEvents();
    std::atomic<bool> isOver{false};
    std::thread runner([&] {
        auto next = std::chrono::steady_clock::now();
        for (int report = 0; isFlooded && !isOver; ++report) {
            view.notifyRunState(sample.sequenceId, sample.blockUuids[report % Steps], 0,
                                report / Steps % 101);
            if (report % 1000 == 999)
                std::this_thread::sleep_until(next += std::chrono::milliseconds(1));
        }
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
    view.setRunMode(false, QString(), QString(), QString());
    return longest;
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
