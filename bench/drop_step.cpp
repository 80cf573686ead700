// Drags over the rows of a large sequence, and drops there, drawn; beside them the bare toolkit
// with as many rows.

#include "bench/edit_trees.h"
#include "logic/rows/step_mime.h"

#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QMimeData>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using edit_trees::Bare;
using edit_trees::Editor;
constexpr int Places = 100;
constexpr int StepsInBranch = 1000;

/// A pointer goes down the tree, from place to place.
void hover(QTreeView& tree, const QMimeData& data)
{
    const QRect ground = tree.viewport()->rect();
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(ground.center(), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(tree.viewport(), &enter);
    for (int i = 0; i < Places; ++i) {
        const QPoint place(200, ground.height() * i / Places);
        QDragMoveEvent move(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree.viewport(), &move);
    }
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(tree.viewport(), &leave);
    Editor::draw();
}

void hover_places(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    const std::unique_ptr<QMimeData> data(editor.model()->mimeData({editor.middle()}));
    for (auto _ : state)
        hover(editor.tree(), *data);
}

void hover_places_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    const std::unique_ptr<QMimeData> data(bare.model().mimeData({bare.middle()->index()}));
    for (auto _ : state)
        hover(bare.tree(), *data);
}

void move_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    CustonStandModel& model = *editor.model();
    const int from = editor.middle().row();
    int at = from;
    for (auto _ : state) {
        const std::unique_ptr<QMimeData> data(model.mimeData({model.index(at, 0, editor.flow())}));
        model.dropMimeData(data.get(), Qt::MoveAction, at == from ? from + 3 : from, 0,
                           editor.flow());
        at = at == from ? from + 2 : from;
        editor.draw();
    }
}

void move_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    QStandardItem* parent = bare.middle()->parent();
    const int from = bare.middle()->row();
    int at = from;
    for (auto _ : state) {
        const int to = at == from ? from + 2 : from;
        parent->insertRow(to, parent->takeRow(at));
        at = to;
        bare.tree().setCurrentIndex(parent->child(to)->index());
        Editor::draw();
    }
}

void move_branch(benchmark::State& state)
{
    Editor editor(int(state.range(0)), StepsInBranch);
    CustonStandModel& model = *editor.model();
    int flow = EndFlow;
    for (auto _ : state) {
        const QModelIndex branch = model.rowOf(editor.branch())->index();
        const std::unique_ptr<QMimeData> data(model.mimeData({branch}));
        model.dropMimeData(data.get(), Qt::MoveAction, -1, 0, model.index(flow, 0));
        flow = flow == EndFlow ? InitialFlow : EndFlow;
        editor.draw();
    }
}

void move_branch_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)), StepsInBranch);
    int flow = EndFlow;
    for (auto _ : state) {
        QStandardItem* target = bare.model().item(flow);
        flow = flow == EndFlow ? InitialFlow : EndFlow;
        QStandardItem* source = bare.model().item(flow);
        while (source->hasChildren())
            target->appendRow(source->takeRow(0));
        bare.tree().expandRecursively(target->index());
        bare.tree().setCurrentIndex(target->child(0)->index());
        bare.tree().scrollTo(target->child(0)->index());
        Editor::draw();
    }
}

void drop_new_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    const auto data = step_mime::ofKind(QString(), BasicStep, step_type::Delay, QString());
    for (auto _ : state) {
        const int row = editor.middle().row();
        editor.model()->dropMimeData(data.get(), Qt::CopyAction, row, 0, editor.flow());
        editor.draw();
        state.PauseTiming();
        editor.view().removeRowSlot();
        editor.draw();
        state.ResumeTiming();
    }
}

void drop_new_step_yardstick(benchmark::State& state)
{
    Bare bare(int(state.range(0)));
    for (auto _ : state) {
        QStandardItem* anchor = bare.middle();
        const QList<QStandardItem*> row = Bare::newRow();
        anchor->parent()->insertRow(anchor->row(), row);
        bare.tree().setCurrentIndex(row.first()->index());
        Editor::draw();
        state.PauseTiming();
        anchor->parent()->removeRow(row.first()->row());
        Editor::draw();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(hover_places)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(hover_places_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(move_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(move_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(move_branch)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(move_branch_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(drop_new_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(drop_new_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
