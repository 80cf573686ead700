// The rules of sequence names and of the main sequence.

#include "sequences/sequence_rules.h"
#include "tests/support/test_program.h"

#include <QTest>

using sequence_rules::NameRefusal;

Q_DECLARE_METATYPE(sequence_rules::NameRefusal)

class SequenceRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void freeNames_data();
    void freeNames();
    void namePattern_data();
    void namePattern();
    void refusals_data();
    void refusals();
    void mainFlags_data();
    void mainFlags();
};

void SequenceRulesTest::freeNames_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("free");
    QTest::newRow("the first one") << ""
                                   << "Sequence_0";
    QTest::newRow("the count is free") << "a,Sequence_7"
                                       << "Sequence_2";
    QTest::newRow("a gap below is not filled") << "Sequence_0,Sequence_2"
                                               << "Sequence_3";
    QTest::newRow("several in a row are taken") << "Sequence_4,Sequence_3,Sequence_5"
                                                << "Sequence_6";
    QTest::newRow("case counts") << "sequence_1"
                                 << "Sequence_1";
}

void SequenceRulesTest::freeNames()
{
    QFETCH(QString, names);
    QTEST(sequence_rules::freeName(names.split(QLatin1Char(','), Qt::SkipEmptyParts)), "free");
}

void SequenceRulesTest::namePattern_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("matches");
    QTest::newRow("letter") << "a" << true;
    QTest::newRow("underscore and digits") << "_1" << true;
    QTest::newRow("20 characters") << QString(20, QLatin1Char('Z')) << true;
    QTest::newRow("21 characters") << QString(21, QLatin1Char('Z')) << false;
    QTest::newRow("nothing") << "" << false;
    QTest::newRow("digit first") << "1a" << false;
    QTest::newRow("blank") << "a b" << false;
    QTest::newRow("hyphen") << "a-b" << false;
    QTest::newRow("other letters") << QStringLiteral("a序列") << false;
}

void SequenceRulesTest::namePattern()
{
    QFETCH(QString, name);
    QTEST(sequence_rules::namePattern().match(name).hasMatch(), "matches");
}

void SequenceRulesTest::refusals_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<NameRefusal>("refusal");
    QTest::newRow("free") << "c" << NameRefusal::None;
    QTest::newRow("case counts") << "A" << NameRefusal::None;
    QTest::newRow("part of another") << "lon" << NameRefusal::None;
    QTest::newRow("taken") << "long" << NameRefusal::Taken;
    QTest::newRow("taken, with blanks around") << " a " << NameRefusal::Taken;
    QTest::newRow("empty") << "" << NameRefusal::Empty;
    QTest::newRow("blanks") << "  " << NameRefusal::Empty;
}

void SequenceRulesTest::refusals()
{
    QFETCH(QString, name);
    const QStringList others = {QStringLiteral("a"), QStringLiteral("long")};
    QTEST(sequence_rules::refusalOf(name, others), "refusal");
}

void SequenceRulesTest::mainFlags_data()
{
    QTest::addColumn<QString>("boxes"); // a digit a row
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("stored");
    QTest::newRow("first choice") << "010" << 1 << "1+";
    QTest::newRow("replaces one above") << "1001" << 3 << "0- 3+";
    QTest::newRow("replaces one below") << "1001" << 0 << "0+ 3-";
    QTest::newRow("of several one remains") << "1111" << 2 << "0- 1- 2+ 3-";
    QTest::newRow("taken away") << "0100" << 2 << "";
    QTest::newRow("no such row") << "11" << 2 << "";
}

void SequenceRulesTest::mainFlags()
{
    QFETCH(QString, boxes);
    QFETCH(int, row);
    QVector<bool> ticked;
    for (const QChar box : qAsConst(boxes))
        ticked.append(box == QLatin1Char('1'));
    QStringList stored;
    for (const auto& flag : sequence_rules::mainFlagsToStore(ticked, row))
        stored.append(QString::number(flag.row) + QLatin1Char(flag.isMain ? '+' : '-'));
    QTEST(stored.join(QLatin1Char(' ')), "stored");
}

PE_TEST("sequence_rules", SequenceRulesTest)
#include "sequence_rules_test.moc"
