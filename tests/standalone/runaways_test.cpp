// Steps that do what no step should: the editor stays whole, the log says what happened and which
// steps ran last, and the next applet runs.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/test_program.h"

#include "model/services/processedit.h"
#include "standalone/runtime/runtime.h"

#include <QSemaphore>
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

    void endsAlone_data();
    void endsAlone();
    void begunLineIsKept_data();
    void begunLineIsKept();
    void crashBesideAWriteThatWaits();
    void childrenDieWithTheRun_data();
    void childrenDieWithTheRun();
    void tellsTheLastSteps();

private:
    std::unique_ptr<RuntimeHarness> m_harness;
};

void RunawaysTest::initTestCase()
{
    m_harness = std::make_unique<RuntimeHarness>();
    standalone::setMemoryLimit(MemoryLimit);
    QCOMPARE(
        m_harness->build(QStringLiteral("ok"), applet({sequence("main", {statement("s", "")})})),
        QString());
    QCOMPARE(m_harness->build(QStringLiteral("neighbour"),
                              applet({sequence("main", {delay("wait", 600000)})})),
             QString());
    QVERIFY(m_harness->start(QStringLiteral("neighbour")));
}

void RunawaysTest::cleanupTestCase()
{
    // It ran beside all of them.
    QVERIFY(m_harness->events(QStringLiteral("neighbour")).isEmpty());
    m_harness.reset();
    standalone::setMemoryLimit(0);
}

void RunawaysTest::endsAlone_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("isStopped");
    const auto row = [](const char* name, const char* code, const char* word,
                        bool isStopped = false) {
        QTest::newRow(name) << QString::fromUtf8(code) << QString::fromUtf8(word) << isStopped;
    };
    row("null write", "*(volatile int*)0 = 1;", "访问了无效的内存 (SIGSEGV)");
    row("abort", "abort();", "(SIGABRT)");
    row("exception", "throw 1;", "(SIGABRT)");
    row("division by zero", "volatile int zero = 0; zero = 7 / zero;", "除以零 (SIGFPE)");
    row("exit", "exit(0);", "退出代码 0");
    row("exit with a code", "exit(7);", "退出代码 7");
    row("quick exit", "_Exit(3);", "退出代码 3");
    row("kills itself", "do_kill(do_getpid(), 9);", "(SIGKILL)");
    row("kills its group", "do_kill(0, 9);", "(SIGKILL)");
    row("recursion",
        "struct R { static int f(volatile int n) { volatile char b[4096]; b[0] = n; "
        "return f(n + 1) + b[0]; } }; R::f(0);",
        "栈溢出");
    row("memory", "for (;;) memset(malloc(1 << 20), 1, 1 << 20);", "内存超过上限 96 MB");
    row("memory, slowly", "for (;;) { memset(malloc(1 << 20), 1, 1 << 20); delay_ms(1); }",
        "内存超过上限 96 MB");
    row("memory, with new", "for (;;) (new char[1 << 16])[0] = 1;", "内存超过上限 96 MB");
    row("endless loop", "log_info(\"here\"); for (volatile int i = 0;; ++i) {}", "没有响应停止请求",
        true);
    row("endless loop without signals",
        "log_info(\"here\"); struct S { static void f(int) {} }; "
        "void (*do_signal(int, void (*)(int)))(int) __asm__(\"signal\"); "
        "for (int i = 1; i < 32; ++i) do_signal(i, S::f); for (;;) {}",
        "没有响应停止请求", true);
    row("closed descriptors", "for (int i = 0; i < 5000; ++i) do_close(i); delay_ms(60000);",
        "关闭了与编辑器通信的描述符");
    row("garbage in the report channel",
        "char bytes[512]; memset(bytes, 0xff, sizeof bytes); "
        "for (int i = 3; i < 1000; ++i) do_write(i, bytes, sizeof bytes); delay_ms(60000);",
        "写坏了运行报告");
}

void RunawaysTest::endsAlone()
{
    QFETCH(QString, code);
    QFETCH(QString, word);
    QFETCH(bool, isStopped);
    const QString appName = QString::fromUtf8(QTest::currentDataTag());
    const std::string text = System + code.toStdString();
    QCOMPARE(m_harness->build(
                 appName, applet({sequence("main", {statement("before", ""), statement("bad", text),
                                                    statement("after", "")})})),
             QString());
    QVERIFY(m_harness->start(appName));
    if (isStopped) {
        QTRY_VERIFY_WITH_TIMEOUT(m_harness->logLines(appName).contains(QStringLiteral("1 here")),
                                 Patience);
        QVERIFY(service::stopCApplet(appName, false));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{isStopped ? Stopped : Crashed},
                              Patience);
    QCOMPARE(m_harness->reports(appName).last(), QStringLiteral("bad:0"));
    const QString account = m_harness->logLines(appName).last();
    QVERIFY2(account.startsWith(QStringLiteral("3 ")) && account.contains(word),
             qPrintable(m_harness->logLines(appName).join(u'\n')));
    QVERIFY2(account.contains(QStringLiteral("\n正在执行: 序列“main”的步骤“bad”\n此前执行的步骤 "
                                             "(由近及远):\n  序列“main”的步骤“before”")),
             qPrintable(account));

    const int runs = m_harness->events(QStringLiteral("ok")).size();
    QVERIFY(m_harness->start(QStringLiteral("ok")));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(QStringLiteral("ok")).size(), runs + 1, Patience);
    QCOMPARE(m_harness->events(QStringLiteral("ok")).last(), Finished);
}

void RunawaysTest::begunLineIsKept_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<int>("event");
    QTest::newRow("crash") << QStringLiteral("abort();") << Crashed;
    QTest::newRow("stop") << QStringLiteral("log_info(\"ready\"); for (;;) {}") << Stopped;
}

void RunawaysTest::begunLineIsKept()
{
    QFETCH(QString, ending);
    QFETCH(int, event);
    const QString appName = QStringLiteral("begun_") + QString::fromUtf8(QTest::currentDataTag());
    const std::string code = "printf(\"whole\\nbegun\"); " + ending.toStdString();
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    if (event == Stopped) {
        QTRY_VERIFY_WITH_TIMEOUT(m_harness->logLines(appName).contains(QStringLiteral("1 ready")),
                                 Patience);
        QVERIFY(service::stopCApplet(appName, false));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{event}, Patience);
    QCOMPARE(m_harness->logLines(appName).count(QStringLiteral("1 begun")), 1);
}

/// The editor doesn't read, one thread waits for it in the midst of a piece, another one crashes:
/// all that was said before arrives, each of it once.
void RunawaysTest::crashBesideAWriteThatWaits()
{
    const QString appName = QStringLiteral("crash_beside");
    const std::string code =
        "static volatile int turn = 0; "
        "int do_thread(unsigned long*, const void*, void* (*)(void*), void*) "
        "__asm__(\"pthread_create\"); int do_usleep(unsigned) __asm__(\"usleep\"); "
        "struct T { static void* f(void*) { int seen = 0; "
        "do { seen = turn; do_usleep(200000); } while (seen != turn); "
        "*(volatile int*)0 = 1; return nullptr; } }; "
        "unsigned long thread; do_thread(&thread, nullptr, T::f, nullptr); "
        "for (;;) { turn = turn + 1; log_info(\"%d %0*d\", turn, 5000, 0); }";
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QThread::msleep(1500); // no event loop
    QVERIFY(m_harness->events(appName).isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    QStringList lines = m_harness->logLines(appName);
    QVERIFY2(lines.last().contains(QStringLiteral("(SIGSEGV)")), qPrintable(lines.last().left(90)));
    lines.removeLast();
    int turn = 0;
    for (const QString& line : qAsConst(lines))
        QCOMPARE(line.section(u' ', 1, 1), QString::number(++turn));
    QVERIFY2(turn > 600, qPrintable(QString::number(turn)));
}

void RunawaysTest::childrenDieWithTheRun_data()
{
    QTest::addColumn<QString>("ending");
    QTest::addColumn<int>("event");
    QTest::newRow("end") << QString() << Finished;
    QTest::newRow("crash") << QStringLiteral("abort();") << Crashed;
    QTest::newRow("stop") << QStringLiteral("for (;;) {}") << Stopped;
}

/// Among them one that has left the group, and all go on with the steps, as forked processes do.
void RunawaysTest::childrenDieWithTheRun()
{
    QFETCH(QString, ending);
    QFETCH(int, event);
    const QString appName = QStringLiteral("forks_") + QString::fromUtf8(QTest::currentDataTag());
    const std::string forks = std::string(System) +
                              "bool parent = true; for (int i = 0; parent && i < 8; ++i) { "
                              "int pid = do_fork(); parent = pid != 0; "
                              "if (parent) log_info(\"%d\", pid); else if (i == 0) do_setsid(); } "
                              "if (!parent) { step_fail(); for (int i = 0; i < 100; ++i) "
                              "log_info(\"child\"); }";
    const std::string rest = std::string(System) + "if (rt::failure) for (;;) do_sleep(60); " +
                             "delay_ms(50); " + ending.toStdString();
    QCOMPARE(
        m_harness->build(appName, applet({sequence("main", {statement("forks", forks + rest)})})),
        QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->logLines(appName).size(), 8, Patience);
    if (event == Stopped)
        service::stopCApplet(appName, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{event}, Patience);
    const QStringList lines = m_harness->logLines(appName);
    for (int i = 0; i < 8; ++i)
        QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(lines[i].mid(2).toLongLong()), Patience);
    QVERIFY(!m_harness->reports(appName).contains(QStringLiteral("forks:99!-1")));
    QCOMPARE(lines.filter(QStringLiteral("child")).size(), 0);
}

void RunawaysTest::tellsTheLastSteps()
{
    const QString appName = QStringLiteral("trace");
    const QString main = service::createSeuqence(appName, QStringLiteral("Main"));
    const QString called = service::createSeuqence(appName, QStringLiteral("Called"));
    const auto add = [&](const QString& sequence, const QString& parent, int type, const char* name,
                         const std::function<void(IProcessBlock&)>& change) {
        const QString uuid = service::createProcess(appName, sequence, parent, BasicStep, type, -1);
        const auto block = service::getProcess(appName, uuid);
        block->name = name;
        change(*block);
        service::updateProcess(appName, sequence, block);
        return uuid;
    };
    const auto code = [](const char* text) {
        return [text](IProcessBlock& block) {
            dynamic_cast<StatementProcessBlock&>(block).setCustomCode(text);
        };
    };
    const QString flow = QStringLiteral("1");
    const QString loop = add(main, flow, step_type::For, "Loop", [](IProcessBlock& block) {
        auto& typed = dynamic_cast<ForProcessBlock&>(block);
        typed.setVariableName("i", true);
        typed.setRangeValue(0, 100, 1);
    });
    add(main, loop, step_type::Statement, "Measure", code(""));
    const QString test = add(main, loop, step_type::If, "Check", [](IProcessBlock& block) {
        auto& typed = dynamic_cast<ConditionProcessBlock&>(block);
        typed.setFun1("i");
        typed.setOperator("<", false, 1);
        typed.setFun2("50");
    });
    add(main, test, step_type::Statement, "Note", code(""));
    add(main, loop, step_type::Sequence, "Call", [&](IProcessBlock& block) {
        auto& typed = dynamic_cast<SequenceProcessBlock&>(block);
        typed.sourceKind = SequenceProcessBlock::AppletSequence;
        typed.sequenceId = called.toStdString();
    });
    add(called, flow, step_type::Statement, "Work",
        code("static int turns = 0; if (++turns == 4) do { *(volatile int*)0 = 1; } while (0);"));

    QSemaphore finished;
    bool skipped = false;
    QVERIFY(service::compileCApplet(
        appName, main, false, false,
        [&](compileResult, quint64, const char*, const char*) { finished.release(); }, skipped));
    finished.acquire();
    QVERIFY(m_harness->start(appName, main));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);

    QStringList expected = {QStringLiteral("3 运行被信号中断: 访问了无效的内存 (SIGSEGV)"),
                            QStringLiteral("正在执行: 序列“Called”的步骤“Work”"),
                            QStringLiteral("此前执行的步骤 (由近及远):")};
    const QString line = QStringLiteral("  序列“Main”的步骤“%1”, 循环第 %2 次");
    for (int turn = 4; turn >= 2; --turn) {
        if (turn < 4)
            expected << QStringLiteral("  序列“Called”的步骤“Work”");
        for (const char* name : {"Call", "Note", "Check", "Measure"})
            expected << line.arg(QString::fromUtf8(name)).arg(turn);
    }
    expected = expected.mid(0, 3 + 10);
    QCOMPARE(m_harness->logLines(appName).last().split(u'\n'), expected);
    service::removeApp(appName);
}

PE_TEST("runaways", RunawaysTest)
#include "runaways_test.moc"
