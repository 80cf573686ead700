// The word that is being typed, the words that fit, and the place of their list.

#include "tests/support/test_program.h"
#include "variables/completion.h"

#include <QRect>
#include <QSize>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

class CompletionRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void word_data();
    void word();
    void wordIsReplacedInOneStep();
    void matches_data();
    void matches();
    void rowChange_data();
    void rowChange();
    void listPlace_data();
    void listPlace();
};

/// "|" in a text stands for the cursor.
void CompletionRulesTest::word_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("replaced"); // by "[sys]x"
    const auto row = [](const char* text, const char* word, const char* replaced) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(word)
                            << QString::fromUtf8(replaced);
    };
    row("|", "", "[sys]x");
    row("spe|", "spe", "[sys]x");
    row("a + spe|", "spe", "a + [sys]x");
    row("a+spe|+b", "spe", "a+[sys]x+b");
    row("spe| + b", "spe", "[sys]x + b");
    row("[lo|", "lo", "[[sys]x");
    row("[local]spe|", "spe", "[local][sys]x");
    row("my_var_1|", "my_var_1", "[sys]x");
    row("f(1,温|)", "温", "f(1,[sys]x)");
    row("first\nspe|", "spe", "first\n[sys]x");
    row("spe |", "", "spe [sys]x");
    row("x = [|", "", "x = [[sys]x");
    row("sp|eed", "", "[sys]x"); // inside
    row("|speed", "", "[sys]x"); // in front
}

void CompletionRulesTest::word()
{
    QFETCH(QString, text);
    QFETCH(QString, word);
    QFETCH(QString, replaced);
    const int place = text.indexOf(QLatin1Char('|'));
    QTextDocument document(text.remove(place, 1));
    QTextCursor cursor(&document);
    cursor.setPosition(place);
    QCOMPARE(completion::wordAt(cursor), word);
    completion::replaceWord(cursor, QStringLiteral("[sys]x"));
    QCOMPARE(document.toPlainText(), replaced);
}

void CompletionRulesTest::wordIsReplacedInOneStep()
{
    QTextDocument document(QStringLiteral("a spe"));
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    completion::replaceWord(cursor, QStringLiteral("[local]speed"));
    document.undo();
    QCOMPARE(document.toPlainText(), QStringLiteral("a spe"));
}

void CompletionRulesTest::matches_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("found");
    QTest::newRow("anywhere, in order") << "spe"
                                        << "[local]speed [sys]max_speed";
    QTest::newRow("exact case") << "Spe"
                                << "[local]Speed";
    QTest::newRow("the prefix, too") << "sys"
                                     << "[sys]max_speed";
    QTest::newRow("no pattern") << "s.e"
                                << "";
    QTest::newRow("nothing") << "speeds"
                             << "";
}

void CompletionRulesTest::matches()
{
    QFETCH(QString, part);
    const QStringList words = {QStringLiteral("[local]speed"), QStringLiteral("[local]Speed"),
                               QStringLiteral("[sys]max_speed"), QStringLiteral("[local]rpm")};
    QTEST(completion::matches(words, part).join(QLatin1Char(' ')), "found");
}

/// Rows are single letters.
void CompletionRulesTest::rowChange_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("inserted");
    QTest::newRow("first") << ""
                           << "ab" << 0 << 0 << "ab";
    QTest::newRow("none left") << "ab"
                               << "" << 0 << 2 << "";
    QTest::newRow("the same") << "abc"
                              << "abc" << 3 << 0 << "";
    QTest::newRow("narrowed at the end") << "abcd"
                                         << "ab" << 2 << 2 << "";
    QTest::newRow("narrowed in the middle") << "abcd"
                                            << "ad" << 1 << 2 << "";
    QTest::newRow("widened in front") << "cd"
                                      << "abcd" << 0 << 0 << "ab";
    QTest::newRow("others") << "abc"
                            << "axyc" << 1 << 1 << "xy";
    // The common beginning and the common end may not be counted twice.
    QTest::newRow("fewer of the same") << "aaa"
                                       << "aa" << 2 << 1 << "";
    QTest::newRow("more of the same") << "aa"
                                      << "aaa" << 2 << 0 << "a";
    QTest::newRow("overlapping") << "aba"
                                 << "ababa" << 3 << 0 << "ba";
}

void CompletionRulesTest::rowChange()
{
    QFETCH(QString, shown);
    QFETCH(QString, wanted);
    const auto rows = [](const QString& letters) {
        return letters.split(QString(), Qt::SkipEmptyParts);
    };
    const completion::RowChange change = completion::rowChange(rows(shown), rows(wanted));
    QTEST(change.first, "first");
    QTEST(change.removed, "removed");
    QTEST(change.inserted.join(QString()), "inserted");
    QCOMPARE(shown.replace(change.first, change.removed, change.inserted.join(QString())), wanted);
}

void CompletionRulesTest::listPlace_data()
{
    QTest::addColumn<QRect>("cursor");
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QPoint>("place");
    const QRect screen(0, 0, 1000, 800);
    const auto cursor = [](int x, int y) { return QRect(x, y, 1, 20); };
    // The list is 250 by 150.
    QTest::newRow("below") << cursor(100, 100) << screen << QPoint(100, 120);
    QTest::newRow("just fits below") << cursor(100, 630) << screen << QPoint(100, 650);
    QTest::newRow("above") << cursor(100, 631) << screen << QPoint(100, 481);
    QTest::newRow("just fits to the right") << cursor(750, 100) << screen << QPoint(750, 120);
    QTest::newRow("moved left") << cursor(751, 100) << screen << QPoint(750, 120);
    QTest::newRow("above and moved left") << cursor(990, 700) << screen << QPoint(750, 550);
    const QRect second(1000, -200, 1000, 800);
    QTest::newRow("second screen") << cursor(1100, 300) << second << QPoint(1100, 320);
    QTest::newRow("corner of the second") << cursor(1990, 590) << second << QPoint(1750, 440);
}

void CompletionRulesTest::listPlace()
{
    QFETCH(QRect, cursor);
    QFETCH(QRect, screen);
    QTEST(completion::listPlace(cursor, QSize(250, 150), screen), "place");
}

PE_TEST("completion_rules", CompletionRulesTest)
#include "completion_rules_test.moc"
