// What a report means for its row, and for the progress of the whole run.

#include "logic/run/run_states.h"
#include "tests/support/test_program.h"

#include <QTest>

using run_states::Outcome;
Q_DECLARE_METATYPE(run_states::Outcome)

class RunStatesTest : public QObject
{
    Q_OBJECT
private slots:
    void outcome_data();
    void outcome();
    void looks();
    void totalProgress_data();
    void totalProgress();
};

void RunStatesTest::outcome_data()
{
    QTest::addColumn<double>("progress");
    QTest::addColumn<int>("result");
    QTest::addColumn<Outcome>("expected");
    QTest::newRow("start") << 0.0 << 0 << Outcome::Started;
    QTest::newRow("start with a negative result") << 0.0 << -1 << Outcome::Started;
    QTest::newRow("under way") << 0.5 << 0 << Outcome::Running;
    QTest::newRow("nearly done") << 99.999 << 0 << Outcome::Running;
    QTest::newRow("done") << 100.0 << 0 << Outcome::Succeeded;
    QTest::newRow("done with a positive result") << 100.0 << 7 << Outcome::Succeeded;
    QTest::newRow("failed half-way") << 40.0 << -1 << Outcome::Failed;
    QTest::newRow("failed at the end") << 100.0 << -5 << Outcome::Failed;
}

void RunStatesTest::outcome()
{
    QFETCH(double, progress);
    QFETCH(int, result);
    QTEST(run_states::outcome(progress, result), "expected");
}

void RunStatesTest::looks()
{
    const QPalette light(Qt::white);
    QCOMPARE(run_states::text(Outcome::Succeeded), QStringLiteral("执行成功"));
    QCOMPARE(run_states::background(Outcome::Succeeded, light), QBrush(QColor(187, 237, 196)));
    QCOMPARE(run_states::text(Outcome::Failed), QStringLiteral("执行失败"));
    QCOMPARE(run_states::background(Outcome::Failed, light), QBrush(QColor(241, 178, 185)));
    QCOMPARE(run_states::background(Outcome::Started), QBrush(Qt::transparent));
    QCOMPARE(run_states::closingOutcome(-1), Outcome::Failed);
    QCOMPARE(run_states::closingOutcome(3), Outcome::Succeeded);
}

void RunStatesTest::totalProgress_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("expected");
    QTest::newRow("first starts") << 0 << 4 << 0.0 << 0.0;
    QTest::newRow("first is half-way") << 0 << 4 << 50.0 << 12.5;
    QTest::newRow("second starts") << 1 << 4 << 0.0 << 25.0;
    QTest::newRow("last ends") << 3 << 4 << 100.0 << 100.0;
    QTest::newRow("thirds") << 1 << 3 << 100.0 << 100.0 / 3 + (1.0 / 3) * 100.0;
}

void RunStatesTest::totalProgress()
{
    QFETCH(int, place);
    QFETCH(int, count);
    QFETCH(double, progress);
    QFETCH(double, expected);
    QVERIFY(run_states::totalProgress(place, count, progress) == expected);
}

PE_TEST("logic_run_states", RunStatesTest)
#include "run_states_test.moc"
