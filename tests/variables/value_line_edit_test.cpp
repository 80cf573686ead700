// The field around the rules: which signals it emits, what it falls back to, when it completes.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
#include "variables/VarValueLineEdit.h"

#include <QToolTip>
#include <QtTest>

class ValueLineEditTest : public QObject
{
    Q_OBJECT
private slots:
    void tellsAcceptedValues();
    void refusalKeepsTheCursor();
    void refusalFallsBackToWhatWasPutIn();
    void refusalIsSeen();
    void leavingCompletesArrays();
    void anotherTypeTakesTheRulesOff();
};

void ValueLineEditTest::tellsAcceptedValues()
{
    const rows::Table<QString, QString, QStringList> table{
        {"scalar", text("u8"), text("256"), QStringList({text("2"), text("25")})},
        {"array", text("s8*"), text("1,300"),
         QStringList({text("1"), text("1,"), text("1,3"), text("1,30")})},
        {"text", text("string"), text("ab"), QStringList({text("a"), text("ab")})},
        {"unchecked", text("u64"), text("12"), QStringList()},
        {"without a rule", text("bool"), text("t"), QStringList()}};
    for (const auto& [row, type, keys, expectedTold] : table) {
        const rows::Named named(row);
        VarValueLineEdit edit;
        edit.setValueType(type, -1);
        QStringList told;
        connect(&edit, &VarValueLineEdit::valueChanged, this,
                [&told](const QString& value) { told.append(value); });
        edit.setValue(QString());
        QTest::keyClicks(&edit, keys);
        QCOMPARE(told, expectedTold);
    }
}

void ValueLineEditTest::refusalKeepsTheCursor()
{
    VarValueLineEdit edit;
    edit.setValueType(text("u8"), -1);
    edit.setValue(text("25"));
    edit.setCursorPosition(1);
    QTest::keyClicks(&edit, text("9"));
    QCOMPARE(edit.text(), text("25"));
    QCOMPARE(edit.cursorPosition(), 1);
    edit.selectAll();
    QTest::keyClicks(&edit, text("7"));
    QCOMPARE(edit.text(), text("7"));
}

void ValueLineEditTest::refusalFallsBackToWhatWasPutIn()
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

void ValueLineEditTest::refusalIsSeen()
{
    const rows::Table<QString, QString, QString, QString> table{
        {"number", text("s32"), text("9999999999"), text("999999999"),
         text("s32 的取值范围是 -2147483648 到 2147483647")},
        {"element", text("u8*"), text("1,256"), text("1,25"),
         text("u8* 每个元素的取值范围是 0 到 255")},
        {"elements", text("u8*"), text("1,2,3,4"), text("1,2,34"), text("最多 3 个元素")},
        {"text", text("string"), text("abcd"), text("abc"), text("最多 3 个字符")}};
    for (const auto& [row, type, keys, left, reason] : table) {
        const rows::Named named(row);
        VarValueLineEdit edit;
        edit.setValueType(type, 3);
        edit.show();
        QVERIFY(QTest::qWaitForWindowExposed(&edit));
        const QColor calm = edit.grab().toImage().pixelColor(1, edit.height() / 2);
        QTest::keyClicks(&edit, keys);
        QCOMPARE(edit.text(), left);
        QCOMPARE(QToolTip::text(), reason);
        QVERIFY(edit.grab().toImage().pixelColor(1, edit.height() / 2) != calm);
        QTRY_COMPARE(edit.grab().toImage().pixelColor(1, edit.height() / 2), calm);
    }
}

void ValueLineEditTest::leavingCompletesArrays()
{
    const rows::Table<QString, bool, QString> table{
        {"array, another field", text("u8*"), false, text("1,2,0")},
        {"array, Enter", text("double*"), true, text("1,2,0")},
        {"text", text("string"), false, text("1,2,")}};
    for (const auto& [row, type, byEnter, whole] : table) {
        const rows::Named named(row);
        QWidget window;
        auto* edit = new VarValueLineEdit(&window);
        auto* other = new QLineEdit(&window);
        edit->setValueType(type, 8);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        edit->setFocus();
        QTest::keyClicks(edit, text("1,2,"));
        if (byEnter)
            QTest::keyClick(edit, Qt::Key_Return);
        else
            other->setFocus();
        QCOMPARE(edit->text(), whole);
    }
}

void ValueLineEditTest::anotherTypeTakesTheRulesOff()
{
    VarValueLineEdit edit;
    edit.setValueType(text("u8*"), 2);
    QCOMPARE(edit.placeholderText(), text("数组格式 例: 1,2,3,4,5"));
    edit.setValueType(text("u8"), 2);
    QVERIFY(edit.validator() && edit.placeholderText().isEmpty());
    edit.setValueType(text("string"), 2);
    QVERIFY(!edit.validator());
    edit.insert(text("变a"));
    QCOMPARE(edit.text(), text("变a"));
}

PE_WIDGET_TEST("value_line_edit", ValueLineEditTest)
#include "value_line_edit_test.moc"
