// What can be typed as a value, key by key: the shape of the type decides first, then its range.

#include "tests/support/rows.h"
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
    void typing();
    void ranges();
    void verdicts();
    void completing();
    void normalizing();
};

void ValueRulesTest::typing()
{
    const rows::Table<int, const char*, const char*> table{
        // Whole numbers: no sign for the unsigned, no leading zero, nothing beyond the range.
        {"u8", NoLimit, "256", "25"},
        {"u8", NoLimit, "007", "0"},
        {"u8", NoLimit, "-1a.5 ", "15"},
        {"s8", NoLimit, "-129", "-12"},
        {"s8", NoLimit, "-128", "-128"},
        {"s8", NoLimit, "--05", "-5"},
        {"s8", NoLimit, "1-2", "12"},
        {"s8", NoLimit, "-", "-"},
        {"u64", NoLimit, "123456789012345678901", "123456789012345678901"},
        {"u64", NoLimit, "-01", "0"},
        {"s64", NoLimit, "-9223372036854775808", "-9223372036854775808"},
        // The limit counts elements, not the digits of a scalar.
        {"u16", 1, "12345", "12345"},
        // Fractions.
        {"double", NoLimit, "1.", "1."},
        {"double", NoLimit, "-.5.5", "-5.5"},
        {"double", NoLimit, "00.5", "00.5"},
        {"float", NoLimit, "1e5", "15"},
        // Arrays: each element by the rule of its type, one comma at a time.
        {"u8*", NoLimit, ",1,,2,", "1,2,"},
        {"u8*", NoLimit, "300,255,256", "30,255,25"},
        {"u8*", NoLimit, "01,-2", "0,2"},
        {"u8*", 3, "1,2,3,4", "1,2,34"},
        {"u8*", 2, "1,2,", "1,2"},
        {"u8*", 1, "1,", "1"},
        {"u16*", 4, "65536,65535", "6553,65535"},
        {"s8*", NoLimit, "-128,-129,-", "-128,-12,-"},
        // Nothing but a digit can follow a lone sign.
        {"s8*", NoLimit, "-,1", "-1"},
        {"u64*", 1, "1,18446744073709551616", "1,18446744073709551616"},
        {"double*", NoLimit, "1.,2", "1.,2"},
        {"double*", NoLimit, "-1.5,.,-0.25,", "-1.5,-0.25,"},
        {"double*", NoLimit, "01,2", "0,2"},
        {"double*", 2, "1.5,2.5,3.5", "1.5,2.535"},
        // Texts: any character, as many as there is room for.
        {"string", 4, "a 变量e", "a 变量"},
        {"string", 0, "a", ""},
        {"string", NoLimit, "any, \"text\" at all", "any, \"text\" at all"},
        {"char*", 2, "abc", "ab"},
        // Keywords without a rule, aliases among them.
        {"bool", 1, "maybe", "maybe"},
        {"pu8", 1, "300,x", "300,x"},
        {"float*", 1, "1,2,x", "1,2,x"},
        {"U8", NoLimit, "256", "256"},
        {"", NoLimit, "x", "x"}};
    for (const auto& [keyword, length, keys, standing] : table) {
        const rows::Named named(keys);
        QCOMPARE(typed(text(keys), text(keyword), length), text(standing));
    }
}

void ValueRulesTest::ranges()
{
    const rows::Table<QString, QString, QString, QString, QString> table{
        {"u8", text("u8"), text("0"), text("255"), text("-1"), text("256")},
        {"s8", text("s8"), text("-128"), text("127"), text("-129"), text("128")},
        {"u16", text("u16"), text("0"), text("65535"), text("-1"), text("65536")},
        {"s16", text("s16"), text("-32768"), text("32767"), text("-32769"), text("32768")},
        {"u32", text("u32"), text("0"), text("4294967295"), text("-1"), text("4294967296")},
        {"s32", text("s32"), text("-2147483648"), text("2147483647"), text("-2147483649"),
         text("2147483648")}};
    for (const auto& [row, keyword, lowest, highest, below, above] : table) {
        const rows::Named named(row);
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
}

void ValueRulesTest::verdicts()
{
    const rows::Table<QString, QString, Verdict> table{
        {"u64 has no range", text("u64"), text("18446744073709551616"), Verdict::Kept},
        {"u64* neither", text("u64*"), text("1,2,3"), Verdict::Kept},
        {"no rule", text("PDrelCan"), text("x"), Verdict::Kept},
        {"text", text("string"), text("x"), Verdict::Accepted},
        {"fraction counts as 0", text("double"), text("1.5"), Verdict::Accepted},
        {"sign counts as 0", text("s8"), text("-"), Verdict::Accepted},
        {"empty", text("u8"), QString(), Verdict::Accepted},
        {"s64 beyond counts as 0", text("s64"), text("9223372036854775808"), Verdict::Accepted}};
    for (const auto& [row, keyword, value, verdict] : table) {
        const rows::Named named(row);
        QCOMPARE(value_rules::judge(value, keyword, 2), verdict);
    }
}

void ValueRulesTest::completing()
{
    const auto completed = [](const char* values, const QString& keyword) {
        return value_rules::completed(text(values), keyword);
    };
    for (const QString& array : text("u8* u16* u32* u64* s8* s16* s32* s64* double*").split(u' '))
        QCOMPARE(completed("1,2,", array), text("1,2,0"));
    for (const QString& other : text("string char* float* u8 void* PDrelCan").split(u' '))
        QCOMPARE(completed("1,2,", other), text("1,2,"));
    QCOMPARE(completed("1,2", text("u8*")), text("1,2"));
    QVERIFY(completed("", text("u8*")).isEmpty());
}

void ValueRulesTest::normalizing()
{
    const rows::Table<DrelVarType, QString, QString> table{
        {"signed", DrelS8, text(" -12 "), text("-12")},
        {"least signed", DrelS64, text("-9223372036854775808"), text("-9223372036854775808")},
        {"greatest unsigned", DrelU64, text("18446744073709551615"), text("18446744073709551615")},
        {"no number", DrelU8, text("0x10"), text("0")},
        {"leading zeros", DrelU16, text("007"), text("7")},
        {"fraction", DrelDouble, text("1.50"), text("1.5")},
        {"a third", DrelDouble, text("0.3333333333333333"), text("0.3333333333333333")},
        {"large", DrelDouble, text("1e20"), text("100000000000000000000")},
        {"small", DrelFloat, text("-2.5e-7"), text("-0.00000025")},
        {"no finite number", DrelDouble, text("1e999"), text("0")},
        {"true", DrelBool, text("true"), text("true")},
        {"not true", DrelBool, text("1"), text("false")},
        {"no text", DrelString, QString(), text("NULL")},
        {"blanks of a text", DrelCharPtr, text(" a "), text(" a ")},
        {"array", DrelU8Ptr, text("1, 2"), text("1, 2")}};
    for (const auto& [row, type, value, expectedKept] : table) {
        const rows::Named named(row);
        const QString kept = variable_values::normalized(value, type);
        QCOMPARE(kept, expectedKept);
        // What is kept can be typed.
        const QString keyword = QString::fromStdString(varTypeKeyword(type));
        const QRegularExpression shape(value_rules::pattern(keyword));
        QVERIFY2(value_rules::isArray(keyword) || shape.match(kept).hasMatch(),
                 qPrintable(keyword));
    }
}

PE_TEST("value_rules", ValueRulesTest)
#include "value_rules_test.moc"
