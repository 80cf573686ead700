// A run from its start to its end, and what is heard of it on the way.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/services/applet_runtime.h"
#include "model/services/capplet.h"
#include "model/services/processedit.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"

#include <QProcess>
#include <QtTest>

#include <pthread.h>

using namespace builders;
using namespace run_events;
namespace service = sdk_ui_interface::processedit;
namespace applets = sdk_ui_interface::capplet;

namespace {

/// A loop in the main sequence, and the step behind it.
codegen::AppletSource looping(const std::string& init, const std::string& test, const Blocks& steps)
{
    return applet({sequence(
        "main", {customFor("for", init, test, "++i", steps), plain(step_type::EndFor, "end")})});
}

} // namespace

class RuntimeRunTest : public QObject
{
    Q_OBJECT

private slots:
    void crashKeepsTheStep();
    void unloadableModule();
    void endBeforeItsBegin();
    void stop();
    void stopTwiceAndLate();
    void runsOfSeveralApplets();
    void startIsRefused();
    void runnerState();
    void removedRunnerIsKilled();
    void shutdownLeavesNothing();
    void equalReportsAreOne();
    void manyFailuresAreCounted();
    void changesOfSequenceAreAllThere();
    void textsAreCutAtCharacters();
    void noThreadToBeHad();
    void oddLogTexts();

private:
    RuntimeHarness m_harness;
};

/// A crash between two flushes, in a thread's busiest moment: nothing that was reported is lost.
void RuntimeRunTest::crashKeepsTheStep()
{
    const BlockPtr step = statement("s", "if (i == 98765) *(volatile int*)0 = 1;");
    QCOMPARE(m_harness.run(app, looping("int i = 0", "i < 100000", {step})), Crashed);
    const QStringList reports = m_harness.reports(app);
    QVERIFY(reports.contains(text("s:100")));
    QCOMPARE(reports.last(), text("s:0"));
}

void RuntimeRunTest::unloadableModule()
{
    const QString name = text("unloadable");
    QVERIFY(QDir().mkpath(standalone::appletModuleFolder(name)));
    QVERIFY(test_support::putFile(standalone::appletModulePath(name), "no module"));
    QVERIFY(m_harness.start(name));
    QCOMPARE(m_harness.end(name), Crashed);
    QCOMPARE(m_harness.logLines(name).size(), 1);
    QVERIFY(m_harness.log(name).startsWith(text("3 模块加载失败: ")));
}

/// A module that ends the process while it is loaded.
void RuntimeRunTest::endBeforeItsBegin()
{
    const QString name = text("early");
    QVERIFY(QDir().mkpath(standalone::appletModuleFolder(name)));
    QProcess compiler;
    compiler.start(standalone::compilerCommand().program,
                   {text("-shared"), text("-fPIC"), text("-xc++"), text("-"), text("-o"),
                    standalone::appletModulePath(name)});
    QVERIFY(compiler.waitForStarted());
    compiler.write("#include <cstdlib>\nstatic struct S { S() { std::exit(0); } } s;\n");
    compiler.closeWriteChannel();
    QVERIFY(compiler.waitForFinished(Patience) && compiler.exitCode() == 0);
    QVERIFY(m_harness.start(name));
    QCOMPARE(m_harness.end(name), Crashed);
    QCOMPARE(m_harness.log(name), text("3 运行进程在小程序开始之前就已结束, 退出代码 0"));
}

void RuntimeRunTest::stop()
{
    const rows::Table<const char*, int, const char*> table{
        {"step that ends", "", 1, "wait:0"},
        {"delay", "", 999999999, "wait:0"},
        {"delay in code", "delay_ms(999999999);", 0, "s:0"}};
    for (const auto& [row, code, delayMs, reached] : table) {
        const rows::Named named(row);
        QVERIFY(m_harness.launch(
            app, looping("int i = 0", "", {statement("s", code), delay("wait", delayMs)})));
        QTRY_VERIFY_WITH_TIMEOUT(m_harness.reports(app).contains(text(reached)), Patience);
        QVERIFY(m_harness.events(app).isEmpty());
        QCOMPARE(m_harness.stopped(app), Stopped);
        QCOMPARE(m_harness.log(app), QString()); // nor had it to be killed
        QVERIFY(!m_harness.reports(app).contains(text("end:0")));
    }
}

void RuntimeRunTest::stopTwiceAndLate()
{
    const QString name = text("stopped");
    QVERIFY(!service::stopCApplet(name, false));
    QVERIFY(m_harness.launch(name, waiting()));
    QVERIFY(service::stopCApplet(name, false)); // the child may not even have started
    service::stopCApplet(name, false);
    QCOMPARE(m_harness.end(name), Stopped);
    QVERIFY(!service::stopCApplet(name, false));
    QCOMPARE(m_harness.events(name).size(), 1);
}

/// One that ends doesn't touch the others, though they were started while it lived.
void RuntimeRunTest::runsOfSeveralApplets()
{
    const QStringList names = {text("several_1"), text("several_2"), text("several_3")};
    for (const QString& name : names)
        QVERIFY(m_harness.launch(name, waiting()));
    for (const QString& name : names)
        QTRY_VERIFY_WITH_TIMEOUT(!m_harness.reports(name).isEmpty(), Patience);
    for (int ended = 0; ended < names.size(); ++ended) {
        QCOMPARE(m_harness.stopped(names[ended]), Stopped);
        for (const QString& other : names.mid(ended + 1))
            QCOMPARE(service::getCAppletRunState(other).second, AppletRunning);
    }
}

void RuntimeRunTest::startIsRefused()
{
    const QString name = text("refused");
    QVERIFY(!m_harness.start(name)); // no module
    QCOMPARE(m_harness.build(name, waiting()), QString());
    QVERIFY(!service::runCApplet(name, text("main"), nullptr));
    standalone::setRunnerPath(text("/nowhere/applet_runner"));
    QVERIFY(!m_harness.start(name));
    standalone::setRunnerPath(QString());
    QVERIFY(m_harness.start(name));
    QVERIFY(!m_harness.start(name)); // runs already
    QCOMPARE(m_harness.stopped(name), Stopped);
    // A sequence that the module doesn't have shows in the child only.
    QVERIFY(m_harness.start(name, text("other")));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness.events(name), (QList<int>{Stopped, Crashed}), Patience);
    // A module of another program is none that was asked for.
    QFile module(standalone::appletModulePath(name));
    QVERIFY(module.open(QIODevice::Append) && module.write("x") == 1);
    module.close();
    QVERIFY(!m_harness.start(name));
}

void RuntimeRunTest::runnerState()
{
    const QString name = text("state");
    int status = -7;
    QCOMPARE(applets::createCApplet(name, ProcessApplet), 0);
    QVERIFY(applets::createCApplet(name, ProcessApplet) != 0);
    QVERIFY(applets::createCApplet(QString(), ProcessApplet) != 0);
    QVERIFY(applets::isCAppletExist(name));
    QVERIFY(service::getCAppletRunState(name).first.empty());
    QVERIFY(applets::getStatusRunnerFunction(name, status) != 0);
    QCOMPARE(status, -7);
    QVERIFY(!CAppletManager::getInstance()->getApplet("state"));

    QVERIFY(m_harness.launch(name, waiting()));
    QCOMPARE(service::getCAppletRunState(name),
             std::make_pair(std::string("state"), AppletRunning));
    QCOMPARE(applets::getStatusRunnerFunction(name, status), 0);
    QCOMPARE(status, 0);
    QVERIFY(applets::unloadCAppletMp(name) != 0);
    QVERIFY(CAppletManager::getInstance()->getApplet("state"));

    QCOMPARE(applets::stopRunnerFunction(name), 0);
    QCOMPARE(m_harness.end(name), Stopped);
    QCOMPARE(service::getCAppletRunState(name),
             std::make_pair(std::string("state"), AppletStopped));
    QCOMPARE(applets::getStatusRunnerFunction(name, status), 0);
    QVERIFY(status != 0);
    QCOMPARE(applets::removeRunnerFunction(name), 0);
    QCOMPARE(applets::unloadCAppletMp(name), 0);
    QVERIFY(service::getCAppletRunState(name).first.empty());
    QVERIFY(!CAppletManager::getInstance()->getApplet("state"));
    QCOMPARE(applets::destroyCApplet(name), 0);
    QVERIFY(!applets::isCAppletExist(name));
}

void RuntimeRunTest::removedRunnerIsKilled()
{
    QVERIFY(m_harness.launch(app, waiting()));
    QTRY_VERIFY_WITH_TIMEOUT(!m_harness.reports(app).isEmpty(), Patience);
    applets::removeRunnerFunction(app);
    QCOMPARE(m_harness.end(app), Stopped);
}

void RuntimeRunTest::shutdownLeavesNothing()
{
    QVERIFY(m_harness.launch(app, oneStep("int do_getpid() __asm__(\"getpid\"); "
                                          "log_info(\"%d\", do_getpid()); delay_ms(600000);")));
    QVERIFY(m_harness.hasSaid(app));
    const qint64 pid = m_harness.log(app).mid(2).toLongLong();
    QVERIFY(test_support::isAlive(pid));
    standalone::shutdownRuntime();
    QVERIFY(!test_support::isAlive(pid));
    QVERIFY(m_harness.events(app).isEmpty());
}

/// However often the steps ran: what was reported last comes last, and a failure comes through.
void RuntimeRunTest::equalReportsAreOne()
{
    constexpr int Turns = 2000000;
    QCOMPARE(m_harness.run(app, looping("int i = 0", "i < " + std::to_string(Turns),
                                        {statement("a", ""),
                                         statement("b", "if (i == 1234567) step_fail(5);"),
                                         statement("c", "")})),
             Finished);
    const QStringList reports = m_harness.reports(app);
    QVERIFY2(reports.size() < Turns / 10, qPrintable(QString::number(reports.size())));
    const QString end = text("a:0 a:100 b:0 b:100 c:0 c:100 for:100 end:0 end:100");
    QVERIFY2(reports.join(u' ').endsWith(end), qPrintable(reports.join(u' ').right(200)));
    QCOMPARE(reports.count(text("b:99!-5")), 1);
    QCOMPARE(m_harness.log(app), text("3 序列“main”的步骤“b”失败(-5), 循环第 1234568 次"));
}

/// Twenty equal failures, then ones that all differ.
void RuntimeRunTest::manyFailuresAreCounted()
{
    const BlockPtr bad = statement("bad", "step_fail(i <= 20 ? 1 : i);");
    QCOMPARE(m_harness.run(app, looping("int i = 1", "i <= 1000", {bad})), Finished);
    const QStringList lines = m_harness.logLines(app);
    QCOMPARE(lines.size(), 101); // with the total
    const QString name = text("3 序列“main”的步骤“bad”");
    QCOMPARE(lines[0], name + text("失败(-1), 循环第 1 次"));
    QCOMPARE(lines[9], name + text("失败(-1), 循环第 10 次; 此后相同的失败只计数"));
    QCOMPARE(lines[10], name + text("失败(-21), 循环第 21 次"));
    QCOMPARE(lines[99], name + text("失败(-110), 循环第 110 次; 此后该步骤的失败只计数"));
    QCOMPARE(lines[100], name + text("共失败 1000 次, 其中 900 次未逐次记录"));
}

void RuntimeRunTest::changesOfSequenceAreAllThere()
{
    constexpr int Turns = 20000;
    auto source = looping("int i = 0", "i < " + std::to_string(Turns), {call("call", "other")});
    source.applet.sequences.push_back(sequence("other", {statement("s", "")}));
    QCOMPARE(m_harness.run(app, source), Finished);
    const QStringList reports = m_harness.reports(app);
    const QStringList turn = text("call:0 >other s:0 s:100 <other call:100").split(u' ');
    QCOMPARE(reports.size(), 6 * Turns + 4);
    for (int i = 0; i < 6 * Turns; ++i)
        QCOMPARE(reports[i + 1], turn[i % 6]);
}

/// What a step logs and prints, longer than one piece and with bytes that end a text elsewhere.
void RuntimeRunTest::textsAreCutAtCharacters()
{
    QCOMPARE(m_harness.run(app, oneStep("static char text[30001]; "
                                        "for (int i = 0; i < 30000; ++i) text[i] = \"电\"[i % 3]; "
                                        "log_info(\"%s\", text); printf(\"%s\\n\", text); "
                                        "fwrite(\"a\\0b\\n\", 1, 4, stdout);")),
             Finished);
    const QString mark = text("…（已截断，共 30000 字节）");
    QString printed;
    int logged = 0;
    for (const QString& line : m_harness.logLines(app)) {
        if (!line.endsWith(mark)) {
            printed += line.mid(2);
            continue;
        }
        ++logged;
        QCOMPARE(line.count(u'电'), line.size() - mark.size() - 2);
    }
    QCOMPARE(logged, 1);
    QCOMPARE(printed, QString(10000, text("电").front()) + text("a\u2400b"));
}

void RuntimeRunTest::noThreadToBeHad()
{
    const QString name = text("threadless");
    QCOMPARE(m_harness.build(name, oneStep("")), QString());
    pthread_attr_t usual;
    pthread_attr_t impossible;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    pthread_attr_init(&impossible);
    pthread_attr_setstacksize(&impossible, std::size_t(1) << 46);
    QCOMPARE(pthread_setattr_default_np(&impossible), 0);
    const bool isStarted = m_harness.start(name);
    pthread_setattr_default_np(&usual);
    QVERIFY(!isStarted);
    QCOMPARE(m_harness.log(name), text("3 运行启动失败: 系统无法再创建线程"));
    QVERIFY(m_harness.start(name));
    QCOMPARE(m_harness.end(name), Finished);
}

void RuntimeRunTest::oddLogTexts()
{
    QCOMPARE(m_harness.run(app, oneStep("log_info(\"a%cb\", 0); log_info(\"电压 %lc\", 0xdfff);")),
             Finished);
    QCOMPARE(m_harness.log(app), text("1 a\u2400b|3 日志文本无法格式化: 电压 %lc"));
}

PE_TEST("runtime_run_test", RuntimeRunTest)
#include "runtime_run_test.moc"
