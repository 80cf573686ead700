#include "model/step_icons.h"
#include "model/step_kinds.h"
#include "model/type_tables.h"
#include "tests/support/test_program.h"

#include <QtTest>

class TypeTablesTest : public QObject
{
    Q_OBJECT
private slots:
    void rowCounts();
    void keywordOfValue_data();
    void keywordOfValue();
    void valueOfKeyword_data();
    void valueOfKeyword();
    void rowOrder();
    void composite_data();
    void composite();
    void dataCategory();
    void icons_data();
    void icons();
};

void TypeTablesTest::rowCounts()
{
    QCOMPARE(int(varTypeNames.size()), 76);
    QCOMPARE(int(varTypeComposite.size()), 54);
    QCOMPARE(int(dataCategoryVarTypes.size()), 10);
    QCOMPARE(int(blockTypeNames.size()), 19);
}

void TypeTablesTest::keywordOfValue_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("keyword");
    QTest::newRow("primary before alias") << 8 << QByteArray("s32");
    QTest::newRow("star first") << 100 << QByteArray("void*");
    QTest::newRow("P first") << 113 << QByteArray("PDrelCan");
    QTest::newRow("star again") << 118 << QByteArray("DrelBigMsg*");
    QTest::newRow("last") << 177 << QByteArray("XcpProgramFormat*");
    QTest::newRow("no type") << 0 << QByteArray();
    QTest::newRow("gap") << 20 << QByteArray();
    QTest::newRow("beyond") << 178 << QByteArray();
}

void TypeTablesTest::keywordOfValue()
{
    QFETCH(int, value);
    QTEST(QByteArray::fromStdString(varTypeKeyword(DrelVarType(value))), "keyword");
}

void TypeTablesTest::valueOfKeyword_data()
{
    QTest::addColumn<QByteArray>("keyword");
    QTest::addColumn<int>("value");
    QTest::newRow("alias") << QByteArray("int") << 8;
    QTest::newRow("pointer") << QByteArray("u8*") << 101;
    QTest::newRow("pointer alias") << QByteArray("pu8") << 101;
    QTest::newRow("third alias") << QByteArray("int*") << 106;
    QTest::newRow("unknown") << QByteArray("u128") << 1;
    QTest::newRow("other case") << QByteArray("U8") << 1;
    QTest::newRow("empty") << QByteArray() << 1;
}

void TypeTablesTest::valueOfKeyword()
{
    QFETCH(QByteArray, keyword);
    QTEST(int(varTypeFromKeyword(keyword.toStdString())), "value");
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

void TypeTablesTest::composite_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("composite");
    QTest::newRow("scalar") << 8 << false;
    QTest::newRow("text") << 21 << false;
    QTest::newRow("record") << 14 << true;
    QTest::newRow("record pointer") << 118 << true;
    QTest::newRow("XcpEvent*") << 175 << true;
    QTest::newRow("XcpCalibrationPage*") << 176 << false;
    QTest::newRow("XcpProgramFormat*") << 177 << false;
    QTest::newRow("not assigned") << 20 << false;
}

void TypeTablesTest::composite()
{
    QFETCH(int, value);
    QTEST(isCompositeVarType(DrelVarType(value)), "composite");
}

void TypeTablesTest::dataCategory()
{
    const int expected[] = {0, 8, 7, 10, 9, 12, 111, 101, 106, 108, 110, 0};
    for (int category = 0; category < 12; ++category)
        QCOMPARE(int(varTypeFromDataCategory(DataCategoryType(category))), expected[category]);
}

void TypeTablesTest::icons_data()
{
    QTest::addColumn<int>("baseType");
    QTest::addColumn<int>("stepType");
    QTest::addColumn<QString>("path");
    const auto path = [](const char* name) {
        return QStringLiteral(":/icon/stepIcon/%1.png").arg(QString::fromUtf8(name));
    };
    QTest::newRow("if") << 3 << 1 << path("if");
    QTest::newRow("closer") << 3 << 10 << path("end");
    QTest::newRow("goto tag") << 3 << 15 << QString();
    QTest::newRow("api") << 3 << 17 << path("api函数");
    QTest::newRow("last basic") << 3 << 27 << path("蜂鸣器");
    QTest::newRow("below") << 3 << 0 << QString();
    QTest::newRow("beyond") << 3 << 28 << QString();
    QTest::newRow("negative") << 3 << -1 << QString();
    QTest::newRow("folder") << 3 << 10001 << QString();
    QTest::newRow("first diagnostic") << 5 << 1 << path("诊断服务");
    QTest::newRow("diagnostic gap") << 5 << 8 << QString();
    QTest::newRow("second download") << 5 << 16 << path("文件下载");
    QTest::newRow("beyond diagnostic") << 5 << 17 << QString();
    QTest::newRow("flow") << 1 << 1 << QString();
}

void TypeTablesTest::icons()
{
    QFETCH(int, baseType);
    QFETCH(int, stepType);
    QTEST(getStepIconName(baseType, stepType), "path");
}

PE_TEST("type_tables_test", TypeTablesTest)
#include "type_tables_test.moc"
