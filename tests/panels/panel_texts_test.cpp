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
    void operators_data();
    void operators();
    void foreignOperator();
    void counts();
    void typing();
    void declarations();
};

void PanelTextsTest::operators_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sign");
    QTest::addColumn<bool>("isArray");
    int row = 0;
    const auto add = [&row](const char* text, const char* sign, bool isArray) {
        QTest::newRow(text) << row++ << QString::fromUtf8(text) << QString::fromUtf8(sign)
                            << isArray;
    };
    add("==", "==", false);
    add("!=", "!=", false);
    add("==(数组)", "==", true);
    add("!=(数组)", "!=", true);
    add(">", ">", false);
    add("<", "<", false);
    add(">=", ">=", false);
    add("<=", "<=", false);
}

void PanelTextsTest::operators()
{
    QFETCH(int, row);
    QFETCH(QString, text);
    QFETCH(QString, sign);
    QFETCH(bool, isArray);
    QCOMPARE(condition_texts::operatorTexts().value(row), text);
    QCOMPARE(condition_texts::operatorTexts().size(), 8);
    QCOMPARE(condition_texts::operatorOf(text).sign, sign);
    QCOMPARE(condition_texts::operatorOf(text).isArray, isArray);
    QCOMPARE(condition_texts::textOf({sign, isArray}), text);
}

void PanelTextsTest::foreignOperator()
{
    QVERIFY(!condition_texts::operatorTexts().contains(
        condition_texts::textOf({QStringLiteral(">"), true})));
    QCOMPARE(condition_texts::operatorOf(QStringLiteral("a(b(c")).sign, QStringLiteral("a"));
    QCOMPARE(condition_texts::operatorOf(QString()).sign, QString());
}

void PanelTextsTest::counts()
{
    const rows::Table<int, int, int> table{{"from zero", 0, 10, 10},
                                           {"shifted", 3, 10, 7},
                                           {"negative begin", -3, 4, 7},
                                           {"backwards", 10, 3, 0},
                                           {"more than the form holds", 0, INT_MAX, 9999999},
                                           {"more than an int holds", INT_MIN, INT_MAX, 9999999},
                                           {"less than an int holds", INT_MAX, INT_MIN, 0}};
    for (const auto& [row, begin, end, count] : table) {
        const rows::Named named(row);
        QCOMPARE(loop_values::fixedCount(begin, end), count);
    }
}

void PanelTextsTest::typing()
{
    const rows::Table<bool, QString, bool> table{
        {"name", true, text("_speed9"), true},
        {"no name yet", true, QString(), true},
        {"digit first", true, text("9a"), false},
        {"20 characters", true, text("abcdefghijklmnopqrst"), true},
        {"21 characters", true, text("abcdefghijklmnopqrstu"), false},
        {"umlaut in a name", true, text("ä"), false},
        {"header", false, text("i = f(\"ä\"), j <<= 1 ;"), true},
        {"empty header", false, QString(), true},
        {"first Chinese character", false, text("i一"), false},
        {"last Chinese character", false, text("龥"), false}};
    for (const auto& [row, isVariable, typed, isAllowed] : table) {
        const rows::Named named(row);
        const QRegularExpressionValidator validator(QRegularExpression(
            isVariable ? loop_values::variablePattern() : loop_values::headerPattern()));
        QString text = typed;
        int position = 0;
        QCOMPARE(validator.validate(text, position) != QValidator::Invalid, isAllowed);
    }
}

void PanelTextsTest::declarations()
{
    const rows::Table<QString, QString> table{
        {"none", text("int a = 3;\nf(a);"), QString()},
        {"empty", QString(), QString()},
        {"one", text("int add(int a, int b) { return a + b; }"), text("add(int a, int b);")},
        {"several", text("void f()\n{\n}\ndouble  g(char c)\n{ h(); }"), text("f();g(char c);")},
        {"inner block", text("void f() { if (a) { b(); } int g() {} }"), text("f();g();")},
        {"other return type", text("bool f() {}"), QString()},
        {"a declaration alone", text("int f(int a);"), QString()}};
    for (const auto& [row, code, declarations] : table) {
        const rows::Named named(row);
        QCOMPARE(statement_texts::functionDeclarations(code), declarations);
    }
}

PE_TEST("panel_texts", PanelTextsTest)
#include "panel_texts_test.moc"
