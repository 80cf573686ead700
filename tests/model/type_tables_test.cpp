#include "model/step_icons.h"
#include "model/step_kinds.h"
#include "model/type_tables.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

class TypeTablesTest : public QObject
{
    Q_OBJECT
private slots:
    void keywords();
    void rowOrder();
    void composite();
    void dataCategory();
    void icons();
};

void TypeTablesTest::keywords()
{
    const rows::Table<int> ofValues{
        {"s32", 8}, {"void*", 100}, {"PDrelCan", 113},          {"DrelBigMsg*", 118},
        {"", 0},    {"", 20},       {"XcpProgramFormat*", 177}, {"", 178}};
    for (const auto& [keyword, value] : ofValues)
        QCOMPARE(varTypeKeyword(DrelVarType(value)), std::string(keyword));
    const rows::Table<int> values{{"int", 8},  {"u8*", 101}, {"pu8", 101}, {"int*", 106},
                                  {"u128", 1}, {"U8", 1},    {"", 1}};
    for (const auto& [keyword, value] : values)
        QCOMPARE(int(varTypeFromKeyword(keyword)), value);
}

// Scalars and records ascending, then pointers, then the XCP rows in pairs: type columns and combo
// boxes show this order.
void TypeTablesTest::rowOrder()
{
    QCOMPARE(varTypeNames.size(), std::size_t(76));
    QCOMPARE(varTypeComposite.size(), std::size_t(54));
    int previous = 0;
    std::size_t row = 0;
    for (; row < varTypeNames.size() && varTypeNames[row].first != DrelXcpCanCfg; ++row) {
        QVERIFY2(varTypeNames[row].first >= previous, varTypeNames[row].second.c_str());
        previous = varTypeNames[row].first;
    }
    QCOMPARE(varTypeNames.size() - row, std::size_t(16));
    for (int type = 70; row < varTypeNames.size(); row += 2, ++type) {
        QCOMPARE(int(varTypeNames[row].first), type);
        QCOMPARE(int(varTypeNames[row + 1].first), type + 100);
    }
}

void TypeTablesTest::composite()
{
    for (const int value : {14, 118, 175})
        QVERIFY2(isCompositeVarType(DrelVarType(value)), qPrintable(QString::number(value)));
    for (const int value : {8, 20, 21, 176, 177})
        QVERIFY2(!isCompositeVarType(DrelVarType(value)), qPrintable(QString::number(value)));
}

void TypeTablesTest::dataCategory()
{
    const int expected[] = {0, 8, 7, 10, 9, 12, 111, 101, 106, 108, 110, 0};
    for (int category = 0; category < 12; ++category)
        QCOMPARE(int(varTypeFromDataCategory(DataCategoryType(category))), expected[category]);
}

void TypeTablesTest::icons()
{
    const rows::Table<int, int> table{{"if", 3, 1},      {"end", 3, 10},     {"api函数", 3, 17},
                                      {"蜂鸣器", 3, 27}, {"诊断服务", 5, 1}, {"文件下载", 5, 16}};
    for (const auto& [name, baseType, stepType] : table)
        QCOMPARE(getStepIconName(baseType, stepType),
                 text(":/icon/stepIcon/%1.png").arg(text(name)));
    // A tag, numbers outside of the tables and in their gaps, and a flow have none.
    const std::pair<int, int> without[] = {{3, 15},    {3, 0}, {3, 28}, {3, -1},
                                           {3, 10001}, {5, 8}, {5, 17}, {1, 1}};
    for (const auto& [baseType, stepType] : without)
        QVERIFY2(getStepIconName(baseType, stepType).isEmpty(),
                 qPrintable(QString::number(stepType)));
}

PE_TEST("type_tables_test", TypeTablesTest)
#include "type_tables_test.moc"
