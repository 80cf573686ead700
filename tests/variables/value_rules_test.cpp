// What can be typed as a value, key by key: the shape of the type decides first, then its range.

#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/value_rules.h"
#include "variables/variable_values.h"

#include <QRegularExpressionValidator>
#include <QTest>

using value_rules::Verdict;

namespace {

constexpr int NoLimit = -1;

/// What stands in the field after @p keys, each of them a keystroke at its end.
QString typed(const QString& keys, const QString& keyword, int length)
{
    const QRegularExpressionValidator shape{QRegularExpression(value_rules::pattern(keyword))};
    QString standing;
    for (const QChar key : keys) {
        QString next = standing + key;
        int cursor = next.size();
        if (shape.validate(next, cursor) != QValidator::Invalid &&
            value_rules::judge(next, keyword, length) != Verdict::Refused)
            standing = next;
    }
    return standing;
}

} // namespace

Q_DECLARE_METATYPE(Verdict)
Q_DECLARE_METATYPE(DrelVarType)

class ValueRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void typing_data();
    void typing();
    void ranges_data();
    void ranges();
    void verdicts_data();
    void verdicts();
    void completing_data();
    void completing();
    void normalizing_data();
    void normalizing();
};

void ValueRulesTest::typing_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("standing");
    const auto row = [](const char* keyword, int length, const char* keys, const char* standing) {
        QTest::addRow("%s[%d] %s", keyword, length, keys)
            << text(keyword) << length << text(keys) << text(standing);
    };
    // Whole numbers: no sign for the unsigned, no leading zero, nothing beyond the range.
    row("u8", NoLimit, "256", "25");
    row("u8", NoLimit, "007", "0");
    row("u8", NoLimit, "-1a.5 ", "15");
    row("s8", NoLimit, "-129", "-12");
    row("s8", NoLimit, "-128", "-128");
    row("s8", NoLimit, "--05", "-5");
    row("s8", NoLimit, "1-2", "12");
    row("s8", NoLimit, "-", "-");
    row("u64", NoLimit, "123456789012345678901", "123456789012345678901");
    row("u64", NoLimit, "-01", "0");
    row("s64", NoLimit, "-9223372036854775808", "-9223372036854775808");
    // The limit counts elements, not the digits of a scalar.
    row("u16", 1, "12345", "12345");
    // Fractions.
    row("double", NoLimit, "1.", "1.");
    row("double", NoLimit, "-.5.5", "-5.5");
    row("double", NoLimit, "00.5", "00.5");
    row("float", NoLimit, "1e5", "15");
    // Arrays: each element by the rule of its type, one comma at a time.
    row("u8*", NoLimit, ",1,,2,", "1,2,");
    row("u8*", NoLimit, "300,255,256", "30,255,25");
    row("u8*", NoLimit, "01,-2", "0,2");
    row("u8*", 3, "1,2,3,4", "1,2,34");
    row("u8*", 2, "1,2,", "1,2");
    row("u8*", 1, "1,", "1");
    row("u16*", 4, "65536,65535", "6553,65535");
    row("s8*", NoLimit, "-128,-129,-", "-128,-12,-");
    row("s8*", NoLimit, "-,1", "-1"); // nothing but a digit can follow a lone sign
    row("u64*", 1, "1,18446744073709551616", "1,18446744073709551616");
    row("double*", NoLimit, "1.,2", "1.,2");
    row("double*", NoLimit, "-1.5,.,-0.25,", "-1.5,-0.25,");
    row("double*", NoLimit, "01,2", "0,2");
    row("double*", 2, "1.5,2.5,3.5", "1.5,2.535");
    // Texts: any character, as many as there is room for.
    row("string", 4, "a 变量e", "a 变量");
    row("string", 0, "a", "");
    row("string", NoLimit, "any, \"text\" at all", "any, \"text\" at all");
    row("char*", 2, "abc", "ab");
    // Keywords without a rule, aliases among them.
    row("bool", 1, "maybe", "maybe");
    row("pu8", 1, "300,x", "300,x");
    row("float*", 1, "1,2,x", "1,2,x");
    row("U8", NoLimit, "256", "256");
    row("", NoLimit, "x", "x");
}

void ValueRulesTest::typing()
{
    QFETCH(QString, keyword);
    QFETCH(int, length);
    QFETCH(QString, keys);
    QTEST(typed(keys, keyword, length), "standing");
}

void ValueRulesTest::ranges_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("lowest");
    QTest::addColumn<QString>("highest");
    QTest::addColumn<QString>("below");
    QTest::addColumn<QString>("above");
    const auto row = [](const char* keyword, const char* lowest, const char* highest,
                        const char* below, const char* above) {
        QTest::newRow(keyword) << text(keyword) << text(lowest) << text(highest) << text(below)
                               << text(above);
    };
    row("u8", "0", "255", "-1", "256");
    row("s8", "-128", "127", "-129", "128");
    row("u16", "0", "65535", "-1", "65536");
    row("s16", "-32768", "32767", "-32769", "32768");
    row("u32", "0", "4294967295", "-1", "4294967296");
    row("s32", "-2147483648", "2147483647", "-2147483649", "2147483648");
}

void ValueRulesTest::ranges()
{
    QFETCH(QString, keyword);
    QFETCH(QString, lowest);
    QFETCH(QString, highest);
    QFETCH(QString, below);
    QFETCH(QString, above);
    const QString array = keyword + QLatin1Char('*');
    for (const QString& inside : {lowest, highest}) {
        QCOMPARE(value_rules::judge(inside, keyword, NoLimit), Verdict::Accepted);
        QCOMPARE(value_rules::judge(QLatin1String("1,") + inside, array, 2), Verdict::Accepted);
    }
    for (const QString& outside : {below, above}) {
        QCOMPARE(value_rules::judge(outside, keyword, NoLimit), Verdict::Refused);
        QCOMPARE(value_rules::judge(outside + QLatin1String(",1"), array, 2), Verdict::Refused);
    }
}

void ValueRulesTest::verdicts_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("value");
    QTest::addColumn<Verdict>("verdict");
    QTest::newRow("u64 has no range") << "u64" << text("18446744073709551616") << Verdict::Kept;
    QTest::newRow("u64* neither") << "u64*" << text("1,2,3") << Verdict::Kept;
    QTest::newRow("no rule") << "PDrelCan" << text("x") << Verdict::Kept;
    QTest::newRow("text") << "string" << text("x") << Verdict::Accepted;
    QTest::newRow("fraction counts as 0") << "double" << text("1.5") << Verdict::Accepted;
    QTest::newRow("sign counts as 0") << "s8" << text("-") << Verdict::Accepted;
    QTest::newRow("empty") << "u8" << QString() << Verdict::Accepted;
    QTest::newRow("s64 beyond counts as 0")
        << "s64" << text("9223372036854775808") << Verdict::Accepted;
}

void ValueRulesTest::verdicts()
{
    QFETCH(QString, keyword);
    QFETCH(QString, value);
    QTEST(value_rules::judge(value, keyword, 2), "verdict");
}

void ValueRulesTest::completing_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("whole");
    for (const char* array :
         {"u8*", "u16*", "u32*", "u64*", "s8*", "s16*", "s32*", "s64*", "double*"})
        QTest::newRow(array) << text(array) << text("1,2,0");
    for (const char* other : {"string", "char*", "float*", "u8", "void*", "PDrelCan"})
        QTest::newRow(other) << text(other) << text("1,2,");
}

void ValueRulesTest::completing()
{
    QFETCH(QString, keyword);
    QTEST(value_rules::completed(text("1,2,"), keyword), "whole");
    QCOMPARE(value_rules::completed(text("1,2"), keyword), text("1,2"));
    QVERIFY(value_rules::completed(QString(), keyword).isEmpty());
}

void ValueRulesTest::normalizing_data()
{
    QTest::addColumn<DrelVarType>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("kept");
    QTest::newRow("signed") << DrelS8 << text(" -12 ") << text("-12");
    QTest::newRow("least signed") << DrelS64 << text("-9223372036854775808")
                                  << text("-9223372036854775808");
    QTest::newRow("greatest unsigned")
        << DrelU64 << text("18446744073709551615") << text("18446744073709551615");
    QTest::newRow("no number") << DrelU8 << text("0x10") << text("0");
    QTest::newRow("leading zeros") << DrelU16 << text("007") << text("7");
    QTest::newRow("fraction") << DrelDouble << text("1.50") << text("1.5");
    QTest::newRow("a third") << DrelDouble << text("0.3333333333333333")
                             << text("0.3333333333333333");
    QTest::newRow("large") << DrelDouble << text("1e20") << text("100000000000000000000");
    QTest::newRow("small") << DrelFloat << text("-2.5e-7") << text("-0.00000025");
    QTest::newRow("no finite number") << DrelDouble << text("1e999") << text("0");
    QTest::newRow("true") << DrelBool << text("true") << text("true");
    QTest::newRow("not true") << DrelBool << text("1") << text("false");
    QTest::newRow("no text") << DrelString << QString() << text("NULL");
    QTest::newRow("blanks of a text") << DrelCharPtr << text(" a ") << text(" a ");
    QTest::newRow("array") << DrelU8Ptr << text("1, 2") << text("1, 2");
}

void ValueRulesTest::normalizing()
{
    QFETCH(DrelVarType, type);
    QFETCH(QString, value);
    const QString kept = variable_values::normalized(value, type);
    QTEST(kept, "kept");
    // What is kept can be typed.
    const QString keyword = QString::fromStdString(varTypeKeyword(type));
    const QRegularExpression shape(value_rules::pattern(keyword));
    QVERIFY2(value_rules::isArray(keyword) || shape.match(kept).hasMatch(), qPrintable(keyword));
}

PE_TEST("value_rules", ValueRulesTest)
#include "value_rules_test.moc"
