#include "tests/standalone/codegen_builders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "standalone/codegen/code_text.h"
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
    void variables_data();
    void variables();
    void refusedVariables();
    void soundCode_data();
    void soundCode();
    void functions();
};

void CodegenTextsTest::userTextStaysInItsComment()
{
    const rows::Table<QByteArray, QByteArray> table{
        {"plain", QByteArray("电压 */ 检查"), QByteArray("电压 */ 检查")},
        {"line ends", QByteArray("a\nb\r\vc"), QByteArray("a b  c")},
        {"joining backslash", QByteArray("a\\"), QByteArray("a/")},
        {"backslash and blank", QByteArray("a\\ "), QByteArray("a/ ")},
        {"direction marks",
         QByteArray("a\xe2\x80\xae"
                    "b"),
         QByteArray("ab")}};
    for (const auto& [row, text, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(QByteArray::fromStdString(codegen::commentText(text.toStdString())), expected);
    }
}

void CodegenTextsTest::variables_data()
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
    row("double", "98765432109876543210", 1, "double v = 98765432109876543488.0;");
    row("bool", "true", 1, "bool v = true;");
    row("string", "a\"\\\n", 9, "string v = string::limited(9, \"a\\\"\\\\\\012\");");
    row("string", "NULL", 1, "string v = string::limited(1, \"\");");
    row("char*", "ab", 4, "rt::text<4> v = {\"ab\"};");
    row("u8*", "1,2,", 4, "rt::array<u8, 4> v = {1, 2};");
    row("ps16", "{-1}", 1, "rt::array<s16, 1> v = {-1};");
    row("double*", "", 2, "rt::array<double, 2> v = {};");
    row("void*", "0", 1, "void* v = 0;");
    row("DrelCan", "0", 1, "DrelCan v = {};");
    row("PDrelCan", "0", 1,
        "DrelCan record_of_the_pointer_v = {};|DrelCan* v = &record_of_the_pointer_v;");
    row("XcpODTEntry*", "0", 1,
        "XcpODTEntry record_of_the_pointer_v = {};|XcpODTEntry* v = &record_of_the_pointer_v;");
}

void CodegenTextsTest::variables()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    QFETCH(int, length);
    QFETCH(QString, expected);
    const auto code =
        codegen::variableCode(variable("v", type.toStdString(), value.toStdString(), length));
    QStringList lines;
    for (const std::string& line : code.lines)
        lines << QString::fromStdString(line);
    QCOMPARE(code.problem, std::string());
    QCOMPARE(lines.join(u'|'), expected);
}

void CodegenTextsTest::refusedVariables()
{
    const rows::Table<QString, QString> table{
        {"beyond", QStringLiteral("u8"), QStringLiteral("256")},
        {"negative", QStringLiteral("u64"), QStringLiteral("-1")},
        {"below", QStringLiteral("s8"), QStringLiteral("-129")},
        {"word", QStringLiteral("s32"), QStringLiteral("abc")},
        {"rest", QStringLiteral("double"), QStringLiteral("1.5x")},
        {"infinite", QStringLiteral("double"), QStringLiteral("inf")},
        {"element", QStringLiteral("u8*"), QStringLiteral("1,300")},
        {"code", QStringLiteral("s32"), QStringLiteral("0; abort()")},
        {"unknown type", QStringLiteral("u128"), QStringLiteral("1")}};
    for (const auto& [row, type, value] : table) {
        const rows::Named named(row);
        const auto code =
            codegen::variableCode(variable("v", type.toStdString(), value.toStdString()));
        QVERIFY(code.lines.empty());
        QVERIFY(QString::fromStdString(code.problem).contains(QStringLiteral("“v”")));
    }
}

void CodegenTextsTest::soundCode_data()
{
    QTest::addColumn<QString>("code");
    for (const char* code :
         {"", "f(1'000, 0xFF'FF, u8'a', '\\'', '{');", "s = \"(\\\"[\"; // )", "R\"x(()\")x\";",
          "/* { */ if (a[b(c)]) { d({1, 2}); }", "#if 0\n{\n#endif", "a < b; c > d;", "// it's"})
        QTest::newRow(code) << QString::fromUtf8(code);
}

/// What a compiler takes must not be refused before it is asked.
void CodegenTextsTest::soundCode()
{
    QFETCH(QString, code);
    const codegen::CodeFault fault = codegen::faultIn(code.toStdString());
    QVERIFY2(!fault.words, fault.words);
}

void CodegenTextsTest::functions()
{
    const rows::Table<QString, QString, QString> table{
        {"int f(int a) { return a; }", text("int f(int a) { return a; }"), text("int f(int a)"),
         text("")},
        {"n = 1;\nconst char* f(const string& s)\n{ if (a) { } }\nn = 2;",
         text("n = 1;\nconst char* f(const string& s)\n{ if (a) { } }\nn = 2;"),
         text("const char* f(const string& s)"),
         text("n = 1;\n                              \n              \nn = 2;")},
        {"void f() {} u32 g(u8* d, int n) {}", text("void f() {} u32 g(u8* d, int n) {}"),
         text("void f()|u32 g(u8* d, int n)"), text("")},
        {"static int f(char a, /* ( */ int b = g(1, 2)) // {\n{ return 0; }",
         text("static int f(char a, /* ( */ int b = g(1, 2)) // {\n{ return 0; }"),
         text("int f(char a,         int b = g(1, 2))"), text("")},
        {"if (a) { b(); } else if (c) { d(); }", text("if (a) { b(); } else if (c) { d(); }"),
         text(""), text("if (a) { b(); } else if (c) { d(); }")},
        {"for (int i = 0; i < 3; ++i) { f(i); }", text("for (int i = 0; i < 3; ++i) { f(i); }"),
         text(""), text("for (int i = 0; i < 3; ++i) { f(i); }")},
        {"auto f = [](int a) { return a; };", text("auto f = [](int a) { return a; };"), text(""),
         text("auto f = [](int a) { return a; };")},
        {"struct s { int f() { return 1; } };", text("struct s { int f() { return 1; } };"),
         text(""), text("struct s { int f() { return 1; } };")},
        {"return f(x); {", text("return f(x); {"), text(""), text("return f(x); {")},
        {"// int f() {}\ns = \"int f() {}\";", text("// int f() {}\ns = \"int f() {}\";"), text(""),
         text("// int f() {}\ns = \"int f() {}\";")}};
    for (const auto& [row, code, heads, rest] : table) {
        const rows::Named named(row);
        const auto functions = codegen::functionsIn(code.toStdString());
        QStringList found;
        for (const codegen::FunctionDefinition& function : functions)
            found << QString::fromStdString(function.head);
        QCOMPARE(found.join(u'|'), heads);
        QCOMPARE(QString::fromStdString(codegen::withoutFunctions(code.toStdString(), functions)),
                 rest);
    }
}

PE_TEST("codegen_texts_test", CodegenTextsTest)
#include "codegen_texts_test.moc"
