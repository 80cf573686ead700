#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include "standalone/compiler/CompileService.h"
#include "standalone/runtime/applet_paths.h"

#include <QThread>
#include <QtTest>

#include <mutex>
#include <numeric>

using namespace builders;
using standalone::CompileService;

namespace {

struct Result
{
    compileResult result;
    QString appName;
    QString message;
};

codegen::AppletSource single(const std::string& code, bool splitFile = false)
{
    return applet({sequence("main", {statement("good", ""), statement("电压", code, splitFile)})});
}

QDateTime changed(const QString& path)
{
    return QFileInfo(path).lastModified();
}

} // namespace

class CompilerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void errorsNameTheirSteps_data();
    void errorsNameTheirSteps();
    void onlyWhatChangedIsCompiled();
    void manySequencesShareCompilers();
    void problemsFailWithoutACompiler();
    void missingCompiler();
    void hangingCompilerIsKilled();
    void skip();
    void unchangedFilesAreLeftAlone();
    void failureKeepsTheOldModule();
    void oneCompileAnAppletAtATime();
    void withoutAProject();
    void shutdownEndsACompile();

private:
    CompileService::StartResult
    start(const codegen::AppletSource& source,
          const std::function<void(CompileService::Request&)>& change = {});
    QList<Result> results() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_results;
    }
    /// A compiler of our own making, as a shell script.
    void useCompiler(const QByteArray& script);
    void countCompilers(const QByteArray& compiler);
    QString logOfCompilers() const { return m_harness->projectPath() + QStringLiteral("/log"); }
    QStringList work(const codegen::AppletSource& source);

    const QString m_app = QStringLiteral("小程序");
    std::unique_ptr<RuntimeHarness> m_harness;
    std::unique_ptr<CompileService> m_service;
    mutable std::mutex m_mutex;
    QList<Result> m_results;
};

void CompilerTest::init()
{
    qunsetenv("CXX");
    m_harness = std::make_unique<RuntimeHarness>();
    m_service = std::make_unique<CompileService>();
    m_results.clear();
}

void CompilerTest::cleanup()
{
    m_service.reset();
    m_harness.reset();
    qunsetenv("CXX");
}

CompileService::StartResult
CompilerTest::start(const codegen::AppletSource& source,
                    const std::function<void(CompileService::Request&)>& change)
{
    CompileService::Request request;
    request.appName = m_app;
    request.targetSequenceId = QString::fromStdString(source.targetSequenceId);
    request.codeFolder = standalone::appletCodeFolder(m_app);
    request.modulePath = standalone::appletModulePath(m_app);
    request.code = codegen::generate(source);
    request.onFinished = [this](compileResult result, quint64, const char* app,
                                const char* message) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_results << Result{result, QString::fromLocal8Bit(app), QString::fromUtf8(message)};
    };
    if (change)
        change(request);
    return m_service->start(std::move(request));
}

void CompilerTest::useCompiler(const QByteArray& script)
{
    const QString path = m_harness->projectPath() + QStringLiteral("/compiler.sh");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + script + '\n');
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("CXX", QFile::encodeName(path));
}

void CompilerTest::errorsNameTheirSteps_data()
{
    QTest::addColumn<codegen::AppletSource>("source");
    QTest::addColumn<QStringList>("expected");
    const QString there =
        QStringLiteral("出错步骤: 序列“main”, 步骤“电压”, 语句第 %1 行: %2 [main/电压]");
    const QString missing = QStringLiteral("‘qzqzq’ was not declared in this scope");
    QTest::newRow("in the sequence")
        << single("int n = 1;\nqzqzq(n);") << QStringList{there.arg(QStringLiteral("2"), missing)};
    QTest::newRow("in a file of its own")
        << single("qzqzq(1);", true) << QStringList{there.arg(QStringLiteral("1"), missing)};
    QTest::newRow("in a function of a statement")
        << single("int f()\n{\n    return qzqzq;\n}\nf();")
        << QStringList{there.arg(QStringLiteral("3"), missing)};
    QTest::newRow("within the runtime's headers")
        << single("\nstruct s {};\nlog_info(\"%d\", rt::array<s, 1>() = rt::array<int, 2>());")
        << QStringList{there.arg(QStringLiteral("3"), QStringLiteral("*"))};
    QTest::newRow("when it is linked")
        << single("extern int nowhere();\nnowhere();")
        << QStringList{QStringLiteral("出错位置: 序列“main”: undefined reference to "
                                      "`applet::process::nowhere()' [main/]")};
    QTest::newRow("in several sequences")
        << applet({sequence("main", {statement("one", "qz1;\nqz2;"), call("c", "sub")}),
                   sequence("sub", {expression("two", "qz3", "1"), statement("fine", "")})})
        << QStringList{
               QStringLiteral("出错步骤: 序列“main”, 步骤“one”, 语句第 1 行: ‘qz1’ * [main/one]"),
               QStringLiteral("出错步骤: 序列“main”, 步骤“one”, 语句第 2 行: ‘qz2’ * [main/one]"),
               QStringLiteral("出错步骤: 序列“sub”, 步骤“two”, 表达式第 1 行: ‘qz3’ * [sub/two]")};
    Blocks many;
    QStringList lines;
    for (int i = 0; i < 25; ++i) {
        const std::string name = "s" + std::to_string(i);
        many.push_back(statement(name, "m" + std::to_string(i) + ";"));
        if (i < 20)
            lines << QStringLiteral("出错步骤: 序列“main”, 步骤“s%1”, 语句第 1 行: * [main/s%1]")
                         .arg(i);
    }
    lines << QStringLiteral("另有 5 处错误");
    QTest::newRow("too many") << applet({sequence("main", many)}) << lines;
}

void CompilerTest::errorsNameTheirSteps()
{
    QFETCH(codegen::AppletSource, source);
    QFETCH(QStringList, expected);
    QCOMPARE(start(source), CompileService::Started);
    QTRY_COMPARE_WITH_TIMEOUT(results().size(), 1, 60000);
    QCOMPARE(results()[0].result, CompileFailed);
    QCOMPARE(results()[0].appName, m_app);
    const QStringList lines = results()[0].message.split(u'\n');
    for (int i = 0; i < expected.size(); ++i) {
        const QStringList parts = expected[i].split(u'*'); // what stands for any words
        QVERIFY2(lines.value(i).startsWith(parts.first()) &&
                     lines.value(i).endsWith(parts.last().trimmed()),
                 qPrintable(results()[0].message));
    }
    // After them the compiler's own words.
    QVERIFY2(lines.value(expected.size())
                 .contains(QRegularExpression(QStringLiteral("^(sequence_|In file |/)"))),
             qPrintable(results()[0].message));
}

/// Lets a program stand in for the compiler that writes down what it is asked for.
void CompilerTest::countCompilers(const QByteArray& compiler)
{
    useCompiler("echo \"$@\" >> '" + QFile::encodeName(logOfCompilers()) + "'\nexec " + compiler +
                " \"$@\"");
}

/// What compilers were asked for, sorted: "link", or the units joined by '+'. The message of a
/// failure instead.
QStringList CompilerTest::work(const codegen::AppletSource& source)
{
    QFile::remove(logOfCompilers());
    const QString failure = m_harness->build(m_app, source);
    QFile file(logOfCompilers());
    if (!failure.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {failure};
    QStringList asked;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        QStringList units;
        for (const QString& word : line.split(u' ')) {
            if (word.endsWith(QLatin1String(".cpp")))
                units << word;
        }
        asked << (units.isEmpty() ? QStringLiteral("link") : units.join(u'+'));
    }
    asked.sort();
    return asked;
}

void CompilerTest::onlyWhatChangedIsCompiled()
{
    countCompilers("c++");
    const auto work = [this](const codegen::AppletSource& source) {
        return this->work(source).join(u' ');
    };
    const auto source = [](const char* code, const char* type = "s32") {
        return applet({sequence("main", {call("c", "sub"), statement("own", "n = 1;", true)}),
                       sequence("sub", {statement("s", code)})},
                      {variable("n", type, "1")});
    };
    QCOMPARE(work(source("n = 1;")),
             QStringLiteral("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    QCOMPARE(work(source("n = 2;")), QStringLiteral("link sequence_sub.cpp"));
    QCOMPARE(work(source("n = 1;")), QStringLiteral("link"));
    QCOMPARE(work(source("n = 1;", "s64")),
             QStringLiteral("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    // Nor does a generation go for another one that shares other headers.
    QCOMPARE(work(source("n = 1;")), QStringLiteral("link"));
    QCOMPARE(work(source("n = 1;", "s64")), QStringLiteral("link"));
    // What another compiler made is of no use.
    countCompilers("g++");
    QCOMPARE(work(source("n = 1;", "s64")),
             QStringLiteral("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    // Objects cut off on disk are made anew; those that only the linker tells cost one failure.
    const QDir objects(standalone::appletCodeFolder(m_app) + QStringLiteral("/objects"));
    const auto damage = [&objects](bool isCutOff) {
        for (const QString& name : objects.entryList({QStringLiteral("*.o")}, QDir::Files)) {
            const qint64 size = QFileInfo(objects.filePath(name)).size();
            QFile object(objects.filePath(name));
            QVERIFY(object.open(QIODevice::WriteOnly));
            QVERIFY(isCutOff || object.write(QByteArray(int(size), 'x')) == size);
        }
    };
    damage(true);
    QCOMPARE(work(source("n = 3;", "s64")),
             QStringLiteral("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    damage(false);
    QVERIFY(work(source("n = 4;", "s64")).contains(QStringLiteral("file format not recognized")));
    QCOMPARE(work(source("n = 4;", "s64")), QStringLiteral("a_capplet.cpp link sequence_main.cpp"));
    // What the user's code misses is no reason to make them anew.
    QVERIFY(work(source("extern int nowhere(); nowhere();", "s64"))
                .contains(QStringLiteral("undefined reference")));
    QCOMPARE(work(source("n = 5;", "s64")), QStringLiteral("link sequence_sub.cpp"));
    QVERIFY(objects.entryList(QDir::Files).filter(QStringLiteral(".new")).isEmpty());
}

/// Small sequences share compilers, which nobody sees: neither in what is compiled after a change
/// nor in what is told of an error.
void CompilerTest::manySequencesShareCompilers()
{
    const int count = 6 * QThread::idealThreadCount();
    std::vector<std::string> codes(std::size_t(count), "log_info(\"here\");");
    const auto build = [&] {
        std::vector<std::shared_ptr<IProcessBlock>> calls;
        std::vector<codegen::SequenceSource> sequences{sequence("main", {})};
        for (int i = 0; i < count; ++i) {
            const std::string name = 'p' + std::to_string(i);
            calls.push_back(call(("c" + name).c_str(), name.c_str()));
            sequences.push_back(sequence(
                name.c_str(), {statement(("s" + name).c_str(), codes[std::size_t(i)].c_str())}));
        }
        sequences.front() = sequence("main", calls);
        return work(applet(sequences));
    };
    const auto sizes = [](const QStringList& asked) {
        QList<int> sizes;
        for (const QString& units : asked)
            sizes << units.count(u'+') + 1;
        std::sort(sizes.begin(), sizes.end());
        return sizes;
    };
    countCompilers("c++");
    const QStringList first = build();
    const QList<int> firstSizes = sizes(first);
    QCOMPARE(std::accumulate(firstSizes.begin(), firstSizes.end(), 0), count + 3);
    QVERIFY2(first.size() < count / 2, qPrintable(first.join(u'\n')));
    QVERIFY(m_harness->start(m_app));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(m_app), QList<int>({run_events::Finished}), 60000);
    QCOMPARE(RuntimeHarness::logLines(m_app).filter(QStringLiteral("here")).size(), count);

    codes[3] = "log_info(\"there\");";
    const QStringList parted = build(); // the unit, what is left of its group, and the linker
    QCOMPARE(parted.size(), 3);
    QVERIFY(parted.contains(QStringLiteral("sequence_p3.cpp")));
    codes[3] = "log_info(\"elsewhere\");";
    QCOMPARE(build(), QStringList({QStringLiteral("link"), QStringLiteral("sequence_p3.cpp")}));

    useCompiler("exec g++ \"$@\""); // all anew
    codes[5] = "nowhere = 1;";
    QVERIFY2(build().first().startsWith(QStringLiteral("出错步骤: 序列“p5”, 步骤“sp5”")),
             qPrintable(build().first()));
    codes[5] = "extern int nowhere(); nowhere();";
    QVERIFY2(build().first().startsWith(QStringLiteral("出错位置: 序列“p5”: undefined reference")),
             qPrintable(build().first()));
    // Good each by itself.
    for (int i = 0; i < count; ++i)
        codes[std::size_t(i)] = i < count / 2 ? "extern int odd; (void)sizeof(odd);"
                                              : "extern double odd; (void)sizeof(odd);";
    countCompilers("c++ -g0");
    const QStringList alone = build();
    QVERIFY2(alone.contains(QStringLiteral("sequence_p0.cpp")), qPrintable(alone.join(u'\n')));
}

void CompilerTest::problemsFailWithoutACompiler()
{
    qputenv("CXX", "/nowhere/c++");
    QCOMPARE(start(applet({sequence("main", {plain(step_type::Break, "b")})})),
             CompileService::Started);
    QTRY_COMPARE_WITH_TIMEOUT(results().size(), 1, 60000);
    QCOMPARE(results()[0].result, CompileFailed);
    QCOMPARE(results()[0].message,
             QStringLiteral("出错步骤: 序列“main”, 步骤“b”: break 不在循环之内 [main/b]\n"));
}

void CompilerTest::missingCompiler()
{
    qputenv("CXX", "/nowhere/c++ -m32");
    QCOMPARE(start(single("")), CompileService::Started);
    QTRY_COMPARE_WITH_TIMEOUT(results().size(), 1, 60000);
    QCOMPARE(results()[0].result, CompilerMissing);
    QVERIFY(results()[0].message.startsWith(
        QStringLiteral("找不到 C++ 编译器 /nowhere/c++, 请安装软件包 g++")));
}

void CompilerTest::hangingCompilerIsKilled()
{
    useCompiler("echo begun; sleep 600");
    m_service->setTimeout(300);
    QCOMPARE(start(single("")), CompileService::Started);
    QTRY_COMPARE_WITH_TIMEOUT(results().size(), 1, 60000);
    QCOMPARE(results()[0].result, CompileFailed);
    QVERIFY(results()[0].message.contains(QStringLiteral("仍未结束")));
    QVERIFY(results()[0].message.contains(QStringLiteral("begun")));
}

void CompilerTest::skip()
{
    const auto compileAgain = [this](const codegen::AppletSource& source, auto change) {
        const int before = results().size();
        const auto result = start(source, change);
        if (result == CompileService::Started)
            [&] { QTRY_COMPARE_WITH_TIMEOUT(results().size(), before + 1, 60000); }();
        return result;
    };
    const auto unchanged = [](CompileService::Request&) {};
    auto source = applet({sequence("main", {call("c", "sub")}), sequence("sub", {})});

    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
    QCOMPARE(results().last().result, CompileSucceeded);
    QCOMPARE(compileAgain(source, unchanged), CompileService::Skipped);
    QCOMPARE(compileAgain(source, [](auto& request) { request.isForced = true; }),
             CompileService::Started);
    QCOMPARE(compileAgain(source, unchanged), CompileService::Skipped);
    QCOMPARE(compileAgain(source, [](auto& request) { request.forVci = true; }),
             CompileService::Started);
    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
    source.targetSequenceId = "sub";
    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
    QCOMPARE(compileAgain(source, unchanged), CompileService::Skipped);
    QVERIFY(QFile::remove(standalone::appletModulePath(m_app)));
    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
    qputenv("CXX", "g++");
    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
    // A failure leaves nothing to skip for.
    QCOMPARE(compileAgain(single("error"), unchanged), CompileService::Started);
    QCOMPARE(results().last().result, CompileFailed);
    QCOMPARE(compileAgain(source, unchanged), CompileService::Started);
}

void CompilerTest::unchangedFilesAreLeftAlone()
{
    QCOMPARE(m_harness->build(m_app, single("int first = 1;", true)), QString());
    const QString folder = standalone::appletCodeFolder(m_app);
    const QString source = folder + QStringLiteral("/sequence_main.cpp");
    const QString statement = folder + QStringLiteral("/statement_sequence_main_1.inc");
    const QDateTime before(QDate(2020, 1, 1), QTime(0, 0));
    for (const QString& path : {source, statement}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(before, QFileDevice::FileModificationTime));
    }
    QCOMPARE(m_harness->build(m_app, single("int second = 2;", true)), QString());
    QCOMPARE(changed(source), before);
    QVERIFY(changed(statement) != before);
    // What isn't generated any more goes.
    QCOMPARE(m_harness->build(m_app, single("int third = 3;")), QString());
    QVERIFY(!QFileInfo::exists(statement));
    QVERIFY(QFileInfo::exists(folder + QStringLiteral("/applet_runtime.h")));
    auto other = single("");
    other.applet.sequences.front().info.name = "renamed";
    QCOMPARE(m_harness->build(m_app, other), QString());
    QVERIFY(!QFileInfo::exists(source));
}

void CompilerTest::failureKeepsTheOldModule()
{
    QCOMPARE(m_harness->build(m_app, single("")), QString());
    const QString module = standalone::appletModulePath(m_app);
    const qint64 size = QFileInfo(module).size();
    QVERIFY(!m_harness->build(m_app, single("error")).isEmpty());
    QCOMPARE(QFileInfo(module).size(), size);
    QCOMPARE(QDir(standalone::appletModuleFolder(m_app)).entryList(QDir::Files),
             QStringList{m_app + QStringLiteral(".mp")});
}

void CompilerTest::oneCompileAnAppletAtATime()
{
    useCompiler("while [ ! -e go ]; do sleep 0.05; done; exit 1");
    QCOMPARE(start(single("")), CompileService::Started);
    QVERIFY(m_service->isCompiling(m_app));
    QCOMPARE(start(single("")), CompileService::Refused);
    // Another applet is free.
    const QString other = QStringLiteral("other");
    const auto asOther = [&](CompileService::Request& request) {
        request.appName = other;
        request.codeFolder = standalone::appletCodeFolder(other);
        request.modulePath = standalone::appletModulePath(other);
    };
    QCOMPARE(start(single(""), asOther), CompileService::Started);
    for (const QString& app : {m_app, other}) {
        QVERIFY(QDir().mkpath(standalone::appletCodeFolder(app)));
        QFile go(standalone::appletCodeFolder(app) + QStringLiteral("/go"));
        QVERIFY(go.open(QIODevice::WriteOnly));
    }
    QTRY_COMPARE_WITH_TIMEOUT(results().size(), 2, 60000);
    QVERIFY(!m_service->isCompiling(m_app));
}

void CompilerTest::withoutAProject()
{
    QCOMPARE(start(single(""), [](auto& request) { request.codeFolder.clear(); }),
             CompileService::Refused);
}

void CompilerTest::shutdownEndsACompile()
{
    const QString begun = m_harness->projectPath() + QStringLiteral("/begun");
    useCompiler("touch '" + QFile::encodeName(begun) + "'; sleep 600");
    QCOMPARE(start(single("")), CompileService::Started);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(begun), 60000);
    m_service->shutDown();
    QVERIFY(!m_service->isCompiling(m_app));
    QVERIFY(results().isEmpty());
}

PE_TEST("compiler_test", CompilerTest)
#include "compiler_test.moc"
