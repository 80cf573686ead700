// The word that is being typed, the words that fit, and the place of their list.

#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"
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
    void word();
    void wordIsReplacedInOneStep();
    void matches();
    void rowChange();
    void listPlace();
};

/// "|" in a text stands for the cursor; the word is replaced by "[sys]x".
void CompletionRulesTest::word()
{
    const rows::Table<QString, QString> table{{"|", QString(), text("[sys]x")},
                                              {"spe|", text("spe"), text("[sys]x")},
                                              {"a + spe|", text("spe"), text("a + [sys]x")},
                                              {"a+spe|+b", text("spe"), text("a+[sys]x+b")},
                                              {"spe| + b", text("spe"), text("[sys]x + b")},
                                              {"[lo|", text("lo"), text("[[sys]x")},
                                              {"[local]spe|", text("spe"), text("[local][sys]x")},
                                              {"my_var_1|", text("my_var_1"), text("[sys]x")},
                                              {"f(1,温|)", text("温"), text("f(1,[sys]x)")},
                                              {"first\nspe|", text("spe"), text("first\n[sys]x")},
                                              {"spe |", QString(), text("spe [sys]x")},
                                              {"x = [|", QString(), text("x = [[sys]x")},
                                              // inside
                                              {"sp|eed", QString(), text("[sys]x")},
                                              // in front
                                              {"|speed", QString(), text("[sys]x")}};
    for (const auto& [row, word, replaced] : table) {
        const rows::Named named(row);
        QString before = text(row);
        const int place = before.indexOf(QLatin1Char('|'));
        QTextDocument document(before.remove(place, 1));
        QTextCursor cursor(&document);
        cursor.setPosition(place);
        QCOMPARE(completion::wordAt(cursor), word);
        completion::replaceWord(cursor, QStringLiteral("[sys]x"));
        QCOMPARE(document.toPlainText(), replaced);
    }
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

void CompletionRulesTest::matches()
{
    const rows::Table<QString, QString> table{
        {"anywhere, in order", text("spe"), text("[local]speed [sys]max_speed")},
        {"exact case", text("Spe"), text("[local]Speed")},
        {"the prefix, too", text("sys"), text("[sys]max_speed")},
        {"no pattern", text("s.e"), QString()},
        {"nothing", text("speeds"), QString()}};
    for (const auto& [row, part, found] : table) {
        const rows::Named named(row);
        const QStringList words = {QStringLiteral("[local]speed"), QStringLiteral("[local]Speed"),
                                   QStringLiteral("[sys]max_speed"), QStringLiteral("[local]rpm")};
        QCOMPARE(completion::matches(words, part).join(QLatin1Char(' ')), found);
    }
}

/// Rows are single letters.
void CompletionRulesTest::rowChange()
{
    const rows::Table<QString, QString, int, int, QString> table{
        {"first", QString(), text("ab"), 0, 0, text("ab")},
        {"none left", text("ab"), QString(), 0, 2, QString()},
        {"the same", text("abc"), text("abc"), 3, 0, QString()},
        {"narrowed at the end", text("abcd"), text("ab"), 2, 2, QString()},
        {"narrowed in the middle", text("abcd"), text("ad"), 1, 2, QString()},
        {"widened in front", text("cd"), text("abcd"), 0, 0, text("ab")},
        {"others", text("abc"), text("axyc"), 1, 1, text("xy")},
        // The common beginning and the common end may not be counted twice.
        {"fewer of the same", text("aaa"), text("aa"), 2, 1, QString()},
        {"more of the same", text("aa"), text("aaa"), 2, 0, text("a")},
        {"overlapping", text("aba"), text("ababa"), 3, 0, text("ba")}};
    for (const auto& [row, shown, wanted, first, removed, inserted] : table) {
        const rows::Named named(row);
        const auto rows = [](const QString& letters) {
            return letters.split(QString(), Qt::SkipEmptyParts);
        };
        const completion::RowChange change = completion::rowChange(rows(shown), rows(wanted));
        QCOMPARE(change.first, first);
        QCOMPARE(change.removed, removed);
        QCOMPARE(change.inserted.join(QString()), inserted);
        QCOMPARE(
            QString(shown).replace(change.first, change.removed, change.inserted.join(QString())),
            wanted);
    }
}

void CompletionRulesTest::listPlace()
{
    const QRect screen(0, 0, 1000, 800);
    const auto cursor = [](int x, int y) { return QRect(x, y, 1, 20); };
    const QRect second(1000, -200, 1000, 800);
    const rows::Table<QRect, QRect, QPoint> table{
        // The list is 250 by 150.
        {"below", cursor(100, 100), screen, QPoint(100, 120)},
        {"just fits below", cursor(100, 630), screen, QPoint(100, 650)},
        {"above", cursor(100, 631), screen, QPoint(100, 481)},
        {"just fits to the right", cursor(750, 100), screen, QPoint(750, 120)},
        {"moved left", cursor(751, 100), screen, QPoint(750, 120)},
        {"above and moved left", cursor(990, 700), screen, QPoint(750, 550)},
        {"second screen", cursor(1100, 300), second, QPoint(1100, 320)},
        {"corner of the second", cursor(1990, 590), second, QPoint(1750, 440)}};
    for (const auto& [row, cursor, screen, place] : table) {
        const rows::Named named(row);
        QCOMPARE(completion::listPlace(cursor, QSize(250, 150), screen), place);
    }
}

PE_TEST("completion_rules", CompletionRulesTest)
#include "completion_rules_test.moc"
