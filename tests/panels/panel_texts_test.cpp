// What the panels make of values: operators, counts, declarations, and what may be typed.

#include "panels/condition_texts.h"
#include "panels/loop_values.h"
#include "panels/statement_texts.h"
#include "tests/support/test_program.h"

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
    void counts_data();
    void counts();
    void typing_data();
    void typing();
    void declarations_data();
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

void PanelTextsTest::counts_data()
{
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("count");
    QTest::newRow("from zero") << 0 << 10 << 10;
    QTest::newRow("shifted") << 3 << 10 << 7;
    QTest::newRow("negative begin") << -3 << 4 << 7;
    QTest::newRow("backwards") << 10 << 3 << 0;
    QTest::newRow("more than the form holds") << 0 << INT_MAX << 9999999;
    QTest::newRow("more than an int holds") << INT_MIN << INT_MAX << 9999999;
    QTest::newRow("less than an int holds") << INT_MAX << INT_MIN << 0;
}

void PanelTextsTest::counts()
{
    QFETCH(int, begin);
    QFETCH(int, end);
    QTEST(loop_values::fixedCount(begin, end), "count");
}

void PanelTextsTest::typing_data()
{
    QTest::addColumn<bool>("isVariable");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isAllowed");
    QTest::newRow("name") << true << "_speed9" << true;
    QTest::newRow("no name yet") << true << "" << true;
    QTest::newRow("digit first") << true << "9a" << false;
    QTest::newRow("20 characters") << true << "abcdefghijklmnopqrst" << true;
    QTest::newRow("21 characters") << true << "abcdefghijklmnopqrstu" << false;
    QTest::newRow("umlaut in a name") << true << "ä" << false;
    QTest::newRow("header") << false << "i = f(\"ä\"), j <<= 1 ;" << true;
    QTest::newRow("empty header") << false << "" << true;
    QTest::newRow("first Chinese character") << false << "i一" << false;
    QTest::newRow("last Chinese character") << false << "龥" << false;
}

void PanelTextsTest::typing()
{
    QFETCH(bool, isVariable);
    QFETCH(QString, text);
    const QRegularExpressionValidator validator(QRegularExpression(
        isVariable ? loop_values::variablePattern() : loop_values::headerPattern()));
    int position = 0;
    QTEST(validator.validate(text, position) != QValidator::Invalid, "isAllowed");
}

void PanelTextsTest::declarations_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("declarations");
    QTest::newRow("none") << "int a = 3;\nf(a);"
                          << "";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("one") << "int add(int a, int b) { return a + b; }"
                         << "add(int a, int b);";
    QTest::newRow("several") << "void f()\n{\n}\ndouble  g(char c)\n{ h(); }"
                             << "f();g(char c);";
    QTest::newRow("inner block") << "void f() { if (a) { b(); } int g() {} }"
                                 << "f();g();";
    QTest::newRow("other return type") << "bool f() {}"
                                       << "";
    QTest::newRow("a declaration alone") << "int f(int a);"
                                         << "";
}

void PanelTextsTest::declarations()
{
    QFETCH(QString, code);
    QTEST(statement_texts::functionDeclarations(code), "declarations");
}

PE_TEST("panel_texts", PanelTextsTest)
#include "panel_texts_test.moc"
