#include "logic/LogicView.h"
#include "shell/AppletLogFeed.h"
#include "shell/LatestProgress.h"
#include "shell/RunReportGate.h"

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
    QStringList lines;
    const auto feed = std::make_shared<AppletLogFeed>(
        this, [&lines](const QString& app, const QString& text) { lines << app + text; });
    std::thread runner([&feed] {
        for (int line = 0; line < 100; ++line)
            feed->put(QStringLiteral("a"), QString::number(line));
    });
    runner.join();
    QVERIFY(lines.isEmpty());
    QTRY_COMPARE(lines.size(), 100);
    QCOMPARE(lines.first(), QStringLiteral("a0"));
    QCOMPARE(lines.last(), QStringLiteral("a99"));
    feed->put(QStringLiteral("b"), QString());
    QTRY_COMPARE(lines.last(), QStringLiteral("b"));
}

void RunFeedsTest::logFloodIsBounded()
{
    QStringList lines;
    const auto feed = std::make_shared<AppletLogFeed>(
        this, [&lines](const QString&, const QString& text) { lines << text; });
    constexpr int Flood = AppletLogFeed::MostWaiting + 1234;
    for (int line = 0; line < Flood; ++line)
        feed->put(QStringLiteral("a"), QString::number(line));
    QTRY_COMPARE(lines.size(), AppletLogFeed::MostWaiting + 1);
    QVERIFY2(lines.last().contains(QStringLiteral("1234")), qPrintable(lines.last()));
}

void RunFeedsTest::closedLogFeedIsSilent()
{
    bool told = false;
    const auto feed = std::make_shared<AppletLogFeed>(
        this, [&told](const QString&, const QString&) { told = true; });
    feed->put(QStringLiteral("a"), QStringLiteral("before"));
    feed->close();
    feed->put(QStringLiteral("a"), QStringLiteral("after"));
    QCoreApplication::processEvents();
    QVERIFY(!told);
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

QTEST_MAIN(RunFeedsTest)
#include "run_feeds_test.moc"
