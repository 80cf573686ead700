// The panel of an API call: what it makes of the functions that are picked, what is typed into its
// cells, and what of that reaches the step.

#include "model/DrelFunction.h"
#include "model/type_tables.h"
#include "panels/ParamValueItem.h"
#include "panels/ProcessEditTableWidget.h"
#include "panels/api_values.h"
#include "tests/panels/StepPanelFixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTableWidget>

#include <cstring>

namespace {

struct Parameter
{
    const char* name;
    int type;
};

_DrelFunction function(int returnType, const std::vector<Parameter>& parameters = {})
{
    _DrelFunction made = {};
    made.returnType = returnType;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        std::strcpy(made.params[i].name, parameters[i].name);
        std::strcpy(made.params[i].description, "说明");
        made.params[i].type = parameters[i].type;
    }
    return made;
}

/// "type=value" of each parameter.
QString printed(const std::vector<ApiProcessBlock::Parameter>& parameters)
{
    QStringList texts;
    for (const ApiProcessBlock::Parameter& each : parameters)
        texts.append(QString::fromStdString(each.type + '=' + each.value));
    return texts.join(QLatin1Char(' '));
}

class Call : public StepPanelFixture
{
public:
    Call() { load({{"s32", "1", "甲"}, {"string", "\"a\"", "乙"}}); }

    void load(const std::vector<ApiProcessBlock::Parameter>& parameters,
              const char* returnType = "s32")
    {
        block->callText = "f(s32,string)";
        block->returnVariable = "result";
        block->returnType = returnType;
        block->setParameters(parameters);
        control.showBlock(block);
    }
    QTableWidget* table() const { return find<QTableWidget>("tableWidget"); }
    ParamValueItem* value(int row) const
    {
        return qobject_cast<ParamValueItem*>(table()->cellWidget(row, 1));
    }
    /// Types over a value, as far as the field takes it.
    void typeInto(int row, const char* keys) const
    {
        emit table()->cellDoubleClicked(row, 1);
        auto* edit = value(row)->findChild<QLineEdit*>();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text(keys));
    }
    /// Presses a button, and picks a function by its row in the dialog that opens.
    void pickFunction(const char* name)
    {
        QTimer::singleShot(0, &control, [name] {
            QWidget* dialog = QApplication::activeModalWidget();
            auto* functions = dialog->findChild<QTableWidget*>(text("tableWidget"));
            const auto found = functions->findItems(text(name), Qt::MatchStartsWith);
            QVERIFY(!found.isEmpty());
            functions->setCurrentItem(found.first());
            emit functions->itemDoubleClicked(found.first());
            dialog->findChild<QAbstractButton*>(text("btnOk"))->click();
        });
        find<QAbstractButton>("btnFunc")->click();
    }

    std::shared_ptr<ApiProcessBlock> block = add<ApiProcessBlock>(step_type::Api);
};

} // namespace

class ApiCallsTest : public QObject
{
    Q_OBJECT
private slots:
    void parametersOfFunctions();
    void suggestedResults();
    void quotes();
    void rowsHaveRoomForWidgets();
    void showsAndWrites();
    void whatIsBeingTypedIsWritten();
    void keys();
    void pickedFunction();
    void functionsWithoutAResult();
};

void ApiCallsTest::parametersOfFunctions()
{
    const std::vector<Parameter> ten(10, {"p", DrelU8});
    const rows::Table<_DrelFunction, QString> table{
        {"none", function(DrelVoid), QString()},
        {"the first has no name", function(DrelVoid, {{"", DrelS32}, {"b", DrelS32}}), QString()},
        {"void takes no row",
         function(DrelVoid, {{"a", DrelS32}, {"b", DrelVoid}, {"c", DrelString}}),
         text("s32= string=\"\"")},
        {"void counts for the ten",
         function(DrelVoid, {{"a", DrelVoid},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8},
                             {"p", DrelU8}}),
         text("u8= u8= u8= u8= u8= u8= u8= u8= u8=")},
        {"ten", function(DrelVoid, ten), text("u8= u8= u8= u8= u8= u8= u8= u8= u8= u8=")},
    };
    for (const auto& [row, made, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(printed(api_values::parametersOf(made)), expected);
    }
    QCOMPARE(QString::fromStdString(
                 api_values::parametersOf(function(DrelVoid, {{"a", DrelS32}}))[0].description),
             text("说明"));
}

void ApiCallsTest::suggestedResults()
{
    const auto variables = [](std::initializer_list<const char*> names) {
        std::vector<processVariable> made;
        for (const char* name : names) {
            processVariable variable;
            variable.name = name;
            variable.type = std::strcmp(name, "text") == 0 ? "string" : "s32";
            made.push_back(variable);
        }
        return made;
    };
    const QString nothing = text("as it is");
    const rows::Table<int, std::vector<processVariable>, QString> table{
        {"void", DrelVoid, variables({"a"}), QString()},
        {"a text", DrelString, variables({"a"}), nothing},
        {"global_ret before others", DrelS32, variables({"a", "global_ret", "b"}),
         text("global_ret")},
        {"the last one", DrelS32, variables({"a", "b", "text"}), text("b")},
        {"none of the type", DrelS32, variables({"text"}), QString()},
    };
    for (const auto& [row, type, globals, expected] : table) {
        const rows::Named named(row);
        const auto result = api_values::suggestedReturn(function(type), globals);
        QCOMPARE(result ? *result : nothing, expected);
    }
}

void ApiCallsTest::quotes()
{
    const char* const table[][2] = {{"", "\"\""},       {"abc", "\"abc\""}, {"\"", "\"\""},
                                    {"a\"", "\"a\""},   {"\"a", "\"a\""},   {"a\"b", "\"a\"b\""},
                                    {"\"a\"", "\"a\""}, {"a\"\"", "a\"\""}};
    for (const auto& [typed, quoted] : table)
        QCOMPARE(api_values::quoted(text(typed)), text(quoted));
}

void ApiCallsTest::rowsHaveRoomForWidgets()
{
    ProcessEditTableWidget plain;
    plain.setColumnCount(1);
    plain.setRowCount(1);
    QVERIFY(plain.rowHeight(0) >= 40);
    QFont large = plain.font();
    large.setPixelSize(40);
    plain.setFont(large);
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(&plain, &request);
    QVERIFY(plain.rowHeight(0) >= 80);
}

void ApiCallsTest::showsAndWrites()
{
    Call call;
    QCOMPARE(call.shown("editFunCall"), text("f(s32,string)"));
    QCOMPARE(call.shown("returnValue"), text("result"));
    QCOMPARE(call.table()->rowCount(), 2);
    QCOMPARE(call.table()->item(1, 0)->text(), text("string"));
    QCOMPARE(call.table()->item(1, 2)->text(), text("乙"));
    QCOMPARE(call.takeTold(), QStringList());

    call.typeInto(0, "12x");
    QTest::keyClick(call.value(0)->findChild<QLineEdit*>(), Qt::Key_Return);
    QCOMPARE(printed(call.block->parameters()), text("s32=12 string=\"a\""));
    QCOMPARE(call.takeTold().size(), 1);
    QVERIFY(!call.value(0)->isEditing());
    call.typeInto(1, "b");
    QTest::keyClick(call.value(1)->findChild<QLineEdit*>(), Qt::Key_Return);
    QCOMPARE(printed(call.block->parameters()), text("s32=12 string=\"b\""));
    QCOMPARE(call.block->parameters()[1].description, std::string("乙"));
    call.type("returnValue", text("other"));
    QCOMPARE(call.block->returnVariable, std::string("other"));
    emit call.table()->cellDoubleClicked(0, 0); // not a value
    QVERIFY(!call.value(0)->isEditing());
}

void ApiCallsTest::whatIsBeingTypedIsWritten()
{
    Call call;
    call.typeInto(1, "half");
    call.control.flushPending();
    QCOMPARE(printed(call.block->parameters()), text("s32=1 string=\"half\""));
    call.takeTold();
    call.control.flushPending();
    QCOMPARE(call.takeTold(), QStringList());
}

void ApiCallsTest::keys()
{
    Call call;
    call.typeInto(0, "7");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(!call.value(0)->isEditing());
    QVERIFY(call.value(1)->isEditing());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QVERIFY(call.value(0)->isEditing());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QVERIFY(call.table()->hasFocus());
    for (int row = 0; row < 2; ++row) {
        call.table()->setCurrentCell(row, 1);
        QTest::keyClick(call.table(), Qt::Key_Delete);
    }
    QCOMPARE(printed(call.block->parameters()), text("s32= string=\"\""));
    QTest::keyClick(call.table(), Qt::Key_F2);
    QVERIFY(call.value(1)->isEditing());
}

void ApiCallsTest::pickedFunction()
{
    Call call;
    call.pickFunction("pow");
    QCOMPARE(call.shown("editFunCall").left(4), text("pow("));
    QCOMPARE(printed(call.block->parameters()), text("double= double="));
    QCOMPARE(call.block->returnType, std::string("double"));
    QCOMPARE(call.block->returnVariable, std::string("result")); // only s32 has a usual one
    QVERIFY(!call.block->userFunction);
    QVERIFY(call.find("btnReturn")->isEnabled());
    call.pickFunction("log_info");
    QCOMPARE(call.block->returnVariable, std::string());
    QCOMPARE(call.block->parameters()[0].value, std::string("\"\""));
    QVERIFY(!call.find("btnReturn")->isEnabled());
}

void ApiCallsTest::functionsWithoutAResult()
{
    Call call;
    call.load({}, "void");
    QVERIFY(!call.find("btnReturn")->isEnabled());
    call.load({}, "s32"); // only a pick brings it back
    QVERIFY(!call.find("btnReturn")->isEnabled());
    QVERIFY(!api_values::returnsAValue(function(100)));
}

PE_WIDGET_TEST("api_calls", ApiCallsTest)
#include "api_calls_test.moc"
