// The picker opened over a thousand variables, and a key in the completing box with ten thousand
// words; beside them the bare toolkit with a tree and a list of as many rows.

#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "variables/EntryValueTextEdit.h"
#include "variables/wgtEntryValue.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QTreeWidget>

#include <benchmark/benchmark.h>

namespace processedit = sdk_ui_interface::processedit;

namespace {

const QString appName = QStringLiteral("bench_values");

QStringList words(int count)
{
    QStringList list;
    for (int word = 0; word < count; ++word)
        list << QStringLiteral("word_%1_%2").arg(word % 97).arg(word);
    return list;
}

void open_picker(benchmark::State& state)
{
    processedit::removeApp(appName);
    const QString sequence = processedit::createSeuqence(appName, QStringLiteral("Sequence_0"));
    for (int variable = 0; variable < state.range(0); ++variable)
        process_edit::addVariable(appName.toStdString(), SequenceVariable, sequence.toStdString());
    for (auto _ : state) {
        wgtEntryValue picker;
        picker.setCAppletName(appName);
        picker.setSequenceId(sequence);
        picker.setType(EntryVariablesAndFunctions, true, true);
        picker.setData(QString(), QString(), false);
        picker.show();
        QApplication::processEvents();
    }
    processedit::removeApp(appName);
    process_edit::removeAllVarByAppName(appName.toStdString());
}

void open_picker_yardstick(benchmark::State& state)
{
    constexpr int Columns = 4;
    for (auto _ : state) {
        QTreeWidget tree;
        tree.setColumnCount(Columns);
        tree.setUniformRowHeights(true);
        for (int row = 0; row < state.range(0); ++row) {
            auto* item = new QTreeWidgetItem(&tree);
            for (int column = 0; column < Columns; ++column)
                item->setText(column, QStringLiteral("variable"));
        }
        tree.resize(700, 500);
        tree.show();
        QApplication::processEvents();
    }
}

void press(QWidget* widget, int key, const QString& text)
{
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &down);
    QApplication::processEvents();
}

void completion_key(benchmark::State& state)
{
    EntryValueTextEdit box;
    box.setWords(words(int(state.range(0))));
    box.resize(500, 300);
    box.show();
    box.activateWindow();
    box.setFocus();
    QApplication::processEvents();
    bool isLonger = false;
    press(&box, Qt::Key_W, QStringLiteral("w"));
    for (auto _ : state) {
        isLonger = !isLonger;
        if (isLonger)
            press(&box, Qt::Key_O, QStringLiteral("o"));
        else
            press(&box, Qt::Key_Backspace, QString());
    }
}

void completion_key_yardstick(benchmark::State& state)
{
    QListWidget list;
    list.setUniformItemSizes(true);
    list.resize(300, 200);
    list.show();
    const QStringList all = words(int(state.range(0)));
    for (auto _ : state) {
        list.clear();
        list.addItems(all);
        QApplication::processEvents();
    }
}

} // namespace

BENCHMARK(open_picker)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(open_picker_yardstick)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(completion_key)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(completion_key_yardstick)->Arg(10000)->Unit(benchmark::kMillisecond);
