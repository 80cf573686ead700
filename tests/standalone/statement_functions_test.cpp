#include "model/process_blocks.h"
#include "model/services/capplet.h"
#include "model/type_tables.h"
#include "standalone/codegen/statement_functions.h"
#include "tests/support/applet_fixture.h"

#include <QtTest>

class StatementFunctionsTest : public QObject
{
    Q_OBJECT
private slots:
    void found_data();
    void found();
    void listed();
};

void StatementFunctionsTest::found_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("heads"); ///< "type name(type name, ...)", parted by blanks and ;
    QTest::addColumn<QByteArray>("rest");
    const auto row = [](const char* name, const char* code, const char* heads, const char* rest) {
        QTest::newRow(name) << QByteArray(code) << QByteArray(heads) << QByteArray(rest);
    };
    row("nothing", "", "", "");
    row("no function", "total = f(1);\nif (a) { b(); }", "", "total = f(1);\nif (a) { b(); }");
    row("one and a call", "int twice(int x)\n{\n  return 2 * x;\n}\ntotal = twice(3);",
        "int twice(int x)", "\n\n\n\ntotal = twice(3);");
    row("types", "static const u8* at(const u8* data, int size, double) { return data; }",
        "const u8* at(const u8* data, int size, double p3)", "");
    row("no parameters", "void a() {} void b(void) {}", "void a(); void b()", " ");
    row("arrays and defaults", "s32 sum(s32 v[], unsigned int n = 3) { return 0; }",
        "s32 sum(s32* v, unsigned int n)", "");
    row("braces in literals", "int f() { log(\"}\"); return '}'; /* } */ }\nx = 1; // int g() {}",
        "int f()", "\nx = 1; // int g() {}");
    row("raw literal", "string f() { return R\"x(}\")x\"; }", "string f()", "");
    row("nested blocks", "int f(int n) { if (n) { return 1; } return 0; } f(2);", "int f(int n)",
        " f(2);");
    row("not functions", "struct P { int x; }; for (;;) { g(); } auto f = [](int a) { return a; };",
        "", "struct P { int x; }; for (;;) { g(); } auto f = [](int a) { return a; };");
    row("members elsewhere", "void P::f() {}", "", "void P::f() {}");
    row("cut off", "int f() { return", "", "int f() { return");
    row("behind a declaration", "int x; int f() { return x; }", "int f()", "int x; ");
    row("preprocessor", "#define M {\nint f() { return 1; }", "int f()", "#define M {\n");
    row("chinese name", "int 求和(int 甲) { return 甲; }", "int 求和(int 甲)", "");
}

void StatementFunctionsTest::found()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, heads);
    QFETCH(QByteArray, rest);
    const std::string text = code.toStdString();
    const auto functions = codegen::statementFunctions(text);
    QStringList found;
    for (const codegen::StatementFunction& function : functions) {
        QStringList parameters;
        for (const auto& parameter : function.parameters)
            parameters << QString::fromStdString(parameter.type + ' ' + parameter.name);
        found << QString::fromStdString(function.returnType + ' ' + function.name) +
                     QLatin1Char('(') + parameters.join(QStringLiteral(", ")) + QLatin1Char(')');
        QCOMPARE(text[function.body], '{');
        QCOMPARE(text[function.end - 1], '}');
    }
    QCOMPARE(found.join(QStringLiteral("; ")).toUtf8(), heads);
    QCOMPARE(QByteArray::fromStdString(codegen::withoutFunctions(text, functions)), rest);
}

void StatementFunctionsTest::listed()
{
    namespace processedit = sdk_ui_interface::processedit;
    const QString app = QStringLiteral("用户函数");
    const applet_fixture::ScopedApplet applet(app);
    const QString sequence = processedit::createSeuqence(app, QStringLiteral("Sequence_0"));
    const auto branch = applet_fixture::addStep<IProcessBlock>(app, sequence, QStringLiteral("1"),
                                                               step_type::If, "if");
    const auto statement = applet_fixture::addStep<StatementProcessBlock>(
        app, sequence, QString::fromStdString(branch->uuid), step_type::Statement, "语句");
    statement->setCustomCode(
        "// 求和\n// of two\ndouble add(const string& a, u8* b) { return 0; }");
    processedit::updateProcess(app, sequence, statement);

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

QTEST_GUILESS_MAIN(StatementFunctionsTest)
#include "statement_functions_test.moc"
