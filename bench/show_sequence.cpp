// From the blocks of a loaded document to a drawn tree, and the bare toolkit with the same cells.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "logic/rows/step_rows.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace {

constexpr int Width = 900;
constexpr int Height = 700;

void show_sequence(benchmark::State& state)
{
    const logic_samples::Builder builder(int(state.range(0)));
    LogicView view;
    view.resize(Width, Height);
    view.setCAppletName(builder.sample().appName);
    view.show();
    for (auto _ : state) {
        view.addNewModelSlot(builder.sample().sequenceId);
        view.showSequence(builder.sample().sequenceId);
        QApplication::processEvents();
        state.PauseTiming();
        view.removeAllModelSlot();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// What the cells of a row show, as data of the toolkit alone.
struct BareRow
{
    int depth;
    QStringList texts;
    QIcon icon;
};

void collect(const QStandardItem* parent, int depth, std::vector<BareRow>& rows)
{
    for (int row = 0; row < parent->rowCount(); ++row) {
        BareRow bare{depth, {}, parent->child(row)->icon()};
        for (int column = 0; column < logic_columns::EditCount; ++column)
            bare.texts.append(
                parent->child(row)->index().siblingAtColumn(column).data().toString());
        rows.push_back(bare);
        collect(parent->child(row), depth + 1, rows);
    }
}

std::vector<BareRow> bareRows(int steps)
{
    std::vector<BareRow> rows;
    const logic_samples::Builder builder(steps);
    LogicView view;
    view.setCAppletName(builder.sample().appName);
    view.addNewModelSlot(builder.sample().sequenceId);
    collect(view.editModel(builder.sample().sequenceId)->invisibleRootItem(), 0, rows);
    return rows;
}

void fill(QStandardItemModel& model, const std::vector<BareRow>& rows)
{
    model.setColumnCount(logic_columns::EditCount);
    std::vector<QStandardItem*> parents{model.invisibleRootItem()};
    for (const BareRow& row : rows) {
        QList<QStandardItem*> items;
        for (const QString& text : row.texts)
            items.append(new QStandardItem(text));
        items.first()->setIcon(row.icon);
        items.first()->setCheckState(Qt::Checked);
        parents.resize(std::size_t(row.depth) + 1);
        parents.back()->appendRow(items);
        parents.push_back(items.first());
    }
}

void prepare(QTreeView& tree)
{
    tree.resize(Width, Height);
    tree.setUniformRowHeights(true);
    tree.show();
}

void show_sequence_yardstick(benchmark::State& state)
{
    const std::vector<BareRow> rows = bareRows(int(state.range(0)));
    QTreeView tree;
    prepare(tree);
    for (auto _ : state) {
        QStandardItemModel model;
        fill(model, rows);
        tree.setModel(&model);
        tree.expandAll();
        QApplication::processEvents();
        state.PauseTiming();
        tree.setModel(nullptr);
        model.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

std::size_t bytesInUse()
{
    return mallinfo2().uordblks;
}

/// What a shown step takes, in bytes, told as milliseconds.
void step_memory(benchmark::State& state)
{
    const logic_samples::Builder builder(int(state.range(0)));
    LogicView view;
    view.resize(Width, Height);
    view.setCAppletName(builder.sample().appName);
    view.show();
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        view.addNewModelSlot(builder.sample().sequenceId);
        view.showSequence(builder.sample().sequenceId);
        QApplication::processEvents();
        state.SetIterationTime(double(bytesInUse() - before) / double(state.range(0)) / 1000);
        view.removeAllModelSlot();
    }
}

void step_memory_yardstick(benchmark::State& state)
{
    const std::vector<BareRow> rows = bareRows(int(state.range(0)));
    QTreeView tree;
    prepare(tree);
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        QStandardItemModel model;
        fill(model, rows);
        tree.setModel(&model);
        tree.expandAll();
        QApplication::processEvents();
        state.SetIterationTime(double(bytesInUse() - before) / double(state.range(0)) / 1000);
        tree.setModel(nullptr);
    }
}

} // namespace

BENCHMARK(show_sequence)->Arg(1000)->Arg(10000)->Arg(50000)->Unit(benchmark::kMillisecond);
BENCHMARK(show_sequence_yardstick)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(step_memory)->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);
BENCHMARK(step_memory_yardstick)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);
