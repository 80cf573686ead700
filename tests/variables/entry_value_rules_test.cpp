// Which variables a value may be, and what is shown and composed of a function.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
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

class EntryValueRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void offeredVariables();
    void systemTypes();
    void functions();
    void fullFieldsHaveNoEnd();
    void hiddenFunctions();
};

void EntryValueRulesTest::offeredVariables()
{
    const QString all = QStringLiteral("s32 int u32 bool u8* pu8 PDrelCan string unknown");
    const rows::Table<QString, bool, QString> table{
        {"any", QString(), false, all},
        {"any pointer", text("void*"), false, all},
        {"an alias of it is no any", text("pvoid"), false, QString()},
        {"one", text("u32"), false, text("u32")},
        {"not its alias", text("s32"), false, text("s32")},
        {"the alias", text("int"), false, text("int")},
        {"basic", QString(), true, text("s32 int u32 u8* pu8")},
        {"basic pointer", text("void*"), true, text("s32 int u32 u8* pu8")},
        {"basic one", text("u8*"), true, text("u8*")},
        {"one that isn't basic", text("bool"), true, QString()}};
    for (const auto& [row, wanted, basicTypesOnly, offered] : table) {
        const rows::Named named(row);
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
        QCOMPARE(types.join(QLatin1Char(' ')), offered);
    }
}

void EntryValueRulesTest::systemTypes()
{
    QStringList types;
    for (int category = 0; category <= 11; ++category)
        types.append(entry_variables::systemTypeKeyword(DataCategoryType(category)));
    QCOMPARE(types.join(QLatin1Char(' ')),
             QStringLiteral(" s32 u32 s64 u64 double char* u8* s32* s64* double* "));
}

void EntryValueRulesTest::functions()
{
    const rows::Table<_DrelFunction, QString, QString, QString, bool> table{
        {"bare", function("", "now", DrelS64, {}), text("s64|无|now|无|无"), text("无"),
         text("now()"), true},
        {"parameters",
         function("can", "send", DrelS32, {{DrelU32, "id", "标识"}, {DrelU8Ptr, "data", ""}}),
         text("s32|can|send|u32 id, u8* data|无"), text("u32 id: 标识\nu8* data: "),
         text("can.send(u32,u8*)"), true},
        {"void is left out",
         function("", "f", DrelVoid, {{DrelVoid, "none", ""}, {DrelDouble, "x", "%1"}}),
         text("void|无|f|void none, double x|无"), text("void none: \ndouble x: %1"),
         text("f(double)"), true},
        {"only void", function("m", "f", DrelVoid, {{DrelVoid, "none", ""}}),
         text("void|m|f|void none|无"), text("void none: "), text("m.f()"), true},
        {"ends at the first without a name",
         function("", "f", DrelVoid,
                  {{DrelS32, "a", ""}, {DrelS32, "", ""}, {DrelCanType, "b", ""}}),
         text("void|无|f|s32 a|无"), text("s32 a: "), text("f(s32)"), true},
        {"record", function("", "f", DrelVoid, {{DrelCanType, "frame", ""}}),
         text("void|无|f|DrelCan frame|无"), text("DrelCan frame: "), text("f(DrelCan)"), false},
        {"record returned", function("", "f", DrelCanPtr, {}), text("PDrelCan|无|f|无|无"),
         text("无"), text("f()"), true},
        {"unknown types", function("", "f", 999, {{20, "a", ""}}), text("|无|f| a|无"),
         text(" a: "), text("f()"), true},
        // Texts that hold the marks of a format.
        {"marks", function("%2", "%1", DrelVoid, {{DrelS32, "%3", "%1"}}),
         text("void|%2|%1|s32 %3|无"), text("s32 %3: %1"), text("%2.%1(s32)"), true}};
    for (const auto& [row, record, texts, tip, call, canBePicked] : table) {
        const rows::Named named(row);
        const entry_functions::Row shown = entry_functions::row(record);
        QCOMPARE(QStringList(shown.texts.begin(), shown.texts.end()).join(QLatin1Char('|')), texts);
        QCOMPARE(shown.parametersTip, tip);
        QCOMPARE(shown.canBePicked, canBePicked);
        QCOMPARE(entry_functions::callText(record), call);
    }
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
