// The list of the steps that a jump can lead to, opened; beside it a bare combo box with as many
// rows.

#include "bench/logic_samples.h"
#include "panels/CustomComboBox.h"
#include "panels/goto_lists.h"

#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

namespace {

void showAndHide(QComboBox& box)
{
    box.showPopup();
    QApplication::processEvents();
    box.hidePopup();
}

void open_goto_list(benchmark::State& state)
{
    const logic_samples::Builder builder(int(state.range(0)));
    const logic_samples::Sample& sample = builder.sample();
    CustomComboBox box;
    box.show();
    for (auto _ : state) {
        goto_lists::showSteps(box, sample.appName, sample.sequenceId, sample.blockUuids.last());
        showAndHide(box);
    }
}

void fill(QStandardItem* parent, const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    for (const auto& block : blocks) {
        auto* item = new QStandardItem(QString::fromStdString(block->name));
        item->setData(int(block->baseType()), Qt::UserRole);
        item->setData(QString::fromStdString(block->uuid), Qt::UserRole + 1);
        fill(item, block->children);
        parent->appendRow(item);
    }
}

void open_goto_list_yardstick(benchmark::State& state)
{
    const logic_samples::Builder builder(int(state.range(0)));
    const auto blocks = sdk_ui_interface::processedit::getProcessListBySequenceID(
        builder.sample().appName, builder.sample().sequenceId);
    QStandardItemModel model;
    QComboBox box;
    auto* tree = new QTreeView;
    tree->setUniformRowHeights(true);
    box.setModel(&model);
    box.setView(tree);
    box.show();
    for (auto _ : state) {
        model.clear();
        auto* flow = new QStandardItem;
        fill(flow, blocks);
        model.appendRow(flow);
        tree->expandAll();
        showAndHide(box);
    }
}

} // namespace

BENCHMARK(open_goto_list)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(open_goto_list_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
