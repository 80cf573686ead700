#include "tests/standalone/codegen_builders.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/capplet.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/function_head.h"
#include "standalone/codegen/user_code.h"
#include "standalone/codegen/variable_code.h"

#include <QtTest>

using namespace builders;

/// What becomes of single texts of the user: comments, variables, code.
class CodegenTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void userTextStaysInItsComment();
    void variables();
    void refusedVariables();
    void soundCode();
    void functions();
    void headsOfFunctions();
    void functionsAreListed();
};

void CodegenTextsTest::userTextStaysInItsComment()
{
    const rows::Table<QByteArray, QByteArray> table{{"plain", "电压 */ 检查", "电压 */ 检查"},
                                                    {"line ends", "a\nb\r\vc", "a b  c"},
                                                    {"joining backslash", "a\\", "a/"},
                                                    {"backslash and blank", "a\\ ", "a/ "},
                                                    {"direction marks", "a\u202eb", "ab"}};
    for (const auto& [row, said, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(QByteArray::fromStdString(codegen::commentText(said.toStdString())), expected);
    }
}

void CodegenTextsTest::variables()
{
    const rows::Table<const char*, int, const char*> table{
        // type, value, length, and the lines joined by "|"
        {"u8", "255", 1, "u8 v = 255;"},
        {"s32", "", 1, "s32 v = 0;"},
        {"int", " -7 ", 1, "s32 v = -7;"},
        {"u16", "0xFF", 1, "u16 v = 255;"},
        {"s64", "-9223372036854775808", 1, "s64 v = -9223372036854775807 - 1;"},
        {"u64", "18446744073709551615", 1, "u64 v = 18446744073709551615ULL;"},
        {"double", "-1.50", 1, "double v = -1.5;"},
        {"double", "98765432109876543210", 1, "double v = 98765432109876543488.0;"},
        {"bool", "true", 1, "bool v = true;"},
        {"string", "a\"\\\n", 9, "string v = string::limited(9, \"a\\\"\\\\\\012\");"},
        {"string", "NULL", 1, "string v = string::limited(1, \"\");"},
        {"char*", "ab", 4, "rt::text<4> v = {\"ab\"};"},
        {"u8*", "1,2,", 4, "rt::array<u8, 4> v = {1, 2};"},
        {"ps16", "{-1}", 1, "rt::array<s16, 1> v = {-1};"},
        {"double*", "", 2, "rt::array<double, 2> v = {};"},
        {"void*", "0", 1, "void* v = 0;"},
        {"DrelCan", "0", 1, "DrelCan v = {};"},
        {"PDrelCan", "0", 1,
         "DrelCan record_of_the_pointer_v = {};|DrelCan* v = &record_of_the_pointer_v;"}};
    for (const auto& [type, value, length, expected] : table) {
        const rows::Named named(expected);
        const auto code = codegen::variableCode(variable("v", type, value, length));
        QStringList lines;
        for (const std::string& line : code.lines)
            lines << QString::fromStdString(line);
        QCOMPARE(code.problem, std::string());
        QCOMPARE(lines.join(u'|'), text(expected));
    }
}

void CodegenTextsTest::refusedVariables()
{
    const rows::Table<const char*> table{// type and value
                                         {"u8", "256"},    {"u64", "-1"},         {"s8", "-129"},
                                         {"s32", "abc"},   {"double", "1.5x"},    {"double", "inf"},
                                         {"u8*", "1,300"}, {"s32", "0; abort()"}, {"u128", "1"}};
    for (const auto& [type, value] : table) {
        const rows::Named named(value);
        const auto code = codegen::variableCode(variable("v", type, value));
        QVERIFY(code.lines.empty());
        QVERIFY(QString::fromStdString(code.problem).contains(text("“v”")));
    }
}

/// What a compiler takes must not be refused before it is asked.
void CodegenTextsTest::soundCode()
{
    for (const char* code :
         {"", "f(1'000, 0xFF'FF, u8'a', '\\'', '{');", "s = \"(\\\"[\"; // )", "R\"x(()\")x\";",
          "/* { */ if (a[b(c)]) { d({1, 2}); }", "#if 0\n{\n#endif", "a < b; c > d;", "// it's"})
        QVERIFY2(!codegen::faultIn(code).words, code);
}

/// Their heads, and what is left of the code without them.
void CodegenTextsTest::functions()
{
    const rows::Table<const char*, const char*> table{
        {"int f(int a) { return a; }", "int f(int a)", ""},
        {"n = 1;\nconst char* f(const string& s)\n{ if (a) { } }\nn = 2;",
         "const char* f(const string& s)",
         "n = 1;\n                              \n              \nn = 2;"},
        {"void f() {} u32 g(u8* d, int n) {}", "void f()|u32 g(u8* d, int n)", ""},
        {"static int f(char a, /* ( */ int b = g(1, 2)) // {\n{ return 0; }",
         "int f(char a,         int b = g(1, 2))", ""}};
    const auto check = [](const char* code, const char* heads, const char* rest) {
        const rows::Named named(code);
        const auto functions = codegen::functionsIn(code);
        QStringList found;
        for (const codegen::FunctionDefinition& function : functions)
            found << QString::fromStdString(function.head);
        QCOMPARE(found.join(u'|'), text(heads));
        QCOMPARE(QString::fromStdString(codegen::withoutFunctions(code, functions)), text(rest));
    };
    for (const auto& [code, heads, rest] : table)
        check(code, heads, rest);
    for (const char* code :
         {"if (a) { b(); } else if (c) { d(); }", "for (int i = 0; i < 3; ++i) { f(i); }",
          "auto f = [](int a) { return a; };", "struct s { int f() { return 1; } };",
          "return f(x); {", "// int f() {}\ns = \"int f() {}\";"})
        check(code, "", code);
}

/// Written anew as "type name(type name, ...)", joined by "; ".
void CodegenTextsTest::headsOfFunctions()
{
    const rows::Table<const char*> table{
        {"int twice(int x)\n{\n  return 2 * x;\n}\ntotal = twice(3);", "int twice(int x)"},
        {"const u8* at(const u8* data, int size, double) { return data; }",
         "const u8* at(const u8* data, int size, double p3)"},
        {"void a() {} void b(void) {}", "void a(); void b()"},
        {"s32 sum(s32 v[], unsigned int n = most(1, 2), char c = ',') { return 0; }",
         "s32 sum(s32* v, unsigned int n, char c)"},
        {"int f(int a /* , int b */, int c) { return a; }", "int f(int a, int c)"}};
    for (const auto& [code, heads] : table) {
        const rows::Named named(code);
        QStringList found;
        for (const codegen::FunctionDefinition& definition : codegen::functionsIn(code)) {
            const codegen::FunctionHead head = codegen::headOf(code, definition);
            QStringList parameters;
            for (const auto& parameter : head.parameters)
                parameters << QString::fromStdString(parameter.type + ' ' + parameter.name);
            found << QString::fromStdString(head.returnType + ' ' + head.name) + u'(' +
                         parameters.join(text(", ")) + u')';
        }
        QCOMPARE(found.join(text("; ")), text(heads));
    }
}

void CodegenTextsTest::functionsAreListed()
{
    namespace processedit = sdk_ui_interface::processedit;
    const QString app = text("用户函数");
    const applet_fixture::ScopedApplet applet(app);
    const QString sequence = processedit::createSeuqence(app, text("Sequence_0"));
    const auto branch =
        applet_fixture::addStep<IProcessBlock>(app, sequence, text("1"), step_type::If, "if");
    const auto statement = applet_fixture::addStep<StatementProcessBlock>(
        app, sequence, QString::fromStdString(branch->uuid), step_type::Statement, "语句");
    statement->setCustomCode(
        "// 求和\n// of two\ndouble add(const string& a, u8* b) { return 0; }");
    processedit::updateProcess(app, sequence, statement);
    const auto disabled = applet_fixture::addStep<StatementProcessBlock>(
        app, sequence, text("0"), step_type::Statement, "停用");
    disabled->setCustomCode("int never() { return 0; }");
    disabled->enableState = 0;
    processedit::updateProcess(app, sequence, disabled);

    QList<QPair<_DrelFunction, int>> functions;
    QCOMPARE(sdk_ui_interface::capplet::getCAppletUserFuncs(app, functions), 0);
    QCOMPARE(functions.size(), 1);
    const _DrelFunction& function = functions.first().first;
    QCOMPARE(function.name, "add");
    QCOMPARE(function.description, "求和 of two");
    QCOMPARE(function.returnType, int(DrelDouble));
    QCOMPARE(function.params[0].type, int(varTypeFromKeyword("string")));
    QCOMPARE(function.params[1].name, "b");
    QCOMPARE(function.params[1].type, int(varTypeFromKeyword("u8*")));
    QCOMPARE(function.params[2].name, "");
}

PE_TEST("codegen_texts_test", CodegenTextsTest)
#include "codegen_texts_test.moc"
