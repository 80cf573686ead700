// What a report means for its row, and for the progress of the whole run.

#include "logic/run/run_states.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>

using run_states::Outcome;

class RunStatesTest : public QObject
{
    Q_OBJECT
private slots:
    void outcome();
    void looks();
    void totalProgress();
};

void RunStatesTest::outcome()
{
    const rows::Table<double, int, Outcome> table{
        {"start", 0.0, 0, Outcome::Started},
        {"start with a negative result", 0.0, -1, Outcome::Started},
        {"under way", 0.5, 0, Outcome::Running},
        {"nearly done", 99.999, 0, Outcome::Running},
        {"done", 100.0, 0, Outcome::Succeeded},
        {"done with a positive result", 100.0, 7, Outcome::Succeeded},
        {"failed half-way", 40.0, -1, Outcome::Failed},
        {"failed at the end", 100.0, -5, Outcome::Failed}};
    for (const auto& [row, progress, result, expected] : table) {
        const rows::Named named(row);
        QCOMPARE(run_states::outcome(progress, result), expected);
    }
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

void RunStatesTest::totalProgress()
{
    const rows::Table<int, int, double, double> table{
        {"first starts", 0, 4, 0.0, 0.0},
        {"first is half-way", 0, 4, 50.0, 12.5},
        {"second starts", 1, 4, 0.0, 25.0},
        {"last ends", 3, 4, 100.0, 100.0},
        {"thirds", 1, 3, 100.0, 100.0 / 3 + (1.0 / 3) * 100.0}};
    for (const auto& [row, place, count, progress, expected] : table) {
        const rows::Named named(row);
        QVERIFY(run_states::totalProgress(place, count, progress) == expected);
    }
}

PE_TEST("logic_run_states", RunStatesTest)
#include "run_states_test.moc"
