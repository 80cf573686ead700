// Reports of a run from the runner's thread to the rows, and the bare toolkit writing as many
// cells.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <thread>

namespace {

constexpr int Width = 900;
constexpr int Height = 700;

/// n reports: each step starts and ends well, in the order of the rows.
void report_rate(benchmark::State& state)
{
    const int reports = int(state.range(0));
    const logic_samples::Builder builder(reports / 2);
    const logic_samples::Sample& sample = builder.sample();
    LogicView view;
    view.resize(Width, Height);
    view.setCAppletName(sample.appName);
    view.show();
    for (auto _ : state) {
        state.PauseTiming();
        view.setRunMode(true, sample.appName, sample.sequenceId, QString());
        QApplication::processEvents();
        state.ResumeTiming();
        std::thread runner([&] {
            for (const QString& uuid : sample.blockUuids) {
                view.notifyRunState(sample.sequenceId, uuid, 0, 0.0);
                view.notifyRunState(sample.sequenceId, uuid, 0, 100.0);
            }
        });
        runner.join();
        view.onRunTimerTimeout();
        QApplication::processEvents();
        state.PauseTiming();
        view.setRunMode(false, QString(), QString(), QString());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * reports);
}

void report_rate_yardstick(benchmark::State& state)
{
    const int reports = int(state.range(0));
    QStandardItemModel model(reports, 4);
    for (int row = 0; row < reports; ++row)
        model.setItem(row, 3, new QStandardItem);
    QTreeView tree;
    tree.resize(Width, Height);
    tree.setUniformRowHeights(true);
    tree.setModel(&model);
    tree.show();
    const QString text = QStringLiteral("执行成功");
    for (auto _ : state) {
        for (int row = 0; row < reports; ++row) {
            model.item(row, 3)->setText(text);
            model.item(row, 3)->setBackground(QColor(187, 237, 196));
        }
        QApplication::processEvents();
        state.PauseTiming();
        for (int row = 0; row < reports; ++row) {
            model.item(row, 3)->setText(QString());
            model.item(row, 3)->setBackground(QBrush());
        }
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * reports);
}

} // namespace

BENCHMARK(report_rate)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(report_rate_yardstick)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);
