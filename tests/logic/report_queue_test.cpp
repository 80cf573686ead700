// The reports' way from the runner's threads: order, equal reports, changes of sequence, progress,
// and several threads at once.

#include "logic/RunReportQueue.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QSet>
#include <QTest>

#include <atomic>
#include <thread>

namespace {

QStringList linesOf(const std::vector<runProcessState>& states)
{
    QStringList result;
    for (const runProcessState& state : states) {
        QString line = QStringLiteral("%1/%2 %3 %4")
                           .arg(state.seqUuid, state.blockuuid)
                           .arg(state.iProgress)
                           .arg(state.result);
        if (!state.templateId.isEmpty())
            line += QStringLiteral(" in ") + state.templateId;
        if (state.hasGoto)
            line += QStringLiteral(" %1 %2:%3")
                        .arg(state.isEnd ? text("leaves") : text("enters"), state.gotoTemplateId,
                             state.gotoSeqUuid);
        result.append(line);
    }
    return result;
}

} // namespace

class ReportQueueTest : public QObject
{
    Q_OBJECT
private slots:
    void equalReportsWaitOnce();
    void changesOfSequence();
    void templatesWithinTemplates();
    void onlyWhileOpen();
    void progress();
    void manyThreads();
};

void ReportQueueTest::equalReportsWaitOnce()
{
    RunReportQueue queue([](double, int) {});
    queue.open();
    const QString sequence = text("s");
    queue.report(sequence, text("a"), 0, 0.0);
    queue.report(sequence, text("a"), 0, 100.0);
    queue.report(sequence, text("a"), -1, 100.0); // the result makes no difference
    queue.report(sequence, text("b"), 0, 0.0);
    queue.report(sequence, text("a"), 0, 0.0);
    queue.report(text("t"), text("a"), 0, 0.0);
    QCOMPARE(linesOf(queue.take()),
             QStringList({text("s/a 0 0"), text("s/a 100 0"), text("s/b 0 0"), text("t/a 0 0")}));
    queue.report(sequence, text("a"), 0, 0.0); // nothing waits any more
    QCOMPARE(linesOf(queue.take()), QStringList({text("s/a 0 0")}));
}

void ReportQueueTest::changesOfSequence()
{
    RunReportQueue queue([](double, int) {});
    queue.open();
    queue.report(text("s"), text("call"), 0, 0.0);
    queue.attachGoto(text("t"), false, text("T1"));
    queue.report(text("t"), text("x"), 0, 100.0);
    queue.attachGoto(text("t"), true, text("T1"));
    queue.report(text("s"), text("call"), 0, 100.0);
    QCOMPARE(linesOf(queue.take()),
             QStringList({text("s/call 0 0 enters T1:t"), text("t/x 100 0 in T1 leaves T1:t"),
                          text("s/call 100 0")}));
    // The report before it has been drawn already: the change must not get lost.
    queue.attachGoto(text("u"), false, QString());
    QCOMPARE(linesOf(queue.take()), QStringList({text("/ 0 -1 enters :u")}));
}

void ReportQueueTest::templatesWithinTemplates()
{
    RunReportQueue queue([](double, int) {});
    queue.open();
    const auto inForce = [&queue] {
        queue.report(text("s"), text("x"), 0, 0.0);
        return queue.take().back().templateId;
    };
    queue.attachGoto(text("t"), false, text("T1"));
    queue.attachGoto(text("inner"), false, QString()); // a sequence of the template itself
    QCOMPARE(inForce(), text("T1"));
    queue.attachGoto(text("u"), false, text("T2"));
    QCOMPARE(inForce(), text("T2"));
    queue.attachGoto(text("u"), true, text("T2"));
    queue.attachGoto(text("inner"), true, QString());
    QCOMPARE(inForce(), text("T1"));
    queue.attachGoto(text("t"), true, text("T1"));
    queue.attachGoto(text("t"), true, text("T1")); // once too often
    QCOMPARE(inForce(), QString());
    constexpr int Deep = 100000;
    for (int depth = 0; depth < Deep; ++depth)
        queue.attachGoto(text("t"), false, text(depth == 0 ? "T1" : "T2"));
    for (int depth = 1; depth < Deep; ++depth)
        queue.attachGoto(text("t"), true, text("T2"));
    QCOMPARE(inForce(), text("T1"));
}

void ReportQueueTest::onlyWhileOpen()
{
    int told = 0;
    RunReportQueue queue([&told](double, int) { ++told; });
    queue.setBlocks({text("a")});
    const auto reportAll = [&queue] {
        queue.report(text("s"), text("a"), 0, 100.0);
        queue.attachGoto(text("t"), false, text("T1"));
    };
    reportAll();
    queue.open();
    reportAll();
    queue.close();
    reportAll();
    queue.open();
    queue.report(text("s"), text("b"), 0, 0.0);
    QCOMPARE(linesOf(queue.take()), QStringList({text("s/b 0 0")}));
    QCOMPARE(told, 0);
}

void ReportQueueTest::progress()
{
    QList<QPair<double, int>> told;
    RunReportQueue queue([&](double progress, int result) { told.append({progress, result}); });
    queue.open();
    queue.setBlocks({text("a"), text("b"), text("a"), text("c")});
    queue.report(text("s"), text("a"), 0, 0.0);
    queue.report(text("s"), text("b"), -2, 50.0);
    queue.report(text("s"), text("b"), -2, 50.0); // counts though an equal one waits
    queue.report(text("s"), text("unknown"), 0, 50.0);
    queue.report(text("s"), text("c"), 0, 100.0);
    const QList<QPair<double, int>> expected{{0.0, 0}, {37.5, -2}, {37.5, -2}, {100.0, 0}};
    QCOMPARE(told, expected);
}

void ReportQueueTest::manyThreads()
{
    constexpr int Threads = 4;
    constexpr int PerThread = 5000;
    std::atomic<int> told{0};
    RunReportQueue queue([&](double, int) { ++told; });
    queue.open();
    QVector<QString> blocks;
    for (int i = 0; i < Threads * PerThread; ++i)
        blocks.append(QString::number(i));
    queue.setBlocks(blocks);

    std::atomic<int> running{Threads};
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < PerThread; ++i)
                queue.report(QString::number(t), QString::number(t * PerThread + i), 0, 100.0);
            --running;
        });
    }
    QSet<QString> seen;
    QVector<int> last(Threads, -1);
    const auto drain = [&] {
        for (const runProcessState& state : queue.take()) {
            const int number = state.blockuuid.toInt();
            int& before = last[state.seqUuid.toInt()];
            QVERIFY2(number > before, "reports of one thread out of order");
            before = number;
            seen.insert(state.blockuuid);
        }
    };
    while (running > 0)
        drain();
    for (std::thread& thread : threads)
        thread.join();
    drain();
    QCOMPARE(seen.size(), Threads * PerThread);
    QCOMPARE(told.load(), Threads * PerThread);
}

PE_TEST("logic_report_queue", ReportQueueTest)
#include "report_queue_test.moc"
