#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/compiling.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "standalone/runtime/applet_paths.h"

#include <QThread>
#include <QtTest>

#include <atomic>
#include <numeric>

using namespace builders;
using compiling::Project;
using standalone::CompileService;

namespace {

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
    void init() { m_project = std::make_unique<Project>(); }
    void cleanup() { m_project.reset(); }

    void errorsNameTheirSteps();
    void onlyWhatChangedIsCompiled();
    void manySequencesShareCompilers();
    void problemsFailWithoutACompiler();
    void warningsFailNothing();
    void missingCompiler();
    void hangingCompilerIsKilled();
    void skip();
    void unchangedFilesAreLeftAlone();
    void failureKeepsTheOldModule();
    void oneCompileAnAppletAtATime();
    void shutdownEndsACompile();

private:
    /// Lets a program stand in for the compiler that writes down what it is asked for.
    void countCompilers(const QByteArray& compiler)
    {
        m_project->useCompiler("echo \"$@\" >> '" + QFile::encodeName(m_project->path("log")) +
                               "'\nexec " + compiler + " \"$@\"");
    }
    QStringList work(const codegen::AppletSource& source);

    std::unique_ptr<Project> m_project;
};

void CompilerTest::errorsNameTheirSteps()
{
    const QString there = text("出错步骤: 序列“main”, 步骤“电压”, 语句第 %1 行: %2 [main/电压]");
    const QString missing = text("‘qzqzq’ was not declared in this scope");
    Blocks many;
    QStringList errors;
    for (int i = 0; i < 25; ++i) {
        const std::string name = "s" + std::to_string(i);
        many.push_back(statement(name, "m" + std::to_string(i) + ";"));
        if (i < 20)
            errors << text("出错步骤: 序列“main”, 步骤“s%1”, 语句第 1 行: * [main/s%1]").arg(i);
    }
    errors << text("另有 5 处错误");
    const rows::Table<codegen::AppletSource, QStringList> table{
        // "*" stands for any words
        {"in the sequence", single("int n = 1;\nqzqzq(n);"), {there.arg(text("2"), missing)}},
        {"in a file of its own", single("qzqzq(1);", true), {there.arg(text("1"), missing)}},
        {"in a function of a statement",
         single("int f()\n{\n    return qzqzq;\n}\nf();"),
         {there.arg(text("3"), missing)}},
        {"within the runtime's headers",
         single("\nstruct s {};\nlog_info(\"%d\", rt::array<s, 1>() = rt::array<int, 2>());"),
         {there.arg(text("3"), text("*"))}},
        {"when it is linked",
         single("extern int nowhere();\nnowhere();"),
         {text("出错位置: 序列“main”: undefined reference to "
               "`applet::process::nowhere()' [main/]")}},
        {"in several sequences",
         applet({sequence("main", {statement("one", "qz1;\nqz2;"), call("c", "sub")}),
                 sequence("sub", {expression("two", "qz3", "1"), statement("fine", "")})}),
         {text("出错步骤: 序列“main”, 步骤“one”, 语句第 1 行: ‘qz1’ * [main/one]"),
          text("出错步骤: 序列“main”, 步骤“one”, 语句第 2 行: ‘qz2’ * [main/one]"),
          text("出错步骤: 序列“sub”, 步骤“two”, 表达式第 1 行: ‘qz3’ * [sub/two]")}},
        {"too many", applet({sequence("main", many)}), errors}};
    for (const auto& [row, source, expected] : table) {
        const rows::Named named(row);
        const auto answer = m_project->compile(source);
        QCOMPARE(answer.start, CompileService::Started);
        QCOMPARE(answer.result, CompileFailed);
        const QStringList lines = answer.message.split(u'\n');
        for (int i = 0; i < expected.size(); ++i) {
            const QStringList parts = expected[i].split(u'*');
            QVERIFY2(lines.value(i).startsWith(parts.first()) &&
                         lines.value(i).endsWith(parts.last().trimmed()),
                     qPrintable(answer.message));
        }
        // After them the compiler's own words.
        const QRegularExpression own(text("^(sequence_|In file |/)"));
        QVERIFY2(lines.value(expected.size()).contains(own), qPrintable(answer.message));
    }
}

/// What compilers were asked for, sorted: "link", or the units joined by '+'. The message of a
/// failure instead.
QStringList CompilerTest::work(const codegen::AppletSource& source)
{
    QFile::remove(m_project->path("log"));
    const QString failure = m_project->harness.build(run_events::app, source);
    if (!failure.isEmpty())
        return {failure};
    QStringList asked;
    for (const QString& line : lines(compiling::contentOfFile(m_project->path("log")))) {
        QStringList units;
        for (const QString& word : line.split(u' ')) {
            if (word.endsWith(QLatin1String(".cpp")))
                units << word;
        }
        asked << (units.isEmpty() ? text("link") : units.join(u'+'));
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
    QCOMPARE(work(source("n = 1;")), text("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    QCOMPARE(work(source("n = 2;")), text("link sequence_sub.cpp"));
    QCOMPARE(work(source("n = 1;")), text("link"));
    QCOMPARE(work(source("n = 1;", "s64")),
             text("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    // Nor does a generation go for another one that shares other headers.
    QCOMPARE(work(source("n = 1;")), text("link"));
    QCOMPARE(work(source("n = 1;", "s64")), text("link"));
    // What another compiler made is of no use.
    countCompilers("g++");
    QCOMPARE(work(source("n = 1;", "s64")),
             text("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    // Objects cut off on disk are made anew; those that only the linker tells cost one failure.
    const QDir objects(standalone::appletCodeFolder(run_events::app) + text("/objects"));
    const auto damage = [&objects](bool isCutOff) {
        for (const QString& name : objects.entryList({text("*.o")}, QDir::Files)) {
            const qint64 size = QFileInfo(objects.filePath(name)).size();
            QFile object(objects.filePath(name));
            QVERIFY(object.open(QIODevice::WriteOnly));
            QVERIFY(isCutOff || object.write(QByteArray(int(size), 'x')) == size);
        }
    };
    damage(true);
    QCOMPARE(work(source("n = 3;", "s64")),
             text("a_capplet.cpp link sequence_main.cpp sequence_sub.cpp"));
    damage(false);
    QVERIFY(work(source("n = 4;", "s64")).contains(text("file format not recognized")));
    QCOMPARE(work(source("n = 4;", "s64")), text("a_capplet.cpp link sequence_main.cpp"));
    // What the user's code misses is no reason to make them anew.
    QVERIFY(work(source("extern int nowhere(); nowhere();", "s64"))
                .contains(text("undefined reference")));
    QCOMPARE(work(source("n = 5;", "s64")), text("link sequence_sub.cpp"));
    QVERIFY(objects.entryList(QDir::Files).filter(text(".new")).isEmpty());
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
    QVERIFY(m_project->harness.start(run_events::app));
    QTRY_COMPARE_WITH_TIMEOUT(m_project->harness.events(run_events::app),
                              QList<int>({run_events::Finished}), 60000);
    QCOMPARE(RuntimeHarness::logLines(run_events::app).filter(text("here")).size(), count);

    codes[3] = "log_info(\"there\");";
    const QStringList parted = build(); // the unit, what is left of its group, and the linker
    QCOMPARE(parted.size(), 3);
    QVERIFY(parted.contains(text("sequence_p3.cpp")));
    codes[3] = "log_info(\"elsewhere\");";
    QCOMPARE(build(), QStringList({text("link"), text("sequence_p3.cpp")}));

    m_project->useCompiler("exec g++ \"$@\""); // all anew
    codes[5] = "nowhere = 1;";
    QVERIFY2(build().first().startsWith(text("出错步骤: 序列“p5”, 步骤“sp5”")),
             qPrintable(build().first()));
    codes[5] = "extern int nowhere(); nowhere();";
    QVERIFY2(build().first().startsWith(text("出错位置: 序列“p5”: undefined reference")),
             qPrintable(build().first()));
    // Good each by itself.
    for (int i = 0; i < count; ++i)
        codes[std::size_t(i)] = i < count / 2 ? "extern int odd; (void)sizeof(odd);"
                                              : "extern double odd; (void)sizeof(odd);";
    countCompilers("c++ -g0");
    const QStringList alone = build();
    QVERIFY2(alone.contains(text("sequence_p0.cpp")), qPrintable(alone.join(u'\n')));
}

void CompilerTest::problemsFailWithoutACompiler()
{
    qputenv("CXX", "/nowhere/c++");
    const auto answer =
        m_project->compile(applet({sequence("main", {plain(step_type::Break, "b")})}));
    QCOMPARE(answer.result, CompileFailed);
    QCOMPARE(answer.message, text("出错步骤: 序列“main”, 步骤“b”: break 不在循环之内 [main/b]\n"));
}

void CompilerTest::warningsFailNothing()
{
    const auto pause = with(statement("s", ""), [](IProcessBlock& block) { block.trueAction = 5; });
    const auto answer = m_project->compile(applet({sequence("main", {pause})}));
    QCOMPARE(answer.result, CompileSucceeded);
    QVERIFY2(answer.message.startsWith(text("警告: 序列“main”, 步骤“s”: ")),
             qPrintable(answer.message));
}

void CompilerTest::missingCompiler()
{
    qputenv("CXX", "/nowhere/c++ -m32");
    const auto answer = m_project->compile(single(""));
    QCOMPARE(answer.result, CompilerMissing);
    QVERIFY(answer.message.startsWith(text("找不到 C++ 编译器 /nowhere/c++, 请安装软件包 g++")));
}

void CompilerTest::hangingCompilerIsKilled()
{
    m_project->useCompiler("echo begun; sleep 600");
    m_project->service.setTimeout(300);
    const auto answer = m_project->compile(single(""));
    QCOMPARE(answer.result, CompileFailed);
    QVERIFY(answer.message.contains(text("仍未结束")) && answer.message.contains(text("begun")));
}

void CompilerTest::skip()
{
    auto source = applet({sequence("main", {call("c", "sub")}), sequence("sub", {})});
    const auto compile = [&] { return m_project->compile(source).start; };
    QCOMPARE(m_project->compile(source).result, CompileSucceeded);
    QCOMPARE(compile(), CompileService::Skipped);
    QCOMPARE(m_project->compile(source, true).start, CompileService::Started);
    QCOMPARE(compile(), CompileService::Skipped);
    auto request = compiling::request(source);
    request.forVci = true;
    QCOMPARE(compiling::compile(m_project->service, request).start, CompileService::Started);
    QCOMPARE(compile(), CompileService::Started);

    source.targetSequenceId = "sub";
    QCOMPARE(compile(), CompileService::Started);
    QCOMPARE(compile(), CompileService::Skipped);
    QVERIFY(QFile::remove(standalone::appletModulePath(run_events::app)));
    QCOMPARE(compile(), CompileService::Started);
    qputenv("CXX", "g++");
    QCOMPARE(compile(), CompileService::Started);
    // A failure leaves nothing to skip for.
    QCOMPARE(m_project->compile(single("error")).result, CompileFailed);
    QCOMPARE(compile(), CompileService::Started);
}

void CompilerTest::unchangedFilesAreLeftAlone()
{
    QCOMPARE(m_project->harness.build(run_events::app, single("int first = 1;", true)), QString());
    const QString folder = standalone::appletCodeFolder(run_events::app);
    const QString source = folder + text("/sequence_main.cpp");
    const QString statement = folder + text("/statement_sequence_main_1.inc");
    const QDateTime before(QDate(2020, 1, 1), QTime(0, 0));
    for (const QString& path : {source, statement}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(before, QFileDevice::FileModificationTime));
    }
    QCOMPARE(m_project->harness.build(run_events::app, single("int second = 2;", true)), QString());
    QCOMPARE(changed(source), before);
    QVERIFY(changed(statement) != before);
    // What isn't generated any more goes.
    QCOMPARE(m_project->harness.build(run_events::app, single("int third = 3;")), QString());
    QVERIFY(!QFileInfo::exists(statement));
    QVERIFY(QFileInfo::exists(folder + text("/applet_runtime.h")));
    auto other = single("");
    other.applet.sequences.front().info.name = "renamed";
    QCOMPARE(m_project->harness.build(run_events::app, other), QString());
    QVERIFY(!QFileInfo::exists(source));
}

void CompilerTest::failureKeepsTheOldModule()
{
    QCOMPARE(m_project->harness.build(run_events::app, single("")), QString());
    const QString module = standalone::appletModulePath(run_events::app);
    const qint64 size = QFileInfo(module).size();
    QVERIFY(!m_project->harness.build(run_events::app, single("error")).isEmpty());
    QCOMPARE(QFileInfo(module).size(), size);
    QCOMPARE(QDir(standalone::appletModuleFolder(run_events::app)).entryList(QDir::Files),
             QStringList{run_events::app + text(".mp")});
}

void CompilerTest::oneCompileAnAppletAtATime()
{
    CompileService& service = m_project->service;
    std::atomic<int> finished{0};
    const auto start = [&](const QString& name) {
        auto request = compiling::request(single(""), name);
        request.onFinished = [&](compileResult, quint64, const char*, const char*) { ++finished; };
        return service.start(std::move(request));
    };
    m_project->useCompiler("while [ ! -e go ]; do sleep 0.05; done; exit 1");
    const QString other = text("other");
    QCOMPARE(start(run_events::app), CompileService::Started);
    QVERIFY(service.isCompiling(run_events::app));
    QCOMPARE(start(run_events::app), CompileService::Refused);
    QCOMPARE(start(other), CompileService::Started); // another applet is free
    for (const QString& name : {run_events::app, other}) {
        QVERIFY(QDir().mkpath(standalone::appletCodeFolder(name)));
        QVERIFY(test_support::putFile(standalone::appletCodeFolder(name) + text("/go"), ""));
    }
    QTRY_COMPARE_WITH_TIMEOUT(finished.load(), 2, 60000);
    QVERIFY(!service.isCompiling(run_events::app));
    auto nowhere = compiling::request(single(""));
    nowhere.codeFolder.clear();
    QCOMPARE(service.start(nowhere), CompileService::Refused); // there is no project
}

void CompilerTest::shutdownEndsACompile()
{
    std::atomic<bool> isTold{false};
    auto request = compiling::request(single(""));
    request.onFinished = [&](compileResult, quint64, const char*, const char*) { isTold = true; };
    const QString begun = m_project->path("begun");
    m_project->useCompiler("touch '" + QFile::encodeName(begun) + "'; sleep 600");
    QCOMPARE(m_project->service.start(std::move(request)), CompileService::Started);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(begun), 60000);
    m_project->service.shutDown();
    QVERIFY(!m_project->service.isCompiling(run_events::app));
    QVERIFY(!isTold);
}

PE_TEST("compiler_test", CompilerTest)
#include "compiler_test.moc"
