// Compiles that go wrong in ways that no one wants: the editor dies, the compiler runs wild, files
// change behind its back, another program builds the same applet.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/child_processes.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"

#include "standalone/compiler/ClippedOutput.h"
#include "standalone/compiler/CompileService.h"
#include "standalone/compiler/folder_lock.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/applet_paths.h"

#include <QProcess>
#include <QSemaphore>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <thread>

using namespace builders;
using standalone::CompileService;

namespace {

const QString appName = QStringLiteral("小程序");
constexpr int CompilePatience = 60000;

struct Answer
{
    CompileService::StartResult start = CompileService::Refused;
    compileResult result = CompileFailed;
    QString message;
};

/// Starts a compile and waits for its end; @p whenFinished is called from within its callback.
Answer compile(CompileService& service, const codegen::AppletSource& source, bool isForced = false,
               const std::function<void()>& whenFinished = {})
{
    QSemaphore finished;
    Answer answer;
    CompileService::Request request;
    request.appName = appName;
    request.targetSequenceId = QString::fromStdString(source.targetSequenceId);
    request.isForced = isForced;
    request.codeFolder = standalone::appletCodeFolder(appName);
    request.modulePath = standalone::appletModulePath(appName);
    request.code = codegen::generate(source);
    request.onFinished = [&](compileResult result, quint64, const char*, const char* message) {
        answer.result = result;
        answer.message = QString::fromUtf8(message);
        if (whenFinished)
            whenFinished();
        finished.release();
    };
    answer.start = service.start(std::move(request));
    if (answer.start == CompileService::Started)
        finished.acquire();
    return answer;
}

codegen::AppletSource one(const QString& code)
{
    return applet({sequence("main", {statement("电压", code.toStdString())})});
}

QByteArray contentOfFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray module()
{
    return contentOfFile(standalone::appletModulePath(appName));
}

} // namespace

class HostileCompilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void compilersDieWithTheEditor_data();
    void compilersDieWithTheEditor();
    void nothingIsLeftBehind();
    void bombsEnd_data();
    void bombsEnd();
    void outputIsClipped();
    void includedFilesCount_data();
    void includedFilesCount();
    void keptWhileNothingChanges();
    void twoProgramsBuildOneApplet();
    void aHeldFolderIsRefused();
    void messagesAreWhole();

private:
    /// A compiler of our own making, as a shell script.
    void useCompiler(const QByteArray& script);

    std::unique_ptr<RuntimeHarness> m_harness;
    std::unique_ptr<CompileService> m_service;
};

void HostileCompilesTest::init()
{
    m_harness = std::make_unique<RuntimeHarness>();
    m_service = std::make_unique<CompileService>();
}

void HostileCompilesTest::cleanup()
{
    m_service.reset();
    m_harness.reset();
    qunsetenv("CXX");
}

void HostileCompilesTest::useCompiler(const QByteArray& script)
{
    const QString path = m_harness->projectPath() + QStringLiteral("/compiler.sh");
    QVERIFY(test_support::putFile(path, "#!/bin/sh\n" + script + '\n'));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("CXX", QFile::encodeName(path));
}

void HostileCompilesTest::compilersDieWithTheEditor_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("killed") << SIGKILL;
    QTest::newRow("terminated") << SIGTERM;
    QTest::newRow("interrupted") << SIGINT;
}

/// The driver's own children too, even if they want to stay.
void HostileCompilesTest::compilersDieWithTheEditor()
{
    QFETCH(int, signal);
    const QString log = m_harness->projectPath() + QStringLiteral("/pids");
    useCompiler("sh -c 'trap \"\" TERM INT HUP; echo $$ >> \"" + QFile::encodeName(log) +
                "\"; while :; do sleep 60; done' &\necho $$ >> '" + QFile::encodeName(log) +
                "'\nwait");
    QProcess editor;
    editor.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("editor_with_a_compile"), m_harness->projectPath()});
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
    const Answer answer = compile(*m_service, one(QString()));
    QVERIFY2(answer.result == CompileSucceeded, qPrintable(answer.message));
}

void HostileCompilesTest::nothingIsLeftBehind()
{
    const QString log = m_harness->projectPath() + QStringLiteral("/pids");
    useCompiler("sleep 600 >/dev/null 2>&1 &\necho $! >> '" + QFile::encodeName(log) +
                "'\nexec c++ \"$@\"");
    QCOMPARE(compile(*m_service, one(QString())).result, CompileSucceeded);
    const auto pids = contentOfFile(log).trimmed().split('\n');
    QCOMPARE(pids.size(), 3);
    for (const QByteArray& pid : pids)
        QTRY_VERIFY(!test_support::isAlive(pid.toLongLong()));
}

void HostileCompilesTest::bombsEnd_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("timeout");
    QTest::addColumn<QString>("line");
    const QString memory =
        QStringLiteral("出错位置: 序列“main”: 编译所需的内存超过上限 200 MB, 已终止 [main/]");
    QString macros = QStringLiteral("#define BOMB0 1,1,1,1,1,1,1,1,1,1\n");
    for (int i = 1; i < 12; ++i)
        macros += QStringLiteral("#define BOMB%1 ").arg(i) +
                  QStringList(QVector<QString>(10, QStringLiteral("BOMB%1").arg(i - 1)).toList())
                      .join(u',') +
                  u'\n';
    const QString templates = QStringLiteral(
        "auto bomb = [](auto& self, auto* n, auto* m) { if constexpr (sizeof *n > 1) {"
        " self(self, (char (*)[sizeof *n - 1])0, (char (*)[2 * sizeof *m])0);"
        " self(self, (char (*)[sizeof *n - 1])0, (char (*)[2 * sizeof *m + 1])0); } };\n"
        "bomb(bomb, (char (*)[29])0, (char (*)[1])0);");
    QTest::newRow("macros") << macros + QStringLiteral("int all[] = {BOMB11};") << CompilePatience
                            << memory;
    QTest::newRow("endless file") << QStringLiteral("#include \"/dev/zero\"\n") << CompilePatience
                                  << memory;
    QTest::newRow("templates") << templates << CompilePatience << memory;
    QTest::newRow("templates, by the clock")
        << templates << 1000 << QStringLiteral("编译超过 1 秒仍未结束, 已终止");
    QTest::newRow("a large object")
        << QStringLiteral("__asm__(\".data\\n.fill 1000000000,1,7\\n.text\");") << CompilePatience
        << QStringLiteral("出错位置: 序列“main”: 编译写出的文件超过上限 200 MB, 已终止 [main/]");
}

void HostileCompilesTest::bombsEnd()
{
    QFETCH(QString, code);
    QFETCH(int, timeout);
    QFETCH(QString, line);
    // What the clock is to end must not meet the other bound first.
    m_service->setMemoryLimit(timeout == CompilePatience ? qint64(200) << 20 : 0);
    m_service->setTimeout(timeout);
    const Answer answer = compile(*m_service, one(code));
    QCOMPARE(answer.result, CompileFailed);
    QCOMPARE(answer.message.section(u'\n', 0, 0), line);
    QVERIFY(answer.message.size() < 10000);
    m_service->setTimeout(CompilePatience);
    QCOMPARE(compile(*m_service, one(QString())).result, CompileSucceeded);
}

void HostileCompilesTest::outputIsClipped()
{
    useCompiler("echo first; head -c 20000000 /dev/zero | tr '\\0' x; echo; echo last; exit 1");
    const QString message = compile(*m_service, one(QString())).message;
    QVERIFY(message.startsWith(QStringLiteral("first\n")));
    QVERIFY(message.endsWith(QStringLiteral("last\n")));
    QCOMPARE(message.count(QStringLiteral("字节 ……\n")), 1);
    QVERIFY(message.size() < 2 * standalone::ClippedOutput::Half + 100);
    // A step that is wrong in every line.
    qunsetenv("CXX");
    QString wrong;
    for (int i = 0; i < 3000; ++i)
        wrong += QStringLiteral("wrong_%1;\n").arg(i);
    QCOMPARE(compile(*m_service, one(wrong)).message.count(QStringLiteral("error: ")), 50);
}

void HostileCompilesTest::includedFilesCount_data()
{
    QTest::addColumn<QString>("directive"); // %1: the file
    const auto row = [](const char* name, const char* directive) {
        QTest::newRow(name) << QString::fromUtf8(directive);
    };
    row("plain", "#include \"%1\"");
    row("a blank before the word", "# include \"%1\"");
    row("imported", "#import \"%1\"");
    row("a digraph", "%:include \"%1\"");
    row("a comment before the name", "#include /* the */ \"%1\"");
    row("a name from a macro", "#define NAME \"%1\"\n#include NAME");
    row("in angle brackets", "#include <%1>");
}

/// Even if size and date say that nothing happened.
void HostileCompilesTest::includedFilesCount()
{
    QFETCH(QString, directive);
    const QString folder = m_harness->projectPath() + QStringLiteral("/a folder, #1 for $5");
    const QString path = folder + QStringLiteral("/helper.h");
    QVERIFY(QDir().mkpath(folder));
    const auto source = one(directive.arg(path) + QStringLiteral("\nlog_info(helper());"));
    const auto put = [&](const QByteArray& text) {
        QFile file(path);
        return test_support::putFile(path,
                                     "struct helper { operator const char*() const { return \"" +
                                         text + "\"; } };\n") &&
               file.open(QIODevice::ReadWrite) &&
               file.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(0, 0)),
                                QFileDevice::FileModificationTime);
    };
    QVERIFY(put("helper of old"));
    const Answer first = compile(*m_service, source);
    QVERIFY2(first.result == CompileSucceeded, qPrintable(first.message));
    QVERIFY(module().contains("helper of old"));
    QVERIFY(put("helper of new"));
    const Answer second = compile(*m_service, source);
    QCOMPARE(second.start, CompileService::Started);
    QVERIFY(module().contains("helper of new"));
    QVERIFY(!module().contains("helper of old"));
    QVERIFY(QFile::remove(path));
    QCOMPARE(compile(*m_service, source).result, CompileFailed);
}

void HostileCompilesTest::keptWhileNothingChanges()
{
    const QString log = m_harness->projectPath() + QStringLiteral("/log");
    const QString path = m_harness->projectPath() + QStringLiteral("/a helper.h");
    useCompiler("echo \"$@\" >> '" + QFile::encodeName(log) + "'\nexec c++ \"$@\"");
    const auto compilers = [&](const codegen::AppletSource& source, bool isForced) {
        QFile::remove(log);
        return compile(*m_service, source, isForced).start == CompileService::Skipped
                   ? 0
                   : contentOfFile(log).count('\n');
    };
    const QString clock = m_harness->projectPath() + QStringLiteral("/clock.h");
    QVERIFY(test_support::putFile(clock, "#define CLOCK __TIME__\n"));
    QVERIFY(test_support::putFile(path, "int helped = 1;\n"));
    // What was written just now may be written once more within the same tick of its clock.
    QTRY_VERIFY(QFileInfo(path).metadataChangeTime().msecsTo(QDateTime::currentDateTime()) > 100);
    const auto source = one(QStringLiteral("#include \"%1\"").arg(path));
    QCOMPARE(compilers(source, false), 3);
    QCOMPARE(compilers(source, true), 1);
    QCOMPARE(compilers(source, false), 0);
    // Another program's module is none of ours.
    QVERIFY(test_support::putFile(standalone::appletModulePath(appName), module()));
    QCOMPARE(compilers(source, false), 1);
    // What no file holds, or no list names, is asked for each time.
    for (const QString& code :
         {QStringLiteral("log_info(__TIME__);"),
          QStringLiteral("#include \"%1\"\nlog_info(CLOCK);").arg(clock),
          QStringLiteral("__asm__(\".data\\n.incbin \\\"%1\\\"\\n.text\");").arg(path)}) {
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
                          {QStringLiteral("program_that_builds"), m_harness->projectPath(),
                           QStringLiteral("program%1").arg(i)});
    }
    for (QProcess& program : programs) {
        QVERIFY(program.waitForFinished(2 * CompilePatience));
        QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
                 program.readAll());
    }
}

void HostileCompilesTest::aHeldFolderIsRefused()
{
    const QString folder = standalone::appletCodeFolder(appName);
    const std::atomic<bool> never{false};
    {
        standalone::FolderLock other(folder);
        QCOMPARE(other.lock(0, never), standalone::FolderLock::Held);
        m_service->setTimeout(100);
        QCOMPARE(compile(*m_service, one(QString())).message,
                 QStringLiteral("另一个程序正在编译此小程序, 请稍后再试: %1").arg(folder));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList());
    }
    m_service->setTimeout(CompilePatience);
    QCOMPARE(compile(*m_service, one(QString())).result, CompileSucceeded);
    // Whoever waits while the folder goes gets a lock that others see.
    auto holder = std::make_unique<standalone::FolderLock>(folder);
    QCOMPARE(holder->lock(0, never), standalone::FolderLock::Held);
    standalone::FolderLock waiting(folder);
    auto result = standalone::FolderLock::Impossible;
    std::thread waiter([&] { result = waiting.lock(CompilePatience, never); });
    const auto openings = [lock = folder + QStringLiteral("/.lock")] {
        int count = 0;
        for (const QFileInfo& file : QDir(QStringLiteral("/proc/self/fd")).entryInfoList())
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
    auto source = one(QStringLiteral("wrong;"));
    source.applet.sequences[0].flows[1][0]->name = std::string("a\0b\nc", 5);
    const QString message = compile(*m_service, source).message;
    QVERIFY2(
        message.startsWith(QStringLiteral(
            "出错步骤: 序列“main”, 步骤“a\uFFFDb\uFFFDc”, 语句第 1 行: ‘wrong’ was not declared")),
        qPrintable(message));
    // What a compiler says too.
    useCompiler("printf 'one\\0two'; exit 1");
    QCOMPARE(compile(*m_service, one(QString())).message,
             QStringLiteral("one\uFFFDtwo") + QStringLiteral("one\uFFFDtwo"));
    // Of several files that can't be written one is named.
    qunsetenv("CXX");
    QCOMPARE(compile(*m_service, one(QString())).result, CompileSucceeded);
    const QDir objects(standalone::appletCodeFolder(appName) + QStringLiteral("/objects"));
    QStringList expected;
    for (const QString& name : objects.entryList({QStringLiteral("*.o")}, QDir::Files)) {
        QVERIFY(QFile::remove(objects.filePath(name)));
        QVERIFY(objects.mkpath(name + QStringLiteral("/x")));
        expected << QStringLiteral("目标文件无法写入: ") + objects.filePath(name);
    }
    QCOMPARE(expected.size(), 3); // with the tables of the first source, which name its step
    const QString told = compile(*m_service, one(QString()), true).message;
    QVERIFY2(expected.contains(told), qPrintable(told));
    // The module's too, whatever the compiler had to say.
    useCompiler("echo a warning; exec c++ \"$@\"");
    const QString path = standalone::appletModulePath(appName);
    QVERIFY(QFile::remove(path) && QDir().mkpath(path + QStringLiteral("/x")));
    QCOMPARE(compile(*m_service, one(QString())).message,
             QStringLiteral("模块文件无法替换: ") + path);
}

/// The editor's part of compilersDieWithTheEditor: compiles and waits to be killed.
static int playCompilingEditor(QCoreApplication& application)
{
    standalone::Host::instance().setProjectPath(application.arguments().value(1));
    compile(CompileService::instance(), one(QString()));
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
        const Answer answer = compile(service, source, false, [&] {
            content = module();
            const QString copy = project + u'/' + name + QString::number(round);
            void* loaded = QFile::copy(standalone::appletModulePath(appName), copy)
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
