#include "tests/standalone/codegen_builders.h"

#include "standalone/codegen/code_text.h"
#include "standalone/codegen/variable_code.h"

#include <QtTest>

using namespace builders;

Q_DECLARE_METATYPE(codegen::AppletSource)

namespace {

QString problemsOf(const codegen::AppletSource& source)
{
    QStringList problems;
    for (const std::string& problem : codegen::generate(source).problems)
        problems << QString::fromStdString(problem);
    return problems.join(u'|');
}

std::string textOf(const codegen::AppletSource& source)
{
    return codegen::generate(source).files.front().text;
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
    void userTextStaysInItsComment_data();
    void userTextStaysInItsComment();
    void variables_data();
    void variables();
    void refusedVariables_data();
    void refusedVariables();
    void apiCalls_data();
    void apiCalls();
    void linesLeadToSteps();
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
    const std::string expected = R"(// 由流程编辑器生成, 手工修改会在下次编译时丢失。
// 小程序: applet
#include "applet_runtime.h"

namespace applet {

// 全局变量

namespace process {

// 流程变量
static s32 a = 5;

static void sequence_0_main();
static void sequence_1_sub();

} // namespace process

namespace process {

// 序列: main  main
static void sequence_0_main()
{
    u8 n_storage[3] = {1, 2};
    u8* n = n_storage;
    // ---- 初始流程 ----
    // ---- 主流程 ----
    // f  f
    if (!rt::step_begin(0)) return;
    {
        s32 i;
        for (i = 0; rt::running() && i < 2; i += 1) {
            rt::step_turn(0, i, 0, 2);
            // c  c
            if (!rt::step_begin(1)) return;
            {
                rt::call(1, process::sequence_1_sub);
            }
            if (!rt::step_end(1)) return;
        }
    }
    if (!rt::step_end(0)) return;
    // ef  ef
    if (!rt::step_begin(2)) return;
    if (!rt::step_end(2)) return;
    // ---- 结束流程 ----
}

// 序列: sub  sub
static void sequence_1_sub()
{
    // ---- 初始流程 ----
    // ---- 主流程 ----
    // if  if
    if (!rt::step_begin(3)) return;
    if (rt::step_test(3, (a + 1) > 0)) {
        // go  go
        if (!rt::step_begin(4)) return;
        if (!rt::step_end(4)) return;
        goto step_6;
        if (!rt::step_end(3)) return;
    }
    // ei  ei
    if (!rt::step_begin(5)) return;
    if (!rt::step_end(5)) return;
    // s  s
step_6:
    if (!rt::step_begin(6)) return;
    {
        a += 1;
        log_info("x");
    }
    if (!rt::step_end(6)) return;
    // ---- 结束流程 ----
}

} // namespace process

} // namespace applet

static const applet_sequence sequences[] = {
    {"main", 0, applet::process::sequence_0_main},
    {"sub", 0, applet::process::sequence_1_sub},
};

static const applet_step steps[] = {
    {0, "f"},
    {0, "c"},
    {0, "ef"},
    {1, "if"},
    {1, "go"},
    {1, "ei"},
    {1, "s"},
    {0, 0}
};

static const applet_module module_description = {APPLET_RUNTIME_VERSION, 2, sequences, 7, steps};

extern "C" APPLET_EXPORT const applet_module* applet_module_entry(
    const applet_runtime_api* api)
{
    rt::api = api;
    return &module_description;
}
)";
    const auto code = codegen::generate(source);
    QCOMPARE(QString::fromStdString(code.files.front().text).split(u'\n'),
             QString::fromStdString(expected).split(u'\n'));
    QCOMPARE(code.stepCount, std::size_t(7));
    QCOMPARE(code.files.front().name, std::string("a_capplet.cpp"));
}

void CodegenTest::onlyReachableSequences()
{
    const auto source = applet(
        {sequence("main",
                  {with(call("off", "unused"), [](IProcessBlock& block) { block.enableState = 0; }),
                   call("c", "used")}),
         sequence("unused", {plain(step_type::Break, "wrong")}), sequence("used", {})});
    const auto code = codegen::generate(source);
    QVERIFY(code.problems.empty());
    QVERIFY(code.files.front().text.find("used\"") != std::string::npos);
    QVERIFY(code.files.front().text.find("\"unused\"") == std::string::npos);
}

void CodegenTest::problems_data()
{
    QTest::addColumn<codegen::AppletSource>("source");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const BlockPtr& block, const char* problem) {
        QTest::newRow(name) << applet({sequence("main", {block})})
                            << QStringLiteral("序列“main”的步骤“%1”: %2")
                                   .arg(QString::fromStdString(block->name),
                                        QString::fromUtf8(problem));
    };
    row("goto without its target", jump("go", "gone", "gone"), "跳转的目标步骤不存在或已禁用");
    row("break outside", plain(step_type::Break, "b"), "break 不在循环之内");
    row("continue outside", plain(step_type::Continue, "c"), "continue 不在循环之内");
    row("call of nothing", named(std::make_shared<SequenceProcessBlock>(), "call"),
        "未选择要调用的序列");
    row("call of a missing sequence", call("call", "gone"), "找不到要调用的序列“gone”");
    row("empty condition", condition<IfProcessBlock>("if", " ", "==", ""), "条件为空");
    row("else without if", plain(step_type::Else, "else"), "没有与之对应的 if");
    row("loop of another class", plain(step_type::While, "w"), "步骤内容无法识别");
    row("steps in a step that holds none",
        with(statement("s", ""),
             [](IProcessBlock& block) { block.children = {statement("in", "")}; }),
        "此类步骤不能包含子步骤");
    row("unknown kind", plain(step_type::Custom, "x"), "未知的步骤类型 10000");
    row("no function", named(std::make_shared<ApiProcessBlock>(), "api"), "未选择函数");
    row("no right side", expression("e", "a", " "), "表达式缺少右值");
    row("no step", fixedFor("f", "i", 0, 1, 0, {}), "循环步长不能为 0");
    row("loop variable", fixedFor("f", "int", 0, 1, 1, {}), "“int”不能用作循环变量名");
    row("post action without a condition",
        with(statement("s", ""), [](IProcessBlock& block) { block.trueAction = 3; }),
        "执行后跳转缺少条件");

    auto missing = applet({sequence("main", {})});
    missing.targetSequenceId = "gone";
    QTest::newRow("no target") << missing << QStringLiteral("找不到要编译的序列");
    QTest::newRow("variable") << applet({sequence("main", {})}, {variable("for", "s32", "1")})
                              << QStringLiteral("“for”不能用作变量名");
    // A place mark in a user's text stays what it is.
    QTest::newRow("place marks") << applet({sequence("main", {plain(step_type::Break, "%1%2")})})
                                 << QStringLiteral("序列“main”的步骤“%1%2”: break 不在循环之内");
}

void CodegenTest::problems()
{
    QFETCH(codegen::AppletSource, source);
    QFETCH(QString, expected);
    QCOMPARE(problemsOf(source), expected);
}

void CodegenTest::userTextStaysInItsComment_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << QByteArray("电压 */ 检查") << QByteArray("电压 */ 检查");
    QTest::newRow("line ends") << QByteArray("a\nb\r\vc") << QByteArray("a b  c");
    QTest::newRow("joining backslash") << QByteArray("a\\") << QByteArray("a/");
    QTest::newRow("backslash and blank") << QByteArray("a\\ ") << QByteArray("a/ ");
    QTest::newRow("direction marks") << QByteArray("a\xe2\x80\xae"
                                                   "b")
                                     << QByteArray("ab");
}

void CodegenTest::userTextStaysInItsComment()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray::fromStdString(codegen::commentText(text.toStdString())), expected);
}

void CodegenTest::variables_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* type, const char* value, int length, const char* expected) {
        QTest::addRow("%s %s", type, value) << QString::fromUtf8(type) << QString::fromUtf8(value)
                                            << length << QString::fromUtf8(expected);
    };
    row("u8", "255", 1, "u8 v = 255;");
    row("s32", "", 1, "s32 v = 0;");
    row("int", " -7 ", 1, "s32 v = -7;");
    row("u16", "0xFF", 1, "u16 v = 255;");
    row("s64", "-9223372036854775808", 1, "s64 v = -9223372036854775807 - 1;");
    row("u64", "18446744073709551615", 1, "u64 v = 18446744073709551615ULL;");
    row("double", "-1.50", 1, "double v = -1.5;");
    row("bool", "true", 1, "bool v = true;");
    row("string", "a\"\\\n", 1, "string v = \"a\\\"\\\\\\012\";");
    row("string", "NULL", 1, "string v = \"\";");
    row("char*", "ab", 4, "char v_storage[5] = \"ab\";|char* v = v_storage;");
    row("u8*", "1,2,", 4, "u8 v_storage[4] = {1, 2};|u8* v = v_storage;");
    row("ps16", "{-1}", 1, "s16 v_storage[1] = {-1};|s16* v = v_storage;");
    row("double*", "", 2, "double v_storage[2] = {};|double* v = v_storage;");
    row("void*", "0", 1, "void* v = 0;");
    row("DrelCan", "{}", 1, "// DrelCan v: 此类型暂不支持");
}

void CodegenTest::variables()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    QFETCH(int, length);
    QFETCH(QString, expected);
    const auto code = codegen::variableCode(
        variable("v", type.toStdString(), value.toStdString(), length), false);
    QStringList lines;
    for (const std::string& line : code.lines)
        lines << QString::fromStdString(line);
    QCOMPARE(code.problem, std::string());
    QCOMPARE(lines.join(u'|'), expected);
}

void CodegenTest::refusedVariables_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::newRow("beyond") << QStringLiteral("u8") << QStringLiteral("256");
    QTest::newRow("negative") << QStringLiteral("u64") << QStringLiteral("-1");
    QTest::newRow("below") << QStringLiteral("s8") << QStringLiteral("-129");
    QTest::newRow("word") << QStringLiteral("s32") << QStringLiteral("abc");
    QTest::newRow("rest") << QStringLiteral("double") << QStringLiteral("1.5x");
    QTest::newRow("infinite") << QStringLiteral("double") << QStringLiteral("inf");
    QTest::newRow("element") << QStringLiteral("u8*") << QStringLiteral("1,300");
    QTest::newRow("code") << QStringLiteral("s32") << QStringLiteral("0; abort()");
    QTest::newRow("unknown type") << QStringLiteral("u128") << QStringLiteral("1");
}

void CodegenTest::refusedVariables()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    const auto code =
        codegen::variableCode(variable("v", type.toStdString(), value.toStdString()), false);
    QVERIFY(code.lines.empty());
    QVERIFY(QString::fromStdString(code.problem).contains(QStringLiteral("“v”")));
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

void CodegenTest::linesLeadToSteps()
{
    const auto code = codegen::generate(
        applet({sequence("main", {statement("first", "MARK1"), statement("second", "MARK2\nMARK3"),
                                  statement("third", "MARK4", true)})}));
    const QStringList steps = {QStringLiteral("first"), QStringLiteral("second"),
                               QStringLiteral("second"), QStringLiteral("third")};
    for (int i = 0; i < steps.size(); ++i) {
        const std::string mark = "MARK" + std::to_string(i + 1);
        for (std::size_t file = 0; file < code.files.size(); ++file) {
            const std::string& text = code.files[file].text;
            const std::size_t at = text.find(mark);
            if (at == std::string::npos)
                continue;
            const auto line =
                1 + std::count(text.begin(), text.begin() + static_cast<long>(at), '\n');
            std::string owner;
            for (const codegen::LineRange& range : code.lines) {
                if (range.file == file && range.firstLine <= line)
                    owner = range.step;
            }
            QCOMPARE(QString::fromStdString(owner), steps[i]);
        }
    }
}

void CodegenTest::statementFiles()
{
    const auto code =
        codegen::generate(applet({sequence("main", {statement("s", "n = 1;", true)})}));
    QCOMPARE(code.files.size(), std::size_t(2));
    QCOMPARE(code.files[1].name, std::string("statement_0.inc"));
    QCOMPARE(code.files[1].text,
             std::string("// s  s\nstatic void statement_0()\n{\n    n = 1;\n}\n"));
}

QTEST_GUILESS_MAIN(CodegenTest)
#include "codegen_test.moc"
