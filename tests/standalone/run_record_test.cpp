// What a run has said is in a file, all of it, and the files don't become too many.

#include "standalone/runtime/RunRecord.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"
#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"

#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <limits>
#include <sys/resource.h>

using namespace builders;
using namespace run_events;
using standalone::RunRecord;

class RunRecordTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void linesOfARecord();
    void oldRecordsGo_data();
    void oldRecordsGo();
    void longRecordEnds();
    void roomIsLeftForDocuments();
    void diskBecomesFull();
    void noFolderToBeHad();
    void runIsRecorded();
    void runWithoutItsRecord();

private:
    QStringList records() const
    {
        return QDir(m_folder).entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name);
    }
    static QString say(RunRecord& record, const std::string& line)
    {
        const QString complaint = record.add(line);
        return complaint + record.flush();
    }
    /// Without the levels.
    static QStringList heardFrom(const QString& appName)
    {
        QStringList lines = RuntimeHarness::logLines(appName);
        for (QString& line : lines)
            line.remove(0, 2);
        return lines.join(u'\n').split(u'\n', Qt::SkipEmptyParts);
    }
    /// Without their times.
    static QStringList linesOf(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return {QStringLiteral("no file ") + path};
        static const QRegularExpression time(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d  "),
                                             QRegularExpression::MultilineOption);
        return QString::fromUtf8(file.readAll()).remove(time).split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QTemporaryDir> m_project;
    QString m_folder; ///< isn't there at first
};

void RunRecordTest::init()
{
    m_project = std::make_unique<QTemporaryDir>();
    m_folder = m_project->filePath(QStringLiteral("a_log"));
}

void RunRecordTest::linesOfARecord()
{
    RunRecord record(m_folder);
    QCOMPARE(record.flush() + record.path(), QString());
    QVERIFY(!QFileInfo::exists(m_folder)); // nothing was said
    QCOMPARE(record.add("电压 12.1"), QString());
    QVERIFY(record.path().startsWith(m_folder + u'/'));
    QCOMPARE(record.add("two\nthree"), QString());
    QCOMPARE(record.flush(), QString());
    QCOMPARE(linesOf(record.path()), QStringList({QStringLiteral("电压 12.1"),
                                                  QStringLiteral("two"), QStringLiteral("three")}));
    RunRecord nowhere{QString()};
    QCOMPARE(say(nowhere, "a") + nowhere.path(), QString());
}

void RunRecordTest::oldRecordsGo_data()
{
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("kept"); // of ten records of a hundred bytes
    QTest::newRow("many") << 4 << 100000 << 4;
    QTest::newRow("large") << 20 << 599 << 5;
    QTest::newRow("neither") << 20 << 100000 << 10;
}

void RunRecordTest::oldRecordsGo()
{
    QFETCH(int, files);
    QFETCH(int, bytes);
    QDir().mkpath(m_folder);
    const QString foreign = m_folder + QStringLiteral("/notes.log");
    QVERIFY(test_support::putFile(foreign, QByteArray(1000, 'x')));
    QStringList made;
    for (int run = 0; run < 10; ++run) {
        RunRecord record(m_folder, {files, bytes, 0});
        QCOMPARE(say(record, std::string(89, char('a' + run))), QString());
        made.append(QFileInfo(record.path()).fileName());
        QVERIFY(QFileInfo::exists(record.path()));
    }
    QFETCH(int, kept);
    QCOMPARE(records(), made.mid(10 - kept) + QStringList({QStringLiteral("notes.log")}));
    standalone::removeRunRecords(m_folder);
    QCOMPARE(records(), QStringList({QStringLiteral("notes.log")}));
}

void RunRecordTest::longRecordEnds()
{
    RunRecord record(m_folder, {20, 250, 0});
    const std::string line(89, 'x');
    for (int lines = 0; lines < 2; ++lines)
        QCOMPARE(say(record, line), QString());
    const QString path = record.path();
    QCOMPARE(record.add(line), QString());
    const QString complaint = record.flush();
    QVERIFY2(complaint.contains(path) && complaint.contains(QStringLiteral("上限")),
             qPrintable(complaint));
    QCOMPARE(say(record, line), QString()); // told once
    QCOMPARE(record.path(), QString());     // it isn't all any more
    QCOMPARE(linesOf(path).size(), 2);
}

void RunRecordTest::roomIsLeftForDocuments()
{
    RunRecord record(m_folder, {20, 100000, std::numeric_limits<std::int64_t>::max()});
    QVERIFY(say(record, "a").contains(QStringLiteral("空间不足")));
    QCOMPARE(say(record, "b") + record.path(), QString());
    QCOMPARE(records(), QStringList());
}

void RunRecordTest::diskBecomesFull()
{
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    RunRecord record(m_folder);
    QCOMPARE(say(record, std::string(5000, 'x')), QString());
    const rlimit small{8192, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const QString complaint = say(record, std::string(5000, 'y'));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QVERIFY(!complaint.isEmpty());
    QCOMPARE(say(record, "later") + record.path(), QString());
}

void RunRecordTest::noFolderToBeHad()
{
    QVERIFY(test_support::putFile(m_folder, "a file"));
    RunRecord record(m_folder);
    QVERIFY(record.add("one").contains(m_folder));
    QCOMPARE(say(record, "two") + record.path(), QString());
}

void RunRecordTest::runIsRecorded()
{
    RuntimeHarness harness;
    const QString name = QStringLiteral("talker");
    QCOMPARE(harness.build(
                 name, applet({sequence("main", {statement("s1", "for (int i = 0; i < 30000; ++i) "
                                                                 "log_info(\"line %d\", i); "
                                                                 "printf(\"no end\"); "
                                                                 "*(volatile int*)0 = 1;")})})),
             QString());
    QCOMPARE(standalone::runRecord(name), QString());
    QVERIFY(harness.start(name));
    QTRY_COMPARE_WITH_TIMEOUT(harness.events(name), QList<int>({Crashed}), Patience);
    const QString record = standalone::runRecord(name);
    QVERIFY(record.startsWith(standalone::appletRecordFolder(name)));
    const QStringList recorded = linesOf(record);
    QVERIFY(recorded.contains(QStringLiteral("line 29999")));
    QVERIFY(recorded.contains(QStringLiteral("no end")));
    QVERIFY(recorded.join(u'|').contains(QStringLiteral("SIGSEGV"))); // why it ended
    QCOMPARE(recorded, heardFrom(name));
    QVERIFY(harness.start(name));
    QTRY_COMPARE_WITH_TIMEOUT(harness.events(name).size(), 2, Patience);
    QVERIFY(standalone::runRecord(name) != record);
    QCOMPARE(linesOf(standalone::runRecord(name)).size(), recorded.size());
}

void RunRecordTest::runWithoutItsRecord()
{
    RuntimeHarness harness;
    const QString name = QStringLiteral("talker");
    QCOMPARE(
        harness.build(name, applet({sequence("main", {statement("s1", "log_info(\"one\");"),
                                                      statement("s2", "log_info(\"two\");")})})),
        QString());
    QVERIFY(test_support::putFile(standalone::appletRecordFolder(name), "in the way"));
    QVERIFY(harness.start(name));
    QTRY_COMPARE_WITH_TIMEOUT(harness.events(name), QList<int>({Finished}), Patience);
    const QStringList lines = heardFrom(name);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines[0].contains(QStringLiteral("运行记录无法写入")), qPrintable(lines[0]));
    QCOMPARE(lines.mid(1), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    QCOMPARE(standalone::runRecord(name), QString());
}

PE_TEST("run_record_test", RunRecordTest)
#include "run_record_test.moc"
