// From a press of Run to the run tab's first rows, for sequences that call each other, and the bare
// toolkit with models of as many rows.

#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "model/blocks/SequenceProcessBlock.h"
#include "model/services/processedit.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int Width = 900;
constexpr int Height = 700;
constexpr int Sequences = 50;

/// An applet of so many steps in sequences of which each calls the next.
QString makeApplet(const QString& appName, int steps)
{
    processedit::removeApp(appName);
    QStringList ids;
    for (int sequence = 0; sequence < Sequences; ++sequence)
        ids << processedit::createSeuqence(appName, QStringLiteral("Sequence_%1").arg(sequence));
    for (int sequence = 0; sequence < Sequences; ++sequence) {
        const auto add = [&](int stepType) {
            return processedit::getProcess(
                appName, processedit::createProcess(appName, ids[sequence], QStringLiteral("1"),
                                                    BasicStep, stepType, -1));
        };
        for (int step = 1; step < steps / Sequences; ++step)
            add(step_type::Delay);
        const auto call = std::dynamic_pointer_cast<SequenceProcessBlock>(add(step_type::Sequence));
        call->sourceKind = SequenceProcessBlock::AppletSequence;
        call->sequenceId = ids[(sequence + 1) % Sequences].toStdString();
    }
    return ids.first();
}

void run_start(benchmark::State& state)
{
    const QString appName = QStringLiteral("bench_run_start");
    const QString first = makeApplet(appName, int(state.range(0)));
    LogicView view;
    view.resize(Width, Height);
    view.setCAppletName(appName);
    view.show();
    for (auto _ : state) {
        view.setRunMode(true, appName, first, QString());
        QApplication::processEvents();
        state.PauseTiming();
        view.setRunMode(false, QString(), QString(), QString());
        state.ResumeTiming();
    }
    processedit::removeApp(appName);
}

void run_start_yardstick(benchmark::State& state)
{
    QTreeView tree;
    tree.resize(Width, Height);
    tree.setUniformRowHeights(true);
    tree.show();
    const QIcon icon(QStringLiteral(":/icon/stepIcon/delay.png"));
    for (auto _ : state) {
        std::vector<std::unique_ptr<QStandardItemModel>> models;
        for (int sequence = 0; sequence < Sequences; ++sequence) {
            models.push_back(std::make_unique<QStandardItemModel>());
            auto* flow = new QStandardItem(QStringLiteral("主流程"));
            models.back()->appendRow(flow);
            for (int step = 0; step < state.range(0) / Sequences; ++step) {
                QList<QStandardItem*> row;
                for (int column = 0; column < logic_columns::RunCount; ++column)
                    row.append(new QStandardItem(QStringLiteral("延时 1000 毫秒")));
                row.first()->setIcon(icon);
                flow->appendRow(row);
            }
        }
        tree.setModel(models.front().get());
        tree.expandAll();
        QApplication::processEvents();
        state.PauseTiming();
        tree.setModel(nullptr);
        models.clear();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(run_start)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(run_start_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
