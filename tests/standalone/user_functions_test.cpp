#include "model/process_blocks.h"
#include "model/services/capplet.h"
#include "model/type_tables.h"
#include "standalone/codegen/function_head.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

class UserFunctionsTest : public QObject
{
    Q_OBJECT
private slots:
    void heads();
    void listed();
};

void UserFunctionsTest::heads()
{
    const rows::Table<QByteArray, QByteArray> table{
        ///< "type name(type name, ...)", parted by "; "
        {"one and a call", QByteArray("int twice(int x)\n{\n  return 2 * x;\n}\ntotal = twice(3);"),
         QByteArray("int twice(int x)")},
        {"types", QByteArray("const u8* at(const u8* data, int size, double) { return data; }"),
         QByteArray("const u8* at(const u8* data, int size, double p3)")},
        {"no parameters", QByteArray("void a() {} void b(void) {}"),
         QByteArray("void a(); void b()")},
        {"arrays and defaults",
         QByteArray("s32 sum(s32 v[], unsigned int n = most(1, 2), char c = ',') { return 0; }"),
         QByteArray("s32 sum(s32* v, unsigned int n, char c)")},
        {"comment amid", QByteArray("int f(int a /* , int b */, int c) { return a; }"),
         QByteArray("int f(int a, int c)")}};
    for (const auto& [row, code, heads] : table) {
        const rows::Named named(row);
        const std::string text = code.toStdString();
        QStringList found;
        for (const codegen::FunctionDefinition& definition : codegen::functionsIn(text)) {
            const codegen::FunctionHead head = codegen::headOf(text, definition);
            QStringList parameters;
            for (const auto& parameter : head.parameters)
                parameters << QString::fromStdString(parameter.type + ' ' + parameter.name);
            found << QString::fromStdString(head.returnType + ' ' + head.name) + QLatin1Char('(') +
                         parameters.join(QStringLiteral(", ")) + QLatin1Char(')');
        }
        QCOMPARE(found.join(QStringLiteral("; ")).toUtf8(), heads);
    }
}

void UserFunctionsTest::listed()
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
    const auto disabled = applet_fixture::addStep<StatementProcessBlock>(
        app, sequence, QStringLiteral("0"), step_type::Statement, "停用");
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

PE_TEST("user_functions_test", UserFunctionsTest)
#include "user_functions_test.moc"
