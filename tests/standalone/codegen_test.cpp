#include "tests/standalone/codegen_builders.h"
#include "tests/support/test_program.h"

#include "standalone/compiler/error_lines.h"

#include <QtTest>

using namespace builders;

namespace {

QString problemsOf(const codegen::AppletSource& source)
{
    QStringList problems;
    for (const codegen::Problem& problem : codegen::generate(source).problems)
        problems << standalone::errorLine(problem.place, QString::fromStdString(problem.words));
    return problems.join(u'|');
}

/// All files, one after the other.
std::string textOf(const codegen::AppletSource& source)
{
    std::string text;
    for (const codegen::GeneratedFile& file : codegen::generate(source).files)
        text += "==== " + file.name + (file.isUnit ? " (unit)\n" : "\n") + file.text;
    return text;
}

codegen::AppletSource withFunctions(codegen::AppletSource source)
{
    source.functions = {{"pow", DrelDouble, {DrelDouble, DrelDouble}},
                        {"now_ms", DrelS64, {}},
                        {"log_info", DrelVoid, {DrelCharPtr}}};
    return source;
}

} // namespace

class CodegenTest : public QObject
{
    Q_OBJECT

private slots:
    void wholeText();
    void onlyReachableSequences();
    void problems_data();
    void problems();
    void apiCalls_data();
    void apiCalls();
    void linesLeadToSteps();
    void changesStayInTheirUnit();
    void statementFiles();
};

void CodegenTest::wholeText()
{
    auto source = applet(
        {sequence("main",
                  {fixedFor("f", "i", 0, 2, 1, {call("c", "sub")}), plain(step_type::EndFor, "ef")},
                  {variable("n", "u8*", "1,2", 3)}),
         sequence("sub",
                  {condition<IfProcessBlock>("if", "a + 1", ">", "", {jump("go", "s")}),
                   plain(step_type::EndIf, "ei"), statement("s", "a += 1;\nlog_info(\"x\");")})},
        {variable("a", "s32", "5")});
    const std::string expected = R"(==== a_capplet.cpp (unit)
// 由流程编辑器生成, 手工修改会在下次编译时丢失。
// 小程序: applet
#include "a_capplet.h"

namespace applet {

namespace process {

// 流程变量
s32 a = 5;

void sequence_main();
void sequence_sub();

} // namespace process
} // namespace applet

namespace rt {
extern const u32 index_of_sequence_main = 0;
extern const u32 first_of_sequence_main = 0;
extern const u32 index_of_sequence_sub = 1;
extern const u32 first_of_sequence_sub = 3;
} // namespace rt

static const applet_sequence sequences[] = {
    {"main", "main", 0, applet::process::sequence_main},
    {"sub", "sub", 0, applet::process::sequence_sub},
};

static const applet_step steps[] = {
    {0, "f", "f", 0},
    {0, "c", "c", 1},
    {0, "ef", "ef", 0},
    {1, "if", "if", 0},
    {1, "go", "go", 0},
    {1, "ei", "ei", 0},
    {1, "s", "s", 0},
    {0, 0, 0, 0}
};

static const applet_module module_description = {APPLET_RUNTIME_VERSION, 2, sequences, 7, steps};

extern "C" APPLET_EXPORT const applet_module* applet_module_entry(
    const applet_runtime_api* api)
{
    rt::api = api;
    return &module_description;
}
==== a_capplet.h
// 由流程编辑器生成, 手工修改会在下次编译时丢失。
#pragma once

#include "applet_values.h"

namespace applet {

namespace process {

// 流程变量
extern s32 a;

} // namespace process
} // namespace applet
==== sequence_main.cpp (unit)
// 由流程编辑器生成, 手工修改会在下次编译时丢失。
// 序列: main  main
#include "a_capplet.h"

namespace rt {
extern const u32 first_of_sequence_main;
static const u32& first = first_of_sequence_main; // 本序列第一个步骤的编号
extern const u32 index_of_sequence_sub;
} // namespace rt

namespace applet {
namespace process {

void sequence_sub();

void sequence_main()
{
    rt::array<u8, 3> n = {1, 2};
    // ---- 初始流程 ----
    // ---- 主流程 ----
    // f  f
    if (!rt::step_begin(rt::first + 0)) return;
    {
        s32 i;
        for (i = 0; rt::running() && i < 2; i += 1) {
            rt::step_turn(rt::first + 0, i, 0, 2);
            // c  c
            if (!rt::step_begin(rt::first + 1)) return;
            {
                rt::call(rt::index_of_sequence_sub, process::sequence_sub);
            }
            if (!rt::step_end(rt::first + 1)) return;
        }
    }
    if (!rt::step_end(rt::first + 0)) return;
    // ef  ef
    if (!rt::step_begin(rt::first + 2)) return;
    if (!rt::step_end(rt::first + 2)) return;
    // ---- 结束流程 ----
}

} // namespace process
} // namespace applet
==== sequence_sub.cpp (unit)
// 由流程编辑器生成, 手工修改会在下次编译时丢失。
// 序列: sub  sub
#include "a_capplet.h"

namespace rt {
extern const u32 first_of_sequence_sub;
static const u32& first = first_of_sequence_sub; // 本序列第一个步骤的编号
} // namespace rt

namespace applet {
namespace process {

void sequence_sub()
{
    // ---- 初始流程 ----
    // ---- 主流程 ----
    // if  if
    if (!rt::step_begin(rt::first + 0)) return;
    if (rt::step_test(rt::first + 0, (a + 1) > 0)) {
        // go  go
        if (!rt::step_begin(rt::first + 1)) return;
        {
            if (!rt::step_end(rt::first + 1)) return;
            goto step_3;
        }
        if (!rt::step_end(rt::first + 0)) return;
    }
    // ei  ei
    if (!rt::step_begin(rt::first + 2)) return;
    if (!rt::step_end(rt::first + 2)) return;
    // s  s
step_3:
    if (!rt::step_begin(rt::first + 3)) return;
    {
        a += 1;
        log_info("x");
    }
    if (!rt::step_end(rt::first + 3)) return;
    // ---- 结束流程 ----
}

} // namespace process
} // namespace applet
)";
    QCOMPARE(QString::fromStdString(textOf(source)).split(u'\n'),
             QString::fromStdString(expected).split(u'\n'));
    QCOMPARE(codegen::generate(source).stepCount, std::size_t(7));
}

void CodegenTest::onlyReachableSequences()
{
    auto source = applet(
        {sequence("main",
                  {with(call("off", "unused"), [](IProcessBlock& block) { block.enableState = 0; }),
                   call("c", "used"), call("d", "used2"), call("e", "used3")}),
         sequence("unused", {plain(step_type::Break, "wrong")}), sequence("used", {}),
         sequence("used2", {}), sequence("used3", {})});
    source.applet.sequences[3].info.name = "Used";
    source.applet.sequences[4].info.name = "电压";
    const auto code = codegen::generate(source);
    QVERIFY(code.problems.empty());
    QStringList names;
    for (const codegen::GeneratedFile& file : code.files)
        names << QString::fromStdString(file.name);
    QCOMPARE(names.join(u' '),
             QStringLiteral("a_capplet.cpp a_capplet.h sequence_main.cpp sequence_used.cpp "
                            "sequence_Used_2.cpp sequence_______.cpp"));
}

void CodegenTest::problems_data()
{
    QTest::addColumn<codegen::AppletSource>("source");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const BlockPtr& block, const char* problem) {
        QTest::newRow(name) << withFunctions(applet({sequence("main", {block})},
                                                    {variable("number", "s32", "1"),
                                                     variable("text", "string", "a"),
                                                     variable("array", "u8*", "1", 4)}))
                            << QStringLiteral("出错步骤: 序列“main”, 步骤“%1”%2 [main/%1]")
                                   .arg(QString::fromStdString(block->name),
                                        QString::fromUtf8(problem));
    };
    const auto api = [](const char* call, const std::vector<ApiProcessBlock::Parameter>& parameters,
                        const char* result = "") {
        auto block = named(std::make_shared<ApiProcessBlock>(), "api");
        block->callText = call;
        block->setParameters(parameters);
        block->returnVariable = result;
        return block;
    };
    row("goto without its target", jump("go", "gone", "gone"), ": 跳转的目标步骤不存在或已禁用");
    row("break outside", plain(step_type::Break, "b"), ": break 不在循环之内");
    row("continue outside", plain(step_type::Continue, "c"), ": continue 不在循环之内");
    row("call of nothing", named(std::make_shared<SequenceProcessBlock>(), "call"),
        ": 未选择要调用的序列");
    row("call of a missing sequence", call("call", "gone"), ": 找不到要调用的序列“gone”");
    row("empty condition", condition<IfProcessBlock>("if", " ", "==", ""), ": 条件为空");
    row("else without if", plain(step_type::Else, "else"), ": 没有与之对应的 if");
    row("loop of another class", plain(step_type::While, "w"), ": 步骤内容无法识别");
    row("steps in a step that holds none",
        with(statement("s", ""),
             [](IProcessBlock& block) { block.children = {statement("in", "")}; }),
        ": 此类步骤不能包含子步骤");
    row("unknown kind", plain(step_type::Custom, "x"), ": 未知的步骤类型 10000");
    row("no function", api("", {}), ": 未选择函数");
    row("no right side", expression("e", "a", " "), ": 表达式缺少右值");
    row("no step", fixedFor("f", "i", 0, 1, 0, {}), ": 循环步长不能为 0");
    row("loop variable", fixedFor("f", "int", 0, 1, 1, {}), ": “int”不能用作循环变量名");
    row("post action without a condition",
        with(statement("s", ""), [](IProcessBlock& block) { block.trueAction = 3; }),
        ": 执行后跳转缺少条件");
    row("open bracket", statement("s", "int n = 0;\nif (n) {\n// }\n\"}\";"),
        ", 语句第 2 行: 括号不匹配: 缺少右括号");
    row("closing bracket too much", statement("s", "f(1);\nf(2));"),
        ", 语句第 2 行: 括号不匹配: 多余的右括号");
    row("text without an end", expression("e", "s", "\"abc"),
        ", 表达式第 1 行: 文本没有结束的引号");
    row("comment without an end",
        with(statement("s", ""), [](IProcessBlock& block) { block.preStatements = "\n/* a"; }),
        ", 前执行语句第 2 行: 注释没有结束");
    row("number given a text", expression("e", "number", "\"a\""),
        ", 表达式第 1 行: 类型不符: “number”是数值, “\"a\"”是文本");
    row("text given a number", expression("e", "text", "array[number + 1]"),
        ", 表达式第 1 行: 类型不符: “text”是文本, “array[number + 1]”是数值");
    row("array given a number", expression("e", "array", "-0x1F"),
        ", 表达式第 1 行: 类型不符: “array”是数组, “-0x1F”是数值");
    row("result of a known function", expression("e", "text", "now_ms()"),
        ", 表达式第 1 行: 类型不符: “text”是文本, “now_ms()”是数值");
    row("comparison", condition<WhileProcessBlock>("w", "text", "==", "number"),
        ", 条件第 1 行: 类型不符: “text”是文本, “number”是数值");
    row("number of arguments", api("pow(double)", {{"double", "1", ""}}),
        ": 函数“pow”需要 2 个参数, 实际为 1 个");
    row("type of an argument", api("f(char*)", {{"char*", "number", ""}}),
        ": 函数的第 1 个参数应为文本, “number”是数值");
    row("no argument", api("f(char*)", {{"char*", " ", ""}}), ": 函数的第 1 个参数缺少值");
    row("result of none", api("log_info(char*)", {{"char*", "\"a\"", ""}}, "number"),
        ": 函数“log_info”没有返回值");
    row("result of another type", api("now_ms()", {}, "text"),
        ": 类型不符: “text”是文本, “now_ms”是数值");

    auto missing = applet({sequence("main", {})});
    missing.targetSequenceId = "gone";
    QTest::newRow("no target") << missing << QStringLiteral("找不到要编译的序列");
    QTest::newRow("variable") << applet({sequence("main", {})}, {variable("for", "s32", "1")})
                              << QStringLiteral("“for”不能用作变量名");
    // A place mark in a user's text stays what it is.
    QTest::newRow("place marks") << applet({sequence("main", {plain(step_type::Break, "%1%2")})})
                                 << QStringLiteral("出错步骤: 序列“main”, 步骤“%1%2”: "
                                                   "break 不在循环之内 [main/%1%2]");
    QTest::newRow("variable of a sequence")
        << applet({sequence("main", {}, {variable("v", "u8", "256")})})
        << QStringLiteral("出错位置: 序列“main”: 变量“v”的值“256”与类型 u8 不符 [main/]");
    QTest::newRow("into a custom loop")
        << applet({sequence("main", {jump("go", "in"), customFor("f", "int i = 0", "i < 2", "++i",
                                                                 {statement("in", "")})})})
        << QStringLiteral("出错步骤: 序列“main”, 步骤“go”: "
                          "不能从外部跳转到定义了循环变量的自定义循环内 [main/go]");
    QTest::newRow("a loop's variable is not the sequence's")
        << applet({sequence("main",
                            {fixedFor("f", "text", 0, 1, 1, {expression("a", "text", "1")}),
                             customFor("g", "int text = 0", "text < 1", "++text",
                                       {expression("b", "text", "1")}),
                             with(expression("c", "text", "1"),
                                  [](IProcessBlock& block) { block.preStatements = "int text;"; }),
                             expression("d", "text", "1")},
                            {variable("text", "string", "")})})
        << QStringLiteral("出错步骤: 序列“main”, 步骤“d”, 表达式第 1 行: "
                          "类型不符: “text”是文本, “1”是数值 [main/d]");
    QTest::newRow("function twice")
        << applet({sequence("main", {statement("a", "int f(int n) { return n; }"),
                                     statement("b", ";\nint f(int n) { return 1; }")})})
        << QStringLiteral(
               "出错步骤: 序列“main”, 步骤“b”, 语句第 2 行: 函数“f”已在别处定义 [main/b]");
}

void CodegenTest::problems()
{
    QFETCH(codegen::AppletSource, source);
    QFETCH(QString, expected);
    QCOMPARE(problemsOf(source), expected);
}

void CodegenTest::apiCalls_data()
{
    QTest::addColumn<QString>("callText");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("expected");
    QTest::newRow("places are filled")
        << QStringLiteral("lib.f(u8,char*)")
        << QStringList{QStringLiteral("1"), QStringLiteral("\"a\"")} << QStringLiteral("ret")
        << QStringLiteral("ret = lib.f(1, \"a\");");
    QTest::newRow("as typed") << QStringLiteral("f(x, 2)") << QStringList() << QString()
                              << QStringLiteral("f(x, 2);");
    QTest::newRow("name only") << QStringLiteral("f") << QStringList() << QString()
                               << QStringLiteral("f();");
}

void CodegenTest::apiCalls()
{
    QFETCH(QString, callText);
    QFETCH(QStringList, values);
    QFETCH(QString, result);
    QFETCH(QString, expected);
    auto block = named(std::make_shared<ApiProcessBlock>(), "api");
    block->callText = callText.toStdString();
    block->returnVariable = result.toStdString();
    std::vector<ApiProcessBlock::Parameter> parameters;
    for (const QString& value : values)
        parameters.push_back({"s32", value.toStdString(), ""});
    block->setParameters(parameters);
    const std::string text = textOf(applet({sequence("main", {block})}));
    QVERIFY2(text.find("        " + expected.toStdString() + '\n') != std::string::npos,
             text.c_str());
}

/// Each mark is looked for in the generated files, and its line led back to where the user wrote
/// it.
void CodegenTest::linesLeadToSteps()
{
    const auto function =
        statement("fourth", "MARK5();\nint f(int n = 1)\n{\n    MARK6;\n}\nMARK7;");
    const auto code = codegen::generate(
        applet({sequence("main", {statement("first", "MARK1"), statement("second", "MARK2\nMARK3"),
                                  statement("third", "\nMARK4", true), function,
                                  with(expression("fifth", "MARK8", "MARK9"),
                                       [](IProcessBlock& block) {
                                           block.preCondition = "MARK10";
                                           block.preStatements = "\n\nMARK11";
                                           block.loopType = 2;
                                           block.loopInit = "MARK12";
                                           block.falseAction = 3;
                                           block.postConditionCode = "MARK13";
                                       }),
                                  call("c", "sub")}),
                sequence("sub", {condition<IfProcessBlock>("if", "MARK14", "==", "1",
                                                           {statement("in", "MARK15")})})}));
    const QStringList places = {QStringLiteral("main/first 语句 1"),
                                QStringLiteral("main/second 语句 1"),
                                QStringLiteral("main/second 语句 2"),
                                QStringLiteral("main/third 语句 2"),
                                QStringLiteral("main/fourth 语句 1"),
                                QStringLiteral("main/fourth 语句 4"),
                                QStringLiteral("main/fourth 语句 6"),
                                QStringLiteral("main/fifth 表达式 1"),
                                QStringLiteral("main/fifth 表达式 1"),
                                QStringLiteral("main/fifth 执行前条件 1"),
                                QStringLiteral("main/fifth 前执行语句 3"),
                                QStringLiteral("main/fifth 单步循环 1"),
                                QStringLiteral("main/fifth 执行后跳转条件 1"),
                                QStringLiteral("sub/if 条件 1"),
                                QStringLiteral("sub/in 语句 1")};
    QStringList found;
    for (int i = 1; i <= places.size(); ++i) {
        for (const codegen::GeneratedFile& file : code.files) {
            const QStringList lines = QString::fromStdString(file.text).split(u'\n');
            const int line =
                lines.indexOf(QRegularExpression(QStringLiteral(".*MARK%1\\b.*").arg(i),
                                                 QRegularExpression::DotMatchesEverythingOption));
            if (line < 0)
                continue;
            const codegen::CodePlace place = codegen::placeOf(code, file.name, line + 1);
            found << QStringLiteral("%1/%2 %3 %4")
                         .arg(QString::fromStdString(place.owner.sequenceId),
                              QString::fromStdString(place.owner.stepId),
                              QString::fromStdString(place.text))
                         .arg(place.line);
        }
    }
    QCOMPARE(found, places);
}

/// A step more in one sequence changes its own unit and the table of the module, nothing else.
void CodegenTest::changesStayInTheirUnit()
{
    const auto source = [](const Blocks& blocks) {
        return applet({sequence("main", {call("a", "first"), call("b", "second")}),
                       sequence("first", blocks), sequence("second", {statement("s", "")})});
    };
    const auto before = codegen::generate(source({statement("x", "")}));
    const auto after = codegen::generate(source({statement("x", ""), statement("y", "")}));
    QStringList changed;
    for (std::size_t i = 0; i < before.files.size(); ++i) {
        if (before.files[i].text != after.files[i].text)
            changed << QString::fromStdString(before.files[i].name);
    }
    QCOMPARE(changed.join(u' '), QStringLiteral("a_capplet.cpp sequence_first.cpp"));
}

void CodegenTest::statementFiles()
{
    const auto code =
        codegen::generate(applet({sequence("main", {statement("s", "n = 1;", true)})}));
    QCOMPARE(code.files.size(), std::size_t(4));
    QCOMPARE(code.files[3].name, std::string("statement_sequence_main_0.inc"));
    QCOMPARE(code.files[3].text, std::string("// s  s\nstatic void statement_sequence_main_0()\n{\n"
                                             "    n = 1;\n}\n"));
}

PE_TEST("codegen_test", CodegenTest)
#include "codegen_test.moc"
