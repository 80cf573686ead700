// Steps that do what no step should: the editor stays whole, the log says what happened and which
// steps ran last, and the next applet runs.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/child_processes.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/processedit.h"
#include "standalone/runtime/runtime.h"

#include <QThread>
#include <QtTest>

using namespace builders;
using namespace run_events;
namespace service = sdk_ui_interface::processedit;

namespace {

constexpr qint64 MemoryLimit = qint64(96) << 20;

/// Functions of the system that a step may name without its headers.
const char* const System =
    "int do_fork() __asm__(\"fork\"); int do_close(int) __asm__(\"close\"); "
    "long do_write(int, const void*, size_t) __asm__(\"write\"); "
    "int do_setsid() __asm__(\"setsid\"); int do_getpid() __asm__(\"getpid\"); "
    "int do_kill(int, int) __asm__(\"kill\"); "
    "unsigned do_sleep(unsigned) __asm__(\"sleep\"); ";

} // namespace

class RunawaysTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void endsAlone();
    void begunLineIsKept();
    void crashBesideAWriteThatWaits();
    void childrenDieWithTheRun();
    void tellsTheLastSteps();

private:
    RuntimeHarness m_harness;
};

void RunawaysTest::initTestCase()
{
    standalone::setMemoryLimit(MemoryLimit);
    QVERIFY(m_harness.launch(text("neighbour"), waiting()));
}

void RunawaysTest::cleanupTestCase()
{
    QVERIFY(m_harness.events(text("neighbour")).isEmpty()); // it ran beside all of them
    standalone::setMemoryLimit(0);
}

void RunawaysTest::endsAlone()
{
    const rows::Table<const char*, const char*> table{
        // the code, and what is said of its end; what says "here" is stopped
        {"null write", "*(volatile int*)0 = 1;", "访问了无效的内存 (SIGSEGV)"},
        {"abort", "abort();", "(SIGABRT)"},
        {"exception", "throw 1;", "(SIGABRT)"},
        {"division by zero", "volatile int zero = 0; zero = 7 / zero;", "除以零 (SIGFPE)"},
        {"exit", "exit(0);", "退出代码 0"},
        {"quick exit", "_Exit(3);", "退出代码 3"},
        {"kills itself", "do_kill(do_getpid(), 9);", "(SIGKILL)"},
        {"kills its group", "do_kill(0, 9);", "(SIGKILL)"},
        {"recursion",
         "struct R { static int f(volatile int n) { volatile char b[4096]; b[0] = n; "
         "return f(n + 1) + b[0]; } }; R::f(0);",
         "栈溢出"},
        {"memory", "for (;;) memset(malloc(1 << 20), 1, 1 << 20);", "内存超过上限 96 MB"},
        {"memory, slowly", "for (;;) { memset(malloc(1 << 20), 1, 1 << 20); delay_ms(1); }",
         "内存超过上限 96 MB"},
        {"memory, with new", "for (;;) (new char[1 << 16])[0] = 1;", "内存超过上限 96 MB"},
        {"endless loop", "log_info(\"here\"); for (volatile int i = 0;; ++i) {}",
         "没有响应停止请求"},
        {"endless loop without signals",
         "log_info(\"here\"); struct S { static void f(int) {} }; "
         "void (*do_signal(int, void (*)(int)))(int) __asm__(\"signal\"); "
         "for (int i = 1; i < 32; ++i) do_signal(i, S::f); for (;;) {}",
         "没有响应停止请求"},
        {"closed descriptors", "for (int i = 0; i < 5000; ++i) do_close(i); delay_ms(60000);",
         "关闭了与编辑器通信的描述符"},
        {"garbage in the report channel",
         "char bytes[512]; memset(bytes, 0xff, sizeof bytes); "
         "for (int i = 3; i < 1000; ++i) do_write(i, bytes, sizeof bytes); delay_ms(60000);",
         "写坏了运行报告"}};
    for (const auto& [row, code, words] : table) {
        const rows::Named named(row);
        QVERIFY(m_harness.launch(
            app, applet({sequence("main", {statement("before", ""),
                                           statement("bad", System + std::string(code)),
                                           statement("after", "")})})));
        const bool isStopped = text(code).startsWith(text("log_info(\"here"));
        if (isStopped) {
            QVERIFY(m_harness.hasSaid(app, text("1 here")));
            QVERIFY(service::stopCApplet(app, false));
        }
        QCOMPARE(m_harness.end(app), isStopped ? Stopped : Crashed);
        QCOMPARE(m_harness.reports(app).last(), text("bad:0"));
        const QString account = m_harness.logLines(app).last();
        QVERIFY2(account.startsWith(text("3 ")) && account.contains(text(words)),
                 qPrintable(m_harness.log(app)));
        QVERIFY2(account.contains(text("\n正在执行: 序列“main”的步骤“bad”\n此前执行的步骤 "
                                       "(由近及远):\n  序列“main”的步骤“before”")),
                 qPrintable(account));
        QCOMPARE(m_harness.run(text("next"), oneStep("")), Finished);
    }
}

void RunawaysTest::begunLineIsKept()
{
    for (const int event : {Crashed, Stopped}) {
        QVERIFY(m_harness.launch(
            app, oneStep(std::string("printf(\"whole\\nbegun\"); ") +
                         (event == Crashed ? "abort();" : "log_info(\"ready\"); for (;;) {}"))));
        if (event == Stopped) {
            QVERIFY(m_harness.hasSaid(app, text("1 ready")));
            QVERIFY(service::stopCApplet(app, false));
        }
        QCOMPARE(m_harness.end(app), event);
        QCOMPARE(m_harness.logLines(app).count(text("1 begun")), 1);
    }
}

/// The editor doesn't read, one thread waits for it in the midst of a piece, another one crashes:
/// all that was said before arrives, each of it once.
void RunawaysTest::crashBesideAWriteThatWaits()
{
    const std::string code =
        "static volatile int turn = 0; "
        "int do_thread(unsigned long*, const void*, void* (*)(void*), void*) "
        "__asm__(\"pthread_create\"); int do_usleep(unsigned) __asm__(\"usleep\"); "
        "struct T { static void* f(void*) { int seen = 0; "
        "do { seen = turn; do_usleep(200000); } while (seen != turn); "
        "*(volatile int*)0 = 1; return nullptr; } }; "
        "unsigned long thread; do_thread(&thread, nullptr, T::f, nullptr); "
        "for (;;) { turn = turn + 1; log_info(\"%d %0*d\", turn, 5000, 0); }";
    QVERIFY(m_harness.launch(app, oneStep(code)));
    QThread::msleep(1500); // no event loop
    QVERIFY(m_harness.events(app).isEmpty());
    QCOMPARE(m_harness.end(app), Crashed);
    QStringList lines = m_harness.logLines(app);
    QVERIFY2(lines.last().contains(text("(SIGSEGV)")), qPrintable(lines.last().left(90)));
    lines.removeLast();
    int turn = 0;
    for (const QString& line : qAsConst(lines))
        QCOMPARE(line.section(u' ', 1, 1), QString::number(++turn));
    QVERIFY2(turn > 600, qPrintable(QString::number(turn)));
}

/// Among them one that has left the group, and all go on with the steps, as forked processes do.
void RunawaysTest::childrenDieWithTheRun()
{
    const rows::Table<std::string, int> table{
        {"end", "", Finished}, {"crash", "abort();", Crashed}, {"stop", "for (;;) {}", Stopped}};
    for (const auto& [row, ending, event] : table) {
        const rows::Named named(row);
        QVERIFY(m_harness.launch(
            app,
            oneStep(System + ("bool parent = true; for (int i = 0; parent && i < 8; ++i) { "
                              "int pid = do_fork(); parent = pid != 0; "
                              "if (parent) log_info(\"%d\", pid); else if (i == 0) do_setsid(); } "
                              "if (!parent) { step_fail(); for (int i = 0; i < 100; ++i) "
                              "log_info(\"child\"); } if (rt::failure) for (;;) do_sleep(60); "
                              "delay_ms(50); " +
                              ending))));
        QTRY_COMPARE_WITH_TIMEOUT(m_harness.logLines(app).size(), 8, Patience);
        if (event == Stopped)
            service::stopCApplet(app, false);
        QCOMPARE(m_harness.end(app), event);
        const QStringList lines = m_harness.logLines(app);
        for (int i = 0; i < 8; ++i)
            QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(lines[i].mid(2).toLongLong()),
                                     Patience);
        QVERIFY(!m_harness.reports(app).contains(text("s:99!-1")));
        QCOMPARE(lines.filter(text("child")).size(), 0);
    }
}

/// By the names of the model.
void RunawaysTest::tellsTheLastSteps()
{
    const QString name = text("trace");
    const applet_fixture::ScopedApplet scoped(name);
    const auto called = [](BlockPtr block, const char* blockName) {
        block->name = blockName;
        return block;
    };
    const char* const work =
        "static int turns = 0; if (++turns == 4) do { *(volatile int*)0 = 1; } while (0);";
    auto source = applet(
        {sequence("main",
                  {fixedFor("loop", "i", 0, 100, 1,
                            {called(statement("a", ""), "Measure"),
                             called(condition<IfProcessBlock>("b", "i", "<", "50",
                                                              {called(statement("c", ""), "Note")}),
                                    "Check"),
                             called(call("d", "sub"), "Call")})}),
         sequence("sub", {called(statement("e", work), "Work")})});
    source.applet.sequences[0].info.name = "Main";
    source.applet.sequences[1].info.name = "Called";
    m_harness.putIntoModel(name, source);
    QCOMPARE(m_harness.buildFromModel(name, text("main")), QString());
    QVERIFY(m_harness.start(name));
    QCOMPARE(m_harness.end(name), Crashed);
    QStringList expected = {text("3 运行被信号中断: 访问了无效的内存 (SIGSEGV)"),
                            text("正在执行: 序列“Called”的步骤“Work”"),
                            text("此前执行的步骤 (由近及远):")};
    for (int turn = 4; turn >= 2; --turn) {
        if (turn < 4)
            expected << text("  序列“Called”的步骤“Work”");
        for (const char* step : {"Call", "Note", "Check", "Measure"})
            expected << text("  序列“Main”的步骤“%1”, 循环第 %2 次").arg(text(step)).arg(turn);
    }
    QCOMPARE(m_harness.logLines(name).last().split(u'\n'), expected.mid(0, 3 + 10));
}

PE_TEST("runaways", RunawaysTest)
#include "runaways_test.moc"
