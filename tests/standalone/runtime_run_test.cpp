#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include "model/services/applet_runtime.h"
#include "model/services/capplet.h"
#include "model/services/processedit.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <pthread.h>

using namespace builders;
using namespace run_events;
namespace service = sdk_ui_interface::processedit;

namespace {

/// A step that logs the id of its process.
const char* const TellPid = "char pid[64] = {0}; FILE* f = fopen(\"/proc/self/stat\", \"r\"); "
                            "if (fscanf(f, \"%63s\", pid) == 1) log_info(\"pid %s\", pid); "
                            "fclose(f); ";

} // namespace

class RuntimeRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_harness.reset(); }

    void crashKeepsTheStep();
    void unloadableModule();
    void killedFromOutside();
    void stop();
    void stopTwiceAndLate();
    void runsOfSeveralApplets();
    void startIsRefused();
    void runnerState();
    void removedRunnerIsKilled();
    void processOfTheAppletDoesNotHoldTheRun();
    void shutdownLeavesNothing();
    void deathOfTheEditorEndsTheChild();
    void equalReportsAreOne();
    void manyFailuresAreCounted();
    void changesOfSequenceAreAllThere();
    void textsAreCutAtCharacters();
    void endBeforeItsBegin();
    void noThreadToBeHad();
    void oddLogTexts();
    void nobodyIsAtTheScreen();

private:
    qint64 pidFromLog(const QString& appName) const;

    std::unique_ptr<RuntimeHarness> m_harness;
};

void RuntimeRunTest::initTestCase()
{
    m_harness = std::make_unique<RuntimeHarness>();
}

qint64 RuntimeRunTest::pidFromLog(const QString& appName) const
{
    for (const QString& line : m_harness->logLines(appName)) {
        if (line.startsWith(QStringLiteral("1 pid ")))
            return line.mid(6).toLongLong();
    }
    return 0;
}

/// A crash between two flushes, in a thread's busiest moment: nothing that was reported is lost.
void RuntimeRunTest::crashKeepsTheStep()
{
    const QString appName = QStringLiteral("crash_late");
    const auto source = applet(
        {sequence("main", {fixedFor("for", "i", 0, 100000, 1,
                                    {statement("s", "if (i == 98765) *(volatile int*)0 = 1;")}),
                           plain(step_type::EndFor, "end")})});
    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    const QStringList reports = m_harness->reports(appName);
    QVERIFY(reports.contains(QStringLiteral("s:100")));
    QCOMPARE(reports.last(), QStringLiteral("s:0"));
}

void RuntimeRunTest::unloadableModule()
{
    const rows::Table<QByteArray> table{{"empty", QByteArray()}, {"text", QByteArray("no module")}};
    for (const auto& [row, content] : table) {
        const rows::Named named(row);
        const QString appName = QStringLiteral("unloadable_") + QString::fromUtf8(row);
        QVERIFY(QDir().mkpath(standalone::appletModuleFolder(appName)));
        QFile file(standalone::appletModulePath(appName));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        QVERIFY(m_harness->start(appName));
        QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
        QCOMPARE(m_harness->logLines(appName).size(), 1);
        QVERIFY(
            m_harness->logLines(appName).first().startsWith(QStringLiteral("3 模块加载失败: ")));
    }
}

void RuntimeRunTest::killedFromOutside()
{
    const QString appName = QStringLiteral("killed");
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("pid", TellPid),
                                                                 delay("wait", 60000)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_VERIFY_WITH_TIMEOUT(pidFromLog(appName) > 0, Patience);
    QCOMPARE(::kill(static_cast<pid_t>(pidFromLog(appName)), SIGKILL), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
}

void RuntimeRunTest::stop()
{
    const rows::Table<QString, int> table{
        {"step that ends", QString(), 1},
        {"delay", QString(), 999999999},
        {"delay in code", QStringLiteral("delay_ms(999999999);"), 0},
        {"endless loop in code", QStringLiteral("for (volatile int i = 0;; ++i) {}"), 0}};
    for (const auto& [row, code, delayMs] : table) {
        const rows::Named named(row);
        const QString appName = QStringLiteral("stop_") + QString::fromUtf8(row);
        const auto source = applet({sequence(
            "main", {customFor("for", "", "", "",
                               {statement("s", code.toStdString()), delay("wait", delayMs)}),
                     plain(step_type::EndFor, "end")})});
        QCOMPARE(m_harness->build(appName, source), QString());
        QVERIFY(m_harness->start(appName));
        const QString reached = code.isEmpty() ? QStringLiteral("wait:0") : QStringLiteral("s:0");
        QTRY_VERIFY_WITH_TIMEOUT(m_harness->reports(appName).contains(reached), Patience);
        QVERIFY(m_harness->events(appName).isEmpty());

        QVERIFY(service::stopCApplet(appName, false));
        QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, 1000);
        QVERIFY(!m_harness->reports(appName).contains(QStringLiteral("end:0")));
        QCOMPARE(service::getCAppletRunState(appName).second, AppletStopped);
    }
}

void RuntimeRunTest::stopTwiceAndLate()
{
    const QString appName = QStringLiteral("stop_again");
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {delay("wait", 60000)})})),
             QString());
    QVERIFY(!service::stopCApplet(appName, false));
    QVERIFY(m_harness->start(appName));
    QVERIFY(service::stopCApplet(appName, false)); // the child may not even have started
    service::stopCApplet(appName, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, Patience);
    QVERIFY(!service::stopCApplet(appName, false));
    QCOMPARE(m_harness->events(appName).size(), 1);
}

void RuntimeRunTest::runsOfSeveralApplets()
{
    const QStringList names = {QStringLiteral("several_1"), QStringLiteral("several_2"),
                               QStringLiteral("several_3")};
    for (const QString& name : names)
        QCOMPARE(m_harness->build(name, applet({sequence("main", {delay("wait", 60000)})})),
                 QString());
    for (const QString& name : names)
        QVERIFY(m_harness->start(name));
    for (const QString& name : names)
        QTRY_VERIFY_WITH_TIMEOUT(!m_harness->reports(name).isEmpty(), Patience);
    // One that ends doesn't touch the others, though they were started while it lived.
    service::stopCApplet(names[0], false);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(names[0]), QList<int>{Stopped}, Patience);
    QCOMPARE(service::getCAppletRunState(names[1]).second, AppletRunning);
    QCOMPARE(service::getCAppletRunState(names[2]).second, AppletRunning);
    for (const QString& name : names)
        service::stopCApplet(name, false);
    for (const QString& name : names)
        QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(name), QList<int>{Stopped}, Patience);
}

void RuntimeRunTest::startIsRefused()
{
    const QString appName = QStringLiteral("refused");
    QVERIFY(!m_harness->start(appName)); // no module
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {delay("wait", 60000)})})),
             QString());
    QVERIFY(!service::runCApplet(appName, QStringLiteral("main"), nullptr));
    standalone::setRunnerPath(QStringLiteral("/nowhere/applet_runner"));
    QVERIFY(!m_harness->start(appName));
    standalone::setRunnerPath(QString());
    QVERIFY(m_harness->start(appName));
    QVERIFY(!m_harness->start(appName)); // runs already
    service::stopCApplet(appName, false);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, Patience);

    // A sequence that the module doesn't have shows in the child only.
    QVERIFY(m_harness->start(appName, QStringLiteral("other")));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), (QList<int>{Stopped, Crashed}), Patience);

    // A module of another program is none that was asked for.
    QFile module(standalone::appletModulePath(appName));
    QVERIFY(module.open(QIODevice::Append) && module.write("x") == 1);
    module.close();
    QVERIFY(!m_harness->start(appName));
}

void RuntimeRunTest::runnerState()
{
    namespace applets = sdk_ui_interface::capplet;
    const QString appName = QStringLiteral("state");
    int status = -7;
    QCOMPARE(applets::createCApplet(appName, ProcessApplet), 0);
    QVERIFY(applets::createCApplet(appName, ProcessApplet) != 0);
    QVERIFY(applets::createCApplet(QString(), ProcessApplet) != 0);
    QVERIFY(applets::isCAppletExist(appName));
    QVERIFY(service::getCAppletRunState(appName).first.empty());
    QVERIFY(applets::getStatusRunnerFunction(appName, status) != 0);
    QCOMPARE(status, -7);
    QVERIFY(!CAppletManager::getInstance()->getApplet("state"));

    QCOMPARE(m_harness->build(appName, applet({sequence("main", {delay("wait", 60000)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QCOMPARE(service::getCAppletRunState(appName),
             std::make_pair(std::string("state"), AppletRunning));
    QCOMPARE(applets::getStatusRunnerFunction(appName, status), 0);
    QCOMPARE(status, 0);
    QVERIFY(applets::unloadCAppletMp(appName) != 0);
    QVERIFY(CAppletManager::getInstance()->getApplet("state"));

    QCOMPARE(applets::stopRunnerFunction(appName), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, Patience);
    QCOMPARE(service::getCAppletRunState(appName),
             std::make_pair(std::string("state"), AppletStopped));
    QCOMPARE(applets::getStatusRunnerFunction(appName, status), 0);
    QVERIFY(status != 0);
    QCOMPARE(applets::removeRunnerFunction(appName), 0);
    QCOMPARE(applets::unloadCAppletMp(appName), 0);
    QVERIFY(service::getCAppletRunState(appName).first.empty());
    QVERIFY(!CAppletManager::getInstance()->getApplet("state"));
    QCOMPARE(applets::destroyCApplet(appName), 0);
    QVERIFY(!applets::isCAppletExist(appName));
}

void RuntimeRunTest::removedRunnerIsKilled()
{
    const QString appName = QStringLiteral("removed");
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {delay("wait", 60000)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_VERIFY_WITH_TIMEOUT(!m_harness->reports(appName).isEmpty(), Patience);
    sdk_ui_interface::capplet::removeRunnerFunction(appName);
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Stopped}, Patience);
}

void RuntimeRunTest::processOfTheAppletDoesNotHoldTheRun()
{
    const QString appName = QStringLiteral("grandchild");
    QCOMPARE(m_harness->build(
                 appName, applet({sequence("main", {statement("s", "system(\"sleep 30 &\");")})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
}

void RuntimeRunTest::shutdownLeavesNothing()
{
    const QString appName = QStringLiteral("shutdown");
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", TellPid),
                                                                 delay("wait", 60000)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_VERIFY_WITH_TIMEOUT(pidFromLog(appName) > 0, Patience);
    const qint64 pid = pidFromLog(appName);
    QVERIFY(test_support::isAlive(pid));
    standalone::shutdownRuntime();
    QVERIFY(!test_support::isAlive(pid));
    QVERIFY(m_harness->events(appName).isEmpty());
}

/// Runs this program as an editor of its own that starts an applet, and kills it.
void RuntimeRunTest::deathOfTheEditorEndsTheChild()
{
    const QString appName = QStringLiteral("orphan");
    const std::string code = std::string(TellPid) + "for (;;) {}";
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());

    QProcess editor;
    editor.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("editor_with_a_run"), m_harness->projectPath(), appName});
    QTRY_VERIFY_WITH_TIMEOUT(editor.canReadLine(), Patience);
    const qint64 pid = editor.readLine().trimmed().toLongLong();
    QVERIFY(pid > 0 && test_support::isAlive(pid));
    editor.kill();
    QTRY_COMPARE_WITH_TIMEOUT(editor.state(), QProcess::NotRunning, Patience);
    QTRY_VERIFY_WITH_TIMEOUT(!test_support::isAlive(pid), Patience);
}

/// However often the steps ran: what was reported last comes last, and a failure comes through.
void RuntimeRunTest::equalReportsAreOne()
{
    const QString appName = QStringLiteral("many");
    constexpr int Turns = 2000000;
    const auto source = applet({sequence(
        "main", {customFor("for", "int i = 0", "i < " + std::to_string(Turns), "++i",
                           {statement("a", ""), statement("b", "if (i == 1234567) step_fail(5);"),
                            statement("c", "")}),
                 plain(step_type::EndFor, "end")})});
    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    const QStringList reports = m_harness->reports(appName);
    QVERIFY2(reports.size() < Turns / 10, qPrintable(QString::number(reports.size())));
    const QString end = QStringLiteral("a:0 a:100 b:0 b:100 c:0 c:100 for:100 end:0 end:100");
    QVERIFY2(reports.join(u' ').endsWith(end), qPrintable(reports.join(u' ').right(200)));
    QCOMPARE(reports.count(QStringLiteral("b:99!-5")), 1);
    QCOMPARE(m_harness->logLines(appName),
             QStringList{QStringLiteral("3 序列“main”的步骤“b”失败(-5), 循环第 1234568 次")});
}

/// Twenty equal failures, then ones that all differ.
void RuntimeRunTest::manyFailuresAreCounted()
{
    const QString appName = QStringLiteral("failing");
    const auto source =
        applet({sequence("main", {customFor("for", "int i = 1", "i <= 1000", "++i",
                                            {statement("bad", "step_fail(i <= 20 ? 1 : i);")}),
                                  plain(step_type::EndFor, "end")})});
    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    const QStringList lines = m_harness->logLines(appName);
    QCOMPARE(lines.size(), 101); // with the total
    const QString name = QStringLiteral("3 序列“main”的步骤“bad”");
    QCOMPARE(lines[0], name + QStringLiteral("失败(-1), 循环第 1 次"));
    QCOMPARE(lines[9], name + QStringLiteral("失败(-1), 循环第 10 次; 此后相同的失败只计数"));
    QCOMPARE(lines[10], name + QStringLiteral("失败(-21), 循环第 21 次"));
    QCOMPARE(lines[99], name + QStringLiteral("失败(-110), 循环第 110 次; 此后该步骤的失败只计数"));
    QCOMPARE(lines[100], name + QStringLiteral("共失败 1000 次, 其中 900 次未逐次记录"));
}

void RuntimeRunTest::changesOfSequenceAreAllThere()
{
    const QString appName = QStringLiteral("calls");
    constexpr int Turns = 20000;
    const auto source =
        applet({sequence("main", {customFor("for", "int i = 0", "i < " + std::to_string(Turns),
                                            "++i", {call("call", "other")}),
                                  plain(step_type::EndFor, "end")}),
                sequence("other", {statement("s", "")})});
    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    const QStringList reports = m_harness->reports(appName);
    const QStringList turn = {QStringLiteral("call:0"), QStringLiteral(">other"),
                              QStringLiteral("s:0"),    QStringLiteral("s:100"),
                              QStringLiteral("<other"), QStringLiteral("call:100")};
    QCOMPARE(reports.size(), 6 * Turns + 4);
    for (int i = 0; i < 6 * Turns; ++i)
        QCOMPARE(reports[i + 1], turn[i % 6]);
}

/// What a step logs and prints, longer than one piece and with bytes that end a text elsewhere.
void RuntimeRunTest::textsAreCutAtCharacters()
{
    const QString appName = QStringLiteral("texts");
    const std::string code = "static char text[30001]; "
                             "for (int i = 0; i < 30000; ++i) text[i] = \"电\"[i % 3]; "
                             "log_info(\"%s\", text); "
                             "printf(\"%s\\n\", text); fwrite(\"a\\0b\\n\", 1, 4, stdout);";
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    QStringList lines = m_harness->logLines(appName);
    const auto logged = std::find_if(lines.begin(), lines.end(), [](const QString& line) {
        return line.contains(QStringLiteral("已截断"));
    });
    QVERIFY(logged != lines.end());
    const QString mark = QStringLiteral("…（已截断，共 30000 字节）");
    QVERIFY2(logged->endsWith(mark), qPrintable(logged->right(40)));
    QCOMPARE(logged->chopped(mark.size()).mid(2).count(u'电'), logged->size() - mark.size() - 2);
    lines.erase(logged);
    QCOMPARE(lines.last(), QStringLiteral("1 a\u2400b"));
    lines.removeLast();
    QString printed;
    for (const QString& line : lines)
        printed += line.mid(2);
    QCOMPARE(printed, QString(10000, QStringLiteral("电").front()));
}

/// A module that ends the process while it is loaded.
void RuntimeRunTest::endBeforeItsBegin()
{
    const QString appName = QStringLiteral("early");
    QVERIFY(QDir().mkpath(standalone::appletModuleFolder(appName)));
    QProcess compiler;
    compiler.start(standalone::compilerCommand().program,
                   {QStringLiteral("-shared"), QStringLiteral("-fPIC"), QStringLiteral("-xc++"),
                    QStringLiteral("-"), QStringLiteral("-o"),
                    standalone::appletModulePath(appName)});
    QVERIFY(compiler.waitForStarted());
    compiler.write("#include <cstdlib>\nstatic struct S { S() { std::exit(0); } } s;\n");
    compiler.closeWriteChannel();
    QVERIFY(compiler.waitForFinished(Patience) && compiler.exitCode() == 0);
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Crashed}, Patience);
    QCOMPARE(m_harness->logLines(appName),
             QStringList{QStringLiteral("3 运行进程在小程序开始之前就已结束, 退出代码 0")});
}

void RuntimeRunTest::noThreadToBeHad()
{
    const QString appName = QStringLiteral("threadless");
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", "")})})),
             QString());
    pthread_attr_t usual;
    pthread_attr_t impossible;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    pthread_attr_init(&impossible);
    pthread_attr_setstacksize(&impossible, std::size_t(1) << 46);
    QCOMPARE(pthread_setattr_default_np(&impossible), 0);
    const bool isStarted = m_harness->start(appName);
    pthread_setattr_default_np(&usual);
    QVERIFY(!isStarted);
    QCOMPARE(m_harness->logLines(appName),
             QStringList{QStringLiteral("3 运行启动失败: 系统无法再创建线程")});
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
}

void RuntimeRunTest::oddLogTexts()
{
    const QString appName = QStringLiteral("odd");
    const char* const code = "log_info(\"a%cb\", 0); log_info(\"电压 %lc\", 0xdfff);";
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    QCOMPARE(m_harness->logLines(appName),
             (QStringList{QStringLiteral("1 a\u2400b"),
                          QStringLiteral("3 日志文本无法格式化: 电压 %lc")}));
}

/// No widgets and no handler: questions are declined, while a notice needs nobody.
void RuntimeRunTest::nobodyIsAtTheScreen()
{
    const QString appName = QStringLiteral("nobody");
    const char* const code = "int shown = show_capplet_box(\"x\"); bool yes = ask_yes_no(\"?\"); "
                             "log_info(\"%d %d\", shown, yes);";
    QCOMPARE(m_harness->build(appName, applet({sequence("main", {statement("s", code)})})),
             QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{Finished}, Patience);
    QCOMPARE(m_harness->logLines(appName), QStringList{QStringLiteral("1 0 0")});
}

static void printLog(const char*, DrelLogLevel, const char* text)
{
    std::printf("%s\n", text + std::strlen("pid "));
    std::fflush(stdout);
}

/// The editor's part of deathOfTheEditorEndsTheChild: prints the child's id and waits to be killed.
static int playEditor(QCoreApplication& application)
{
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3)
        return 2;
    standalone::Host::instance().setProjectPath(arguments[1]);
    const QString appName = arguments[2];
    capplet_sdk::registerLogCallBack(appName.toLocal8Bit().constData(), printLog);
    if (!service::runCApplet(appName, QStringLiteral("main"), [](void*, int) {}))
        return 1;
    return application.exec();
}

static const bool isPlayEditorAdded = test_program::addPart("editor_with_a_run", playEditor);
PE_TEST("runtime_run_test", RuntimeRunTest)
#include "runtime_run_test.moc"
