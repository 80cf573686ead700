// The rules of free sequence names and of the main sequence.

#include "sequences/sequence_rules.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

class SequenceRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void freeNames();
    void mainFlags();
};

void SequenceRulesTest::freeNames()
{
    const rows::Table<const char*> table{
        {"", "Sequence_0"},
        {"a Sequence_7", "Sequence_2"},
        {"Sequence_0 Sequence_2", "Sequence_3"}, // a gap below is not filled
        {"Sequence_4 Sequence_3 Sequence_5", "Sequence_6"},
        {"sequence_1", "Sequence_1"}};
    for (const auto& [names, free] : table) {
        const rows::Named named(names);
        QCOMPARE(sequence_rules::freeName(text(names).split(u' ', Qt::SkipEmptyParts)), text(free));
    }
}

/// Boxes are a digit a row.
void SequenceRulesTest::mainFlags()
{
    const rows::Table<int, const char*> table{{"010", 1, "1+ "},     {"1001", 3, "0- 3+ "},
                                              {"1001", 0, "0+ 3- "}, {"1111", 2, "0- 1- 2+ 3- "},
                                              {"0100", 2, ""},       {"11", 2, ""}};
    for (const auto& [boxes, chosen, expected] : table) {
        const rows::Named named(boxes);
        QVector<bool> ticked;
        for (const QChar box : text(boxes))
            ticked.append(box == QLatin1Char('1'));
        QString stored;
        for (const auto& flag : sequence_rules::mainFlagsToStore(ticked, chosen))
            stored += QString::number(flag.row) + text(flag.isMain ? "+ " : "- ");
        QCOMPARE(stored, text(expected));
    }
}

PE_TEST("sequence_rules", SequenceRulesTest)
#include "sequence_rules_test.moc"
