// The picker as its user has it: what it lists, and what a pick leaves in the box.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "tests/variables/EntryValuePicker.h"
#include "variables/EntryFunctionTable.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <cstring>

using Picker = EntryValuePicker;

class EntryValueDialogTest : public QObject
{
    Q_OBJECT
private slots:
    void listedVariables();
    void oneType();
    void groups();
    void filledAgain();
    void types();
    void picksVariables();
    void clickAndOk();
    void picksGoToTheCursor();
    void loopVariables();
    void picksFunctions();
    void recordParametersCantBePicked();
    void functionOfTheValue();
    void userFunctions();

private:
    PickerVariables m_variables;
};

void EntryValueDialogTest::listedVariables()
{
    Picker p;
    QCOMPARE(p.listed(), QStringList({QStringLiteral("序列变量: seq_int seq_s32"),
                                      QStringLiteral("流程变量: app_can"),
                                      QStringLiteral("全局变量: global_u32"),
                                      QStringLiteral("系统用户变量: sys_u32")}));
    QCOMPARE(p.variable("app_can")->text(1), QStringLiteral("PDrelCan"));
    QCOMPARE(p.variable("app_can")->text(2), QStringLiteral("about app_can"));
    QVERIFY(p.variable("app_can")->parent()->isExpanded());
}

void EntryValueDialogTest::oneType()
{
    Picker p(EntryVariables, QString(), QStringLiteral("u32"));
    QCOMPARE(p.listed(), QStringList({QStringLiteral("序列变量:"), QStringLiteral("流程变量:"),
                                      QStringLiteral("全局变量: global_u32"),
                                      QStringLiteral("系统用户变量: sys_u32")}));
    QCOMPARE(p.find<QLabel>("label_type")->text(), QStringLiteral("u32"));
    p.dialog.setData(QStringLiteral("void*"), QString(), true);
    QCOMPARE(
        p.listed(),
        QStringList({QStringLiteral("序列变量: seq_int seq_s32"), QStringLiteral("流程变量:"),
                     QStringLiteral("全局变量: global_u32"), QStringLiteral("系统用户变量:")}));
    QVERIFY(p.dialog.getType().isEmpty());
}

void EntryValueDialogTest::groups()
{
    const rows::Table<bool, bool, QString> table{
        {"both", true, true, text("序列变量 流程变量 全局变量 系统用户变量")},
        {"no system", false, true, text("序列变量 流程变量 全局变量")},
        {"no sequence", true, false, text("流程变量 全局变量 系统用户变量")}};
    for (const auto& [row, system, sequence, expectedShown] : table) {
        const rows::Named named(row);
        Picker p;
        p.dialog.setType(EntryVariables, system, sequence);
        p.dialog.setData(QString(), QString(), false);
        QStringList shown;
        for (const QString& group : p.listed())
            shown.append(group.section(QLatin1Char(':'), 0, 0));
        QCOMPARE(shown.join(QLatin1Char(' ')), expectedShown);
        QCOMPARE(p.variable("sys_u32") != nullptr, system);
        QCOMPARE(p.variable("seq_int") != nullptr, sequence);
        QCOMPARE(p.find<QLabel>("label_type")->text(), QStringLiteral("任意类型"));
    }
}

void EntryValueDialogTest::filledAgain()
{
    Picker p;
    const QStringList once = p.listed();
    const int functions = p.table->rowCount();
    p.dialog.setCAppletName(PickerVariables::appName());
    p.dialog.setData(QString(), QString(), false);
    QCOMPARE(p.listed(), once);
    QCOMPARE(p.table->rowCount(), functions);
}

void EntryValueDialogTest::types()
{
    const rows::Table<int, bool, bool, int, bool> table{{"variables", 0, true, false, 0, true},
                                                        {"both", 1, true, true, 0, false},
                                                        {"functions", 2, false, true, 1, false}};
    for (const auto& [row, type, variables, functions, page, tellsType] : table) {
        const rows::Named named(row);
        Picker p{EntryValType(type)};
        QCOMPARE(p.tabs->isTabEnabled(0), variables);
        QCOMPARE(p.tabs->isTabEnabled(1), functions);
        QCOMPARE(p.tabs->currentIndex(), page);
        QCOMPARE(!p.find<QLabel>("label_3")->isHidden(), tellsType);
        QCOMPARE(!p.find<QLabel>("label_type")->isHidden(), tellsType);
        QVERIFY(!p.box->isReadOnly());
    }
}

void EntryValueDialogTest::picksVariables()
{
    const rows::Table<bool, bool, QString, QString> table{
        // of "a|b", "|" the cursor
        {"inserted", false, false, text("seq_int"), text("aseq_int|b")},
        {"local", false, true, text("seq_int"), text("a[local]seq_int|b")},
        {"global is local", false, true, text("global_u32"), text("a[local]global_u32|b")},
        {"system", false, true, text("sys_u32"), text("a[sys]sys_u32|b")},
        {"in place of all", true, true, text("sys_u32"), text("[sys]sys_u32|")},
        {"a group", true, false, text("流程变量"), text("a|b")}};
    for (const auto& [row, single, prefixed, variable, expectedText] : table) {
        const rows::Named named(row);
        Picker p(EntryVariables, QStringLiteral("ab"));
        p.dialog.setSingleSelectMode(single);
        p.dialog.setSelectVarAddPrfix(prefixed);
        p.box->moveCursor(QTextCursor::Right);
        emit p.tree->itemDoubleClicked(
            p.tree->findItems(variable, Qt::MatchExactly | Qt::MatchRecursive).value(0), 0);
        const QString text =
            p.dialog.getData().insert(p.box->textCursor().position(), QLatin1Char('|'));
        QCOMPARE(text, expectedText);
        p.box->undo();
        QCOMPARE(p.dialog.getData(), QStringLiteral("ab"));
    }
}

void EntryValueDialogTest::clickAndOk()
{
    const auto click = [](Picker& p, const char* name) {
        emit p.tree->itemClicked(p.variable(name), 0);
    };
    const auto accepted = [](Picker& p) {
        p.find<QPushButton>("btnOk")->click();
        return p.dialog.getData();
    };
    const QString given = QStringLiteral("given");
    Picker none(EntryVariables, given);
    QCOMPARE(accepted(none), given);
    Picker one(EntryVariables, given);
    one.box->selectAll(); // as it is shown
    click(one, "seq_s32");
    QCOMPARE(accepted(one), QStringLiteral("seq_s32"));
    Picker twice(EntryVariables, given);
    twice.box->selectAll();
    click(twice, "seq_s32");
    twice.pick("seq_s32");
    QCOMPARE(accepted(twice), QStringLiteral("seq_s32"));
    Picker typed(EntryVariables, given);
    click(typed, "seq_s32");
    QTest::keyClicks(typed.box, QStringLiteral("x"));
    QCOMPARE(accepted(typed), QStringLiteral("xgiven"));
    Picker group(EntryVariables, given);
    click(group, "seq_s32");
    emit group.tree->itemClicked(group.tree->topLevelItem(0), 0);
    QCOMPARE(accepted(group), given);
    Picker function(EntryVariablesAndFunctions, QString());
    emit function.table->itemClicked(function.table->item(function.row("now_ms"), 2));
    QVERIFY2(accepted(function).contains(QStringLiteral("now_ms(")),
             qPrintable(function.shownFunctions().join(QLatin1Char(' '))));
    // The way out takes nothing.
    Picker cancelled(EntryVariables, given);
    click(cancelled, "seq_s32");
    cancelled.find<QPushButton>("btnCancel")->click();
    QCOMPARE(cancelled.dialog.getData(), given);
}

void EntryValueDialogTest::picksGoToTheCursor()
{
    Picker p(EntryVariables, QStringLiteral("a = ;\nb;"));
    p.dialog.setCursorPosition(4);
    p.box->selectAll();
    p.pick("seq_s32");
    p.pick("global_u32");
    QCOMPARE(p.dialog.getData(), QStringLiteral("a = seq_s32global_u32;\nb;"));
    p.dialog.setCursorPosition(0);
    p.pick("seq_s32");
    QVERIFY(p.dialog.getData().startsWith(QStringLiteral("seq_s32a = ")));
}

void EntryValueDialogTest::loopVariables()
{
    processVariable i, known;
    i.name = "i";
    i.type = "s32";
    known.name = "global_u32";
    known.type = "s32";
    Picker p;
    p.dialog.setLoopVariables({i, known});
    p.dialog.setData(QString(), QString(), false);
    QCOMPARE(p.listed().first(), QStringLiteral("序列变量: seq_int seq_s32 i"));
    p.dialog.setData(QStringLiteral("u32"), QString(), false);
    QCOMPARE(p.listed().first(), QStringLiteral("序列变量:"));
}

void EntryValueDialogTest::picksFunctions()
{
    Picker p(EntryFunctions);
    QCOMPARE(p.dialog.getCurrentFu().name[0], '\0');
    p.pick("seq_int");
    const int row = p.row("pow");
    QVERIFY(row >= 0);
    emit p.table->itemDoubleClicked(p.table->item(row, 4));
    QCOMPARE(p.dialog.getData(), QStringLiteral("seq_intpow(double,double)"));
    QCOMPARE(p.dialog.getCurrentFu().name, "pow");
    p.dialog.setSingleSelectMode(true);
    emit p.table->itemDoubleClicked(p.table->item(p.row("now_ms"), 0));
    QCOMPARE(p.dialog.getData(), QStringLiteral("now_ms()"));
    emit p.table->itemDoubleClicked(p.table->item(0, 0));
    QVERIFY(p.dialog.getData().startsWith(p.table->item(0, 2)->text() + u'('));
    for (int column = 0; column < 5; ++column)
        QVERIFY(!(p.table->item(row, column)->flags() & Qt::ItemIsEditable));
    QCOMPARE(p.table->item(row, 3)->toolTip(), QStringLiteral("double x: 数值\ndouble y: 指数"));
}

void EntryValueDialogTest::recordParametersCantBePicked()
{
    QList<_DrelFunction> functions;
    for (int i = 0; i < 5; ++i) {
        _DrelFunction function = {};
        std::strcpy(function.name, i == 1 ? "show_capplet_box" : "f");
        std::strcpy(function.params[0].name, "p");
        function.params[0].type = i == 0 || i == 3 ? DrelCanType : DrelS32;
        functions.append(function);
    }
    QTableWidget table;
    EntryFunctionTable rows(table);
    QCOMPARE(rows.show(functions, QString()), -1);
    QVector<int> places;
    for (int row = 0; row < table.rowCount(); ++row) {
        places.append(rows.pickedFunction(row));
        for (int column = 0; column < 5; ++column) {
            const Qt::ItemFlags flags = table.item(row, column)->flags();
            QCOMPARE(flags.testFlag(Qt::ItemIsEnabled), places.last() >= 0);
            QCOMPARE(flags.testFlag(Qt::ItemIsSelectable), places.last() >= 0);
        }
    }
    QCOMPARE(places, QVector<int>({-1, 2, -1, 4}));
    QVector<int> walked;
    for (int step : {1, 1, 1, -1, -1}) {
        rows.moveCurrent(step);
        walked.append(table.currentRow());
    }
    QCOMPARE(walked, QVector<int>({1, 3, 3, 1, 1}));
}

void EntryValueDialogTest::functionOfTheValue()
{
    Picker p(EntryFunctions, QStringLiteral("1 + sqrt(2)"));
    QCOMPARE(p.table->currentRow(), p.row("sqrt"));
    QCOMPARE(p.dialog.getCurrentFu().name, "sqrt");
    QCOMPARE(p.dialog.getData(), QStringLiteral("1 + sqrt(2)"));
}

void EntryValueDialogTest::userFunctions()
{
    Picker p(EntryFunctions);
    auto* source = p.find<QComboBox>("comboBox_Type");
    const QStringList inner = p.shownFunctions();
    QVERIFY(inner.size() >= 12 && !p.dialog.isUserFunction());
    source->setCurrentIndex(1);
    QVERIFY(p.dialog.isUserFunction());
    QCOMPARE(p.table->rowCount(), 0);
    source->setCurrentIndex(0);
    QCOMPARE(p.shownFunctions(), inner);
}

PE_WIDGET_TEST("entry_value_dialog", EntryValueDialogTest)
#include "entry_value_dialog_test.moc"
