// What the panels make of values: operators, counts, declarations, and what may be typed.

#include "panels/condition_texts.h"
#include "panels/loop_values.h"
#include "panels/statement_texts.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QRegularExpressionValidator>
#include <QtTest>

#include <climits>

class PanelTextsTest : public QObject
{
    Q_OBJECT
private slots:
    void operators();
    void counts();
    void typing();
    void declarations();
};

void PanelTextsTest::operators()
{
    using namespace condition_texts;
    QString shown;
    for (const QString& each : operatorTexts()) {
        const Operator comparison = operatorOf(each);
        QCOMPARE(textOf(comparison), each);
        shown += comparison.sign + text(comparison.isArray ? "[] " : " ");
    }
    QCOMPARE(shown, text("== != ==[] !=[] > < >= <= "));
    QVERIFY(!operatorTexts().contains(textOf({text(">"), true})));
    QCOMPARE(operatorOf(text("a(b(c")).sign, text("a"));
    QCOMPARE(operatorOf(QString()).sign, QString());
}

void PanelTextsTest::counts()
{
    QCOMPARE(loop_values::fixedCount(-3, 4), 7);
    QCOMPARE(loop_values::fixedCount(10, 3), 0);
    QCOMPARE(loop_values::fixedCount(0, INT_MAX), 9999999);
    QCOMPARE(loop_values::fixedCount(INT_MIN, INT_MAX), 9999999);
    QCOMPARE(loop_values::fixedCount(INT_MAX, INT_MIN), 0);
}

void PanelTextsTest::typing()
{
    const rows::Table<bool, bool> table{// a variable's name or a header; may be typed
                                        {"_speed9", true, true},
                                        {"", true, true},
                                        {"9a", true, false},
                                        {"abcdefghijklmnopqrst", true, true},
                                        {"abcdefghijklmnopqrstu", true, false},
                                        {"ä", true, false},
                                        {"i = f(\"ä\"), j <<= 1 ;", false, true},
                                        {"", false, true},
                                        {"i一", false, false},
                                        {"龥", false, false}};
    for (const auto& [row, isVariable, isAllowed] : table) {
        const rows::Named named(row);
        const QRegularExpressionValidator validator(QRegularExpression(
            isVariable ? loop_values::variablePattern() : loop_values::headerPattern()));
        QString typed = text(row);
        int position = 0;
        QCOMPARE(validator.validate(typed, position) != QValidator::Invalid, isAllowed);
    }
}

void PanelTextsTest::declarations()
{
    const rows::Table<const char*> table{
        {"int a = 3;\nf(a);", ""},
        {"int add(int a, int b) { return a + b; }", "add(int a, int b);"},
        {"void f()\n{\n}\ndouble  g(char c)\n{ h(); }", "f();g(char c);"},
        {"void f() { if (a) { b(); } int g() {} }", "f();g();"},
        {"bool f() {}", ""},
        {"int f(int a);", ""}};
    for (const auto& [code, declarations] : table) {
        const rows::Named named(code);
        QCOMPARE(statement_texts::functionDeclarations(text(code)), text(declarations));
    }
}

PE_TEST("panel_texts", PanelTextsTest)
#include "panel_texts_test.moc"
