// A click from one step to another in a large document: what waits in the panels is written, the
// other block is loaded and its panel drawn. Beside it the bare toolkit: as many fields of a form
// filled and drawn, and a row selected.

#include "bench/logic_samples.h"
#include "logic/LogicView.h"
#include "shell/ProcessEditWidget.h"

#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

namespace {

constexpr int Width = 1200;
constexpr int Height = 800;

void click_step(benchmark::State& state)
{
    const logic_samples::Builder builder(int(state.range(0)));
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* editor = new ProcessEditWidget(QStringLiteral("Bench"), &window);
    editor->setProcessEditReset(false);
    editor->createCApplet(builder.sample().appName);
    editor->loadDataToUI(builder.sample().appName, false);
    for (QWidget* part :
         {static_cast<QWidget*>(editor), editor->getControlWgt(), editor->getSettingWgt()}) {
        layout->addWidget(part);
        part->show();
    }
    window.resize(Width, Height);
    window.show();
    auto* tree = editor->findChild<LogicView*>()->findChild<QTreeView*>(QStringLiteral("treeView"));
    auto* name = editor->getSettingWgt()->findChild<QLineEdit*>(QStringLiteral("nameLineEdit"));
    const QModelIndex flow = tree->model()->index(MainFlow, 0);
    QApplication::processEvents();
    // A statement and an if: the panels differ.
    int row = 3;
    for (auto _ : state) {
        row = row == 3 ? 4 : 3;
        const QModelIndex step = tree->model()->index(row, 0, flow);
        tree->setCurrentIndex(step);
        emit tree->clicked(step);
        QApplication::processEvents();
        name->setText(name->text() == QLatin1String("a") ? QStringLiteral("b")
                                                         : QStringLiteral("a"));
    }
}

void click_step_yardstick(benchmark::State& state)
{
    constexpr int Fields = 8;
    const logic_samples::Builder builder(int(state.range(0)));
    LogicView view;
    view.setCAppletName(builder.sample().appName);
    view.addNewModelSlot(builder.sample().sequenceId);
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* tree = new QTreeView;
    tree->setUniformRowHeights(true);
    tree->setModel(view.editModel(builder.sample().sequenceId));
    tree->expandAll();
    layout->addWidget(tree);
    QList<QLineEdit*> fields;
    auto* pages = new QStackedWidget;
    layout->addWidget(pages);
    for (int page = 0; page < 2; ++page) {
        auto* form = new QWidget;
        auto* rows = new QFormLayout(form);
        for (int field = 0; field < Fields; ++field) {
            fields.append(new QLineEdit);
            rows->addRow(QStringLiteral("名称"), fields.last());
        }
        pages->addWidget(form);
    }
    window.resize(Width, Height);
    window.show();
    QApplication::processEvents();
    const QModelIndex flow = tree->model()->index(MainFlow, 0);
    int row = 3;
    for (auto _ : state) {
        row = row == 3 ? 4 : 3;
        tree->setCurrentIndex(tree->model()->index(row, 0, flow));
        pages->setCurrentIndex(row - 3);
        for (QLineEdit* field : qAsConst(fields))
            field->setText(QString::number(row));
        QApplication::processEvents();
    }
    tree->setModel(nullptr);
}

} // namespace

BENCHMARK(click_step)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(click_step_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
