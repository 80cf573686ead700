#include "tests/standalone/codegen_builders.h"
#include "tests/support/test_program.h"

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
    void userTextStaysInItsComment_data();
    void userTextStaysInItsComment();
    void variables_data();
    void variables();
    void refusedVariables_data();
    void refusedVariables();
    void soundCode_data();
    void soundCode();
    void functions_data();
    void functions();
};

void CodegenTextsTest::userTextStaysInItsComment_data()
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

void CodegenTextsTest::userTextStaysInItsComment()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray::fromStdString(codegen::commentText(text.toStdString())), expected);
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

void CodegenTextsTest::refusedVariables_data()
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

void CodegenTextsTest::refusedVariables()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    const auto code = codegen::variableCode(variable("v", type.toStdString(), value.toStdString()));
    QVERIFY(code.lines.empty());
    QVERIFY(QString::fromStdString(code.problem).contains(QStringLiteral("“v”")));
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

void CodegenTextsTest::functions_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("heads");
    QTest::addColumn<QString>("rest");
    const auto row = [](const char* code, const char* heads, const char* rest) {
        QTest::newRow(code) << QString::fromUtf8(code) << QString::fromUtf8(heads)
                            << QString::fromUtf8(rest);
    };
    row("int f(int a) { return a; }", "int f(int a)", "");
    row("n = 1;\nconst char* f(const string& s)\n{ if (a) { } }\nn = 2;",
        "const char* f(const string& s)",
        "n = 1;\n                              \n              \nn = 2;");
    row("void f() {} u32 g(u8* d, int n) {}", "void f()|u32 g(u8* d, int n)", "");
    row("static int f(char a, /* ( */ int b = g(1, 2)) // {\n{ return 0; }",
        "int f(char a,         int b = g(1, 2))", "");
    row("if (a) { b(); } else if (c) { d(); }", "", "if (a) { b(); } else if (c) { d(); }");
    row("for (int i = 0; i < 3; ++i) { f(i); }", "", "for (int i = 0; i < 3; ++i) { f(i); }");
    row("auto f = [](int a) { return a; };", "", "auto f = [](int a) { return a; };");
    row("struct s { int f() { return 1; } };", "", "struct s { int f() { return 1; } };");
    row("return f(x); {", "", "return f(x); {");
    row("// int f() {}\ns = \"int f() {}\";", "", "// int f() {}\ns = \"int f() {}\";");
}

void CodegenTextsTest::functions()
{
    QFETCH(QString, code);
    QFETCH(QString, heads);
    QFETCH(QString, rest);
    const auto functions = codegen::functionsIn(code.toStdString());
    QStringList found;
    for (const codegen::FunctionDefinition& function : functions)
        found << QString::fromStdString(function.head);
    QCOMPARE(found.join(u'|'), heads);
    QCOMPARE(QString::fromStdString(codegen::withoutFunctions(code.toStdString(), functions)),
             rest);
}

PE_TEST("codegen_texts_test", CodegenTextsTest)
#include "codegen_texts_test.moc"
