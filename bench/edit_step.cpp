// One edit of a step in a large sequence, drawn, and the bare toolkit with the same change of a
// tree of the same shape.

#include "bench/edit_trees.h"
#include "model/services/processedit.h"

#include <benchmark/benchmark.h>

namespace processedit = sdk_ui_interface::processedit;

namespace {

using edit_trees::Bare;
using edit_trees::Editor;

void insert_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        editor.tree().setCurrentIndex(editor.middle());
        editor.draw();
        state.ResumeTiming();
        editor.view().addStep(BasicStep, step_type::Delay, QString(), false, false);
        editor.draw();
        state.PauseTiming();
        editor.view().removeRowSlot();
        editor.draw();
        state.ResumeTiming();
    }
}

void insert_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    for (auto _ : state) {
        QStandardItem* anchor = bare.middle();
        const QList<QStandardItem*> row = Bare::newRow();
        anchor->parent()->insertRow(anchor->row() + 1, row);
        bare.tree().setCurrentIndex(row.first()->index());
        Editor::draw();
        state.PauseTiming();
        anchor->parent()->removeRow(anchor->row() + 1);
        Editor::draw();
        state.ResumeTiming();
    }
}

void remove_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        editor.tree().setCurrentIndex(editor.middle());
        editor.view().addStep(BasicStep, step_type::Delay, QString(), false, false);
        editor.draw();
        state.ResumeTiming();
        editor.view().removeRowSlot();
        editor.draw();
    }
}

void remove_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        QStandardItem* anchor = bare.middle();
        const QList<QStandardItem*> row = Bare::newRow();
        anchor->parent()->insertRow(anchor->row() + 1, row);
        bare.tree().setCurrentIndex(row.first()->index());
        Editor::draw();
        state.ResumeTiming();
        anchor->parent()->removeRow(anchor->row() + 1);
        Editor::draw();
    }
}

void toggle_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    const QModelIndex step = editor.middle();
    bool on = true;
    for (auto _ : state) {
        on = !on;
        editor.model()->setData(step, on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        editor.draw();
    }
}

void toggle_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    bool on = true;
    for (auto _ : state) {
        on = !on;
        bare.middle()->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        Editor::draw();
    }
}

void refresh_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    const QString uuid = editor.middle().data(logic_roles::BlockUuid).toString();
    const auto block = processedit::getProcess(editor.sample().appName, uuid);
    bool odd = false;
    for (auto _ : state) {
        odd = !odd;
        block->name = odd ? "odd" : "even";
        editor.view().refreshRow(uuid);
        editor.draw();
    }
}

void refresh_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    bool odd = false;
    for (auto _ : state) {
        odd = !odd;
        QStandardItem* name = bare.middle();
        for (int column = 0; column < logic_columns::EditCount; ++column)
            name->parent()
                ->child(name->row(), column)
                ->setText(odd ? QStringLiteral("odd") : QStringLiteral("even"));
        Editor::draw();
    }
}

} // namespace

BENCHMARK(insert_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(insert_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(remove_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(remove_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(toggle_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(toggle_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
