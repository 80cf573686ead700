// Which step reports are left of many: of equal ones the last, in the order of the run.

#include "runner/waiting_reports.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <random>

namespace {

constexpr int Steps = 40;

QString line(std::uint32_t step, double progress, int result)
{
    return QStringLiteral("%1 %2 %3").arg(step).arg(progress).arg(result);
}

} // namespace

class RuntimeReportsTest : public QObject
{
    Q_OBJECT

private slots:
    void aBeginAndAnEndStayInOrder();
    void randomRuns();

private:
    QStringList taken();

    WaitingReports m_waiting;
};

QStringList RuntimeReportsTest::taken()
{
    QStringList lines;
    const StepReport* reports = m_waiting.sorted();
    for (std::size_t i = 0; i < m_waiting.count(); ++i)
        lines << line(reports[i].step, reports[i].progress, reports[i].result);
    m_waiting.clear();
    return lines;
}

void RuntimeReportsTest::aBeginAndAnEndStayInOrder()
{
    m_waiting.setSteps(2);
    for (int turn = 0; turn < 3; ++turn) {
        m_waiting.put(0, 0.0, 0);
        m_waiting.put(0, 100.0, turn == 1 ? -1 : 0);
        m_waiting.put(1, 0.0, 0);
    }
    QCOMPARE(taken(), (QStringList{line(0, 100.0, -1), line(0, 0.0, 0), line(0, 100.0, 0),
                                   line(1, 0.0, 0)}));
}

/// Of begins and ends only, and with failures and progress.
void RuntimeReportsTest::randomRuns()
{
    std::mt19937 random(7);
    m_waiting.setSteps(Steps);
    for (int flush = 0; flush < 400; ++flush) {
        const unsigned kinds = flush < 200 ? 2 : 300;
        QStringList put;
        const unsigned count = random() % 200;
        for (unsigned i = 0; i < count && !m_waiting.isFull(); ++i) {
            const std::uint32_t step = random() % Steps;
            const int kind = int(random() % kinds);
            const double progress = kind == 0 ? 0.0 : kind % 3 ? 100.0 : kind / 10.0;
            const int result = kind > 1 && kind % 2 ? -kind : 0;
            m_waiting.put(step, progress, result);
            put << line(step, progress, result);
        }
        const QStringList left = taken();
        QVERIFY(kinds > 2 || left.size() <= 2 * Steps);
        QCOMPARE(RuntimeHarness::lastOfEach(left), RuntimeHarness::lastOfEach(put));
    }
}

PE_TEST("runtime_reports_test", RuntimeReportsTest)
#include "runtime_reports_test.moc"
