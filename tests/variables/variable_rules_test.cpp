// The rules of names, types and lengths, and where a drop lands.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/drop_rules.h"
#include "variables/variable_rules.h"

#include <QTest>

using variable_rules::NameRefusal;

class VariableRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void names();
    void offeredTypes();
    void lengths();
    void cutting();
    void dropTargets();
    void rowsWithoutTheDragged();
};

void VariableRulesTest::names()
{
    const rows::Table<QString, bool, NameRefusal> table{
        {"free", text("_x9"), true, NameRefusal::None},
        {"20 characters", text("a1234567890123456789"), true, NameRefusal::None},
        {"21 characters", text("a12345678901234567890"), false, NameRefusal::None},
        {"digit first", text("1a"), false, NameRefusal::None},
        {"other letters", text("a变量"), false, NameRefusal::None},
        {"line end", text("a\n"), false, NameRefusal::None},
        {"case counts", text("Speed"), true, NameRefusal::None},
        {"taken", text("speed"), true, NameRefusal::Taken},
        {"taken, with blanks", text(" speed "), false, NameRefusal::Taken},
        {"empty", QString(), false, NameRefusal::Empty},
        {"blanks", text("  "), false, NameRefusal::Empty}};
    for (const auto& [row, name, isWellFormed, refusal] : table) {
        const rows::Named named(row);
        QCOMPARE(variable_rules::namePattern().match(name).hasMatch(), isWellFormed);
        QCOMPARE(variable_rules::refusalOf(name, {text("speed"), text("b")}), refusal);
    }
}

void VariableRulesTest::offeredTypes()
{
    QStringList offered;
    for (const auto& type : variable_rules::offeredTypes())
        offered.append(type.keyword);
    QCOMPARE(offered.join(QLatin1Char(' ')),
             text("u8 s8 u16 s16 u32 s32 u64 s64 double string u8* s8* u16* s16* u32* s32* u64* "
                  "s64* double* char* PDrelCan PDrelUds PDrelEcuInfo DrelBigMsg* XcpCanCfg "
                  "XcpODTEntry XcpODTEntry* XcpDAQListCfg XcpTransportLayerCan "
                  "XcpProtocolLayerCfg XcpCalibrationPage XcpProgramFormat"));
}

void VariableRulesTest::lengths()
{
    const rows::Table<QString, int, bool> table{
        // 0: the type has no length
        {"scalar", text("u8"), 0, false},
        {"record", text("XcpCanCfg"), 0, false},
        {"pointer to a record", text("PDrelCan"), 0, false},
        {"text", text("string"), 256, true},
        {"bytes", text("char*"), 256, true},
        {"alias of bytes", text("pchar"), 256, true},
        {"array", text("double*"), 64, false},
        {"alias of an array", text("ps16"), 64, false},
        {"array of records", text("XcpODTEntry*"), 64, false},
        {"brackets", text("u8[]"), 64, false},
        {"no type", QString(), 0, false}};
    for (const auto& [row, keyword, greatest, mayBeBlank] : table) {
        const rows::Named named(row);
        QCOMPARE(variable_rules::carriesLength(keyword), greatest > 0);
        if (greatest > 0)
            QCOMPARE(variable_rules::greatestLength(keyword), greatest);
        QCOMPARE(variable_rules::mayBeBlank(keyword), mayBeBlank);
    }
}

void VariableRulesTest::cutting()
{
    const rows::Table<QString, QString, int, QString> table{
        {"array", text("u8*"), text("1,2,3,4"), 2, text("1,2")},
        {"to one element", text("double*"), text("1.5,2"), 1, text("1.5")},
        {"array of just that length", text("s64*"), text("1,2"), 2, text("1,2")},
        {"shorter array", text("s64*"), text("1,2"), 3, text("1,2")},
        {"empty elements count", text("u16*"), text(",,3"), 2, text(",")},
        {"alias", text("pu8"), text("1,2,3"), 2, text("1,2")},
        {"text", text("string"), text("abcd"), 2, text("ab")},
        {"commas of a text", text("char*"), text("a,b,c"), 4, text("a,b,")},
        {"longer text", text("char*"), text("ab"), 5, text("ab")},
        {"bytes, not characters", text("string"), text("变量"), 3, text("变")},
        {"never within a character", text("string"), text("变量"), 5, text("变")},
        {"no room for a character", text("string"), text("变量"), 2, QString()},
        {"scalar", text("u32"), text("123"), 1, text("123")},
        {"array of records", text("XcpODTEntry*"), text("1,2"), 1, text("1,2")},
        {"array of truth values", text("bool*"), text("1,0"), 1, text("1,0")}};
    for (const auto& [row, keyword, value, length, expectedCut] : table) {
        const rows::Named named(row);
        const std::string cut =
            variable_rules::cutToLength(value.toStdString(), keyword.toStdString(), length);
        QCOMPARE(QString::fromStdString(cut), expectedCut);
    }
}

void VariableRulesTest::dropTargets()
{
    const rows::Table<int, int, int, int> table{{"between rows", 0, 1, 0, 1},
                                                {"before the first", 2, 0, 2, 0},
                                                {"on a group", 0, -1, 0, 3},
                                                {"on an empty group", 1, -1, 1, 0},
                                                {"beyond the end", 0, 9, 0, 3},
                                                {"before the first group", -1, 0, 0, 3},
                                                {"before the second group", -1, 1, 0, 3},
                                                {"before the third group", -1, 2, 1, 0},
                                                {"behind the last group", -1, 3, 2, 2},
                                                {"in the empty space", -1, -1, 2, 2},
                                                {"no such group", 3, 0, -1, 0}};
    for (const auto& [rowName, parentGroup, row, targetGroup, targetRow] : table) {
        const rows::Named named(rowName);
        const auto target = drop_rules::targetOf(parentGroup, row, {3, 0, 2});
        QCOMPARE(target.group, targetGroup);
        QCOMPARE(target.row, targetRow);
        QCOMPARE(drop_rules::targetOf(parentGroup, row, {}).group, -1);
    }
}

void VariableRulesTest::rowsWithoutTheDragged()
{
    const rows::Table<QVector<int>, int, int> table{
        {"from another group", QVector<int>(), 2, 2},
        {"down", QVector<int>{0}, 3, 2},
        {"up", QVector<int>{3}, 1, 1},
        {"before itself", QVector<int>{2}, 2, 2},
        {"behind itself", QVector<int>{2}, 3, 2},
        {"several around the place", QVector<int>{4, 0, 2}, 3, 1}};
    for (const auto& [rowName, dragged, row, rowWithout] : table) {
        const rows::Named named(rowName);
        QCOMPARE(drop_rules::rowWithout(dragged, row), rowWithout);
    }
}

PE_TEST("variable_rules", VariableRulesTest)
#include "variable_rules_test.moc"
