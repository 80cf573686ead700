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
    void matches();
    void rowChange();
    void listPlace();
};

/// "|" in a text stands for the cursor; the word is replaced by "X".
void CompletionRulesTest::word()
{
    const rows::Table<const char*, const char*> table{
        {"a+spe|+b", "spe", "a+X+b"},       {"[local]spe|", "spe", "[local]X"},
        {"my_var_1|", "my_var_1", "X"},     {"f(1,温|)", "温", "f(1,X)"},
        {"first\nspe|", "spe", "first\nX"}, {"x = [|", "", "x = [X"},
        {"sp|eed", "", "X"} /* inside */,   {"|speed", "", "X"} /* in front */};
    for (const auto& [row, word, replaced] : table) {
        const rows::Named named(row);
        QString before = text(row);
        const int place = before.indexOf(QLatin1Char('|'));
        QTextDocument document(before.remove(place, 1));
        QTextCursor cursor(&document);
        cursor.setPosition(place);
        QCOMPARE(completion::wordAt(cursor), text(word));
        completion::replaceWord(cursor, QStringLiteral("X"));
        QCOMPARE(document.toPlainText(), text(replaced));
    }
}

void CompletionRulesTest::matches()
{
    const QStringList words = lines("[local]speed\n[local]Speed\n[sys]max_speed\n[local]rpm");
    QCOMPARE(completion::matches(words, text("spe")), lines("[local]speed\n[sys]max_speed"));
    QCOMPARE(completion::matches(words, text("sys")), lines("[sys]max_speed"));
    QCOMPARE(completion::matches(words, text("s.e")), QStringList()); // no pattern
}

/// Between any two short lists: the change leads from one to the other, and is one run of rows that
/// begins and ends where they differ.
void CompletionRulesTest::rowChange()
{
    QStringList lists{QString()};
    for (int i = 0; lists[i].size() < 5; ++i) {
        for (const char letter : {'a', 'b'})
            lists.append(lists[i] + QLatin1Char(letter));
    }
    const auto rows = [](const QString& letters) {
        return letters.split(QString(), Qt::SkipEmptyParts);
    };
    for (const QString& shown : qAsConst(lists)) {
        for (const QString& wanted : qAsConst(lists)) {
            const completion::RowChange change = completion::rowChange(rows(shown), rows(wanted));
            const QString removed = shown.mid(change.first, change.removed);
            const QString inserted = change.inserted.join(QString());
            QCOMPARE(QString(shown).replace(change.first, change.removed, inserted), wanted);
            QVERIFY(removed.isEmpty() || inserted.isEmpty() ||
                    (removed.front() != inserted.front() && removed.back() != inserted.back()));
        }
    }
}

void CompletionRulesTest::listPlace()
{
    const QRect screen(0, 0, 1000, 800);
    const QRect second(1000, -200, 1000, 800);
    const rows::Table<QRect, QPoint, QPoint> table{
        // The list is 250 by 150.
        {"just fits below", screen, {100, 630}, {100, 650}},
        {"above", screen, {100, 631}, {100, 481}},
        {"just fits to the right", screen, {750, 100}, {750, 120}},
        {"moved left", screen, {751, 100}, {750, 120}},
        {"corner of the second", second, {1990, 590}, {1750, 440}}};
    for (const auto& [row, on, cursor, place] : table) {
        const rows::Named named(row);
        const QRect line(cursor, QSize(1, 20));
        QCOMPARE(completion::listPlace(line, QSize(250, 150), on), place);
    }
}

PE_TEST("completion_rules", CompletionRulesTest)
#include "completion_rules_test.moc"
