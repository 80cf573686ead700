// Steps that start processes and try to leave them behind, or to take more memory than a run may:
// when the run is over nothing of it is left, however it ended and whoever died first.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/applet_runtime.h"
#include "model/services/processedit.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/run_account.h"
#include "standalone/runtime/runtime.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <cstring>
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
const QString TooMuch = QStringLiteral("3 内存超过上限 96 MB");

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

/// The names of what leaves the run.
const char* const Ways[] = {"shell", "twice", "spawned"};

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
    void init() { standalone::setMemoryLimit(RunMemory); }
    void cleanup() { standalone::setMemoryLimit(0); }

    void nothingIsLeft();
    void nothingOutlivesTheEditor();
    void nothingOutlivesTheSupervisor();
    void survivorsAreTold();
    void forksWithoutEnd();
    void manyAreNamedInShort();
    void namesAreOneLine();
    void processOfAThreadLivesOn();
    void memoryIsCountedTogether();
    void groupsHideNoMemory();
    void unreadableIsTooMuch();

private:
    codegen::AppletSource step(const QString& code) const;
    QList<qint64> escaped() const;
    static qint64 supervisor();

    RuntimeHarness m_harness;
};

codegen::AppletSource EscapesTest::step(const QString& code) const
{
    const QString whole = text(Calls) + code;
    return oneStep(QString(whole).replace(text("FOLDER"), m_harness.projectPath()).toStdString());
}

/// Of the only run that there is; 0 if it isn't the only one.
qint64 EscapesTest::supervisor()
{
    const auto found =
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner");
    return found.size() == 1 ? found.first() : 0;
}

/// Empty until all of them run.
QList<qint64> EscapesTest::escaped() const
{
    QList<qint64> pids;
    for (const char* name : Ways) {
        QFile file(m_harness.projectPath() + text("/%1.pid").arg(text(name)));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        pids << file.readAll().trimmed().toLongLong();
    }
    return pids;
}

void EscapesTest::nothingIsLeft()
{
    const rows::Table<QString, int> table{
        {"end", QString(), Finished},
        {"crash", text("abort();"), Crashed},
        {"killed", text("log_info(\"ready\"); for (;;) do_sleep(60);"), Crashed},
        {"stop", text(Stubborn), Stopped},
        {"another program",
         text("char* other[] = {sh, c, script, sh, nullptr}; log_info(\"ready\"); "
              "delay_ms(1); char sleep[] = \"sleep\", time[] = \"1000\"; "
              "char* rest[] = {sleep, time, nullptr}; do_execv(\"/bin/sleep\", rest);"),
         Stopped}};
    for (const auto& [row, ending, event] : table) {
        const rows::Named named(row);
        for (const char* name : Ways) // of the row before
            QFile::remove(m_harness.projectPath() + text("/%1.ready").arg(text(name)));
        QVERIFY(m_harness.launch(app, step(text(Escapes) + ending)));
        const bool isReady = ending.contains(text("ready"));
        QVERIFY(!isReady || m_harness.hasSaid(app, text("1 ready")));
        if (event == Stopped)
            QVERIFY(service::stopCApplet(app, false));
        else if (isReady)
            ::kill(pid_t(m_harness.logLines(app).first().mid(6).toLongLong()), SIGKILL);
        QCOMPARE(m_harness.end(app), event);

        const QList<qint64> pids = escaped();
        QCOMPARE(pids.size(), 3);
        const QStringList told =
            m_harness.logLines(app).filter(text("2 已结束步骤留下的 3 个进程: "));
        QCOMPARE(told.size(), 1);
        for (const qint64 pid : pids) {
            QVERIFY(!test_support::isAlive(pid));
            QVERIFY2(told.first().contains(text("(%1)").arg(pid)), qPrintable(told.first()));
        }
    }
}

/// The editor is this program once more, which starts the applet that was built here.
void EscapesTest::nothingOutlivesTheEditor()
{
    QCOMPARE(m_harness.build(app, step(text(Escapes) + text(Stubborn))), QString());
    for (const int number : {SIGKILL, SIGTERM, SIGHUP, SIGSEGV}) {
        for (const char* name : Ways)
            QFile::remove(m_harness.projectPath() + text("/%1.ready").arg(text(name)));
        QProcess editor;
        editor.start(QCoreApplication::applicationFilePath(),
                     {text("editor_with_a_run"), m_harness.projectPath(), app});
        QList<qint64> pids;
        for (const bool isPid : {true, false}) {
            QTRY_VERIFY_WITH_TIMEOUT(editor.canReadLine(), Patience);
            const QByteArray line = editor.readLine().trimmed();
            if (isPid)
                pids << line.mid(int(std::strlen("pid "))).toLongLong();
            else
                QCOMPARE(line, QByteArray("ready"));
        }
        pids << escaped();
        QCOMPARE(pids.size(), 4);
        for (const qint64 pid : pids)
            QVERIFY(pid > 0 && test_support::isAlive(pid));
        ::kill(pid_t(editor.processId()), number);
        QTRY_COMPARE_WITH_TIMEOUT(editor.state(), QProcess::NotRunning, Patience);
        for (const qint64 pid : pids)
            QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(pid), Patience);
    }
}

/// As far as the applet's own process goes, whatever user it has become.
void EscapesTest::nothingOutlivesTheSupervisor()
{
    QVERIFY(
        m_harness.launch(app, step(text("log_info(\"pid %d\", do_getpid()); ") + text(Stubborn))));
    QVERIFY(m_harness.hasSaid(app, text("1 ready")));
    const qint64 runner = m_harness.logLines(app).first().mid(6).toLongLong();
    QVERIFY(test_support::isAlive(runner));
    QVERIFY(supervisor() > 0);
    ::kill(pid_t(supervisor()), SIGKILL);
    QCOMPARE(m_harness.end(app), Crashed);
    QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(runner), Patience);
}

/// A process of the run that nobody can end, here since it is held before its end.
void EscapesTest::survivorsAreTold()
{
    QVERIFY(m_harness.launch(
        app, step(text("int pid = do_fork(); if (pid == 0) { do_setsid(); for (;;) do_sleep(60); } "
                       "log_info(\"pid %d\", pid); delay_ms(60000);"))));
    QVERIFY(m_harness.hasSaid(app));
    const QString pid = m_harness.log(app).mid(6);
    QProcess tracer;
    tracer.start(QCoreApplication::applicationFilePath(),
                 {text("tracer"), pid, QString::number(PTRACE_O_TRACEEXIT)});
    QTRY_VERIFY_WITH_TIMEOUT(tracer.canReadLine() || tracer.state() == QProcess::NotRunning,
                             Patience);
    if (tracer.state() == QProcess::NotRunning)
        QSKIP("This system lets no process be held");
    QCOMPARE(m_harness.stopped(app), Stopped);
    QVERIFY(test_support::isAlive(pid.toLongLong()));
    tracer.kill();
    QTRY_COMPARE_WITH_TIMEOUT(tracer.state(), QProcess::NotRunning, Patience);
    QCOMPARE(m_harness.logLines(app).filter(QRegularExpression(text("^2 "))).join(u'\n'),
             text("2 已结束步骤留下的 1 个进程: applet_runner (%1); 1 个进程无法结束, 仍在运行")
                 .arg(pid));
    QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(pid.toLongLong()), Patience);
}

void EscapesTest::forksWithoutEnd()
{
    // So many that nothing else on the machine suffers if they are let.
    const QString bomb = text("int* count = (int*)do_mmap(nullptr, 4096, 3, 0x21, -1, 0); "
                              "for (;;) if (__sync_fetch_and_add(count, 1) > 2500) do_sleep(60); "
                              "else if (do_fork() == 0) { %1 }");
    const QString chain = text("if (do_fork() == 0) for (;;) if (do_fork() > 0) do_exit(0); "
                               "else { %1 } log_info(\"ready\"); delay_ms(60000);");
    const QString leave = text("do_setsid();");
    const rows::Table<QString, bool> table{
        {"ever more", bomb.arg(QString()), false},
        {"ever more, each in a group of its own", bomb.arg(leave), false},
        {"one after the other", chain.arg(QString()), true},
        {"one after the other, each in a group of its own", chain.arg(leave), true}};
    standalone::setMemoryLimit(0);
    for (const auto& [row, code, isStopped] : table) {
        const rows::Named named(row);
        QVERIFY(m_harness.launch(app, step(code)));
        if (isStopped) {
            QVERIFY(m_harness.hasSaid(app));
            QVERIFY(service::stopCApplet(app, false));
        }
        QCOMPARE(m_harness.end(app), isStopped ? Stopped : Crashed);
        const QString log = m_harness.log(app);
        QCOMPARE(log.contains(text("3 进程数超过上限 1000, 运行已被终止")), !isStopped);
        QVERIFY2(!log.contains(text("仍在运行")), qPrintable(log));
        QCOMPARE(test_support::processesWith(m_harness.projectPath().toUtf8()), 0);
    }
}

void EscapesTest::manyAreNamedInShort()
{
    QCOMPARE(m_harness.run(app, step(text("for (int i = 0; i < 300; ++i) if (do_fork() == 0) { "
                                          "do_setsid(); for (;;) do_sleep(60); }"))),
             Finished);
    QCOMPARE(m_harness.logLines(app).size(), 1);
    const QString line = m_harness.log(app);
    QVERIFY2(line.startsWith(text("2 已结束步骤留下的 300 个进程: applet_runner (")) &&
                 line.endsWith(text(", …")) && line.count(u'(') == 8,
             qPrintable(line));
}

/// What a program calls itself is anybody's.
void EscapesTest::namesAreOneLine()
{
    standalone::RunAccount account;
    account.trace.ended = {{std::string("a\nb\x1b[1m\xff", 8), 7}};
    account.trace.endedCount = 1;
    account.trace.survivorCount = 2;
    QCOMPARE(account.leftProcesses(), text("已结束步骤留下的 1 个进程: a b\uFFFD[1m\uFFFD (7); "
                                           "2 个进程无法结束, 仍在运行"));
}

/// The thread that has forked it may end before it.
void EscapesTest::processOfAThreadLivesOn()
{
    const char* const code =
        "struct T { static void* f(void*) { if (do_fork() == 0) { "
        "do_creat(\"FOLDER/begun\", 0600); while (do_access(\"FOLDER/joined\", 0) != 0) {} "
        "do_creat(\"FOLDER/alive\", 0600); do_exit(0); } "
        "while (do_access(\"FOLDER/begun\", 0) != 0) {} return nullptr; } }; "
        "unsigned long thread; do_thread(&thread, nullptr, T::f, nullptr); "
        "do_join(thread, nullptr); do_creat(\"FOLDER/joined\", 0600); "
        "while (do_access(\"FOLDER/alive\", 0) != 0) delay_ms(1);";
    QCOMPARE(m_harness.run(app, step(text(code))), Finished);
}

void EscapesTest::memoryIsCountedTogether()
{
    const rows::Table<bool, const char*> table{
        {"shared mappings", true,
         "for (;;) { memset(do_mmap(nullptr, 1 << 20, 3, 0x21, -1, 0), 1, 1 << 20); delay_ms(1); "
         "}"},
        {"shared mappings, at once", true,
         "for (;;) memset(do_mmap(nullptr, 1 << 20, 3, 0x21, -1, 0), 1, 1 << 20);"},
        {"without a descriptor left", true,
         "while (do_open(\"/dev/null\", 0) >= 0) {} "
         "for (;;) { memset(malloc(1 << 20), 1, 1 << 20); delay_ms(1); }"},
        {"without a descriptor left, at once", true,
         "while (do_open(\"/dev/null\", 0) >= 0) {} "
         "for (;;) memset(malloc(1 << 20), 1, 1 << 20);"},
#ifndef __SANITIZE_THREAD__ // which writes to memory of its own in every copy
        {"copies that were never written to", false,
         "memset(malloc(60 << 20), 1, 60 << 20); "
         "for (int i = 0; i < 8; ++i) if (do_fork() == 0) for (;;) do_sleep(60); "
         "delay_ms(300);"},
#endif
        {"in processes of their own", true,
         "for (int i = 0; i < 4; ++i) if (do_fork() == 0) { do_setsid(); "
         "memset(malloc(40 << 20), i + 1, 40 << 20); for (;;) do_sleep(60); } "
         "for (;;) delay_ms(1000);"}};
    for (const auto& [row, isTooMuch, code] : table) {
        const rows::Named named(row);
        QCOMPARE(m_harness.run(app, step(text(code))), isTooMuch ? Crashed : Finished);
        QVERIFY2(m_harness.log(app).contains(TooMuch) == isTooMuch, qPrintable(m_harness.log(app)));
    }
}

/// Of which the system tells before it tells of the memory.
void EscapesTest::groupsHideNoMemory()
{
    std::vector<gid_t> before(std::size_t(getgroups(0, nullptr)));
    getgroups(int(before.size()), before.data());
    std::vector<gid_t> many(3000);
    std::iota(many.begin(), many.end(), 60000);
    if (setgroups(many.size(), many.data()) != 0)
        QSKIP("This user may join no groups");
    const bool isStarted = m_harness.launch(
        app, step(text("for (;;) { memset(malloc(1 << 20), 1, 1 << 20); delay_ms(1); }")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_harness.reports(app).isEmpty(), Patience);
    QCOMPARE(setgroups(before.size(), before.data()), 0);
    QVERIFY(isStarted);
    QCOMPARE(m_harness.end(app), Crashed);
    QVERIFY2(m_harness.log(app).contains(TooMuch), qPrintable(m_harness.log(app)));
}

/// As where the system has no descriptor to give.
void EscapesTest::unreadableIsTooMuch()
{
    QVERIFY(m_harness.launch(app, step(text("log_info(\"ready\"); for (;;) do_sleep(60);"))));
    QVERIFY(m_harness.hasSaid(app));
    QVERIFY(supervisor() > 0);
    const rlimit none = {3, 3};
    QCOMPARE(prlimit(pid_t(supervisor()), RLIMIT_NOFILE, &none, nullptr), 0);
    QCOMPARE(m_harness.end(app), Crashed);
    QVERIFY2(m_harness.logLines(app).last().contains(text("内存超过上限")),
             qPrintable(m_harness.log(app)));
    QCOMPARE(test_support::processesWith(m_harness.projectPath().toUtf8()), 0);
}

static void printLog(const char*, DrelLogLevel, const char* text)
{
    std::printf("%s\n", text);
    std::fflush(stdout);
}

/// The editor of nothingOutlivesTheEditor: says what the run says, and waits to be killed.
static int playEditor(QCoreApplication& application)
{
    standalone::Host::instance().setProjectPath(application.arguments().value(1));
    const QString name = application.arguments().value(2);
    capplet_sdk::registerLogCallBack(name.toLocal8Bit().constData(), printLog);
    if (!service::runCApplet(name, text("main"), [](void*, int) {}))
        return 1;
    return application.exec();
}

static const bool isPlayEditorAdded = test_program::addPart("editor_with_a_run", playEditor);

PE_TEST("escapes", EscapesTest)
#include "escapes_test.moc"
