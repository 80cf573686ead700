// The rules of sequence names and of the main sequence.

#include "sequences/sequence_rules.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

using sequence_rules::NameRefusal;

class SequenceRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void freeNames();
    void namePattern();
    void refusals();
    void mainFlags();
};

void SequenceRulesTest::freeNames()
{
    const rows::Table<QString, QString> table{
        {"the first one", QString(), text("Sequence_0")},
        {"the count is free", text("a,Sequence_7"), text("Sequence_2")},
        {"a gap below is not filled", text("Sequence_0,Sequence_2"), text("Sequence_3")},
        {"several in a row are taken", text("Sequence_4,Sequence_3,Sequence_5"),
         text("Sequence_6")},
        {"case counts", text("sequence_1"), text("Sequence_1")}};
    for (const auto& [row, names, free] : table) {
        const rows::Named named(row);
        QCOMPARE(sequence_rules::freeName(names.split(QLatin1Char(','), Qt::SkipEmptyParts)), free);
    }
}

void SequenceRulesTest::namePattern()
{
    const rows::Table<QString, bool> table{{"letter", text("a"), true},
                                           {"underscore and digits", text("_1"), true},
                                           {"20 characters", QString(20, QLatin1Char('Z')), true},
                                           {"21 characters", QString(21, QLatin1Char('Z')), false},
                                           {"nothing", QString(), false},
                                           {"digit first", text("1a"), false},
                                           {"blank", text("a b"), false},
                                           {"hyphen", text("a-b"), false},
                                           {"other letters", QStringLiteral("a序列"), false}};
    for (const auto& [row, name, matches] : table) {
        const rows::Named named(row);
        QCOMPARE(sequence_rules::namePattern().match(name).hasMatch(), matches);
    }
}

void SequenceRulesTest::refusals()
{
    const rows::Table<QString, NameRefusal> table{
        {"free", text("c"), NameRefusal::None},
        {"case counts", text("A"), NameRefusal::None},
        {"part of another", text("lon"), NameRefusal::None},
        {"taken", text("long"), NameRefusal::Taken},
        {"taken, with blanks around", text(" a "), NameRefusal::Taken},
        {"empty", QString(), NameRefusal::Empty},
        {"blanks", text("  "), NameRefusal::Empty}};
    for (const auto& [row, name, refusal] : table) {
        const rows::Named named(row);
        const QStringList others = {QStringLiteral("a"), QStringLiteral("long")};
        QCOMPARE(sequence_rules::refusalOf(name, others), refusal);
    }
}

void SequenceRulesTest::mainFlags()
{
    const rows::Table<QString, int, QString> table{
        // a digit a row
        {"first choice", text("010"), 1, text("1+")},
        {"replaces one above", text("1001"), 3, text("0- 3+")},
        {"replaces one below", text("1001"), 0, text("0+ 3-")},
        {"of several one remains", text("1111"), 2, text("0- 1- 2+ 3-")},
        {"taken away", text("0100"), 2, QString()},
        {"no such row", text("11"), 2, QString()}};
    for (const auto& [rowName, boxes, row, expectedStored] : table) {
        const rows::Named named(rowName);
        QVector<bool> ticked;
        for (const QChar box : qAsConst(boxes))
            ticked.append(box == QLatin1Char('1'));
        QStringList stored;
        for (const auto& flag : sequence_rules::mainFlagsToStore(ticked, row))
            stored.append(QString::number(flag.row) + QLatin1Char(flag.isMain ? '+' : '-'));
        QCOMPARE(stored.join(QLatin1Char(' ')), expectedStored);
    }
}

PE_TEST("sequence_rules", SequenceRulesTest)
#include "sequence_rules_test.moc"
