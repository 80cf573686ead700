// The variable panel over two thousand variables and the table over five hundred sequences: filled,
// renamed in, another sequence chosen, and a global variable renamed while four editors show it.
// Beside them the bare toolkit with as many rows.

#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "sequences/wgtSequenceTable.h"
#include "shell/ProcessEditWidget.h"
#include "variables/variable_rows.h"
#include "variables/wgtLocalVariable.h"

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <memory>

namespace processedit = sdk_ui_interface::processedit;

namespace {

constexpr int Panels = 4;
constexpr int Width = 500;
constexpr int Height = 700;

QString appNameOf(int panel)
{
    return QStringLiteral("bench_compose_%1").arg(panel);
}

/// An applet with sequences; its variables lie in equal parts in the first two sequences, the
/// applet and, for the first applet, all applets.
class Composed
{
public:
    Composed(int sequences, int variables, int panel = 0) : m_appName(appNameOf(panel))
    {
        for (int index = 0; index < sequences; ++index)
            m_sequences << processedit::createSeuqence(m_appName,
                                                       QStringLiteral("Sequence_%1").arg(index));
        const std::string app = m_appName.toStdString();
        for (int index = 0; index < variables; ++index) {
            const std::string owner =
                index % 4 < 2 ? m_sequences[index % 4 % sequences].toStdString() : app;
            if (index % 4 == 3)
                m_globals.push_back(process_edit::addVariable(app, GlobalVariable, std::string()));
            else
                process_edit::addVariable(app, index % 4 < 2 ? SequenceVariable : ProcessVariable,
                                          owner);
        }
    }
    ~Composed()
    {
        process_edit::removeVariables(m_appName.toStdString(), m_globals);
        processedit::removeApp(m_appName);
        process_edit::removeAllVarByAppName(m_appName.toStdString());
    }
    Composed(const Composed&) = delete;
    Composed& operator=(const Composed&) = delete;

    const QString& appName() const { return m_appName; }
    const QString& sequence(int index) const { return m_sequences[index]; }

private:
    QString m_appName;
    QStringList m_sequences;
    std::vector<std::string> m_globals;
};

void show(QWidget& widget)
{
    widget.resize(Width, Height);
    widget.show();
    widget.activateWindow();
    QApplication::processEvents();
}

/// Types a new text over the open editor of a cell, and leaves it.
template <class View> void typeOver(View& view, const QModelIndex& cell)
{
    QWidget* editor = view.indexWidget(cell);
    if (!editor)
        editor = view.viewport()->template findChild<QLineEdit*>();
    auto* line = static_cast<QLineEdit*>(editor);
    line->setText(line->text() == QLatin1String("first") ? QStringLiteral("second")
                                                         : QStringLiteral("first"));
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(line, &press);
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QModelIndex lastOf(const QAbstractItemModel& model, int group)
{
    const QModelIndex parent = model.index(group, 0);
    return model.index(model.rowCount(parent) - 1, 0, parent);
}

// ---- Bare rows ----

void fillBare(QStandardItemModel& model, int variables)
{
    model.clear();
    for (int group = 0; group < 3; ++group) {
        auto* parent = new QStandardItem(QStringLiteral("group"));
        for (int row = 0; row < variables / 3; ++row) {
            QList<QStandardItem*> cells;
            for (int column = 0; column < variable_rows::ColumnCount; ++column)
                cells << new QStandardItem(QStringLiteral("variable_%1").arg(row));
            parent->appendRow(cells);
        }
        model.appendRow(parent);
    }
}

struct BareTree
{
    explicit BareTree(int variables)
    {
        view.setUniformRowHeights(true);
        fillBare(model, variables);
        view.setModel(&model);
        view.expandAll();
        show(view);
    }
    QStandardItemModel model;
    QTreeView view;
};

void fillBareTable(QTableWidget& table, int rows)
{
    table.clearContents();
    table.setRowCount(0);
    for (int row = 0; row < rows; ++row) {
        table.insertRow(row);
        table.setItem(row, 0, new QTableWidgetItem(QStringLiteral("Sequence_%1").arg(row)));
        table.setCellWidget(row, 1, new QCheckBox);
        table.setItem(row, 2, new QTableWidgetItem);
    }
}

// ---- Measurements ----

struct Panel
{
    explicit Panel(const Composed& applet)
    {
        panel.setCAppletName(applet.appName());
        panel.reloadSequenceVariables(applet.sequence(0));
        show(panel);
    }
    wgtLocalVariable panel;
    QTreeView* tree = panel.findChild<QTreeView*>(QStringLiteral("treeView"));
};

void open_variables(benchmark::State& state)
{
    const Composed applet(1, int(state.range(0)));
    Panel shown(applet);
    for (auto _ : state) {
        shown.panel.reloadSequenceVariables(applet.sequence(0));
        QApplication::processEvents();
    }
}

void open_variables_yardstick(benchmark::State& state)
{
    BareTree bare(int(state.range(0)));
    for (auto _ : state) {
        fillBare(bare.model, int(state.range(0)));
        bare.view.expandAll();
        QApplication::processEvents();
    }
}

void rename_variable(benchmark::State& state)
{
    const Composed applet(1, int(state.range(0)));
    Panel shown(applet);
    const QModelIndex cell = lastOf(*shown.tree->model(), SequenceVariable);
    for (auto _ : state) {
        emit shown.tree->doubleClicked(cell);
        typeOver(*shown.tree, cell);
    }
}

void rename_variable_yardstick(benchmark::State& state)
{
    BareTree bare(int(state.range(0)));
    const QModelIndex cell = lastOf(bare.model, 0);
    for (auto _ : state) {
        bare.view.edit(cell);
        typeOver(bare.view, cell);
    }
}

void open_sequences(benchmark::State& state)
{
    const Composed applet(int(state.range(0)), 0);
    const auto sequences = processedit::getAllSequenceByAppName(applet.appName());
    wgtSequenceTable table;
    table.setCAppletName(applet.appName());
    show(table);
    for (auto _ : state) {
        table.clearRows();
        for (const SequenceInfo& sequence : sequences)
            table.addSequenceRow(sequence, false);
        QApplication::processEvents();
    }
}

void open_sequences_yardstick(benchmark::State& state)
{
    QTableWidget table(0, 3);
    show(table);
    for (auto _ : state) {
        fillBareTable(table, int(state.range(0)));
        QApplication::processEvents();
    }
}

void rename_sequence(benchmark::State& state)
{
    const Composed applet(int(state.range(0)), 0);
    wgtSequenceTable panel;
    panel.setCAppletName(applet.appName());
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(applet.appName()))
        panel.addSequenceRow(sequence, false);
    panel.selectSequence(applet.sequence(0));
    show(panel);
    auto* table = panel.findChild<QTableWidget*>();
    for (auto _ : state) {
        table->editItem(table->item(0, 0));
        typeOver(*table, table->model()->index(0, 0));
    }
}

void rename_sequence_yardstick(benchmark::State& state)
{
    QTableWidget table(0, 3);
    fillBareTable(table, int(state.range(0)));
    table.setCurrentCell(0, 0);
    show(table);
    for (auto _ : state) {
        table.editItem(table.item(0, 0));
        typeOver(table, table.model()->index(0, 0));
    }
}

struct Editor
{
    explicit Editor(const Composed& applet)
    {
        widget.setProcessEditReset(false);
        widget.createCApplet(applet.appName());
        widget.loadDataToUI(applet.appName(), false);
        widget.resize(2 * Width, Height);
        widget.show();
        QApplication::processEvents();
    }
    QTreeView* variables()
    {
        return widget.findChild<wgtLocalVariable*>()->findChild<QTreeView*>(
            QStringLiteral("treeView"));
    }
    ProcessEditWidget widget{QStringLiteral("Bench")};
};

// Five hundred sequences, each with its steps and variables.
void switch_sequence(benchmark::State& state)
{
    const Composed applet(int(state.range(0)), 2000);
    Editor editor(applet);
    auto* table = editor.widget.findChild<wgtSequenceTable*>();
    int shown = 0;
    for (auto _ : state) {
        shown = 1 - shown;
        table->selectSequence(applet.sequence(shown));
        QApplication::processEvents();
    }
}

void switch_sequence_yardstick(benchmark::State& state)
{
    constexpr int Shown = 1500; // of two thousand variables those of one sequence
    const auto first = std::make_unique<BareTree>(Shown);
    QStandardItemModel second;
    fillBare(second, Shown);
    QTableWidget table(0, 3);
    fillBareTable(table, int(state.range(0)));
    show(table);
    bool isFirst = true;
    for (auto _ : state) {
        isFirst = !isFirst;
        table.setCurrentCell(isFirst ? 0 : 1, 0);
        first->view.setModel(isFirst ? &first->model : &second);
        first->view.expandAll();
        QApplication::processEvents();
    }
}

// A global variable is renamed in one of four editors; all show its new name.
void refresh_panels(benchmark::State& state)
{
    std::vector<std::unique_ptr<Composed>> applets;
    std::vector<std::unique_ptr<Editor>> editors;
    for (int panel = 0; panel < Panels; ++panel)
        applets.push_back(std::make_unique<Composed>(1, int(state.range(0)) / Panels, panel));
    for (const auto& applet : applets)
        editors.push_back(std::make_unique<Editor>(*applet));
    QTreeView* tree = editors.front()->variables();
    for (auto _ : state) {
        const QModelIndex cell = lastOf(*tree->model(), GlobalVariable);
        emit tree->doubleClicked(cell);
        typeOver(*tree, cell);
    }
}

// Four editors show, beside the common ones, the variables of an applet each.
void refresh_panels_yardstick(benchmark::State& state)
{
    const int rows = int(state.range(0)) / Panels * 3 / 4 + int(state.range(0)) / 4;
    std::vector<std::unique_ptr<BareTree>> trees;
    for (int panel = 0; panel < Panels; ++panel)
        trees.push_back(std::make_unique<BareTree>(rows));
    for (auto _ : state) {
        for (const auto& tree : trees) {
            fillBare(tree->model, rows);
            tree->view.expandAll();
        }
        QApplication::processEvents();
    }
}

} // namespace

BENCHMARK(open_variables)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(open_variables_yardstick)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(rename_variable)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(rename_variable_yardstick)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(open_sequences)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(open_sequences_yardstick)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(rename_sequence)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(rename_sequence_yardstick)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(switch_sequence)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(switch_sequence_yardstick)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_panels)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK(refresh_panels_yardstick)->Arg(2000)->Unit(benchmark::kMillisecond);
