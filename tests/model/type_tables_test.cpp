#include "model/step_icons.h"
#include "model/step_kinds.h"
#include "model/type_tables.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

class TypeTablesTest : public QObject
{
    Q_OBJECT
private slots:
    void rowCounts();
    void keywordOfValue();
    void valueOfKeyword();
    void rowOrder();
    void composite();
    void dataCategory();
    void icons();
};

void TypeTablesTest::rowCounts()
{
    QCOMPARE(int(varTypeNames.size()), 76);
    QCOMPARE(int(varTypeComposite.size()), 54);
    QCOMPARE(int(dataCategoryVarTypes.size()), 10);
    QCOMPARE(int(blockTypeNames.size()), 19);
}

void TypeTablesTest::keywordOfValue()
{
    const rows::Table<int, QByteArray> table{{"primary before alias", 8, QByteArray("s32")},
                                             {"star first", 100, QByteArray("void*")},
                                             {"P first", 113, QByteArray("PDrelCan")},
                                             {"star again", 118, QByteArray("DrelBigMsg*")},
                                             {"last", 177, QByteArray("XcpProgramFormat*")},
                                             {"no type", 0, QByteArray()},
                                             {"gap", 20, QByteArray()},
                                             {"beyond", 178, QByteArray()}};
    for (const auto& [row, value, keyword] : table) {
        const rows::Named named(row);
        QCOMPARE(QByteArray::fromStdString(varTypeKeyword(DrelVarType(value))), keyword);
    }
}

void TypeTablesTest::valueOfKeyword()
{
    const rows::Table<QByteArray, int> table{{"alias", QByteArray("int"), 8},
                                             {"pointer", QByteArray("u8*"), 101},
                                             {"pointer alias", QByteArray("pu8"), 101},
                                             {"third alias", QByteArray("int*"), 106},
                                             {"unknown", QByteArray("u128"), 1},
                                             {"other case", QByteArray("U8"), 1},
                                             {"empty", QByteArray(), 1}};
    for (const auto& [row, keyword, value] : table) {
        const rows::Named named(row);
        QCOMPARE(int(varTypeFromKeyword(keyword.toStdString())), value);
    }
}

// Scalars and records ascending, then pointers, then the XCP rows in pairs: type columns and combo
// boxes show this order.
void TypeTablesTest::rowOrder()
{
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
    const rows::Table<int, bool> table{{"scalar", 8, false},
                                       {"text", 21, false},
                                       {"record", 14, true},
                                       {"record pointer", 118, true},
                                       {"XcpEvent*", 175, true},
                                       {"XcpCalibrationPage*", 176, false},
                                       {"XcpProgramFormat*", 177, false},
                                       {"not assigned", 20, false}};
    for (const auto& [row, value, composite] : table) {
        const rows::Named named(row);
        QCOMPARE(isCompositeVarType(DrelVarType(value)), composite);
    }
}

void TypeTablesTest::dataCategory()
{
    const int expected[] = {0, 8, 7, 10, 9, 12, 111, 101, 106, 108, 110, 0};
    for (int category = 0; category < 12; ++category)
        QCOMPARE(int(varTypeFromDataCategory(DataCategoryType(category))), expected[category]);
}

void TypeTablesTest::icons()
{
    const auto path = [](const char* name) {
        return QStringLiteral(":/icon/stepIcon/%1.png").arg(QString::fromUtf8(name));
    };
    const rows::Table<int, int, QString> table{{"if", 3, 1, path("if")},
                                               {"closer", 3, 10, path("end")},
                                               {"goto tag", 3, 15, QString()},
                                               {"api", 3, 17, path("api函数")},
                                               {"last basic", 3, 27, path("蜂鸣器")},
                                               {"below", 3, 0, QString()},
                                               {"beyond", 3, 28, QString()},
                                               {"negative", 3, -1, QString()},
                                               {"folder", 3, 10001, QString()},
                                               {"first diagnostic", 5, 1, path("诊断服务")},
                                               {"diagnostic gap", 5, 8, QString()},
                                               {"second download", 5, 16, path("文件下载")},
                                               {"beyond diagnostic", 5, 17, QString()},
                                               {"flow", 1, 1, QString()}};
    for (const auto& [row, baseType, stepType, path] : table) {
        const rows::Named named(row);
        QCOMPARE(getStepIconName(baseType, stepType), path);
    }
}

PE_TEST("type_tables_test", TypeTablesTest)
#include "type_tables_test.moc"
