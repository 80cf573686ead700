// Texts of steps that would change the code around them: what a step does to the preprocessor is
// its own matter, and what it leaves open is told of it.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include "standalone/codegen/Macros.h"

#include <QtTest>

using namespace builders;
using namespace run_events;

class HostileCodeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_harness = std::make_unique<RuntimeHarness>(); }
    void cleanupTestCase() { m_harness.reset(); }

    void macrosEndWithTheirStep_data();
    void macrosEndWithTheirStep();
    void macrosOfAText_data();
    void macrosOfAText();
    void faultsWithMacros_data();
    void faultsWithMacros();
    void macrosWithoutEnd();
    void faultsAreOfTheirStep();
    void noDirectivesWithinALine();
    void namesAreShownWhole();

private:
    std::unique_ptr<RuntimeHarness> m_harness;
};

void HostileCodeTest::macrosEndWithTheirStep_data()
{
    QTest::addColumn<QString>("code");
    const auto row = [](const char* name, const char* code) {
        QTest::newRow(name) << QString::fromUtf8(code);
    };
    row("keyword", "#define if(x) if(!(x))\n#define return");
    row("what generated lines are made of", "#define rt nowhere\n#define s32 nothing");
    row("what stands behind rt", "#define step_end no\n#define first no\n#define running no");
    row("function of the runtime", "#define log_info(...)");
    row("name of a variable", "#define n 1");
    row("Chinese name", "#define 上限 nowhere\n#define 甲\n#undef 乙");
    row("joined lines", "#def\\\nine \\\n n \\\n 1");
    row("blanks and comments", "  # /* { */ define /* a\n b */ n 1");
    row("digraph", "%:define n 1");
    row("undefined", "#undef NAN\n#undef OTHER");
    row("in a function", "int f()\n{\n#define n 1\n    return 0;\n}");
    row("before the statement", "");
}

/// Also within a loop, around steps with children, and as a statement with a file of its own.
void HostileCodeTest::macrosEndWithTheirStep()
{
    QFETCH(QString, code);
    const QString appName = QStringLiteral("macros");
    const auto hostile = [&](const char* uuid, bool hasFile) {
        const QString own = QString(code).replace(QStringLiteral("f()"),
                                                  QString::fromUtf8(uuid) + QStringLiteral("()"));
        const BlockPtr block = statement(uuid, own.toStdString(), hasFile);
        block->preStatements = "#define n 5\n#define LIMIT 41\n#define more 1";
        block->postStatements = "LIMIT + more == 42 || (step_fail(), 0);\n#undef LIMIT";
        return block;
    };
    const BlockPtr loop = customFor("loop", "int i = 0", "i < 2", "++i", {hostile("a", false)});
    loop->preStatements = "#define i 7\n#define n 1";
    const auto source = applet({sequence(
        "main", {hostile("h", false), loop, plain(step_type::EndFor, "end"), hostile("own", true),
                 statement("s", "int 上限 = 0, 甲 = 上限, 乙 = 甲; (void)乙; int n = 2, LIMIT = 3, "
                                "OTHER = 4; double d = NAN; if (d == d) step_fail(); "
                                "log_info(\"%d\", n + LIMIT + OTHER);")})});
    QCOMPARE(m_harness->build(appName, source), QString());
    const int runs = m_harness->events(appName).size();
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName).size(), runs + 1, Patience);
    QCOMPARE(m_harness->events(appName).last(), Finished);
    QCOMPARE(m_harness->logLines(appName).size(), runs + 1);
    QCOMPARE(m_harness->logLines(appName).last(), QStringLiteral("1 9"));
    QVERIFY(m_harness->reports(appName).filter(QStringLiteral("!")).isEmpty());
}

void HostileCodeTest::macrosOfAText_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("names");
    const auto row = [](const char* code, const char* names) {
        QTest::newRow(qPrintable(QString::fromUtf8(code).simplified()))
            << QString::fromUtf8(code) << QString::fromUtf8(names);
    };
    row("#define A\n#define B(x) x\n#undef C\n#define A 2", "A B C");
    row("a = 1; #define A", "");
    row("// #define A\n/*\n#define B\n*/\n\"\\\n#define C\"", "");
    row("R\"(\n#define A\n)\"", "");
    row("// \\\n#define A\n#define B", "B");
    row("#\\\ndefine\\  \n A\\\n1", "A1");
    row("/* a\n*/ %:  define A", "A");
    row("#if A\n#define B\n#endif\n#pragma C\n#", "B");
    row("#define 上限 1", "上限");
    row("#define", "");
}

void HostileCodeTest::macrosOfAText()
{
    QFETCH(QString, code);
    QFETCH(QString, names);
    QStringList found;
    for (const std::string& name : codegen::macrosIn(code.toStdString()))
        found << QString::fromStdString(name);
    QCOMPARE(found.join(u' '), names);
}

void HostileCodeTest::faultsWithMacros_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<int>("line"); ///< of the last text; 0: no fault
    const auto row = [](const QStringList& texts, int line) {
        QTest::newRow(qPrintable(texts.join(u'|').simplified())) << texts << line;
    };
    const QString open = QStringLiteral("#define OPEN {\n");
    row({open + QStringLiteral("\nOPEN")}, 3);
    row({open, QStringLiteral("a;\nOPEN b;")}, 2);
    row({open + QStringLiteral("#define CLOSE }\nOPEN a; CLOSE")}, 0);
    row({open + QStringLiteral("OPEN a; }")}, 0);
    row({open + QStringLiteral("#undef OPEN\nOPEN")}, 0);
    row({open + QStringLiteral("#define A OPEN\nA")}, 3);
    row({QStringLiteral("#define A A {\nA }")}, 0);
    row({QStringLiteral("#define A(x) { x\nA(1);")}, 2);
    row({QStringLiteral("#define A(x) { x\nint A = 1;")}, 0);
    row({QStringLiteral("#define A(x) x\nA({) A(})")}, 0);
    row({QStringLiteral("#define A(x, y) x##y\nA(OP, EN) }")}, 0);
    row({QStringLiteral("#define A \\\n  {\n\n}")}, 4);
    row({QStringLiteral("#if 1\n{\n#else\n{\n#endif\n}")}, 0);
    row({QStringLiteral("a;\n#ifdef A\n#if B\n#endif")}, 2);
    row({QStringLiteral("a;\n#endif")}, 2);
    row({QStringLiteral("#if 0\n#define A {\n#endif"), QStringLiteral("A")}, 0);
    row({open, QStringLiteral("#if 1\n#undef OPEN\n#endif"), QStringLiteral("OPEN\n{")}, 0);
    row({QStringLiteral("#if 0\n#endif"), QStringLiteral("{")}, 1);
    row({QStringLiteral("a;\n # line 5")}, 2);
    row({QStringLiteral("a;\n\n#5 \"b\"")}, 3);
    row({QStringLiteral("#else")}, 1);
    row({QStringLiteral("#define A\n/* {")}, 2);
    row({QStringLiteral("#define A\n\"x;")}, 2);
    row({QStringLiteral("#if 0\n#error don't\nit's\n#endif")}, 0);
}

void HostileCodeTest::faultsWithMacros()
{
    QFETCH(QStringList, texts);
    QFETCH(int, line);
    codegen::Macros macros;
    codegen::CodeFault fault;
    for (const QString& text : texts)
        fault = macros.take(text.toStdString());
    QCOMPARE(fault.line, line);
    QCOMPARE(fault.words != nullptr, line > 0);
}

/// What grows without end, or stands in one another as deep as it likes, is left to the compiler.
void HostileCodeTest::macrosWithoutEnd()
{
    std::string doubling = "#define M0 1\n";
    std::string nested = "#define N0 {\n";
    for (int i = 1; i <= 60; ++i)
        doubling += "#define M" + std::to_string(i) + " M" + std::to_string(i - 1) + " M" +
                    std::to_string(i - 1) + '\n';
    constexpr int Deep = 100000;
    for (int i = 1; i <= Deep; ++i)
        nested += "#define N" + std::to_string(i) + " N" + std::to_string(i - 1) + '\n';
    for (const std::string& code : {doubling + "M60;\nM60;", nested + "N" + std::to_string(Deep)}) {
        codegen::Macros macros;
        QVERIFY(!macros.take(code).words);
    }
}

void HostileCodeTest::faultsAreOfTheirStep()
{
    const BlockPtr later = statement("later", "OPEN");
    const BlockPtr bad = statement("bad", "a;\nOPEN b;");
    bad->preStatements = "#define OPEN {";
    const auto code = codegen::generate(
        applet({sequence("main", {bad, later, statement("half", "#if 0\nint a;")})}));
    QStringList problems;
    for (const codegen::Problem& problem : code.problems)
        problems << QStringLiteral("%1 %2: %3")
                        .arg(QString::fromStdString(problem.place.owner.step))
                        .arg(problem.place.line)
                        .arg(QString::fromStdString(problem.words));
    QCOMPARE(problems, (QStringList{QStringLiteral("bad 2: 括号不匹配: 缺少右括号"),
                                    QStringLiteral("half 1: #if 没有对应的 #endif")}));
}

void HostileCodeTest::noDirectivesWithinALine()
{
    const auto code = codegen::generate(
        applet({sequence("main", {expression("e", "", "1;\n#define if(x) if(!(x))\n2"),
                                  expression("fine", "n", "'#' + 1")})}));
    QCOMPARE(code.problems.size(), std::size_t(1));
    QCOMPARE(QString::fromStdString(code.problems[0].place.owner.step), QStringLiteral("e"));
    QCOMPARE(QString::fromStdString(code.problems[0].words),
             QStringLiteral("此处不能使用预处理指令"));
}

/// The texts are passed on up to their first zero.
void HostileCodeTest::namesAreShownWhole()
{
    const std::string name("a\0b\nc", 5);
    const auto code =
        codegen::generate(applet({sequence("main", {fixedFor("f", name, 0, 1, 1, {})})}));
    QCOMPARE(code.problems.size(), std::size_t(1));
    QCOMPARE(QString::fromStdString(code.problems[0].words),
             QStringLiteral("“a\uFFFDb c”不能用作循环变量名"));
}

PE_TEST("hostile_code", HostileCodeTest)
#include "hostile_code_test.moc"
