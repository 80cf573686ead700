#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/resident_memory.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/workbench/WorkbenchFixture.h"

#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <signal.h>
#include <sys/stat.h>

// The program as a whole, with nobody at the screen.
class HeadlessTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void applets();
    void runsThatDoNotBegin();
    void killedRunnerIsACrash();
    void killedWorkbenchLeavesNoChild();
    void endlessLogIsWholeAndSmall();
    void badProjects();
    void oddDocuments();
    void wrongUsage();
    void screenshots();

private:
    /// The exit status; what it printed is in m_output and m_errors.
    int run(const QString& options);
    int runCrash() { return run(text("--applet crash --headless --run main")); }
    /// The process of the runner; 0 if there is none after a long while.
    qint64 startEndlessLoop(QProcess& program) const;
    QList<QStringList> printed(const char* kind) const;
    void replaceIn(const char* applet, const QRegularExpression& old, const QString& by) const;

    QByteArray m_output;
    QByteArray m_errors;
};

int HeadlessTest::run(const QString& options)
{
    QProcess program;
    startProgram(program, options.split(u' '));
    if (!program.waitForFinished(Patience)) {
        program.kill();
        program.waitForFinished();
        return -1;
    }
    m_output = program.readAllStandardOutput();
    m_errors = program.readAllStandardError();
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -2;
}

QList<QStringList> HeadlessTest::printed(const char* kind) const
{
    QList<QStringList> found;
    for (const QString& line : QString::fromUtf8(m_output).split(u'\n')) {
        const QStringList fields = line.split(u'\t');
        if (fields.first() == text(kind))
            found.append(fields.mid(1));
    }
    return found;
}

void HeadlessTest::replaceIn(const char* applet, const QRegularExpression& old,
                             const QString& by) const
{
    QString json = QString::fromUtf8(test_support::content(document(applet)));
    QVERIFY(json.contains(old));
    QVERIFY(test_support::putFile(document(applet), json.replace(old, by).toUtf8()));
}

void HeadlessTest::applets()
{
    const rows::Table<QString, int, QString> table{
        // options, status, the last step that began
        {"ends", text("--applet ecu_check --run main"), 0, text("记录用时")},
        {"crashes", text("--applet crash --run main"), 3, text("第三步：写空指针")},
        {"is stopped", text("--applet endless_loop --run current --stop-after 1000"), 2,
         QString()}};
    for (const auto& [row, options, status, lastStep] : table) {
        const rows::Named named(row);
        const int result = run(options + text(" --headless"));
        QVERIFY2(result == status, m_errors + m_output.right(2000));
        QCOMPARE(printed("end"), QList<QStringList>{{QString::number(qMax(status, 1))}});
        QString begun;
        for (const QStringList& state : printed("state")) {
            QCOMPARE(state.size(), 4);
            if (state.at(2) == text("0"))
                begun = state.at(1);
        }
        QVERIFY(!begun.isEmpty());
        if (!lastStep.isEmpty())
            QCOMPARE(begun, lastStep);
    }
}

void HeadlessTest::runsThatDoNotBegin()
{
    // No file can take the place of a folder that holds something.
    QVERIFY(QDir().mkpath(path("CApplet/crash_mp/crash.mp/inside")));
    QCOMPARE(runCrash(), 1);
    QVERIFY2(m_output.contains("模块文件无法替换"), m_output);
    QVERIFY(QDir(path("CApplet/crash_mp/crash.mp")).removeRecursively());
    // The program alone, away from applet_runner.
    const QString program = m_program;
    m_program = path("workbench");
    QVERIFY(QFile::copy(program, m_program));
    QCOMPARE(runCrash(), 3);
    QVERIFY(printed("state").isEmpty());
    m_program = program;
    replaceIn("crash", QRegularExpression(text("nowhere = 1;")), text("nowhere = ;"));
    QCOMPARE(runCrash(), 1);
    QVERIFY2(m_output.contains("error") && m_output.contains("第三步"), m_output);
    QVERIFY(printed("end").isEmpty());
}

qint64 HeadlessTest::startEndlessLoop(QProcess& program) const
{
    startProgram(program, text("--applet endless_loop --headless --run main").split(u' '));
    QList<qint64> runners;
    const auto isRunning = [&] {
        runners = test_support::childProcesses(program.processId(), "applet_runner");
        return !runners.isEmpty();
    };
    return QTest::qWaitFor(isRunning, Patience) ? runners.first() : 0;
}

void HeadlessTest::killedRunnerIsACrash()
{
    QProcess program;
    const qint64 runner = startEndlessLoop(program);
    QVERIFY(runner > 0);
    QCOMPARE(kill(pid_t(runner), SIGKILL), 0);
    QVERIFY(program.waitForFinished(Patience));
    QCOMPARE(program.exitCode(), 3);
}

void HeadlessTest::killedWorkbenchLeavesNoChild()
{
    QProcess program;
    const qint64 runner = startEndlessLoop(program);
    QVERIFY(runner > 0);
    program.kill();
    QVERIFY(program.waitForFinished(Patience));
    QTRY_VERIFY(QFile::symLinkTarget(text("/proc/%1/exe").arg(runner)).isEmpty());
}

/// A step that only logs, without end: nothing piles up before the stop, and no line is missing.
void HeadlessTest::endlessLogIsWholeAndSmall()
{
    constexpr qint64 MostMemory = qint64(192) << 20;
    const QRegularExpression delay(text("\"delay\": 50,(.*?\"stepType\": )24"),
                                   QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpression numbered(text("^(?:turn )?(\\d+)$"));
    const rows::Table<QString> table{
        {"logged", text(R"(log_info(\"turn %d\", turn++);)")},
        {"printed, in short lines", text(R"(printf(\"%d\\n\", turn++);)")}};
    for (const auto& [row, code] : table) {
        const rows::Named named(row);
        init();
        replaceIn("endless_loop", delay,
                  text("\"code\": \"static int turn = 0; %1\",\\120").arg(code));
        QProcess program;
        startProgram(
            program,
            text("--applet endless_loop --headless --run main --stop-after 1000").split(u' '));
        qint64 most = 0; // in bytes
        m_output.clear();
        const auto isOver = [&] {
            most = std::max(most, test_support::residentBytes(program.processId()));
            m_output += program.readAllStandardOutput();
            return program.state() == QProcess::NotRunning;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isOver(), Patience);
        QCOMPARE(program.exitCode(), 2);
        QVERIFY2(most > 0 && (most < MostMemory || !test_support::isFreedMemoryReused),
                 qPrintable(QString::number(most >> 20)));
        int turns = 0;
        for (const QStringList& line : printed("output")) {
            const auto match = numbered.match(line.first());
            if (match.hasMatch())
                QCOMPARE(match.captured(1), QString::number(turns++));
        }
        QVERIFY2(turns > 1000, qPrintable(QString::number(turns)));
    }
}

void HeadlessTest::badProjects()
{
    const rows::Table<const char*, std::function<bool()>, const char*> table{
        // applet, what is done to the project, complaint
        {"no applet of that name", "nobody", [] { return true; }, "nobody"},
        {"broken document", "crash",
         [this] { return test_support::putFile(document("crash"), "{\"logicview\": {"); },
         "无法读取"},
        {"document is a folder", "crash",
         [this] { return QFile::remove(document("crash")) && QDir().mkpath(document("crash")); },
         "无法读取"},
        {"missing", "crash", [this] { return QDir(m_project).removeRecursively(); },
         "工程文件夹不存在"},
        {"no applets", "", [this] { return QDir().mkpath(m_project); }, "没有小程序"}};
    for (const auto& [row, applet, damage, complaint] : table) {
        const rows::Named named(row);
        QVERIFY(damage());
        const QString option = *applet ? text(" --applet ") + text(applet) : QString();
        QCOMPARE(run(text("--headless --run main") + option), 66);
        QVERIFY2(QString::fromUtf8(m_errors).contains(text(complaint)), m_errors);
    }
}

// With nobody at the screen a document is judged by what reads it: what is nested too deep for
// other programs is no fault, and what is no file no end of waiting.
void HeadlessTest::oddDocuments()
{
    replaceIn("crash", QRegularExpression(text("\\}\\s*$")),
              text(", \"x\": ") + QString(2000, u'[') + QString(2000, u']') + u'}');
    QCOMPARE(run(text("--applet crash --headless")), 0);
    QVERIFY(QFile::remove(document("crash")));
    QCOMPARE(mkfifo(QFile::encodeName(document("crash")).constData(), 0600), 0);
    QCOMPARE(run(text("--applet crash --headless")), 66);
    QVERIFY2(QString::fromUtf8(m_errors).contains(text("不是普通文件")), m_errors);
}

void HeadlessTest::wrongUsage()
{
    QCOMPARE(run(text("--run both")), 64);
    QVERIFY(!m_errors.isEmpty());
    QCOMPARE(run(text("--help")), 0);
    for (const char* option :
         {"--project", "--applet", "--headless", "--run", "--stop-after", "--screenshot"})
        QVERIFY2(m_output.contains(option), option);
}

void HeadlessTest::screenshots()
{
    const QString shots = path("new/shots");
    QCOMPARE(run(text("--applet crash --headless --run main --screenshot ") + shots), 3);
    const QImage edit(shots + text("/edit_tab.png"));
    const QImage run(shots + text("/run_tab.png"));
    QVERIFY(edit.width() > 800 && edit.height() > 500);
    QCOMPARE(run.size(), edit.size());
    QVERIFY(run != edit);
}

PE_TEST("headless_test", HeadlessTest)
#include "headless_test.moc"
