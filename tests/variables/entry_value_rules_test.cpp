// Which variables a value may be, and what is shown and composed of a function.

#include "tests/support/test_program.h"
#include "variables/entry_functions.h"
#include "variables/entry_variables.h"

#include <QTest>

#include <cstring>

namespace {

struct Parameter
{
    int type;
    const char* name;
    const char* description;
};

_DrelFunction function(const char* prefix, const char* name, int returnType,
                       const QVector<Parameter>& parameters)
{
    _DrelFunction record = {};
    std::strcpy(record.prefix, prefix);
    std::strcpy(record.name, name);
    record.returnType = returnType;
    for (int i = 0; i < parameters.size(); ++i) {
        record.params[i].type = parameters[i].type;
        std::strcpy(record.params[i].name, parameters[i].name);
        std::strcpy(record.params[i].description, parameters[i].description);
    }
    return record;
}

} // namespace

Q_DECLARE_METATYPE(_DrelFunction)

class EntryValueRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void offeredVariables_data();
    void offeredVariables();
    void systemTypes();
    void functions_data();
    void functions();
    void fullFieldsHaveNoEnd();
    void hiddenFunctions();
};

void EntryValueRulesTest::offeredVariables_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<bool>("basicTypesOnly");
    QTest::addColumn<QString>("offered");
    const QString all = QStringLiteral("s32 int u32 bool u8* pu8 PDrelCan string unknown");
    QTest::newRow("any") << QString() << false << all;
    QTest::newRow("any pointer") << "void*" << false << all;
    QTest::newRow("an alias of it is no any") << "pvoid" << false << "";
    QTest::newRow("one") << "u32" << false << "u32";
    QTest::newRow("not its alias") << "s32" << false << "s32";
    QTest::newRow("the alias") << "int" << false << "int";
    QTest::newRow("basic") << QString() << true << "s32 int u32 u8* pu8";
    QTest::newRow("basic pointer") << "void*" << true << "s32 int u32 u8* pu8";
    QTest::newRow("basic one") << "u8*" << true << "u8*";
    QTest::newRow("one that isn't basic") << "bool" << true << "";
}

void EntryValueRulesTest::offeredVariables()
{
    QFETCH(QString, wanted);
    QFETCH(bool, basicTypesOnly);
    std::vector<processVariable> variables;
    for (const char* type :
         {"s32", "int", "u32", "bool", "u8*", "pu8", "PDrelCan", "string", "unknown"}) {
        processVariable variable;
        variable.name = std::string("a_") + type;
        variable.type = type;
        variables.push_back(variable);
    }
    QStringList types;
    for (const auto& variable : entry_variables::offered(variables, {wanted, basicTypesOnly})) {
        QCOMPARE(variable.name, QLatin1String("a_") + variable.type);
        types.append(variable.type);
    }
    QTEST(types.join(QLatin1Char(' ')), "offered");
}

void EntryValueRulesTest::systemTypes()
{
    QStringList types;
    for (int category = 0; category <= 11; ++category)
        types.append(entry_variables::systemTypeKeyword(DataCategoryType(category)));
    QCOMPARE(types.join(QLatin1Char(' ')),
             QStringLiteral(" s32 u32 s64 u64 double char* u8* s32* s64* double* "));
}

void EntryValueRulesTest::functions_data()
{
    QTest::addColumn<_DrelFunction>("record");
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<QString>("call");
    QTest::addColumn<bool>("canBePicked");
    const auto row = [](const char* name, const _DrelFunction& record, const char* texts,
                        const char* tip, const char* call, bool canBePicked) {
        QTest::newRow(name) << record << QString::fromUtf8(texts) << QString::fromUtf8(tip)
                            << QString::fromUtf8(call) << canBePicked;
    };
    row("bare", function("", "now", DrelS64, {}), "s64|无|now|无|无", "无", "now()", true);
    row("parameters",
        function("can", "send", DrelS32, {{DrelU32, "id", "标识"}, {DrelU8Ptr, "data", ""}}),
        "s32|can|send|u32 id, u8* data|无", "u32 id: 标识\nu8* data: ", "can.send(u32,u8*)", true);
    row("void is left out",
        function("", "f", DrelVoid, {{DrelVoid, "none", ""}, {DrelDouble, "x", "%1"}}),
        "void|无|f|void none, double x|无", "void none: \ndouble x: %1", "f(double)", true);
    row("only void", function("m", "f", DrelVoid, {{DrelVoid, "none", ""}}),
        "void|m|f|void none|无", "void none: ", "m.f()", true);
    row("ends at the first without a name",
        function("", "f", DrelVoid,
                 {{DrelS32, "a", ""}, {DrelS32, "", ""}, {DrelCanType, "b", ""}}),
        "void|无|f|s32 a|无", "s32 a: ", "f(s32)", true);
    row("record", function("", "f", DrelVoid, {{DrelCanType, "frame", ""}}),
        "void|无|f|DrelCan frame|无", "DrelCan frame: ", "f(DrelCan)", false);
    row("record returned", function("", "f", DrelCanPtr, {}), "PDrelCan|无|f|无|无", "无", "f()",
        true);
    row("unknown types", function("", "f", 999, {{20, "a", ""}}), "|无|f| a|无", " a: ", "f()",
        true);
    // Texts that hold the marks of a format.
    row("marks", function("%2", "%1", DrelVoid, {{DrelS32, "%3", "%1"}}), "void|%2|%1|s32 %3|无",
        "s32 %3: %1", "%2.%1(s32)", true);
}

void EntryValueRulesTest::functions()
{
    QFETCH(_DrelFunction, record);
    const entry_functions::Row shown = entry_functions::row(record);
    QTEST(QStringList(shown.texts.begin(), shown.texts.end()).join(QLatin1Char('|')), "texts");
    QTEST(shown.parametersTip, "tip");
    QTEST(shown.canBePicked, "canBePicked");
    QTEST(entry_functions::callText(record), "call");
}

void EntryValueRulesTest::fullFieldsHaveNoEnd()
{
    _DrelFunction record = {};
    std::memset(record.name, 'n', sizeof record.name);
    record.description[0] = 'd';
    for (auto& parameter : record.params) {
        std::memset(parameter.name, 'p', sizeof parameter.name);
        parameter.type = DrelS32;
    }
    QCOMPARE(entry_functions::name(record), QString(128, QLatin1Char('n')));
    const entry_functions::Row shown = entry_functions::row(record);
    QCOMPARE(shown.texts[entry_functions::DescriptionColumn], QStringLiteral("d"));
    QCOMPARE(shown.texts[entry_functions::ParametersColumn].size(), 10 * 68 + 9 * 2);
}

void EntryValueRulesTest::hiddenFunctions()
{
    QVERIFY(!entry_functions::isOffered(function("", "show_procedure_box", DrelVoid, {})));
    QVERIFY(!entry_functions::isOffered(function("", "show_capplet_box", DrelVoid, {})));
    QVERIFY(entry_functions::isOffered(function("", "show_box", DrelVoid, {})));

    QList<QPair<_DrelFunction, int>> all;
    for (int kind = 1; kind <= 4; ++kind) {
        all.append({function("", QByteArray::number(kind).constData(), DrelVoid, {}), 3});
        all.last().first.kind = kind;
    }
    QStringList names;
    for (const _DrelFunction& callable : entry_functions::callableUserFunctions(all))
        names.append(entry_functions::name(callable));
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("1 2 4"));
}

PE_TEST("entry_value_rules", EntryValueRulesTest)
#include "entry_value_rules_test.moc"
