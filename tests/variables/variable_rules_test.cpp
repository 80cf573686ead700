// The rules of names, types and lengths, and where a drop lands.

#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/drop_rules.h"
#include "variables/variable_rules.h"

#include <QTest>

using variable_rules::NameRefusal;

Q_DECLARE_METATYPE(NameRefusal)

class VariableRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void names_data();
    void names();
    void offeredTypes();
    void lengths_data();
    void lengths();
    void cutting_data();
    void cutting();
    void dropTargets_data();
    void dropTargets();
    void rowsWithoutTheDragged_data();
    void rowsWithoutTheDragged();
};

void VariableRulesTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isWellFormed");
    QTest::addColumn<NameRefusal>("refusal");
    QTest::newRow("free") << text("_x9") << true << NameRefusal::None;
    QTest::newRow("20 characters") << text("a1234567890123456789") << true << NameRefusal::None;
    QTest::newRow("21 characters") << text("a12345678901234567890") << false << NameRefusal::None;
    QTest::newRow("digit first") << text("1a") << false << NameRefusal::None;
    QTest::newRow("other letters") << text("a变量") << false << NameRefusal::None;
    QTest::newRow("line end") << text("a\n") << false << NameRefusal::None;
    QTest::newRow("case counts") << text("Speed") << true << NameRefusal::None;
    QTest::newRow("taken") << text("speed") << true << NameRefusal::Taken;
    QTest::newRow("taken, with blanks") << text(" speed ") << false << NameRefusal::Taken;
    QTest::newRow("empty") << QString() << false << NameRefusal::Empty;
    QTest::newRow("blanks") << text("  ") << false << NameRefusal::Empty;
}

void VariableRulesTest::names()
{
    QFETCH(QString, name);
    QTEST(variable_rules::namePattern().match(name).hasMatch(), "isWellFormed");
    QTEST(variable_rules::refusalOf(name, {text("speed"), text("b")}), "refusal");
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

void VariableRulesTest::lengths_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<int>("greatest"); // 0: the type has no length
    QTest::addColumn<bool>("mayBeBlank");
    QTest::newRow("scalar") << text("u8") << 0 << false;
    QTest::newRow("record") << text("XcpCanCfg") << 0 << false;
    QTest::newRow("pointer to a record") << text("PDrelCan") << 0 << false;
    QTest::newRow("text") << text("string") << 256 << true;
    QTest::newRow("bytes") << text("char*") << 256 << true;
    QTest::newRow("alias of bytes") << text("pchar") << 256 << true;
    QTest::newRow("array") << text("double*") << 64 << false;
    QTest::newRow("alias of an array") << text("ps16") << 64 << false;
    QTest::newRow("array of records") << text("XcpODTEntry*") << 64 << false;
    QTest::newRow("brackets") << text("u8[]") << 64 << false;
    QTest::newRow("no type") << QString() << 0 << false;
}

void VariableRulesTest::lengths()
{
    QFETCH(QString, keyword);
    QFETCH(int, greatest);
    QCOMPARE(variable_rules::carriesLength(keyword), greatest > 0);
    if (greatest > 0)
        QCOMPARE(variable_rules::greatestLength(keyword), greatest);
    QTEST(variable_rules::mayBeBlank(keyword), "mayBeBlank");
}

void VariableRulesTest::cutting_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("cut");
    QTest::newRow("array") << "u8*" << text("1,2,3,4") << 2 << text("1,2");
    QTest::newRow("to one element") << "double*" << text("1.5,2") << 1 << text("1.5");
    QTest::newRow("array of just that length") << "s64*" << text("1,2") << 2 << text("1,2");
    QTest::newRow("shorter array") << "s64*" << text("1,2") << 3 << text("1,2");
    QTest::newRow("empty elements count") << "u16*" << text(",,3") << 2 << text(",");
    QTest::newRow("alias") << "pu8" << text("1,2,3") << 2 << text("1,2");
    QTest::newRow("text") << "string" << text("abcd") << 2 << text("ab");
    QTest::newRow("commas of a text") << "char*" << text("a,b,c") << 4 << text("a,b,");
    QTest::newRow("longer text") << "char*" << text("ab") << 5 << text("ab");
    QTest::newRow("bytes, not characters") << "string" << text("变量") << 3 << text("变");
    QTest::newRow("never within a character") << "string" << text("变量") << 5 << text("变");
    QTest::newRow("no room for a character") << "string" << text("变量") << 2 << QString();
    QTest::newRow("scalar") << "u32" << text("123") << 1 << text("123");
    QTest::newRow("array of records") << "XcpODTEntry*" << text("1,2") << 1 << text("1,2");
    QTest::newRow("array of truth values") << "bool*" << text("1,0") << 1 << text("1,0");
}

void VariableRulesTest::cutting()
{
    QFETCH(QString, keyword);
    QFETCH(QString, value);
    QFETCH(int, length);
    const std::string cut =
        variable_rules::cutToLength(value.toStdString(), keyword.toStdString(), length);
    QTEST(QString::fromStdString(cut), "cut");
}

void VariableRulesTest::dropTargets_data()
{
    QTest::addColumn<int>("parentGroup");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("targetGroup");
    QTest::addColumn<int>("targetRow");
    QTest::newRow("between rows") << 0 << 1 << 0 << 1;
    QTest::newRow("before the first") << 2 << 0 << 2 << 0;
    QTest::newRow("on a group") << 0 << -1 << 0 << 3;
    QTest::newRow("on an empty group") << 1 << -1 << 1 << 0;
    QTest::newRow("beyond the end") << 0 << 9 << 0 << 3;
    QTest::newRow("before the first group") << -1 << 0 << 0 << 3;
    QTest::newRow("before the second group") << -1 << 1 << 0 << 3;
    QTest::newRow("before the third group") << -1 << 2 << 1 << 0;
    QTest::newRow("behind the last group") << -1 << 3 << 2 << 2;
    QTest::newRow("in the empty space") << -1 << -1 << 2 << 2;
    QTest::newRow("no such group") << 3 << 0 << -1 << 0;
}

void VariableRulesTest::dropTargets()
{
    QFETCH(int, parentGroup);
    QFETCH(int, row);
    const auto target = drop_rules::targetOf(parentGroup, row, {3, 0, 2});
    QTEST(target.group, "targetGroup");
    QTEST(target.row, "targetRow");
    QCOMPARE(drop_rules::targetOf(parentGroup, row, {}).group, -1);
}

void VariableRulesTest::rowsWithoutTheDragged_data()
{
    QTest::addColumn<QVector<int>>("dragged");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("rowWithout");
    QTest::newRow("from another group") << QVector<int>() << 2 << 2;
    QTest::newRow("down") << QVector<int>{0} << 3 << 2;
    QTest::newRow("up") << QVector<int>{3} << 1 << 1;
    QTest::newRow("before itself") << QVector<int>{2} << 2 << 2;
    QTest::newRow("behind itself") << QVector<int>{2} << 3 << 2;
    QTest::newRow("several around the place") << QVector<int>{4, 0, 2} << 3 << 1;
}

void VariableRulesTest::rowsWithoutTheDragged()
{
    QFETCH(QVector<int>, dragged);
    QFETCH(int, row);
    QTEST(drop_rules::rowWithout(dragged, row), "rowWithout");
}

PE_TEST("variable_rules", VariableRulesTest)
#include "variable_rules_test.moc"
