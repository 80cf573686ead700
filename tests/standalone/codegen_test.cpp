#include "tests/standalone/codegen_builders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

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

} // namespace

class CodegenTest : public QObject
{
    Q_OBJECT

private slots:
    void textOfASequence();
    void onlyReachableSequences();
    void problemsOfSteps();
    void problemsOfApplets();
    void problemsAreBounded();
    void warnings();
    void apiCalls();
    void linesLeadToSteps();
    void changesStayInTheirUnit();
    void statementFiles();
};

/// As its reader finds it; what stands around it shows in every run.
void CodegenTest::textOfASequence()
{
    auto source = applet(
        {sequence("main",
                  {fixedFor("f", "i", 0, 2, 1, {call("c", "sub")}), plain(step_type::EndFor, "ef"),
                   condition<IfProcessBlock>("if", "a + 1", ">", "", {jump("go", "s")}),
                   statement("s", "a += 1;\nlog_info(\"x\");")},
                  {variable("n", "u8*", "1,2", 3)}),
         sequence("sub", {})},
        {variable("a", "s32", "5")});
    source.applet.variables.front().description = "电压";
    const QStringList expected = lines(R"(// 由流程编辑器生成, 手工修改会在下次编译时丢失。
// 序列: main  main
#include "a_capplet.h"
namespace rt {
extern const u32 first_of_sequence_main; // 本序列第一个步骤的编号
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
    if (!rt::step_begin(rt::first_of_sequence_main + 0)) return;
    {
        s32 i;
        for (i = 0; rt::running() && i < 2; i += 1) {
            rt::step_turn(rt::first_of_sequence_main + 0, i, 0, 2);
            // c  c
            if (!rt::step_begin(rt::first_of_sequence_main + 1)) return;
            {
                rt::call(rt::index_of_sequence_sub, process::sequence_sub);
            }
            if (!rt::step_end(rt::first_of_sequence_main + 1)) return;
        }
    }
    if (!rt::step_end(rt::first_of_sequence_main + 0)) return;
    // ef  ef
    if (!rt::step_begin(rt::first_of_sequence_main + 2)) return;
    if (!rt::step_end(rt::first_of_sequence_main + 2)) return;
    // if  if
    if (!rt::step_begin(rt::first_of_sequence_main + 3)) return;
    if (rt::step_test(rt::first_of_sequence_main + 3, (a + 1) > 0)) {
        // go  go
        if (!rt::step_begin(rt::first_of_sequence_main + 4)) return;
        {
            if (!rt::step_end(rt::first_of_sequence_main + 4)) return;
            goto step_5;
        }
        if (!rt::step_end(rt::first_of_sequence_main + 3)) return;
    }
    // s  s
step_5:
    if (!rt::step_begin(rt::first_of_sequence_main + 5)) return;
    {
        a += 1;
        log_info("x");
    }
    if (!rt::step_end(rt::first_of_sequence_main + 5)) return;
    // ---- 结束流程 ----
}
} // namespace process
} // namespace applet
)");
    const auto code = codegen::generate(source);
    QStringList names;
    for (const codegen::GeneratedFile& file : code.files) {
        names << QString::fromStdString(file.name);
        if (file.name == "sequence_main.cpp")
            QCOMPARE(lines(file.text.c_str()), expected);
        if (file.name == "a_capplet.h")
            QVERIFY(file.text.find("\n#pragma once\n") != std::string::npos);
        if (file.name == "a_capplet.cpp")
            QVERIFY(file.text.find("// 电压\n") != std::string::npos);
    }
    QCOMPARE(names.join(u' '),
             text("a_capplet.cpp a_capplet.h sequence_main.cpp sequence_sub.cpp"));
    QCOMPARE(code.stepCount, std::size_t(6));
}

void CodegenTest::warnings()
{
    const auto pause = [](int IProcessBlock::*action) {
        return with(statement("s", ""), [action](IProcessBlock& block) { block.*action = 5; });
    };
    for (const auto action : {&IProcessBlock::trueAction, &IProcessBlock::falseAction}) {
        const auto code = codegen::generate(applet({sequence("main", {pause(action)})}));
        QVERIFY(code.problems.empty());
        QCOMPARE(code.warnings.size(), std::size_t(1));
        const codegen::Problem& warning = code.warnings.front();
        QCOMPARE(standalone::warningLine(warning.place, QString::fromStdString(warning.words)),
                 text("警告: 序列“main”, 步骤“s”: “暂停”暂未开放, 按“跳转到下一步”执行 [main/s]"));
    }
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
    QCOMPARE(names.join(u' '), text("a_capplet.cpp a_capplet.h sequence_main.cpp sequence_used.cpp "
                                    "sequence_Used_2.cpp sequence_______.cpp"));
}

void CodegenTest::problemsOfSteps()
{
    const auto api = [](const char* call, const std::vector<ApiProcessBlock::Parameter>& parameters,
                        const char* result = "") {
        auto block = named(std::make_shared<ApiProcessBlock>(), "api");
        block->callText = call;
        block->setParameters(parameters);
        block->returnVariable = result;
        return block;
    };
    const rows::Table<BlockPtr, const char*> table{
        {"goto without its target", jump("go", "gone", "gone"), ": 跳转的目标步骤不存在或已禁用"},
        {"break outside", plain(step_type::Break, "b"), ": break 不在循环之内"},
        {"continue outside", plain(step_type::Continue, "c"), ": continue 不在循环之内"},
        {"call of nothing", named(std::make_shared<SequenceProcessBlock>(), "call"),
         ": 未选择要调用的序列"},
        {"call of a missing sequence", call("call", "gone"), ": 找不到要调用的序列“gone”"},
        {"empty condition", condition<IfProcessBlock>("if", " ", "==", ""), ": 条件为空"},
        {"else without if", plain(step_type::Else, "else"), ": 没有与之对应的 if"},
        {"loop of another class", plain(step_type::While, "w"), ": 步骤内容无法识别"},
        {"steps in a step that holds none",
         with(statement("s", ""),
              [](IProcessBlock& block) { block.children = {statement("in", "")}; }),
         ": 此类步骤不能包含子步骤"},
        {"unknown kind", plain(step_type::Custom, "x"), ": 未知的步骤类型 10000"},
        {"no function", api("", {}), ": 未选择函数"},
        {"no right side", expression("e", "a", " "), ": 表达式缺少右值"},
        {"no step", fixedFor("f", "i", 0, 1, 0, {}), ": 循环步长不能为 0"},
        {"loop variable", fixedFor("f", "int", 0, 1, 1, {}), ": “int”不能用作循环变量名"},
        {"post action without a condition",
         with(statement("s", ""), [](IProcessBlock& block) { block.trueAction = 3; }),
         ": 执行后跳转缺少条件"},
        {"open bracket", statement("s", "int n = 0;\nif (n) {\n// }\n\"}\";"),
         ", 语句第 2 行: 括号不匹配: 缺少右括号"},
        {"closing bracket too much", statement("s", "f(1);\nf(2));"),
         ", 语句第 2 行: 括号不匹配: 多余的右括号"},
        {"text without an end", expression("e", "s", "\"abc"),
         ", 表达式第 1 行: 文本没有结束的引号"},
        {"comment without an end",
         with(statement("s", ""), [](IProcessBlock& block) { block.preStatements = "\n/* a"; }),
         ", 前执行语句第 2 行: 注释没有结束"},
        {"number given a text", expression("e", "number", "\"a\""),
         ", 表达式第 1 行: 类型不符: “number”是数值, “\"a\"”是文本"},
        {"truth value given a text", expression("e", "flag", "\"a\""),
         ", 表达式第 1 行: 类型不符: “flag”是数值, “\"a\"”是文本"},
        {"text given a number", expression("e", "text", "array[number + 1]"),
         ", 表达式第 1 行: 类型不符: “text”是文本, “array[number + 1]”是数值"},
        {"array given a number", expression("e", "array", "-0x1F"),
         ", 表达式第 1 行: 类型不符: “array”是数组, “-0x1F”是数值"},
        {"result of a known function", expression("e", "text", "now_ms()"),
         ", 表达式第 1 行: 类型不符: “text”是文本, “now_ms()”是数值"},
        {"comparison", condition<WhileProcessBlock>("w", "text", "==", "number"),
         ", 条件第 1 行: 类型不符: “text”是文本, “number”是数值"},
        {"number of arguments", api("pow(double)", {{"double", "1", ""}}),
         ": 函数“pow”需要 2 个参数, 实际为 1 个"},
        {"type of an argument", api("f(char*)", {{"char*", "number", ""}}),
         ": 函数的第 1 个参数应为文本, “number”是数值"},
        {"no argument", api("f(char*)", {{"char*", " ", ""}}), ": 函数的第 1 个参数缺少值"},
        {"result of none", api("log_info(char*)", {{"char*", "\"a\"", ""}}, "number"),
         ": 函数“log_info”没有返回值"},
        {"result of another type", api("now_ms()", {}, "text"),
         ": 类型不符: “text”是文本, “now_ms”是数值"}};
    for (const auto& [row, block, words] : table) {
        const rows::Named named(row);
        auto source = applet({sequence("main", {block})},
                             {variable("number", "s32", "1"), variable("flag", "bool", "1"),
                              variable("text", "string", "a"), variable("array", "u8*", "1", 4)});
        source.functions = {{"pow", DrelDouble, {DrelDouble, DrelDouble}},
                            {"now_ms", DrelS64, {}},
                            {"log_info", DrelVoid, {DrelCharPtr}}};
        QCOMPARE(problemsOf(source), text("出错步骤: 序列“main”, 步骤“%1”%2 [main/%1]")
                                         .arg(QString::fromStdString(block->name), text(words)));
    }
}

void CodegenTest::problemsOfApplets()
{
    auto missing = applet({sequence("main", {})});
    missing.targetSequenceId = "gone";
    const rows::Table<codegen::AppletSource, const char*> table{
        {"no target", missing, "找不到要编译的序列"},
        {"variable", applet({sequence("main", {})}, {variable("for", "s32", "1")}),
         "“for”不能用作变量名"},
        // A place mark in a user's text stays what it is.
        {"place marks", applet({sequence("main", {plain(step_type::Break, "%1%2")})}),
         "出错步骤: 序列“main”, 步骤“%1%2”: "
         "break 不在循环之内 [main/%1%2]"},
        {"variable of a sequence", applet({sequence("main", {}, {variable("v", "u8", "256")})}),
         "出错位置: 序列“main”: 变量“v”的值“256”与类型 u8 不符 [main/]"},
        {"into a custom loop",
         applet({sequence("main", {jump("go", "in"), customFor("f", "int i = 0", "i < 2", "++i",
                                                               {statement("in", "")})})}),
         "出错步骤: 序列“main”, 步骤“go”: "
         "不能从外部跳转到定义了循环变量的自定义循环内 [main/go]"},
        {"a loop's variable is not the sequence's",
         applet({sequence(
             "main",
             {fixedFor("f", "text", 0, 1, 1, {expression("a", "text", "1")}),
              customFor("g", "int text = 0", "text < 1", "++text", {expression("b", "text", "1")}),
              with(expression("c", "text", "1"),
                   [](IProcessBlock& block) { block.preStatements = "int text;"; }),
              with(expression("l", "text", "1"),
                   [](IProcessBlock& block) {
                       block.loopType = 2;
                       block.loopInit = "int text = 0";
                       block.loopCondition = "text < 1";
                       block.loopStep = "++text";
                   }),
              expression("d", "text", "1")},
             {variable("text", "string", "")})}),
         "出错步骤: 序列“main”, 步骤“d”, 表达式第 1 行: "
         "类型不符: “text”是文本, “1”是数值 [main/d]"},
        {"function twice",
         applet({sequence("main", {statement("a", "int f(int n) { return n; }"),
                                   statement("b", ";\nint f(int n) { return 1; }")})}),
         "出错步骤: 序列“main”, 步骤“b”, 语句第 2 行: 函数“f”已在别处定义 [main/b]"}};
    for (const auto& [row, source, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(problemsOf(source), text(expected));
    }
}

void CodegenTest::problemsAreBounded()
{
    std::vector<BlockPtr> wrong;
    for (std::size_t count : {99, 100, 101}) {
        while (wrong.size() < count)
            wrong.push_back(plain(step_type::Break, "b"));
        const auto code = codegen::generate(applet({sequence("main", wrong)}));
        QCOMPARE(code.problems.size(), std::min<std::size_t>(count, 100));
    }
}

void CodegenTest::apiCalls()
{
    const rows::Table<std::vector<ApiProcessBlock::Parameter>, const char*, const char*> table{
        {"lib.f(u8,char*)",
         {{"s32", "1", ""}, {"s32", "\"a\"", ""}},
         "ret",
         "ret = lib.f(1, \"a\");"},
        {"f(x, 2)", {}, "", "f(x, 2);"}, // as typed
        {"f", {}, "", "f();"}};
    for (const auto& [call, parameters, result, expected] : table) {
        const rows::Named named(call);
        auto block = builders::named(std::make_shared<ApiProcessBlock>(), "api");
        block->callText = call;
        block->returnVariable = result;
        block->setParameters(parameters);
        const std::string code = textOf(applet({sequence("main", {block})}));
        QVERIFY2(code.find(std::string("        ") + expected + '\n') != std::string::npos,
                 code.c_str());
    }
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
    const QStringList places = lines("main/first 语句 1\nmain/second 语句 1\n"
                                     "main/second 语句 2\nmain/third 语句 2\n"
                                     "main/fourth 语句 1\nmain/fourth 语句 4\n"
                                     "main/fourth 语句 6\nmain/fifth 表达式 1\n"
                                     "main/fifth 表达式 1\nmain/fifth 执行前条件 1\n"
                                     "main/fifth 前执行语句 3\nmain/fifth 单步循环 1\n"
                                     "main/fifth 执行后跳转条件 1\nsub/if 条件 1\nsub/in 语句 1");
    QStringList found;
    for (int i = 1; i <= places.size(); ++i) {
        for (const codegen::GeneratedFile& file : code.files) {
            const QStringList lines = QString::fromStdString(file.text).split(u'\n');
            const int line = lines.indexOf(QRegularExpression(
                text(".*MARK%1\\b.*").arg(i), QRegularExpression::DotMatchesEverythingOption));
            if (line < 0)
                continue;
            const codegen::CodePlace place = codegen::placeOf(code, file.name, line + 1);
            found << text("%1/%2 %3 %4")
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
    QCOMPARE(changed.join(u' '), text("a_capplet.cpp sequence_first.cpp"));
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
