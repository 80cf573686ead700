#include "logic/LogicView.h"
#include "shell/AppletLogFeed.h"
#include "shell/LatestProgress.h"
#include "shell/RunReportGate.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <thread>

// The passages from a runner's thread into a window.
class RunFeedsTest : public QObject
{
    Q_OBJECT
private slots:
    void logLinesKeepTheirOrder();
    void logFloodIsBounded();
    void closedLogFeedIsSilent();
    void progressIsTheLatest();
    void progressOfTheOwnThreadIsAtOnce();
    void gateClosesDuringReports();
};

void RunFeedsTest::logLinesKeepTheirOrder()
{
    int wakes = 0;
    AppletLogFeed feed([&wakes] { ++wakes; });
    std::thread runner([&feed] {
        for (int line = 0; line < 100; ++line)
            feed.put(QStringLiteral("a"), QString::number(line));
    });
    runner.join();
    // One call for all that wait, and one for what comes after they were taken.
    QCOMPARE(wakes, 1);
    const auto lines = feed.take();
    QCOMPARE(lines.size(), 100);
    QCOMPARE(lines.first().text, QStringLiteral("0"));
    QCOMPARE(lines.last().text, QStringLiteral("99"));
    feed.put(QStringLiteral("b"), QString());
    QCOMPARE(wakes, 2);
    QCOMPARE(feed.take().last().appName, QStringLiteral("b"));
}

void RunFeedsTest::logFloodIsBounded()
{
    AppletLogFeed feed([] {});
    constexpr int Flood = AppletLogFeed::MostWaiting + 1234;
    const QString same = QStringLiteral("a");
    for (int line = 0; line < Flood; ++line)
        feed.put(same, same);
    const auto lines = feed.take();
    QCOMPARE(lines.size(), AppletLogFeed::MostWaiting + 1);
    QVERIFY2(lines.last().text.contains(QStringLiteral("1234")), qPrintable(lines.last().text));
    QVERIFY(feed.take().isEmpty());
}

void RunFeedsTest::closedLogFeedIsSilent()
{
    int wakes = 0;
    AppletLogFeed feed([&wakes] { ++wakes; });
    feed.put(QStringLiteral("a"), QStringLiteral("before"));
    feed.close();
    feed.put(QStringLiteral("a"), QStringLiteral("after"));
    QCOMPARE(wakes, 1);
    QVERIFY(feed.take().isEmpty());
}

void RunFeedsTest::progressIsTheLatest()
{
    LatestProgress progress;
    QSignalSpy spy(&progress, &LatestProgress::changed);
    std::thread runner([&progress] {
        for (int value = 0; value <= 100000; ++value)
            progress.put(value / 1000.0, 0);
        progress.put(42.0, -1);
    });
    runner.join();
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), 42.0);
    QCOMPARE(spy.at(0).at(1).toInt(), -1);
}

void RunFeedsTest::progressOfTheOwnThreadIsAtOnce()
{
    LatestProgress progress;
    QSignalSpy spy(&progress, &LatestProgress::changed);
    std::thread runner([&progress] { progress.put(10.0, 0); });
    runner.join();
    progress.put(100.0, 0);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toDouble(), 100.0);
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 1);
}

void RunFeedsTest::gateClosesDuringReports()
{
    auto view = std::make_unique<LogicView>();
    const auto gate = std::make_shared<RunReportGate>(view.get());
    gate->setRunningApp(QStringLiteral("a"));
    std::atomic<bool> stop{false};
    std::atomic<int> reports{0};
    std::thread runner([&] {
        while (!stop) {
            gate->report(QStringLiteral("a"), QStringLiteral("s"), QStringLiteral("b"), 0.0, 0);
            gate->sequenceChange(QStringLiteral("a"), QStringLiteral("s"), false, QString());
            ++reports;
        }
    });
    QTRY_VERIFY(reports > 100);
    gate->close();
    view.reset();
    const int before = reports;
    QTRY_VERIFY(reports > before + 100);
    stop = true;
    runner.join();
}

PE_WIDGET_TEST("run_feeds_test", RunFeedsTest)
#include "run_feeds_test.moc"
