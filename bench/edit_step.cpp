// One edit of a step in a large sequence, drawn, and the bare toolkit with the same change of a
// tree of the same shape.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "logic/rows/logic_roles.h"
#include "model/services/processedit.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int Width = 900;
constexpr int Height = 700;

/// The tree of a LogicView with a large sequence, scrolled to its middle.
class Editor
{
public:
    explicit Editor(int steps) : m_builder(steps)
    {
        m_view.resize(Width, Height);
        m_view.setCAppletName(m_builder.sample().appName);
        m_view.addNewModelSlot(m_builder.sample().sequenceId);
        m_view.showSequence(m_builder.sample().sequenceId);
        m_view.show();
        m_tree = m_view.findChild<QTreeView*>(QStringLiteral("treeView"));
        draw();
        m_tree->scrollTo(middle());
        draw();
    }

    LogicView& view() { return m_view; }
    QTreeView& tree() { return *m_tree; }
    const logic_samples::Sample& sample() const { return m_builder.sample(); }
    static void draw() { QApplication::processEvents(); }

    QStandardItemModel* model() const { return m_view.editModel(sample().sequenceId); }
    QModelIndex flow() const { return model()->index(MainFlow, 0); }
    QModelIndex middle() const
    {
        return model()->index(model()->rowCount(flow()) / 2 / StepsAGroup * StepsAGroup, 0, flow());
    }

private:
    static constexpr int StepsAGroup = 6; // four plain ones, an if and its end
    logic_samples::Builder m_builder;
    LogicView m_view;
    QTreeView* m_tree;
};

/// The same rows in a bare model and tree.
class Bare
{
public:
    explicit Bare(int steps)
    {
        Editor editor(steps);
        copy(editor.model()->invisibleRootItem(), m_model.invisibleRootItem());
        m_tree.resize(Width, Height);
        m_tree.setUniformRowHeights(true);
        m_tree.setModel(&m_model);
        m_tree.expandAll();
        m_tree.show();
        const QModelIndex flow = m_model.index(MainFlow, 0);
        m_middle = m_model.index(m_model.rowCount(flow) / 2, 0, flow);
        m_tree.scrollTo(m_middle);
        Editor::draw();
    }

    QTreeView& tree() { return m_tree; }
    QStandardItem* middle() const { return m_model.itemFromIndex(m_middle); }
    static QList<QStandardItem*> newRow()
    {
        QList<QStandardItem*> row;
        for (int column = 0; column < logic_columns::EditCount; ++column)
            row.append(new QStandardItem(QStringLiteral("延时 1000 毫秒")));
        row.first()->setCheckState(Qt::Checked);
        return row;
    }

private:
    static void copy(const QStandardItem* source, QStandardItem* target)
    {
        for (int row = 0; row < source->rowCount(); ++row) {
            QList<QStandardItem*> items;
            for (int column = 0; column < logic_columns::EditCount; ++column)
                items.append(new QStandardItem(
                    source->model()->index(row, column, source->index()).data().toString()));
            items.first()->setIcon(source->child(row)->icon());
            items.first()->setCheckState(Qt::Checked);
            target->appendRow(items);
            copy(source->child(row), items.first());
        }
    }

    QStandardItemModel m_model;
    QTreeView m_tree;
    QPersistentModelIndex m_middle;
};

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

/// A row that a drop has moved: its new place is written to the model service.
void move_step(benchmark::State& state)
{
    Editor editor(int(state.range(0)));
    const QModelIndex flow = editor.flow();
    QStandardItem* parent = editor.model()->itemFromIndex(flow);
    const int from = editor.middle().row();
    int at = from;
    for (auto _ : state) {
        const int to = at == from ? from + 2 : from;
        parent->insertRow(to, parent->takeRow(at));
        at = to;
        const QModelIndexList moved{parent->child(to)->index()};
        QMetaObject::invokeMethod(editor.model(), "dropEnd", Q_ARG(QModelIndexList, moved));
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
BENCHMARK(move_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(move_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(toggle_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(toggle_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
