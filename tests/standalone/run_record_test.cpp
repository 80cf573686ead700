// What a run has said is in a file, all of it, and the files don't become too many.

#include "standalone/runtime/RunRecord.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"
#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QRegularExpression>
#include <QtTest>

#include <limits>

using namespace builders;
using namespace run_events;
using standalone::RunRecord;

class RunRecordTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void linesOfARecord();
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
        return QDir(m_folder).entryList({text("*.log")}, QDir::Files, QDir::Name);
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
            return {text("no file ") + path};
        static const QRegularExpression time(text("^\\d\\d:\\d\\d:\\d\\d  "),
                                             QRegularExpression::MultilineOption);
        return QString::fromUtf8(file.readAll()).remove(time).split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QTemporaryDir> m_project;
    QString m_folder; ///< isn't there at first
};

void RunRecordTest::init()
{
    m_project = std::make_unique<QTemporaryDir>();
    m_folder = m_project->filePath(text("a_log"));
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
    QCOMPARE(linesOf(record.path()), QStringList({text("电压 12.1"), text("two"), text("three")}));
    RunRecord nowhere{QString()};
    QCOMPARE(say(nowhere, "a") + nowhere.path(), QString());
}

void RunRecordTest::oldRecordsGo()
{
    const rows::Table<int, int, int> table{
        // how many files and bytes are kept at most, and how many of ten records of 100 bytes are
        {"many", 4, 100000, 4},
        {"large", 20, 599, 5},
        {"neither", 20, 100000, 10}};
    for (const auto& [row, files, bytes, kept] : table) {
        const rows::Named named(row);
        init();
        QDir().mkpath(m_folder);
        QVERIFY(test_support::putFile(m_folder + text("/notes.log"), QByteArray(1000, 'x')));
        QStringList made;
        for (int run = 0; run < 10; ++run) {
            RunRecord record(m_folder, {files, bytes, 0});
            QCOMPARE(say(record, std::string(89, char('a' + run))), QString());
            made.append(QFileInfo(record.path()).fileName());
            QVERIFY(QFileInfo::exists(record.path()));
        }
        QCOMPARE(records(), made.mid(10 - kept) + QStringList({text("notes.log")}));
        standalone::removeRunRecords(m_folder);
        QCOMPARE(records(), QStringList({text("notes.log")}));
    }
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
    QVERIFY2(complaint.contains(path) && complaint.contains(text("上限")), qPrintable(complaint));
    QCOMPARE(say(record, line), QString()); // told once
    QCOMPARE(record.path(), QString());     // it isn't all any more
    QCOMPARE(linesOf(path).size(), 2);
}

void RunRecordTest::roomIsLeftForDocuments()
{
    RunRecord record(m_folder, {20, 100000, std::numeric_limits<std::int64_t>::max()});
    QVERIFY(say(record, "a").contains(text("空间不足")));
    QCOMPARE(say(record, "b") + record.path(), QString());
    QCOMPARE(records(), QStringList());
}

void RunRecordTest::diskBecomesFull()
{
    RunRecord record(m_folder);
    QCOMPARE(say(record, std::string(5000, 'x')), QString());
    {
        const test_support::FullDisk disk(8192);
        QVERIFY(!say(record, std::string(5000, 'y')).isEmpty());
    }
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
    QCOMPARE(standalone::runRecord(app), QString());
    const auto source = oneStep("for (int i = 0; i < 30000; ++i) log_info(\"line %d\", i); "
                                "printf(\"no end\"); *(volatile int*)0 = 1;");
    QCOMPARE(harness.run(app, source), Crashed);
    const QString record = standalone::runRecord(app);
    QVERIFY(record.startsWith(standalone::appletRecordFolder(app)));
    const QStringList recorded = linesOf(record);
    QVERIFY(recorded.contains(text("line 29999")));
    QVERIFY(recorded.contains(text("no end")));
    QVERIFY(recorded.join(u'|').contains(text("SIGSEGV"))); // why it ended
    QCOMPARE(recorded, heardFrom(app));
    QCOMPARE(harness.run(app, source), Crashed);
    QVERIFY(standalone::runRecord(app) != record);
    QCOMPARE(linesOf(standalone::runRecord(app)).size(), recorded.size());
}

void RunRecordTest::runWithoutItsRecord()
{
    RuntimeHarness harness;
    const auto source = oneStep("log_info(\"one\"); log_info(\"two\");");
    QCOMPARE(harness.build(app, source), QString());
    QVERIFY(test_support::putFile(standalone::appletRecordFolder(app), "in the way"));
    QCOMPARE(harness.run(app, source), Finished);
    const QStringList lines = heardFrom(app);
    QCOMPARE(lines.size(), 3);
    QVERIFY2(lines[0].contains(text("运行记录无法写入")), qPrintable(lines[0]));
    QCOMPARE(lines.mid(1).join(u'|'), text("one|two"));
    QCOMPARE(standalone::runRecord(app), QString());
}

PE_TEST("run_record_test", RunRecordTest)
#include "run_record_test.moc"
