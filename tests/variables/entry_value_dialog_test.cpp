// The picker as its user has it: what it lists, what a pick leaves in the box, its search, its
// keys, and how it ends.

#include "model/services/process_edit.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/EntryFunctionTable.h"
#include "variables/EntryValueTextEdit.h"
#include "variables/SuggestionList.h"
#include "variables/wgtEntryValue.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include <cstring>
#include <functional>

namespace {

/// Variables of each kind, for one applet and as long as this lives; system variables stay.
class PickerVariables
{
public:
    PickerVariables()
    {
        add(SequenceVariable, "seq", "seq_int", "int");
        add(SequenceVariable, "seq", "seq_s32", "s32");
        add(SequenceVariable, "other", "other_s32", "s32");
        add(ProcessVariable, localName(), "app_can", "PDrelCan");
        m_global = add(GlobalVariable, "", "global_u32", "u32");
        defineSystemVariable("sys_u32", UnsignedCategory, 1);
        defineSystemVariable("sys_odd", DataCategoryType(11), 1);
        defineSystemVariable("sys_inner", UnsignedCategory, 2);
    }
    ~PickerVariables() { process_edit::removeVariables(localName(), {m_global}); }

    static QString appName() { return QStringLiteral("选择器"); }

private:
    static std::string localName() { return appName().toLocal8Bit().toStdString(); }
    static std::string add(processVariableType scope, const std::string& owner, const char* name,
                           const char* type)
    {
        processVariable variable =
            process_edit::getVariable(process_edit::addVariable(localName(), scope, owner));
        variable.name = name;
        variable.type = type;
        variable.description = std::string("about ") + name;
        process_edit::updateVariable(localName(), variable, scope);
        return variable.uuid;
    }
    static void defineSystemVariable(const char* name, DataCategoryType category, int kind)
    {
        system_variate::SystemVarInfo variable;
        variable.name = QString::fromLatin1(name);
        variable.category = category;
        variable.kind = kind;
        standalone::SystemVariables::instance().define(variable);
    }

    applet_fixture::ScopedApplet m_applet{appName()};
    std::string m_global;
};

/// A dialog for the sequence "seq", and the widgets of its form.
struct Picker
{
    explicit Picker(EntryValType type = EntryVariablesAndFunctions, const char* data = "")
    {
        dialog.setCAppletName(PickerVariables::appName());
        dialog.setSequenceId(QStringLiteral("seq"));
        dialog.setType(type, true, true);
        dialog.setData(QString(), text(data), false);
    }
    template <class Widget> Widget* find(const char* name)
    {
        return dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// "group: names" of the groups that are shown.
    QString listed() const
    {
        QStringList groups;
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* group = tree->topLevelItem(i);
            QStringList names(group->text(0) + QLatin1Char(':'));
            for (int j = 0; j < group->childCount(); ++j)
                names.append(group->child(j)->text(0));
            if (!group->isHidden())
                groups.append(names.join(QLatin1Char(' ')));
        }
        return groups.join(QLatin1String("; "));
    }
    QTreeWidgetItem* variable(const char* name) const
    {
        return tree->findItems(text(name), Qt::MatchExactly | Qt::MatchRecursive).value(0);
    }
    QTableWidgetItem* function(const char* name) const
    {
        return table->findItems(text(name), Qt::MatchExactly).value(0);
    }
    QStringList shownFunctions() const
    {
        QStringList names;
        for (int row = 0; row < table->rowCount(); ++row) {
            if (!table->isRowHidden(row))
                names.append(table->item(row, 2)->text());
        }
        return names;
    }
    void click(const char* variableName) { emit tree->itemClicked(variable(variableName), 0); }
    void pick(const char* variableName) { emit tree->itemDoubleClicked(variable(variableName), 0); }

    wgtEntryValue dialog;
    QTabWidget* tabs = find<QTabWidget>("tabWidget");
    QTreeWidget* tree = find<QTreeWidget>("treeVars");
    QTableWidget* table = find<QTableWidget>("tableWidget");
    EntryValueTextEdit* box = find<EntryValueTextEdit>("textEdit");
    QLineEdit* search = find<QLineEdit>("searchEdit");
    QPushButton* ok = find<QPushButton>("btnOk");
};

} // namespace

class EntryValueDialogTest : public QObject
{
    Q_OBJECT
private slots:
    void listedVariables();
    void types();
    void picksVariables();
    void clickAndOk();
    void picksGoToTheCursor();
    void loopVariables();
    void picksFunctions();
    void recordParametersCantBePicked();
    void userFunctions();
    void search();
    void keys();
    void tabOrder();
    void completesTheListedNames();
    void results();

private:
    PickerVariables m_variables;
};

void EntryValueDialogTest::listedVariables()
{
    const rows::Table<bool, bool, bool, const char*> table{
        // type; basic types only, system variables, sequence variables
        {"", false, true, true,
         "序列变量: seq_int seq_s32; 流程变量: app_can; 全局变量: global_u32; "
         "系统用户变量: sys_u32"},
        {"u32", false, true, true,
         "序列变量:; 流程变量:; 全局变量: global_u32; 系统用户变量: sys_u32"},
        {"void*", true, true, true,
         "序列变量: seq_int seq_s32; 流程变量:; 全局变量: global_u32; 系统用户变量:"},
        {"", false, false, true,
         "序列变量: seq_int seq_s32; 流程变量: app_can; 全局变量: global_u32"},
        {"", false, true, false, "流程变量: app_can; 全局变量: global_u32; 系统用户变量: sys_u32"}};
    for (const auto& [type, basic, system, sequence, listed] : table) {
        const rows::Named named(listed);
        Picker p; // with all of them
        p.dialog.setType(EntryVariables, system, sequence);
        p.dialog.setData(text(type), QString(), basic);
        QCOMPARE(p.listed(), text(listed));
        QCOMPARE(p.variable("sys_inner"), nullptr);
        QCOMPARE(p.variable("sys_u32") != nullptr, text(listed).contains(text("sys_u32")));
        QCOMPARE(p.variable("seq_int") != nullptr, text(listed).contains(text("seq_int")));
        QCOMPARE(p.find<QLabel>("label_type")->text(), text(*type ? type : "任意类型"));
    }
    Picker p;
    QCOMPARE(p.variable("app_can")->text(1) + p.variable("app_can")->text(2),
             text("PDrelCanabout app_can"));
    QVERIFY(p.variable("app_can")->parent()->isExpanded());
}

void EntryValueDialogTest::types()
{
    const rows::Table<EntryValType, bool, bool, int, bool> table{
        {"variables", EntryVariables, true, false, 0, true},
        {"both", EntryVariablesAndFunctions, true, true, 0, false},
        {"functions", EntryFunctions, false, true, 1, false}};
    for (const auto& [row, type, variables, functions, page, tellsType] : table) {
        const rows::Named named(row);
        Picker p{type};
        QCOMPARE(p.tabs->isTabEnabled(0), variables);
        QCOMPARE(p.tabs->isTabEnabled(1), functions);
        QCOMPARE(p.tabs->currentIndex(), page);
        for (const char* label : {"label_3", "label_type"})
            QCOMPARE(!p.find<QLabel>(label)->isHidden(), tellsType);
    }
}

void EntryValueDialogTest::picksVariables()
{
    const rows::Table<bool, bool, const char*, const char*> table{
        // of "a|b", "|" the cursor
        {"inserted", false, false, "seq_int", "aseq_int|b"},
        {"global is local", false, true, "global_u32", "a[local]global_u32|b"},
        {"system, in place of all", true, true, "sys_u32", "[sys]sys_u32|"},
        {"a group", true, false, "流程变量", "a|b"}};
    for (const auto& [row, single, prefixed, variable, expected] : table) {
        const rows::Named named(row);
        Picker p(EntryVariables, "ab");
        p.dialog.setSingleSelectMode(single);
        p.dialog.setSelectVarAddPrfix(prefixed);
        p.box->moveCursor(QTextCursor::Right);
        p.pick(variable);
        const QString left = p.dialog.getData();
        QCOMPARE(QString(left).insert(p.box->textCursor().position(), u'|'), text(expected));
        p.box->undo();
        QCOMPARE(p.dialog.getData(), text("ab"));
    }
}

/// What has been clicked last comes with OK, unless something else was done since.
void EntryValueDialogTest::clickAndOk()
{
    using Act = std::function<void(Picker&)>;
    const Act click = [](Picker& p) { p.click("seq_s32"); };
    const Act pick = [](Picker& p) { p.pick("seq_s32"); };
    const Act group = [](Picker& p) { p.click("序列变量"); };
    const Act type = [](Picker& p) { QTest::keyClicks(p.box, text("x")); };
    const Act otherPage = [](Picker& p) { p.tabs->setCurrentIndex(1); };
    const Act function = [](Picker& p) { emit p.table->itemClicked(p.function("now_ms")); };
    const Act cancel = [](Picker& p) { p.find<QPushButton>("btnCancel")->click(); };
    const rows::Table<std::vector<Act>, const char*> table{
        {"nothing", {}, "given"},
        {"one", {click}, "seq_s32given"},
        {"twice", {click, pick}, "seq_s32given"},
        {"typed", {click, type}, "xgiven"},
        {"group", {click, group}, "given"},
        {"other page", {click, otherPage}, "given"},
        {"function", {function}, "now_ms()given"}};
    for (const auto& [row, acts, expected] : table) {
        const rows::Named named(row);
        Picker p(EntryVariablesAndFunctions, "given");
        for (const Act& act : acts)
            act(p);
        p.ok->click();
        QCOMPARE(p.dialog.getData(), text(expected));
    }
    Picker p(EntryVariables, "given");
    click(p);
    cancel(p);
    QCOMPARE(p.dialog.getData(), text("given"));
}

void EntryValueDialogTest::picksGoToTheCursor()
{
    Picker p(EntryVariables, "a = ;\nb;");
    p.dialog.setCursorPosition(4);
    p.box->selectAll();
    p.pick("seq_s32");
    p.pick("global_u32");
    QCOMPARE(p.dialog.getData(), text("a = seq_s32global_u32;\nb;"));
    p.dialog.setCursorPosition(0);
    p.pick("seq_s32");
    QVERIFY(p.dialog.getData().startsWith(text("seq_s32a = ")));
}

void EntryValueDialogTest::loopVariables()
{
    processVariable i, known;
    i.name = "i";
    known.name = "global_u32";
    i.type = known.type = "s32";
    Picker p;
    p.dialog.setLoopVariables({i, known});
    p.dialog.setData(QString(), QString(), false);
    QVERIFY(p.listed().startsWith(text("序列变量: seq_int seq_s32 i;")));
    p.dialog.setData(text("u32"), QString(), false);
    QVERIFY(p.listed().startsWith(text("序列变量:;")));
}

void EntryValueDialogTest::picksFunctions()
{
    Picker p(EntryFunctions);
    QCOMPARE(p.dialog.getCurrentFu().name[0], '\0');
    p.pick("seq_int");
    const int row = p.function("pow")->row();
    emit p.table->itemDoubleClicked(p.table->item(row, 4));
    QCOMPARE(p.dialog.getData(), text("seq_intpow(double,double)"));
    QCOMPARE(p.dialog.getCurrentFu().name, "pow");
    p.dialog.setSingleSelectMode(true);
    emit p.table->itemDoubleClicked(p.table->item(0, 0));
    QVERIFY(p.dialog.getData().startsWith(p.table->item(0, 2)->text() + u'('));
    for (int column = 0; column < 5; ++column)
        QVERIFY(!(p.table->item(row, column)->flags() & Qt::ItemIsEditable));
    QCOMPARE(p.table->item(row, 3)->toolTip(), text("double x: 数值\ndouble y: 指数"));

    Picker called(EntryFunctions, "1 + sqrt(2)"); // stands on what its value calls
    QCOMPARE(called.table->currentRow(), called.function("sqrt")->row());
    QCOMPARE(called.dialog.getCurrentFu().name, "sqrt");
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

void EntryValueDialogTest::userFunctions()
{
    Picker p(EntryFunctions);
    auto* source = p.find<QComboBox>("comboBox_Type");
    const QStringList inner = p.shownFunctions();
    QVERIFY(inner.size() >= 12 && !p.dialog.isUserFunction());
    source->setCurrentIndex(1);
    QVERIFY(p.dialog.isUserFunction());
    QCOMPARE(p.table->rowCount(), 0);
    p.dialog.setCAppletName(PickerVariables::appName()); // again
    source->setCurrentIndex(0);
    QCOMPARE(p.shownFunctions(), inner);
}

void EntryValueDialogTest::search()
{
    Picker p(EntryFunctions);
    p.dialog.show();
    auto* column = p.find<QComboBox>("comboBox");
    const auto buttons = p.search->findChildren<QToolButton*>();
    const auto* clear = p.search->actions().last();
    QVERIFY(buttons.size() == 2 && !clear->isVisible());
    const QStringList all = p.shownFunctions();
    p.search->setText(text("LOG_"));
    QCOMPARE(p.shownFunctions(), lines("log_debug\nlog_info\nlog_warning\nlog_error"));
    QVERIFY(clear->isVisible());
    column->setCurrentIndex(0); // alone changes nothing
    QCOMPARE(p.shownFunctions().size(), 4);
    p.search->setText(text("s64"));
    const QStringList counters = p.shownFunctions();
    QVERIFY(counters.contains(text("now_ms")) && !counters.contains(text("log_info")));
    p.dialog.initFuncTable(0);
    QCOMPARE(p.shownFunctions(), counters);
    QTest::mouseClick(buttons.last(), Qt::LeftButton);
    QCOMPARE(p.shownFunctions(), all);
    QVERIFY(!clear->isVisible());
}

void EntryValueDialogTest::keys()
{
    Picker p;
    p.dialog.show();
    QTRY_VERIFY(p.box->hasFocus());
    p.tree->setCurrentItem(p.variable("seq_s32"));
    QTest::keyClick(p.tree, Qt::Key_Return);
    QCOMPARE(p.dialog.getData(), text("seq_s32"));

    p.tabs->setCurrentIndex(1);
    p.search->setFocus();
    QTest::keyClicks(p.search, text("log_"));
    QTest::keyClick(p.search, Qt::Key_Return); // nothing is current yet
    QTest::keyClick(p.search, Qt::Key_Down);
    QTest::keyClick(p.search, Qt::Key_Down);
    QTest::keyClick(p.search, Qt::Key_Enter);
    QCOMPARE(p.dialog.getData(), text("seq_s32log_info(char*)"));
    QTest::keyClicks(p.search, text("x"));
    QTest::keyClick(p.search, Qt::Key_Return); // the current row is hidden
    QCOMPARE(p.dialog.getData(), text("seq_s32log_info(char*)"));

    const int row = p.table->currentRow();
    for (Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Down}) {
        QTest::keyClick(p.table, key);
        QCOMPARE(p.table->currentRow(), row);
    }
}

void EntryValueDialogTest::tabOrder()
{
    Picker p(EntryFunctions);
    p.dialog.show();
    QTRY_VERIFY(p.box->hasFocus());
    p.tabs->setFocus();
    QStringList visited;
    for (int i = 0; i < 7; ++i) {
        visited.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(visited.join(u' '), text("qt_tabwidget_tabbar comboBox_Type comboBox searchEdit "
                                      "tableWidget textEdit btnOk"));
}

void EntryValueDialogTest::completesTheListedNames()
{
    Picker p(EntryVariables);
    p.dialog.show();
    QTRY_VERIFY(p.box->hasFocus());
    QTest::keyClicks(p.box, text("u32"));
    const auto* list = p.box->findChild<SuggestionList*>();
    QVERIFY(list->isVisible());
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(0)->text(), text("[local]global_u32"));
    QCOMPARE(list->item(1)->text(), text("[sys]sys_u32"));
    QTest::keyClick(p.box, Qt::Key_Escape);
    QVERIFY(!list->isVisible() && p.dialog.isVisible());
    p.pick("seq_int");
    QVERIFY(!list->isVisible()); // a pick is no typing
    QCOMPARE(p.dialog.getData(), text("u32seq_int"));
}

void EntryValueDialogTest::results()
{
    using Act = std::function<void(Picker&)>;
    const rows::Table<Act, int> table{
        {"OK", [](Picker& p) { QTest::mouseClick(p.ok, Qt::LeftButton); }, 1},
        {"Enter on OK", [](Picker& p) { QTest::keyClick(p.ok, Qt::Key_Return); }, 1},
        {"Ctrl+Enter in the box",
         [](Picker& p) { QTest::keyClick(p.box, Qt::Key_Return, Qt::ControlModifier); }, 1},
        {"Escape in the box", [](Picker& p) { QTest::keyClick(p.box, Qt::Key_Escape); }, 0},
        {"Escape in the tree", [](Picker& p) { QTest::keyClick(p.tree, Qt::Key_Escape); }, 0},
        {"closed", [](Picker& p) { p.dialog.close(); }, 0}};
    for (const auto& [row, act, result] : table) {
        const rows::Named named(row);
        for (bool single : {false, true}) {
            Picker p(EntryVariables, "value");
            p.dialog.setSingleSelectMode(single);
            QString selected;
            QTimer::singleShot(0, &p.dialog, [&, &act = act] {
                const auto closed = qScopeGuard([&p] { p.dialog.close(); });
                QTRY_VERIFY(p.box->hasFocus());
                QCOMPARE(QApplication::activeModalWidget(), &p.dialog);
                selected = p.box->textCursor().selectedText();
                act(p);
                QTRY_VERIFY(!p.dialog.isVisible());
            });
            QCOMPARE(int(p.dialog.exec()), result);
            QCOMPARE(selected, text(single ? "" : "value"));
            QCOMPARE(p.dialog.getData(), text("value"));
        }
    }
}

PE_WIDGET_TEST("entry_value_dialog", EntryValueDialogTest)
#include "entry_value_dialog_test.moc"
