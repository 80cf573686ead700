// What can be typed as a value, key by key: the shape of the type decides first, then its range.
// And the field around these rules: what it tells, what it falls back to, when it completes.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/VarValueLineEdit.h"
#include "variables/value_rules.h"
#include "variables/variable_values.h"

#include <QRegularExpressionValidator>
#include <QToolTip>
#include <QtTest>

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

class ValueRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void typing();
    void ranges();
    void reasons();
    void completing();
    void normalizing();
    void fieldTellsAcceptedValues();
    void refusalKeepsTheCursor();
    void refusalFallsBackToWhatWasPutIn();
    void refusalIsSeen();
    void leavingCompletesArrays();
    void anotherTypeTakesTheRulesOff();
};

void ValueRulesTest::typing()
{
    const rows::Table<int, const char*, const char*> table{
        // Whole numbers: no sign for the unsigned, no leading zero, nothing beyond the range.
        {"u8", NoLimit, "256", "25"},
        {"u8", NoLimit, "007", "0"},
        {"u8", NoLimit, "-1a.5 ", "15"},
        {"s8", NoLimit, "-129", "-12"},
        {"s8", NoLimit, "--05", "-5"},
        {"s8", NoLimit, "1-2", "12"},
        {"u64", NoLimit, "123456789012345678901", "123456789012345678901"},
        {"s64", NoLimit, "9223372036854775808", "9223372036854775808"},
        // The limit counts elements, not the digits of a scalar.
        {"u16", 1, "12345", "12345"},
        // Fractions.
        {"double", NoLimit, "-.5.5", "-5.5"},
        {"double", NoLimit, "00.5", "00.5"},
        {"float", NoLimit, "1e5", "15"},
        // Arrays: each element by the rule of its type, one comma at a time.
        {"u8*", NoLimit, ",1,,2,", "1,2,"},
        {"u8*", NoLimit, "300,255,256", "30,255,25"},
        {"u8*", NoLimit, "01,-2", "0,2"},
        {"u8*", 3, "1,2,3,4", "1,2,34"},
        {"u8*", 2, "1,2,", "1,2"},
        // Nothing but a digit can follow a lone sign.
        {"s8*", NoLimit, "-,1", "-1"},
        {"u64*", 1, "1,18446744073709551616", "1,18446744073709551616"},
        {"double*", NoLimit, "1.,2", "1.,2"},
        {"double*", NoLimit, "-1.5,.,-0.25,", "-1.5,-0.25,"},
        {"double*", NoLimit, "01,2", "0,2"},
        // Texts: any character, as many as there is room for.
        {"string", 4, "a 变量e", "a 变量"},
        {"string", 0, "a", ""},
        {"string", NoLimit, "any, \"text\" at all", "any, \"text\" at all"},
        {"char*", 2, "abc", "ab"},
        // Keywords without a rule.
        {"bool", 1, "maybe", "maybe"},
        {"U8", NoLimit, "256", "256"}};
    for (const auto& [keyword, length, keys, standing] : table) {
        const rows::Named named(keys);
        QCOMPARE(typed(text(keys), text(keyword), length), text(standing));
    }
}

void ValueRulesTest::ranges()
{
    const rows::Table<const char*, const char*, const char*, const char*> table{
        {"u8", "0", "255", "-1", "256"},
        {"s8", "-128", "127", "-129", "128"},
        {"u16", "0", "65535", "-1", "65536"},
        {"s16", "-32768", "32767", "-32769", "32768"},
        {"u32", "0", "4294967295", "-1", "4294967296"},
        {"s32", "-2147483648", "2147483647", "-2147483649", "2147483648"}};
    for (const auto& [keyword, lowest, highest, below, above] : table) {
        const rows::Named named(keyword);
        const QString array = text(keyword) + u'*';
        for (const char* inside : {lowest, highest}) {
            QCOMPARE(value_rules::judge(text(inside), text(keyword), NoLimit), Verdict::Accepted);
            QCOMPARE(value_rules::judge(text("1,") + text(inside), array, 2), Verdict::Accepted);
        }
        for (const char* outside : {below, above}) {
            QCOMPARE(value_rules::judge(text(outside), text(keyword), NoLimit), Verdict::Refused);
            QCOMPARE(value_rules::judge(text(outside) + text(",1"), array, 2), Verdict::Refused);
        }
    }
}

void ValueRulesTest::reasons()
{
    const rows::Table<const char*, const char*> table{
        {"s32", "9999999999", "s32 的取值范围是 -2147483648 到 2147483647"},
        {"u8*", "1,256", "u8* 每个元素的取值范围是 0 到 255"},
        {"u8*", "1,2,3,", "最多 3 个元素"},
        {"string", "abcd", "最多 3 个字符"},
        {"string", "abc", ""}};
    for (const auto& [keyword, value, reason] : table) {
        const rows::Named named(value);
        QCOMPARE(value_rules::refusal(text(value), text(keyword), 3), text(reason));
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
    const rows::Table<DrelVarType, const char*, const char*> table{
        {"signed", DrelS8, " -12 ", "-12"},
        {"least signed", DrelS64, "-9223372036854775808", "-9223372036854775808"},
        {"greatest unsigned", DrelU64, "18446744073709551615", "18446744073709551615"},
        {"leading zeros", DrelU16, "007", "7"},
        {"a third", DrelDouble, "0.3333333333333333", "0.3333333333333333"},
        {"large", DrelDouble, "1e20", "100000000000000000000"},
        {"small", DrelFloat, "-2.5e-7", "-0.00000025"},
        {"no finite number", DrelDouble, "1e999", "0"},
        {"true", DrelBool, "true", "true"},
        {"not true", DrelBool, "1", "false"},
        {"no text", DrelString, "", "NULL"},
        {"blanks of a text", DrelCharPtr, " a ", " a "},
        {"array", DrelU8Ptr, "1, 2", "1, 2"}};
    for (const auto& [row, type, value, expected] : table) {
        const rows::Named named(row);
        const QString kept = variable_values::normalized(text(value), type);
        QCOMPARE(kept, text(expected));
        // What is kept can be typed.
        const QString keyword = QString::fromStdString(varTypeKeyword(type));
        const QRegularExpression shape(value_rules::pattern(keyword));
        QVERIFY(value_rules::isArray(keyword) || shape.match(kept).hasMatch());
    }
}

void ValueRulesTest::fieldTellsAcceptedValues()
{
    const rows::Table<const char*, const char*> table{{"u8", "256", "2 25"},
                                                      {"s8*", "1,300", "1 1, 1,3 1,30"},
                                                      {"double", "1.5", "1 1. 1.5"},
                                                      {"string", "ab", "a ab"},
                                                      {"u64", "12", ""},
                                                      {"bool", "t", ""}};
    for (const auto& [type, keys, expected] : table) {
        const rows::Named named(type);
        VarValueLineEdit edit;
        edit.setValueType(text(type), NoLimit);
        QStringList told;
        connect(&edit, &VarValueLineEdit::valueChanged, this,
                [&told](const QString& value) { told.append(value); });
        QTest::keyClicks(&edit, text(keys));
        QCOMPARE(told.join(u' '), text(expected));
    }
}

void ValueRulesTest::refusalKeepsTheCursor()
{
    VarValueLineEdit edit;
    edit.setValueType(text("u8"), NoLimit);
    edit.setValue(text("25"));
    edit.setCursorPosition(1);
    QTest::keyClicks(&edit, text("9"));
    QCOMPARE(edit.text(), text("25"));
    QCOMPARE(edit.cursorPosition(), 1);
}

void ValueRulesTest::refusalFallsBackToWhatWasPutIn()
{
    VarValueLineEdit edit;
    edit.setValueType(text("string"), 4);
    QSignalSpy spy(&edit, &VarValueLineEdit::valueChanged);
    edit.setValue(text("longer than 4"));
    QVERIFY(spy.isEmpty());
    edit.insert(text("x"));
    QCOMPARE(edit.text(), text("longer than 4"));
    edit.setText(text("abcd"));
    edit.insert(text("e"));
    QCOMPARE(edit.text(), text("abcd"));
    QCOMPARE(spy.count(), 1);
}

void ValueRulesTest::refusalIsSeen()
{
    VarValueLineEdit edit;
    edit.setValueType(text("u8"), NoLimit);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const auto edge = [&edit] { return edit.grab().toImage().pixelColor(1, edit.height() / 2); };
    const QColor calm = edge();
    QTest::keyClicks(&edit, text("256"));
    QCOMPARE(QToolTip::text(), value_rules::refusal(text("256"), text("u8"), NoLimit));
    QVERIFY(edge() != calm);
    QTRY_COMPARE(edge(), calm);
}

void ValueRulesTest::leavingCompletesArrays()
{
    for (const bool byEnter : {false, true}) {
        QWidget window;
        auto* edit = new VarValueLineEdit(&window);
        auto* other = new QLineEdit(&window);
        edit->setValueType(text("u8*"), 8);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        edit->setFocus();
        QTest::keyClicks(edit, text("1,2,"));
        if (byEnter)
            QTest::keyClick(edit, Qt::Key_Return);
        else
            other->setFocus();
        QCOMPARE(edit->text(), text("1,2,0"));
    }
}

void ValueRulesTest::anotherTypeTakesTheRulesOff()
{
    VarValueLineEdit edit;
    edit.setValueType(text("u8*"), 2);
    QCOMPARE(edit.placeholderText(), text("数组格式 例: 1,2,3,4,5"));
    edit.setValueType(text("string"), 2);
    QVERIFY(edit.placeholderText().isEmpty());
    edit.insert(text("变a"));
    QCOMPARE(edit.text(), text("变a"));
}

PE_WIDGET_TEST("value_rules", ValueRulesTest)
#include "value_rules_test.moc"
