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
    const char* description = "";
};

_DrelFunction function(const char* prefix, const char* name, int returnType = DrelVoid,
                       const QVector<Parameter>& parameters = {})
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
    void functions();
    void fullFieldsHaveNoEnd();
    void hiddenFunctions();
};

void EntryValueRulesTest::offeredVariables()
{
    const QString all = text("s32 int u32 bool u8* pu8 PDrelCan string unknown");
    std::vector<processVariable> variables;
    for (const QString& type : all.split(u' ')) {
        variables.emplace_back();
        variables.back().name = "a_" + type.toStdString();
        variables.back().type = type.toStdString();
    }
    const rows::Table<bool, QString> table{{"", false, all},
                                           {"void*", false, all},
                                           {"pvoid", false, QString()}, // an alias of it is no any
                                           {"s32", false, text("s32")},
                                           {"int", false, text("int")},
                                           {"void*", true, text("s32 int u32 u8* pu8")},
                                           {"u8*", true, text("u8*")},
                                           {"bool", true, QString()}};
    for (const auto& [wanted, basicTypesOnly, offered] : table) {
        const rows::Named named(wanted);
        QStringList types;
        for (const auto& variable :
             entry_variables::offered(variables, {text(wanted), basicTypesOnly})) {
            QCOMPARE(variable.name, QLatin1String("a_") + variable.type);
            types.append(variable.type);
        }
        QCOMPARE(types.join(u' '), offered);
    }
}

/// Texts of the row; tip; call; the last is "-" for one that can't be picked.
void EntryValueRulesTest::functions()
{
    const rows::Table<_DrelFunction, const char*> table{
        {"bare", function("", "now", DrelS64), "s64|无|now|无|无; 无; now()"},
        {"parameters",
         function("can", "send", DrelS32, {{DrelU32, "id", "标识"}, {DrelU8Ptr, "data"}}),
         "s32|can|send|u32 id, u8* data|无; u32 id: 标识\nu8* data: ; can.send(u32,u8*)"},
        {"void is left out",
         function("", "f", DrelVoid, {{DrelVoid, "none"}, {DrelDouble, "x", "%1"}}),
         "void|无|f|void none, double x|无; void none: \ndouble x: %1; f(double)"},
        {"ends at the first without a name",
         function("", "f", DrelVoid, {{DrelS32, "a"}, {DrelS32, ""}, {DrelCanType, "b"}}),
         "void|无|f|s32 a|无; s32 a: ; f(s32)"},
        {"record", function("", "f", DrelCanPtr, {{DrelCanType, "frame"}}),
         "PDrelCan|无|f|DrelCan frame|无; DrelCan frame: ; f(DrelCan)-"},
        {"unknown types", function("", "f", 999, {{20, "a"}}), "|无|f| a|无;  a: ; f()"},
        {"marks of a format", function("%2", "%1", DrelVoid, {{DrelS32, "%3", "%1"}}),
         "void|%2|%1|s32 %3|无; s32 %3: %1; %2.%1(s32)"}};
    for (const auto& [row, record, expected] : table) {
        const rows::Named named(row);
        const entry_functions::Row shown = entry_functions::row(record);
        const QString texts = QStringList(shown.texts.begin(), shown.texts.end()).join(u'|');
        QCOMPARE(texts + text("; ") + shown.parametersTip + text("; ") +
                     entry_functions::callText(record) + text(shown.canBePicked ? "" : "-"),
                 text(expected));
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
    QCOMPARE(shown.texts[entry_functions::DescriptionColumn], text("d"));
    QCOMPARE(shown.texts[entry_functions::ParametersColumn].size(), 10 * 68 + 9 * 2);
}

void EntryValueRulesTest::hiddenFunctions()
{
    QVERIFY(!entry_functions::isOffered(function("", "show_procedure_box")));
    QVERIFY(!entry_functions::isOffered(function("", "show_capplet_box")));
    QVERIFY(entry_functions::isOffered(function("", "show_box")));

    QList<QPair<_DrelFunction, int>> all;
    for (int kind = 1; kind <= 4; ++kind) {
        all.append({function("", QByteArray::number(kind).constData()), 3});
        all.last().first.kind = kind;
    }
    QString names;
    for (const _DrelFunction& callable : entry_functions::callableUserFunctions(all))
        names += entry_functions::name(callable);
    QCOMPARE(names, text("124"));
}

PE_TEST("entry_value_rules", EntryValueRulesTest)
#include "entry_value_rules_test.moc"
