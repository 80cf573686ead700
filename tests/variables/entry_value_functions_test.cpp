// Every function that the runtime names to the picker can be called from an applet's code, with the
// types it is listed with.

#include "model/services/capplet.h"
#include "model/type_tables.h"
#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"
#include "variables/entry_functions.h"

#include <QTest>

using namespace builders;

namespace {

std::string keyword(int type)
{
    return varTypeKeyword(DrelVarType(type));
}

/// A call as the picker composes it, with a variable of its own in the place of each type; and a
/// pointer to what it returns, which is never converted.
std::string callingCode(const _DrelFunction& function)
{
    QString call = entry_functions::callText(function);
    std::string declarations;
    QStringList arguments;
    for (const auto& parameter : function.params) {
        if (parameter.name[0] == '\0')
            break;
        declarations += keyword(parameter.type) + " " + parameter.name + " = 0;\n";
        arguments.append(QString::fromUtf8(parameter.name));
    }
    call = call.left(call.indexOf(QLatin1Char('('))) + QLatin1Char('(') +
           arguments.join(QLatin1Char(',')) + QLatin1Char(')');
    return "{\n" + declarations + call.toStdString() + ";\n" + keyword(function.returnType) +
           "* result = static_cast<decltype(" + call.toStdString() + ")*>(nullptr);\n}";
}

} // namespace

class EntryValueFunctionsTest : public QObject
{
    Q_OBJECT
private slots:
    void listedFunctionsCompile();
};

void EntryValueFunctionsTest::listedFunctionsCompile()
{
    QList<_DrelFunction> functions;
    QCOMPARE(sdk_ui_interface::capplet::getCAppletInnerFuncs(QStringLiteral("a"), functions), 0);
    QVERIFY(functions.size() >= 12);
    Blocks calls;
    for (const _DrelFunction& function : qAsConst(functions))
        calls.push_back(statement(function.name, callingCode(function)));
    RuntimeHarness harness;
    QCOMPARE(harness.build(QStringLiteral("calls"), applet({sequence("main", calls)})), QString());

    // A type that isn't the function's is noticed.
    _DrelFunction wrong = functions.last();
    wrong.returnType = wrong.returnType == DrelS8 ? DrelS16 : DrelS8;
    calls = {statement("wrong", callingCode(wrong))};
    QVERIFY(!harness.build(QStringLiteral("wrong"), applet({sequence("main", calls)})).isEmpty());
}

PE_TEST("entry_value_functions", EntryValueFunctionsTest)
#include "entry_value_functions_test.moc"
