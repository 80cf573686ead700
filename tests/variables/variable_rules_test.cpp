// The rules of types and lengths, and where a drop lands.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/drop_rules.h"
#include "variables/variable_rules.h"

#include <QTest>

class VariableRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void offeredTypes();
    void lengths();
    void cutting();
    void dropTargets();
    void rowsWithoutTheDragged();
};

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
    const rows::Table<int, bool> table{// 0: the type has no length
                                       {"u8", 0, false},       {"XcpCanCfg", 0, false},
                                       {"PDrelCan", 0, false}, {"string", 256, true},
                                       {"pchar", 256, true},   {"double*", 64, false},
                                       {"ps16", 64, false},    {"XcpODTEntry*", 64, false},
                                       {"u8[]", 64, false},    {"", 0, false}};
    for (const auto& [keyword, greatest, mayBeBlank] : table) {
        const rows::Named named(keyword);
        QCOMPARE(variable_rules::carriesLength(text(keyword)), greatest > 0);
        QVERIFY(greatest == 0 || variable_rules::greatestLength(text(keyword)) == greatest);
        QCOMPARE(variable_rules::mayBeBlank(text(keyword)), mayBeBlank);
    }
}

void VariableRulesTest::cutting()
{
    const rows::Table<const char*, int, const char*> table{
        {"u8*", "1,2,3,4", 2, "1,2"},
        {"double*", "1.5,2", 1, "1.5"},
        {"s64*", "1,2", 2, "1,2"},
        {"s64*", "1,2", 3, "1,2"},
        {"u16*", ",,3", 2, ","},
        {"pu8", "1,2,3", 2, "1,2"},
        {"char*", "a,b,c", 4, "a,b,"},
        {"char*", "ab", 5, "ab"},
        // Bytes, not characters, and never within a character.
        {"string", "变量", 3, "变"},
        {"string", "变量", 5, "变"},
        {"string", "变量", 2, ""},
        {"u32", "123", 1, "123"},
        {"XcpODTEntry*", "1,2", 1, "1,2"},
        {"bool*", "1,0", 1, "1,0"}};
    for (const auto& [keyword, value, length, cut] : table) {
        const rows::Named named(keyword);
        QCOMPARE(variable_rules::cutToLength(value, keyword, length), std::string(cut));
    }
}

void VariableRulesTest::dropTargets()
{
    const rows::Table<int, int, int, int> table{{"between rows", 0, 1, 0, 1},
                                                {"before the first", 2, 0, 2, 0},
                                                {"on a group", 0, -1, 0, 3},
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
    QCOMPARE(drop_rules::rowWithout({}, 2), 2);
    QCOMPARE(drop_rules::rowWithout({3}, 1), 1);
    QCOMPARE(drop_rules::rowWithout({2}, 2), 2);
    QCOMPARE(drop_rules::rowWithout({2}, 3), 2);
    QCOMPARE(drop_rules::rowWithout({4, 0, 2}, 3), 1);
}

PE_TEST("variable_rules", VariableRulesTest)
#include "variable_rules_test.moc"
