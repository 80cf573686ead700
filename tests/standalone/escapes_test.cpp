// Steps that start processes and try to leave them behind, or to take more memory than a run may:
// when the run is over nothing of it is left, however it ended and whoever died first.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/test_program.h"

#include "model/services/processedit.h"
#include "standalone/runtime/run_account.h"
#include "standalone/runtime/runtime.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <grp.h>
#include <numeric>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

using namespace builders;
using namespace run_events;
namespace service = sdk_ui_interface::processedit;

namespace {

constexpr qint64 RunMemory = qint64(96) << 20;

/// Functions of the system that a step may name without its headers.
const char* const Calls =
    "int do_fork() __asm__(\"fork\"); int do_getpid() __asm__(\"getpid\"); int do_setsid() "
    "__asm__(\"setsid\"); "
    "void do_exit(int) __asm__(\"_exit\"); int do_execv(const char*, char**) __asm__(\"execv\"); "
    "int do_spawn(int*, const char*, const void*, const void*, char**, char**) "
    "__asm__(\"posix_spawn\"); "
    "int do_pipe(int*) __asm__(\"pipe\"); int do_dup2(int, int) __asm__(\"dup2\"); "
    "int do_open(const char*, int, ...) __asm__(\"open\"); "
    "int do_setuid(unsigned) __asm__(\"setuid\"); "
    "unsigned do_sleep(unsigned) __asm__(\"sleep\"); "
    "int do_access(const char*, int) __asm__(\"access\"); "
    "int do_creat(const char*, unsigned) __asm__(\"creat\"); "
    "void (*do_signal(int, void (*)(int)))(int) __asm__(\"signal\"); "
    "int do_thread(unsigned long*, const void*, void* (*)(void*), void*) "
    "__asm__(\"pthread_create\"); "
    "int do_join(unsigned long, void**) __asm__(\"pthread_join\"); "
    "void* do_mmap(void*, size_t, int, int, int, long) __asm__(\"mmap\"); ";

/// Three ways out of the run, each of a process that writes its id into a file of FOLDER.
const char* const Escapes =
    "log_info(\"pid %d\", do_getpid()); "
    "char script[] = \"cd FOLDER; echo $$ > $0.pid; : > $0.ready; trap '' HUP TERM; "
    "exec sleep 1000\"; "
    "char sh[] = \"/bin/sh\", c[] = \"-c\", twice[] = \"twice\", spawned[] = \"spawned\"; "
    "char* argv[] = {sh, c, script, twice, nullptr}; "
    "if (do_fork() == 0) { do_setsid(); if (do_fork() == 0) do_execv(sh, argv); do_exit(0); } "
    "argv[3] = spawned; int pid; do_spawn(&pid, sh, nullptr, nullptr, argv, nullptr); "
    "if (system(\"setsid sh -c 'cd FOLDER; echo $$ > shell.pid; : > shell.ready; "
    "exec sleep 1000' &\") != 0) step_fail(); "
    "const char* const files[] = {\"FOLDER/shell.ready\", \"FOLDER/twice.ready\", "
    "\"FOLDER/spawned.ready\"}; "
    "for (const char* file : files) while (do_access(file, 0) != 0) delay_ms(1); ";

/// Deaf to all signals, another user if it may, with its descriptors taken for others.
const char* const Stubborn =
    "log_info(\"ready\"); delay_ms(1); struct S { static void f(int) {} }; "
    "for (int i = 1; i < 32; ++i) do_signal(i, S::f); if (do_setuid(65534) != 0) {} "
    "int ends[2]; do_pipe(ends); for (int i = 3; i < 1100; ++i) "
    "if (i != ends[0] && i != ends[1]) do_dup2(ends[0], i); "
    "for (;;) do_sleep(60);";

} // namespace

class EscapesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingIsLeft_data();
    void nothingIsLeft();
    void nothingOutlivesTheEditor_data();
    void nothingOutlivesTheEditor();
    void nothingOutlivesTheSupervisor();
    void survivorsAreTold();
    void forksWithoutEnd_data();
    void forksWithoutEnd();
    void manyAreNamedInShort();
    void namesAreOneLine();
    void processOfAThreadLivesOn();
    void memoryIsCountedTogether_data();
    void memoryIsCountedTogether();
    void groupsHideNoMemory();
    void unreadableIsTooMuch();

private:
    QString build(const QString& appName, const QString& code);
    QList<qint64> escaped() const;

    std::unique_ptr<RuntimeHarness> m_harness;
};

void EscapesTest::init()
{
    m_harness = std::make_unique<RuntimeHarness>();
    standalone::setMemoryLimit(RunMemory);
}

void EscapesTest::cleanup()
{
    m_harness.reset();
    standalone::setMemoryLimit(0);
}

QString EscapesTest::build(const QString& appName, const QString& code)
{
    QString whole = QString::fromUtf8(Calls) + code;
    whole.replace(QStringLiteral("FOLDER"), m_harness->projectPath());
    return m_harness->build(appName,
                            applet({sequence("main", {statement("s", whole.toStdString())})}));
}

/// Empty until all of them run.
QList<qint64> EscapesTest::escaped() const
{
    QList<qint64> pids;
    for (const char* name : {"shell", "twice", "spawned"}) {
        QFile file(m_harness->projectPath() + QStringLiteral("/%1.pid").arg(QLatin1String(name)));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        pids << file.readAll().trimmed().toLongLong();
    }
    return pids;
}

void EscapesTest::nothingIsLeft_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<int>("event");
    QTest::newRow("end") << QString() << Finished;
    QTest::newRow("crash") << QStringLiteral("abort();") << Crashed;
    QTest::newRow("killed") << QStringLiteral("log_info(\"ready\"); for (;;) do_sleep(60);")
                            << Crashed;
    QTest::newRow("stop") << QString::fromUtf8(Stubborn) << Stopped;
    QTest::newRow("another program")
        << QStringLiteral("char* other[] = {sh, c, script, sh, nullptr}; log_info(\"ready\"); "
                          "delay_ms(1); char sleep[] = \"sleep\", time[] = \"1000\"; "
                          "char* rest[] = {sleep, time, nullptr}; do_execv(\"/bin/sleep\", rest);")
        << Stopped;
}

void EscapesTest::nothingIsLeft()
{
    QFETCH(QString, ending);
    QFETCH(int, event);
    const QString appName = QStringLiteral("left");
    QCOMPARE(build(appName, QString::fromUtf8(Escapes) + ending), QString());
    QVERIFY(m_harness->start(appName));
    if (ending.contains(QStringLiteral("ready")))
        QTRY_VERIFY_WITH_TIMEOUT(m_harness->logLines(appName).contains(QStringLiteral("1 ready")),
                                 Patience);
    if (event == Stopped)
        QVERIFY(service::stopCApplet(appName, false));
    else if (ending.contains(QStringLiteral("ready")))
        ::kill(pid_t(m_harness->logLines(appName).first().mid(6).toLongLong()), SIGKILL);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{event}, Patience);
    const QList<qint64> pids = escaped();
    QCOMPARE(pids.size(), 3);
    const QStringList told =
        m_harness->logLines(appName).filter(QStringLiteral("2 已结束步骤留下的 3 个进程: "));
    QCOMPARE(told.size(), 1);
    for (const qint64 pid : pids) {
        QVERIFY(!test_support::isAlive(pid));
        QVERIFY2(told.first().contains(QStringLiteral("(%1)").arg(pid)), qPrintable(told.first()));
    }
}

void EscapesTest::nothingOutlivesTheEditor_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGKILL") << SIGKILL;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGSEGV") << SIGSEGV;
}

/// The editor is this program once more, which starts the applet that was built here.
void EscapesTest::nothingOutlivesTheEditor()
{
    QFETCH(int, number);
    const QString appName = QStringLiteral("orphans");
    QCOMPARE(build(appName, QString::fromUtf8(Escapes) + QString::fromUtf8(Stubborn)), QString());
    QProcess editor;
    editor.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("editor_with_a_run"), m_harness->projectPath(), appName});
    const auto nextLine = [&editor](QByteArray& line) {
        QTRY_VERIFY_WITH_TIMEOUT(editor.canReadLine(), Patience);
        line = editor.readLine().trimmed();
    };
    QByteArray runner;
    QByteArray ready;
    nextLine(runner);
    nextLine(ready);
    const QList<qint64> pids = escaped() << runner.toLongLong();
    QCOMPARE(pids.size(), 4);
    for (const qint64 pid : pids)
        QVERIFY(pid > 0 && test_support::isAlive(pid));
    ::kill(pid_t(editor.processId()), number);
    QTRY_COMPARE_WITH_TIMEOUT(editor.state(), QProcess::NotRunning, Patience);
    for (const qint64 pid : pids)
        QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(pid), Patience);
}

/// As far as the applet's own process goes, whatever user it has become.
void EscapesTest::nothingOutlivesTheSupervisor()
{
    const QString appName = QStringLiteral("alone");
    QCOMPARE(build(appName, QStringLiteral("log_info(\"pid %d\", do_getpid()); ") +
                                QString::fromUtf8(Stubborn)),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_VERIFY_WITH_TIMEOUT(m_harness->logLines(appName).contains(QStringLiteral("1 ready")),
                             Patience);
    const qint64 runner = m_harness->logLines(appName).first().mid(6).toLongLong();
    QVERIFY(test_support::isAlive(runner));
    const QList<qint64> supervisors =
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner");
    QCOMPARE(supervisors.size(), 1);
    ::kill(pid_t(supervisors.first()), SIGKILL);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(runner), Patience);
}

/// A process of the run that nobody can end, here since it is held before its end.
void EscapesTest::survivorsAreTold()
{
    const QString appName = QStringLiteral("survivor");
    QCOMPARE(build(appName, QStringLiteral("int pid = do_fork(); if (pid == 0) { do_setsid(); "
                                           "for (;;) do_sleep(60); } "
                                           "log_info(\"pid %d\", pid); delay_ms(60000);")),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->logLines(appName).size(), 1, Patience);
    const QString pid = m_harness->logLines(appName).first().mid(6);
    QProcess tracer;
    tracer.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("tracer"), pid, QString::number(PTRACE_O_TRACEEXIT)});
    QTRY_VERIFY_WITH_TIMEOUT(tracer.canReadLine() || tracer.state() == QProcess::NotRunning,
                             Patience);
    if (tracer.state() == QProcess::NotRunning)
        QSKIP("This system lets no process be held");
    QVERIFY(service::stopCApplet(appName, false));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, Patience);
    QVERIFY(test_support::isAlive(pid.toLongLong()));
    tracer.kill();
    QTRY_COMPARE_WITH_TIMEOUT(tracer.state(), QProcess::NotRunning, Patience);
    QCOMPARE(
        m_harness->logLines(appName).filter(QRegularExpression(QStringLiteral("^2 "))).join(u'\n'),
        QStringLiteral("2 已结束步骤留下的 1 个进程: applet_runner (%1); "
                       "1 个进程无法结束, 仍在运行")
            .arg(pid));
    QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(pid.toLongLong()), Patience);
}

void EscapesTest::forksWithoutEnd_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isStopped");
    // So many that nothing else on the machine suffers if they are let.
    const QString bomb = QStringLiteral(
        "int* count = (int*)do_mmap(nullptr, 4096, 3, 0x21, -1, 0); "
        "for (;;) if (__sync_fetch_and_add(count, 1) > 2500) do_sleep(60); else if (do_fork() == 0)"
        " { %1 }");
    const QString chain = QStringLiteral("if (do_fork() == 0) for (;;) if (do_fork() > 0) "
                                         "do_exit(0); else { %1 } "
                                         "log_info(\"ready\"); delay_ms(60000);");
    const QString leave = QStringLiteral("do_setsid();");
    QTest::newRow("ever more") << bomb.arg(QString()) << false;
    QTest::newRow("ever more, each in a group of its own") << bomb.arg(leave) << false;
    QTest::newRow("one after the other") << chain.arg(QString()) << true;
    QTest::newRow("one after the other, each in a group of its own") << chain.arg(leave) << true;
}

void EscapesTest::forksWithoutEnd()
{
    QFETCH(QString, code);
    QFETCH(bool, isStopped);
    standalone::setMemoryLimit(0);
    const QString appName = QStringLiteral("forks");
    QCOMPARE(build(appName, code), QString());
    QVERIFY(m_harness->start(appName));
    if (isStopped) {
        QTRY_VERIFY_WITH_TIMEOUT(!m_harness->logLines(appName).isEmpty(), Patience);
        QVERIFY(service::stopCApplet(appName, false));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{isStopped ? Stopped : Crashed},
                              Patience);
    const QString log = m_harness->logLines(appName).join(u'\n');
    QCOMPARE(log.contains(QStringLiteral("3 进程数超过上限 1000, 运行已被终止")), !isStopped);
    QVERIFY2(!log.contains(QStringLiteral("仍在运行")), qPrintable(log));
    QCOMPARE(test_support::processesWith(m_harness->projectPath().toUtf8()), 0);
}

void EscapesTest::manyAreNamedInShort()
{
    const QString appName = QStringLiteral("many");
    QCOMPARE(build(appName, QStringLiteral("for (int i = 0; i < 300; ++i) if (do_fork() == 0) { "
                                           "do_setsid(); for (;;) do_sleep(60); }")),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    QCOMPARE(m_harness->logLines(appName).size(), 1);
    const QString line = m_harness->logLines(appName).first();
    QVERIFY2(line.startsWith(QStringLiteral("2 已结束步骤留下的 300 个进程: applet_runner (")) &&
                 line.endsWith(QStringLiteral(", …")) && line.count(u'(') == 8,
             qPrintable(line));
}

/// What a program calls itself is anybody's.
void EscapesTest::namesAreOneLine()
{
    standalone::RunAccount account;
    account.trace.ended = {{std::string("a\nb\x1b[1m\xff", 8), 7}};
    account.trace.endedCount = 1;
    account.trace.survivorCount = 2;
    QCOMPARE(account.leftProcesses(),
             QString::fromUtf8("已结束步骤留下的 1 个进程: a b\uFFFD[1m\uFFFD (7); "
                               "2 个进程无法结束, 仍在运行"));
}

/// The thread that has forked it may end before it.
void EscapesTest::processOfAThreadLivesOn()
{
    const QString appName = QStringLiteral("thread");
    const char* const code =
        "struct T { static void* f(void*) { if (do_fork() == 0) { "
        "do_creat(\"FOLDER/begun\", 0600); while (do_access(\"FOLDER/joined\", 0) != 0) {} "
        "do_creat(\"FOLDER/alive\", 0600); do_exit(0); } "
        "while (do_access(\"FOLDER/begun\", 0) != 0) {} return nullptr; } }; "
        "unsigned long thread; do_thread(&thread, nullptr, T::f, nullptr); "
        "do_join(thread, nullptr); do_creat(\"FOLDER/joined\", 0600); "
        "while (do_access(\"FOLDER/alive\", 0) != 0) delay_ms(1);";
    QCOMPARE(build(appName, QString::fromUtf8(code)), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
}

void EscapesTest::memoryIsCountedTogether_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isTooMuch");
    const auto row = [](const char* name, bool isTooMuch, const char* code) {
        QTest::newRow(name) << QString::fromUtf8(code) << isTooMuch;
    };
    row("shared mappings", true,
        "for (;;) { memset(do_mmap(nullptr, 1 << 20, 3, 0x21, -1, 0), 1, 1 << 20); delay_ms(1); }");
    row("shared mappings, at once", true,
        "for (;;) memset(do_mmap(nullptr, 1 << 20, 3, 0x21, -1, 0), 1, 1 << 20);");
    row("without a descriptor left", true,
        "while (do_open(\"/dev/null\", 0) >= 0) {} "
        "for (;;) { memset(malloc(1 << 20), 1, 1 << 20); delay_ms(1); }");
    row("without a descriptor left, at once", true,
        "while (do_open(\"/dev/null\", 0) >= 0) {} "
        "for (;;) memset(malloc(1 << 20), 1, 1 << 20);");
    row("in processes of their own", true,
        "for (int i = 0; i < 4; ++i) if (do_fork() == 0) { do_setsid(); "
        "memset(malloc(40 << 20), i + 1, 40 << 20); for (;;) do_sleep(60); } "
        "for (;;) delay_ms(1000);");
#ifndef __SANITIZE_THREAD__ // which writes to memory of its own in every copy
    row("copies that were never written to", false,
        "memset(malloc(60 << 20), 1, 60 << 20); "
        "for (int i = 0; i < 8; ++i) if (do_fork() == 0) for (;;) do_sleep(60); "
        "delay_ms(300);");
#endif
}

void EscapesTest::memoryIsCountedTogether()
{
    QFETCH(QString, code);
    QFETCH(bool, isTooMuch);
    const QString appName = QStringLiteral("memory");
    QCOMPARE(build(appName, code), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName),
                              QList<int>{isTooMuch ? Crashed : Finished}, Patience);
    const QString log = m_harness->logLines(appName).join(u'\n');
    QVERIFY2(log.contains(QStringLiteral("3 内存超过上限 96 MB")) == isTooMuch, qPrintable(log));
}

/// Of which the system tells before it tells of the memory.
void EscapesTest::groupsHideNoMemory()
{
    const QString appName = QStringLiteral("groups");
    QCOMPARE(build(appName, QStringLiteral("for (;;) { memset(malloc(1 << 20), 1, 1 << 20); "
                                           "delay_ms(1); }")),
             QString());
    std::vector<gid_t> before(std::size_t(getgroups(0, nullptr)));
    getgroups(int(before.size()), before.data());
    std::vector<gid_t> many(3000);
    std::iota(many.begin(), many.end(), 60000);
    if (setgroups(many.size(), many.data()) != 0)
        QSKIP("This user may join no groups");
    const bool isStarted = m_harness->start(appName);
    QTRY_VERIFY_WITH_TIMEOUT(!m_harness->reports(appName).isEmpty(), Patience);
    QCOMPARE(setgroups(before.size(), before.data()), 0);
    QVERIFY(isStarted);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    const QString log = m_harness->logLines(appName).join(u'\n');
    QVERIFY2(log.contains(QStringLiteral("3 内存超过上限 96 MB")), qPrintable(log));
}

/// As where the system has no descriptor to give.
void EscapesTest::unreadableIsTooMuch()
{
    const QString appName = QStringLiteral("unreadable");
    QCOMPARE(build(appName, QStringLiteral("log_info(\"ready\"); for (;;) do_sleep(60);")),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->logLines(appName).size(), 1, Patience);
    const QList<qint64> supervisors =
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner");
    QCOMPARE(supervisors.size(), 1);
    const rlimit none = {3, 3};
    QCOMPARE(prlimit(pid_t(supervisors.first()), RLIMIT_NOFILE, &none, nullptr), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    QVERIFY2(m_harness->logLines(appName).last().contains(QStringLiteral("内存超过上限")),
             qPrintable(m_harness->logLines(appName).last()));
    QCOMPARE(test_support::processesWith(m_harness->projectPath().toUtf8()), 0);
}

PE_TEST("escapes", EscapesTest)
#include "escapes_test.moc"
