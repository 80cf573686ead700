#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/resident_memory.h"
#include "tests/support/test_program.h"

#include <QImage>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <signal.h>
#include <sys/stat.h>

// The program as a whole, with nobody at the screen.
class HeadlessTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void applets_data();
    void applets();
    void killedRunnerIsACrash();
    void killedWorkbenchLeavesNoChild();
    void endlessLogIsWholeAndSmall_data();
    void endlessLogIsWholeAndSmall();
    void compileError();
    void moduleThatCannotBeReplaced();
    void runnerThatIsMissing();
    void badProjects_data();
    void badProjects();
    void oddDocuments();
    void wrongUsage();
    void screenshots();

private:
    QString project() const { return m_folder->filePath(QStringLiteral("project")); }
    QString document(const char* applet) const
    {
        return QStringLiteral("%1/CApplet/%2/processInfo.pedt")
            .arg(project(), QString::fromLatin1(applet));
    }
    void start(QProcess& program, const QStringList& arguments) const;
    /// The process of the runner; 0 if there is none after a long while.
    qint64 startEndlessLoop(QProcess& program) const;
    int run(const QStringList& arguments);
    QList<QStringList> lines(const char* kind) const;

    static constexpr int Patience = 120000;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_program;
    QByteArray m_output;
    QByteArray m_errors;
};

void HeadlessTest::init()
{
    m_program = QCoreApplication::applicationDirPath() + QStringLiteral("/workbench");
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), project()));
}

void HeadlessTest::start(QProcess& program, const QStringList& arguments) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder->path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    program.setProcessEnvironment(environment);
    program.start(m_program, arguments);
    QVERIFY(program.waitForStarted());
}

int HeadlessTest::run(const QStringList& arguments)
{
    QProcess program;
    start(program, arguments);
    if (!program.waitForFinished(Patience)) {
        program.kill();
        program.waitForFinished();
        return -1;
    }
    m_output = program.readAllStandardOutput();
    m_errors = program.readAllStandardError();
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -2;
}

QList<QStringList> HeadlessTest::lines(const char* kind) const
{
    QList<QStringList> found;
    for (const QString& line : QString::fromUtf8(m_output).split(QLatin1Char('\n'))) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.first() == QLatin1String(kind))
            found.append(fields.mid(1));
    }
    return found;
}

void HeadlessTest::applets_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("lastStep"); // the last that began
    const auto options = [](const char* text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    QTest::newRow("ends") << options("--applet ecu_check --run main") << 0
                          << QStringLiteral("记录用时");
    QTest::newRow("crashes") << options("--applet crash --run main") << 3
                             << QStringLiteral("第三步：写空指针");
    QTest::newRow("is stopped") << options("--applet endless_loop --run current --stop-after 1000")
                                << 2 << QString();
}

void HeadlessTest::applets()
{
    QFETCH(QStringList, options);
    QFETCH(int, status);
    QFETCH(QString, lastStep);
    const int result =
        run(QStringList{QStringLiteral("--project"), project(), QStringLiteral("--headless")} +
            options);
    QVERIFY2(result == status, m_errors + m_output.right(2000));
    const int event = status == 0 ? 1 : status;
    QCOMPARE(lines("end"), QList<QStringList>{{QString::number(event)}});
    const auto states = lines("state");
    QVERIFY(!states.isEmpty());
    QCOMPARE(states.last().size(), 4);
    if (lastStep.isEmpty())
        return;
    QString begun;
    for (const QStringList& state : states) {
        if (state.at(2) == QLatin1String("0"))
            begun = state.at(1);
    }
    QCOMPARE(begun, lastStep);
}

qint64 HeadlessTest::startEndlessLoop(QProcess& program) const
{
    start(program, {QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                    QStringLiteral("endless_loop"), QStringLiteral("--headless"),
                    QStringLiteral("--run"), QStringLiteral("main")});
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
    QTRY_VERIFY(QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(runner)).isEmpty());
}

void HeadlessTest::endlessLogIsWholeAndSmall_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("logged") << QStringLiteral(R"(log_info("turn %d", turn++);)");
    QTest::newRow("printed, in short lines") << QStringLiteral(R"(printf("%d\n", turn++);)");
}

/// A step that only logs, without end: nothing piles up before the stop, and no line is missing.
void HeadlessTest::endlessLogIsWholeAndSmall()
{
    QFETCH(QString, code);
    QFile file(document("endless_loop"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QString text = QString::fromUtf8(file.readAll());
    const QString slash = QStringLiteral("\\");
    code.replace(slash, slash + slash).replace(u'"', slash + u'"');
    text.replace(QRegularExpression(QStringLiteral("\"delay\": 50,(.*?\"stepType\": )24"),
                                    QRegularExpression::DotMatchesEverythingOption),
                 QStringLiteral("\"code\": \"static int turn = 0; %1\",\\120").arg(code));
    QVERIFY(text.contains(QStringLiteral("turn++")) && file.resize(0) && file.seek(0));
    QVERIFY(file.write(text.toUtf8()) > 0);
    file.close();

    QProcess program;
    start(program,
          {QStringLiteral("--project"), project(), QStringLiteral("--applet"),
           QStringLiteral("endless_loop"), QStringLiteral("--headless"), QStringLiteral("--run"),
           QStringLiteral("main"), QStringLiteral("--stop-after"), QStringLiteral("1000")});
    constexpr qint64 MostMemory = qint64(192) << 20;
    qint64 most = 0; // in bytes
    m_output.clear();
    const auto look = [&] {
        most = std::max(most, test_support::residentBytes(program.processId()));
        m_output += program.readAllStandardOutput();
        return program.state() == QProcess::NotRunning;
    };
    QTRY_VERIFY_WITH_TIMEOUT(look(), Patience);
    QCOMPARE(program.exitCode(), 2);
    QVERIFY2(most > 0 && (most < MostMemory || !test_support::isFreedMemoryReused),
             qPrintable(QString::number(most >> 20)));

    int turns = 0;
    for (const QStringList& line : lines("output")) {
        static const QRegularExpression numbered(QStringLiteral("^(?:turn )?(\\d+)$"));
        const auto match = numbered.match(line.first());
        if (match.hasMatch())
            QCOMPARE(match.captured(1), QString::number(turns++));
    }
    QVERIFY2(turns > 1000, qPrintable(QString::number(turns)));
}

void HeadlessTest::compileError()
{
    QFile file(document("crash"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray text = file.readAll();
    QVERIFY(text.contains("*nowhere = 1;"));
    text.replace("*nowhere = 1;", "*nowhere = ;");
    QVERIFY(file.resize(0) && file.seek(0));
    QCOMPARE(file.write(text), qint64(text.size()));
    file.close();
    QCOMPARE(run({QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                  QStringLiteral("crash"), QStringLiteral("--headless"), QStringLiteral("--run"),
                  QStringLiteral("main")}),
             1);
    QVERIFY2(m_output.contains("error") && m_output.contains("第三步"), m_output);
    QVERIFY(lines("end").isEmpty());
}

void HeadlessTest::moduleThatCannotBeReplaced()
{
    // No file can take the place of a folder that holds something.
    QVERIFY(QDir().mkpath(project() + QStringLiteral("/CApplet/crash_mp/crash.mp/inside")));
    QCOMPARE(run({QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                  QStringLiteral("crash"), QStringLiteral("--headless"), QStringLiteral("--run"),
                  QStringLiteral("main")}),
             1);
    QVERIFY2(m_output.contains("模块文件无法替换"), m_output);
}

void HeadlessTest::runnerThatIsMissing()
{
    // The program alone, away from applet_runner.
    m_program = m_folder->filePath(QStringLiteral("workbench"));
    QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + QStringLiteral("/workbench"),
                        m_program));
    QCOMPARE(run({QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                  QStringLiteral("crash"), QStringLiteral("--headless"), QStringLiteral("--run"),
                  QStringLiteral("main")}),
             3);
    QVERIFY(lines("state").isEmpty());
}

void HeadlessTest::badProjects_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("missing") << QStringLiteral("missing") << QStringLiteral("工程文件夹不存在");
    QTest::newRow("no applet of that name")
        << QStringLiteral("no applet") << QStringLiteral("nobody");
    QTest::newRow("no applets") << QStringLiteral("empty") << QStringLiteral("没有小程序");
    QTest::newRow("broken document") << QStringLiteral("broken") << QStringLiteral("无法读取");
    QTest::newRow("document is a folder") << QStringLiteral("folder") << QStringLiteral("无法读取");
    QTest::newRow("unreadable") << QStringLiteral("unreadable") << QStringLiteral("无法读取");
}

void HeadlessTest::badProjects()
{
    QFETCH(QString, fault);
    QFETCH(QString, complaint);
    QString folder = project();
    QString applet = QStringLiteral("crash");
    if (fault == QLatin1String("missing")) {
        folder += QStringLiteral("_missing");
    } else if (fault == QLatin1String("no applet")) {
        applet = QStringLiteral("nobody");
    } else if (fault == QLatin1String("empty")) {
        QVERIFY(QDir(folder + QStringLiteral("/CApplet")).removeRecursively());
        applet.clear();
    } else if (fault == QLatin1String("broken")) {
        QVERIFY(test_support::putFile(document("crash"), "{\"logicview\": {"));
    } else if (fault == QLatin1String("folder")) {
        QVERIFY(QFile::remove(document("crash")) && QDir().mkpath(document("crash")));
    } else if (fault == QLatin1String("unreadable")) {
        QVERIFY(QFile::setPermissions(folder, QFileDevice::Permissions()));
        if (QFileInfo(folder).isReadable())
            QSKIP("This user may read every folder");
    }
    QStringList arguments{QStringLiteral("--project"), folder, QStringLiteral("--headless"),
                          QStringLiteral("--run"), QStringLiteral("main")};
    if (!applet.isEmpty())
        arguments += QStringList{QStringLiteral("--applet"), applet};
    const int status = run(arguments);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(status, 66);
    QVERIFY2(QString::fromUtf8(m_errors).contains(complaint), m_errors);
}

// With nobody at the screen a document is judged by what reads it: what is nested too deep for
// other programs is no fault, and what is no file no end of waiting.
void HeadlessTest::oddDocuments()
{
    const QStringList arguments{QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                                QStringLiteral("crash"), QStringLiteral("--headless")};
    QFile file(document("crash"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    file.close();
    text.replace(text.lastIndexOf('}'), 1,
                 ", \"x\": " + QByteArray(2000, '[') + QByteArray(2000, ']') + "}");
    QVERIFY(test_support::putFile(document("crash"), text));
    QCOMPARE(run(arguments), 0);
    QVERIFY(QFile::remove(document("crash")));
    QCOMPARE(mkfifo(QFile::encodeName(document("crash")).constData(), 0600), 0);
    QCOMPARE(run(arguments), 66);
    QVERIFY2(QString::fromUtf8(m_errors).contains(QStringLiteral("不是普通文件")), m_errors);
}

void HeadlessTest::wrongUsage()
{
    QCOMPARE(run({QStringLiteral("--run"), QStringLiteral("both")}), 64);
    QVERIFY(!m_errors.isEmpty());
    QCOMPARE(run({QStringLiteral("--help")}), 0);
    QVERIFY(m_output.contains("--screenshot"));
}

void HeadlessTest::screenshots()
{
    const QString shots = m_folder->filePath(QStringLiteral("new/shots"));
    QCOMPARE(run({QStringLiteral("--project"), project(), QStringLiteral("--applet"),
                  QStringLiteral("crash"), QStringLiteral("--headless"), QStringLiteral("--run"),
                  QStringLiteral("main"), QStringLiteral("--screenshot"), shots}),
             3);
    const QImage edit(shots + QStringLiteral("/edit_tab.png"));
    const QImage run(shots + QStringLiteral("/run_tab.png"));
    QVERIFY(edit.width() > 800 && edit.height() > 500);
    QCOMPARE(run.size(), edit.size());
    QVERIFY(run != edit);
}

PE_TEST("headless_test", HeadlessTest)
#include "headless_test.moc"
