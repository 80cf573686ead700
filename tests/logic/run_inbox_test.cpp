// What the runtime's threads tell a window: order, equal reports, changes of sequence, progress,
// log lines, when the reader is woken, and several threads at once.

#include "logic/LogicView.h"
#include "logic/run/RunInbox.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>

namespace {

QString print(const std::vector<runProcessState>& states)
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
    return result.join(QLatin1String("; "));
}

} // namespace

class RunInboxTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void equalReportsWaitOnce();
    void changesOfSequence();
    void templatesWithinTemplates();
    void onlyWhileOpen();
    void onlyOfTheRunningApplet();
    void progressIsTheNewest();
    void logLines();
    void wakesTheReaderOnce();
    void manyThreads();
    void viewGoesDuringReports();

private:
    void report(const char* sequence, const char* block, double progress, int result = 0)
    {
        m_inbox->report(text(sequence), text(block), progress, result);
    }
    QString reports() { return print(m_inbox->take().reports); }

    std::unique_ptr<RunInbox> m_inbox; ///< open
    int m_wakes = 0;
};

void RunInboxTest::init()
{
    m_wakes = 0;
    m_inbox = std::make_unique<RunInbox>([this] { ++m_wakes; });
    m_inbox->open();
}

void RunInboxTest::equalReportsWaitOnce()
{
    report("s", "a", 0.0);
    report("s", "a", 100.0);
    report("s", "a", 100.0, -1); // the result makes no difference
    report("s", "b", 0.0);
    report("s", "a", 0.0);
    report("t", "a", 0.0);
    QCOMPARE(reports(), text("s/a 0 0; s/a 100 0; s/b 0 0; t/a 0 0"));
    report("s", "a", 0.0); // nothing waits any more
    QCOMPARE(reports(), text("s/a 0 0"));
}

void RunInboxTest::changesOfSequence()
{
    report("s", "call", 0.0);
    m_inbox->sequenceChange(text("t"), false, text("T1"));
    report("t", "x", 100.0);
    m_inbox->sequenceChange(text("t"), true, text("T1"));
    report("s", "call", 100.0);
    QCOMPARE(reports(), text("s/call 0 0 enters T1:t; t/x 100 0 in T1 leaves T1:t; s/call 100 0"));
    // The report before it has been drawn already: the change must not get lost.
    m_inbox->sequenceChange(text("u"), false, QString());
    QCOMPARE(reports(), text("/ 0 -1 enters :u"));
}

void RunInboxTest::templatesWithinTemplates()
{
    const auto enter = [this](const char* sequence, const char* id) {
        m_inbox->sequenceChange(text(sequence), false, text(id));
    };
    const auto leave = [this](const char* sequence, const char* id) {
        m_inbox->sequenceChange(text(sequence), true, text(id));
    };
    const auto inForce = [this] {
        report("s", "x", 0.0);
        return m_inbox->take().reports.back().templateId;
    };
    enter("t", "T1");
    enter("inner", ""); // a sequence of the template itself
    QCOMPARE(inForce(), text("T1"));
    enter("u", "T2");
    QCOMPARE(inForce(), text("T2"));
    leave("u", "T2");
    leave("inner", "");
    QCOMPARE(inForce(), text("T1"));
    leave("t", "T1");
    leave("t", "T1"); // once too often
    QCOMPARE(inForce(), QString());
    constexpr int Deep = 100000;
    for (int depth = 0; depth < Deep; ++depth)
        enter("t", depth == 0 ? "T1" : "T2");
    for (int depth = 1; depth < Deep; ++depth)
        leave("t", "T2");
    QCOMPARE(inForce(), text("T1"));
}

void RunInboxTest::onlyWhileOpen()
{
    const auto reportAll = [this] {
        m_inbox->setBlocks({text("a")});
        report("s", "a", 100.0);
        m_inbox->sequenceChange(text("t"), false, text("T1"));
    };
    reportAll();
    m_inbox->close();
    reportAll();
    m_inbox->open();
    report("s", "b", 0.0);
    const RunInbox::Content content = m_inbox->take();
    QCOMPARE(print(content.reports), text("s/b 0 0"));
    QVERIFY(!content.progress);
    m_inbox->shut();
    m_inbox->open();
    reportAll();
    m_inbox->line(text("a"), text("late"));
    QVERIFY(m_inbox->take().isEmpty());
}

void RunInboxTest::onlyOfTheRunningApplet()
{
    const auto reportAs = [this](const char* name) {
        m_inbox->reportOf(text(name), text("s"), text("a"), 50.0, 0);
        m_inbox->sequenceChangeOf(text(name), text("t"), false, QString());
    };
    reportAs("mine"); // nobody runs
    reportAs("");
    m_inbox->setRunningApp(text("mine"));
    reportAs("other");
    QVERIFY(m_inbox->take().isEmpty());
    reportAs("mine");
    QCOMPARE(reports(), text("s/a 50 0 enters :t"));
}

void RunInboxTest::progressIsTheNewest()
{
    m_inbox->setBlocks({text("a"), text("b"), text("a"), text("c")});
    report("s", "a", 0.0);
    report("s", "b", 50.0, -2);
    auto progress = m_inbox->takeProgress();
    QVERIFY(progress && progress->value == 37.5 && progress->state == -2);
    QVERIFY(!m_inbox->takeProgress());
    report("s", "c", 100.0);
    report("s", "b", 50.0); // counts though an equal one waits
    report("s", "unknown", 99.0);
    progress = m_inbox->take().progress;
    QVERIFY(progress && progress->value == 37.5 && progress->state == 0);
}

/// All of them in their order, up to a bound; reports stay until they are asked for.
void RunInboxTest::logLines()
{
    report("s", "a", 0.0);
    for (std::size_t line = 0; line < RunInbox::MostLines + 1234; ++line)
        m_inbox->line(text(line == 0 ? "first" : "a"), QString::number(line));
    const auto lines = m_inbox->take(false).lines;
    QCOMPARE(lines.size(), RunInbox::MostLines + 1);
    for (std::size_t line = 0; line < RunInbox::MostLines; ++line)
        QCOMPARE(lines[line].text, QString::number(line));
    QCOMPARE(lines.front().appName, text("first"));
    QVERIFY2(lines.back().text.contains(text("1234")), qPrintable(lines.back().text));
    QCOMPARE(reports(), text("s/a 0 0"));
    QVERIFY(m_inbox->take().isEmpty());
}

void RunInboxTest::wakesTheReaderOnce()
{
    report("s", "a", 0.0);
    report("s", "a", 0.0);
    m_inbox->line(text("a"), text("line"));
    QCOMPARE(m_wakes, 1); // for all that wait
    m_inbox->take(false);
    m_inbox->sequenceChange(text("t"), false, QString());
    QCOMPARE(m_wakes, 2);
    m_inbox->open();
    m_inbox->take();
    m_inbox->line(text("a"), text("line"));
    QCOMPARE(m_wakes, 3);
}

void RunInboxTest::manyThreads()
{
    constexpr int Threads = 4;
    constexpr int PerThread = 5000;
    QVector<QString> blocks;
    for (int i = 0; i < Threads * PerThread; ++i)
        blocks.append(QString::number(i));
    m_inbox->setBlocks(blocks);

    std::atomic<int> running{Threads};
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < PerThread; ++i) {
                const QString number = QString::number(t * PerThread + i);
                m_inbox->report(QString::number(t), number, 100.0, 0);
                m_inbox->line(QString::number(t), number);
            }
            --running;
        });
    }
    QVector<int> lastReport(Threads, -1), lastLine(Threads, -1);
    int reports = 0, lines = 0;
    const auto follow = [](QVector<int>& last, const QString& thread, const QString& number) {
        int& before = last[thread.toInt()];
        QVERIFY2(number.toInt() > before, "what one thread tells is out of order");
        before = number.toInt();
    };
    const auto drain = [&] {
        const RunInbox::Content content = m_inbox->take();
        for (const runProcessState& state : content.reports)
            follow(lastReport, state.seqUuid, state.blockuuid);
        for (const RunInbox::Line& line : content.lines)
            follow(lastLine, line.appName, line.text);
        reports += int(content.reports.size());
        lines += int(content.lines.size());
    };
    while (running > 0)
        drain();
    for (std::thread& thread : threads)
        thread.join();
    drain();
    QCOMPARE(reports, Threads * PerThread);
    QCOMPARE(lines, Threads * PerThread);
}

void RunInboxTest::viewGoesDuringReports()
{
    auto view = std::make_unique<LogicView>();
    view->expectRun();
    int heard = 0;
    connect(view.get(), &LogicView::sigLogLine, this, [this, &heard] {
        QCOMPARE(QThread::currentThread(), thread());
        ++heard;
    });
    const auto inbox = view->inbox();
    std::atomic<bool> stop{false};
    std::atomic<int> told{0};
    std::thread runner([&] {
        while (!stop) {
            inbox->report(text("s"), text("b"), 0.0, 0);
            inbox->line(text("a"), text("line"));
            ++told;
        }
    });
    QTRY_VERIFY(heard > 100);
    view.reset();
    const int before = told;
    QTRY_VERIFY(told > before + 100);
    stop = true;
    runner.join();
    QVERIFY(inbox->take().isEmpty());
}

PE_WIDGET_TEST("logic_run_inbox", RunInboxTest)
#include "run_inbox_test.moc"
