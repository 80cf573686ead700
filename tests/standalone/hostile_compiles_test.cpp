// Compiles that go wrong in ways that no one wants: the editor dies, the compiler runs wild, files
// change behind its back, another program builds the same applet.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/compiling.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "standalone/compiler/ClippedOutput.h"
#include "standalone/compiler/folder_lock.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/applet_paths.h"

#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <thread>

using namespace builders;
using standalone::CompileService;
using namespace compiling;
using run_events::app;

namespace {

constexpr int CompilePatience = 60000;

codegen::AppletSource one(const QString& code)
{
    return applet({sequence("main", {statement("电压", code.toStdString())})});
}

QByteArray module()
{
    return contentOfFile(standalone::appletModulePath(app));
}

} // namespace

class HostileCompilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_project = std::make_unique<Project>(); }
    void cleanup() { m_project.reset(); }

    void compilersDieWithTheEditor();
    void nothingIsLeftBehind();
    void bombsEnd();
    void outputIsClipped();
    void includedFilesCount();
    void keptWhileNothingChanges();
    void twoProgramsBuildOneApplet();
    void aHeldFolderIsRefused();
    void messagesAreWhole();

private:
    std::unique_ptr<Project> m_project;
};

/// The driver's own children too, even if they want to stay.
void HostileCompilesTest::compilersDieWithTheEditor()
{
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        init();
        const QString log = m_project->path("pids");
        m_project->useCompiler(
            "sh -c 'trap \"\" TERM INT HUP; echo $$ >> \"" + QFile::encodeName(log) +
            "\"; while :; do sleep 60; done' &\necho $$ >> '" + QFile::encodeName(log) + "'\nwait");
        QProcess editor;
        editor.start(QCoreApplication::applicationFilePath(),
                     {text("editor_with_a_compile"), m_project->harness.projectPath()});
        QVERIFY(editor.waitForStarted());
        const auto pids = [&] { return contentOfFile(log).split('\n'); };
        const int last = std::min(2u, std::max(1u, std::thread::hardware_concurrency())) * 2;
        QTRY_COMPARE_WITH_TIMEOUT(pids().size(), last + 1, CompilePatience);
        for (int i = 0; i < last; ++i)
            QVERIFY(test_support::isAlive(pids()[i].toLongLong()));
        QCOMPARE(::kill(static_cast<pid_t>(editor.processId()), signal), 0);
        QVERIFY(editor.waitForFinished());
        for (int i = 0; i < last; ++i)
            QTRY_VERIFY(!test_support::isAlive(pids()[i].toLongLong()));
        // Nothing that it held is held any more.
        qunsetenv("CXX");
        const Answer answer = m_project->compile(one(QString()));
        QVERIFY2(answer.result == CompileSucceeded, qPrintable(answer.message));
    }
}

void HostileCompilesTest::nothingIsLeftBehind()
{
    const QString log = m_project->path("pids");
    m_project->useCompiler("sleep 600 >/dev/null 2>&1 &\necho $! >> '" + QFile::encodeName(log) +
                           "'\nexec c++ \"$@\"");
    QCOMPARE(m_project->compile(one(QString())).result, CompileSucceeded);
    const auto pids = contentOfFile(log).trimmed().split('\n');
    QCOMPARE(pids.size(), 3);
    for (const QByteArray& pid : pids)
        QTRY_VERIFY(!test_support::isAlive(pid.toLongLong()));
}

void HostileCompilesTest::bombsEnd()
{
    const QString memory =
        text("出错位置: 序列“main”: 编译所需的内存超过上限 200 MB, 已终止 [main/]");
    QString macros = text("#define BOMB0 1,1,1,1,1,1,1,1,1,1\n");
    for (int i = 1; i < 12; ++i)
        macros += text("#define BOMB%1 ").arg(i) +
                  QStringList(QVector<QString>(10, text("BOMB%1").arg(i - 1)).toList()).join(u',') +
                  u'\n';
    const QString templates =
        text("auto bomb = [](auto& self, auto* n, auto* m) { if constexpr (sizeof *n > 1) {"
             " self(self, (char (*)[sizeof *n - 1])0, (char (*)[2 * sizeof *m])0);"
             " self(self, (char (*)[sizeof *n - 1])0, (char (*)[2 * sizeof *m + 1])0); } };\n"
             "bomb(bomb, (char (*)[29])0, (char (*)[1])0);");
    const rows::Table<QString, int, QString> table{
        {"macros", macros + text("int all[] = {BOMB11};"), CompilePatience, memory},
        {"endless file", text("#include \"/dev/zero\"\n"), CompilePatience, memory},
        {"templates", templates, CompilePatience, memory},
        {"templates, by the clock", templates, 1000, text("编译超过 1 秒仍未结束, 已终止")},
        {"a large object", text("__asm__(\".data\\n.fill 1000000000,1,7\\n.text\");"),
         CompilePatience,
         text("出错位置: 序列“main”: 编译写出的文件超过上限 200 MB, 已终止 [main/]")}};
    for (const auto& [row, code, timeout, line] : table) {
        const rows::Named named(row);
        // What the clock is to end must not meet the other bound first.
        m_project->service.setMemoryLimit(timeout == CompilePatience ? qint64(200) << 20 : 0);
        m_project->service.setTimeout(timeout);
        const Answer answer = m_project->compile(one(code));
        QCOMPARE(answer.result, CompileFailed);
        QCOMPARE(answer.message.section(u'\n', 0, 0), line);
        QVERIFY(answer.message.size() < 10000);
        m_project->service.setTimeout(CompilePatience);
        QCOMPARE(m_project->compile(one(QString())).result, CompileSucceeded);
    }
}

void HostileCompilesTest::outputIsClipped()
{
    m_project->useCompiler(
        "echo first; head -c 20000000 /dev/zero | tr '\\0' x; echo; echo last; exit 1");
    const QString message = m_project->compile(one(QString())).message;
    QVERIFY(message.startsWith(text("first\n")));
    QVERIFY(message.endsWith(text("last\n")));
    QCOMPARE(message.count(text("字节 ……\n")), 1);
    QVERIFY(message.size() < 2 * standalone::ClippedOutput::Half + 100);
    // A step that is wrong in every line.
    qunsetenv("CXX");
    QString wrong;
    for (int i = 0; i < 3000; ++i)
        wrong += text("wrong_%1;\n").arg(i);
    QCOMPARE(m_project->compile(one(wrong)).message.count(text("error: ")), 50);
}

/// Even if size and date say that nothing happened.
void HostileCompilesTest::includedFilesCount()
{
    // Also by a name that only the compiler makes out.
    for (const QString& directive :
         {text("#include \"%1\""), text("#define NAME \"%1\"\n%:import NAME")}) {
        init();
        const QString folder = m_project->path("a folder, #1 for $5");
        const QString path = folder + text("/helper.h");
        QVERIFY(QDir().mkpath(folder));
        const auto source = one(directive.arg(path) + text("\nlog_info(helper());"));
        const auto put = [&](const QByteArray& text) {
            QFile file(path);
            return test_support::putFile(
                       path, "struct helper { operator const char*() const { return \"" + text +
                                 "\"; } };\n") &&
                   file.open(QIODevice::ReadWrite) &&
                   file.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)),
                                    QFileDevice::FileModificationTime);
        };
        QVERIFY(put("helper of old"));
        const Answer first = m_project->compile(source);
        QVERIFY2(first.result == CompileSucceeded, qPrintable(first.message));
        QVERIFY(module().contains("helper of old"));
        QVERIFY(put("helper of new"));
        const Answer second = m_project->compile(source);
        QCOMPARE(second.start, CompileService::Started);
        QVERIFY(module().contains("helper of new"));
        QVERIFY(!module().contains("helper of old"));
        QVERIFY(QFile::remove(path));
        QCOMPARE(m_project->compile(source).result, CompileFailed);
    }
}

void HostileCompilesTest::keptWhileNothingChanges()
{
    const QString log = m_project->path("log");
    const QString path = m_project->path("a helper.h");
    m_project->useCompiler("echo \"$@\" >> '" + QFile::encodeName(log) + "'\nexec c++ \"$@\"");
    const auto compilers = [&](const codegen::AppletSource& source, bool isForced) {
        QFile::remove(log);
        return m_project->compile(source, isForced).start == CompileService::Skipped
                   ? 0
                   : contentOfFile(log).count('\n');
    };
    const QString clock = m_project->path("clock.h");
    QVERIFY(test_support::putFile(clock, "#define CLOCK __TIME__\n"));
    QVERIFY(test_support::putFile(path, "int helped = 1;\n"));
    // What was written just now may be written once more within the same tick of its clock.
    QTRY_VERIFY(QFileInfo(path).metadataChangeTime().msecsTo(QDateTime::currentDateTime()) > 100);
    const auto source = one(text("#include \"%1\"").arg(path));
    QCOMPARE(compilers(source, false), 3);
    QCOMPARE(compilers(source, true), 1);
    QCOMPARE(compilers(source, false), 0);
    // Another program's module is none of ours.
    QVERIFY(test_support::putFile(standalone::appletModulePath(app), module()));
    QCOMPARE(compilers(source, false), 1);
    // What no file holds, or no list names, is asked for each time.
    for (const QString& code :
         {text("log_info(__TIME__);"), text("#include \"%1\"\nlog_info(CLOCK);").arg(clock),
          text("__asm__(\".data\\n.incbin \\\"%1\\\"\\n.text\");").arg(path)}) {
        QCOMPARE(compilers(one(code), false), 2);
        QCOMPARE(compilers(one(code), false), 2);
    }
}

/// Each finds its own module whole when it is told of its success.
void HostileCompilesTest::twoProgramsBuildOneApplet()
{
    QProcess programs[2];
    for (int i = 0; i < 2; ++i) {
        programs[i].setProcessChannelMode(QProcess::MergedChannels);
        programs[i].start(QCoreApplication::applicationFilePath(),
                          {text("program_that_builds"), m_project->harness.projectPath(),
                           text("program%1").arg(i)});
    }
    for (QProcess& program : programs) {
        QVERIFY(program.waitForFinished(2 * CompilePatience));
        QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
                 program.readAll());
    }
}

void HostileCompilesTest::aHeldFolderIsRefused()
{
    const QString folder = standalone::appletCodeFolder(app);
    const std::atomic<bool> never{false};
    {
        standalone::FolderLock other(folder);
        QCOMPARE(other.lock(0, never), standalone::FolderLock::Held);
        m_project->service.setTimeout(100);
        QCOMPARE(m_project->compile(one(QString())).message,
                 text("另一个程序正在编译此小程序, 请稍后再试: %1").arg(folder));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList());
    }
    m_project->service.setTimeout(CompilePatience);
    QCOMPARE(m_project->compile(one(QString())).result, CompileSucceeded);
    // Whoever waits while the folder goes gets a lock that others see.
    auto holder = std::make_unique<standalone::FolderLock>(folder);
    QCOMPARE(holder->lock(0, never), standalone::FolderLock::Held);
    standalone::FolderLock waiting(folder);
    auto result = standalone::FolderLock::Impossible;
    std::thread waiter([&] { result = waiting.lock(CompilePatience, never); });
    const auto openings = [lock = folder + text("/.lock")] {
        int count = 0;
        for (const QFileInfo& file : QDir(text("/proc/self/fd")).entryInfoList())
            count += file.symLinkTarget() == lock;
        return count;
    };
    QTRY_COMPARE(openings(), 2); // the holder's, and that of who waits
    holder->removeFile();
    QVERIFY(QDir(folder).removeRecursively());
    holder.reset();
    waiter.join();
    QCOMPARE(result, standalone::FolderLock::Held);
    QCOMPARE(standalone::FolderLock(folder).lock(0, never), standalone::FolderLock::HeldByAnother);
}

void HostileCompilesTest::messagesAreWhole()
{
    // A name may hold anything; a line stays a line.
    auto source = one(text("wrong;"));
    source.applet.sequences[0].flows[1][0]->name = std::string("a\0b\nc", 5);
    const QString message = m_project->compile(source).message;
    QVERIFY2(
        message.startsWith(text(
            "出错步骤: 序列“main”, 步骤“a\uFFFDb\uFFFDc”, 语句第 1 行: ‘wrong’ was not declared")),
        qPrintable(message));
    // What a compiler says too.
    m_project->useCompiler("printf 'one\\0two'; exit 1");
    QCOMPARE(m_project->compile(one(QString())).message,
             text("one\uFFFDtwo") + text("one\uFFFDtwo"));
    // Of several files that can't be written one is named.
    qunsetenv("CXX");
    QCOMPARE(m_project->compile(one(QString())).result, CompileSucceeded);
    const QDir objects(standalone::appletCodeFolder(app) + text("/objects"));
    QStringList expected;
    for (const QString& name : objects.entryList({text("*.o")}, QDir::Files)) {
        QVERIFY(QFile::remove(objects.filePath(name)));
        QVERIFY(objects.mkpath(name + text("/x")));
        expected << text("目标文件无法写入: ") + objects.filePath(name);
    }
    QCOMPARE(expected.size(), 3); // with the tables of the first source, which name its step
    const QString told = m_project->compile(one(QString()), true).message;
    QVERIFY2(expected.contains(told), qPrintable(told));
    // The module's too, whatever the compiler had to say.
    m_project->useCompiler("echo a warning; exec c++ \"$@\"");
    const QString path = standalone::appletModulePath(app);
    QVERIFY(QFile::remove(path) && QDir().mkpath(path + text("/x")));
    QCOMPARE(m_project->compile(one(QString())).message, text("模块文件无法替换: ") + path);
}

/// The editor's part of compilersDieWithTheEditor: compiles and waits to be killed.
static int playCompilingEditor(QCoreApplication& application)
{
    standalone::Host::instance().setProjectPath(application.arguments().value(1));
    compiling::compile(CompileService::instance(), compiling::request(one(QString())));
    return 1;
}

/// The part of twoProgramsBuildOneApplet: builds again and again, each time something else.
static int playBuildingProgram(QCoreApplication& application)
{
    constexpr int Rounds = 5;
    const QString project = application.arguments().value(1);
    const QString name = application.arguments().value(2);
    standalone::Host::instance().setProjectPath(project);
    CompileService service;
    for (int round = 0; round < Rounds; ++round) {
        const std::string mark = name.toStdString() + " round " + std::to_string(round) + " of ";
        const auto source =
            applet({sequence("main",
                             {call("c", "sub"), statement("s", "log_info(\"" + mark + "main\");")}),
                    sequence("sub", {statement("s", "log_info(\"" + mark + "sub\");")})});
        QByteArray content;
        bool isWhole = false;
        const Answer answer = compiling::compile(service, compiling::request(source), [&] {
            content = module();
            const QString copy = project + u'/' + name + QString::number(round);
            void* loaded = QFile::copy(standalone::appletModulePath(app), copy)
                               ? dlopen(QFile::encodeName(copy).constData(), RTLD_NOW)
                               : nullptr;
            isWhole = loaded != nullptr;
        });
        const bool isOwn = content.contains((mark + "main").c_str()) &&
                           content.contains((mark + "sub").c_str()) &&
                           content.count(" round ") == 2;
        if (answer.result != CompileSucceeded || !isWhole || !isOwn) {
            std::printf("round %d: result %d, whole %d, own %d\n%s\n", round, int(answer.result),
                        int(isWhole), int(isOwn), qPrintable(answer.message));
            return 1;
        }
    }
    return 0;
}

static const bool areHostilePartsAdded =
    test_program::addPart("editor_with_a_compile", playCompilingEditor) &&
    test_program::addPart("program_that_builds", playBuildingProgram);
PE_TEST("hostile_compiles", HostileCompilesTest)
#include "hostile_compiles_test.moc"
