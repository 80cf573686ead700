// Texts of steps that would change the code around them: what a step does to the preprocessor is
// its own matter, and what it leaves open is told of it.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "standalone/codegen/Macros.h"

#include <QtTest>

using namespace builders;
using namespace run_events;

namespace {

/// Of a sequence, with their steps and lines.
QString problemsOf(const Blocks& blocks)
{
    QStringList problems;
    for (const auto& problem : codegen::generate(applet({sequence("main", blocks)})).problems)
        problems << text("%1 %2: %3")
                        .arg(QString::fromStdString(problem.place.owner.step))
                        .arg(problem.place.line)
                        .arg(QString::fromStdString(problem.words));
    return problems.join(u'|');
}

} // namespace

class HostileCodeTest : public QObject
{
    Q_OBJECT

private slots:
    void macrosEndWithTheirStep();
    void macrosOfAText();
    void faultsWithMacros();
    void macrosWithoutEnd();
    void faultsAreOfTheirStep();

private:
    RuntimeHarness m_harness;
};

/// Also within a loop, around steps with children, and as a statement with a file of its own.
void HostileCodeTest::macrosEndWithTheirStep()
{
    const rows::Table<const char*> table{
        {"keyword", "#define if(x) if(!(x))\n#define return"},
        {"what generated lines are made of", "#define rt nowhere\n#define s32 nothing"},
        {"what stands behind rt", "#define step_end no\n#define first no\n#define running no"},
        {"function of the runtime", "#define log_info(...)"},
        {"name of a variable", "#define n 1"},
        {"Chinese name", "#define 上限 nowhere\n#define 甲\n#undef 乙"},
        {"joined lines", "#def\\\nine \\\n n \\\n 1"},
        {"blanks and comments", "  # /* { */ define /* a\n b */ n 1"},
        {"digraph", "%:define n 1"},
        {"undefined", "#undef NAN\n#undef OTHER"},
        {"in a function", "int f()\n{\n#define n 1\n    return 0;\n}"},
        {"before the statement", ""}};
    for (const auto& [row, code] : table) {
        const rows::Named named(row);
        const auto hostile = [code = text(code)](const char* uuid, bool hasFile) {
            const QString own = QString(code).replace(text("f()"), text(uuid) + text("()"));
            const BlockPtr block = statement(uuid, own.toStdString(), hasFile);
            block->preStatements = "#define n 5\n#define LIMIT 41\n#define more 1";
            block->postStatements = "LIMIT + more == 42 || (step_fail(), 0);\n#undef LIMIT";
            return block;
        };
        const BlockPtr loop = customFor("loop", "int i = 0", "i < 2", "++i", {hostile("a", false)});
        loop->preStatements = "#define i 7\n#define n 1";
        const char* const others =
            "int 上限 = 0, 甲 = 上限, 乙 = 甲; (void)乙; int n = 2, LIMIT = 3, OTHER = 4; "
            "double d = NAN; if (d == d) step_fail(); log_info(\"%d\", n + LIMIT + OTHER);";
        const auto source = applet({sequence(
            "main", {hostile("h", false), loop, hostile("own", true), statement("s", others)})});
        QCOMPARE(m_harness.run(app, source), Finished);
        QCOMPARE(m_harness.log(app), text("1 9"));
        QVERIFY(m_harness.reports(app).filter(text("!")).isEmpty());
    }
}

void HostileCodeTest::macrosOfAText()
{
    const rows::Table<const char*> table{
        {"#define A\n#define B(x) x\n#undef C\n#define A 2", "A B C"},
        {"a = 1; #define A", ""},
        {"// #define A\n/*\n#define B\n*/\n\"\\\n#define C\"", ""},
        {"R\"(\n#define A\n)\"", ""},
        {"// \\\n#define A\n#define B", "B"},
        {"#\\\ndefine\\  \n A\\\n1", "A1"},
        {"/* a\n*/ %:  define A", "A"},
        {"#if A\n#define B\n#endif\n#pragma C\n#", "B"},
        {"#define 上限 1", "上限"},
        {"#define", ""}};
    for (const auto& [code, names] : table) {
        const rows::Named named(code);
        QStringList found;
        for (const std::string& name : codegen::macrosIn(code))
            found << QString::fromStdString(name);
        QCOMPARE(found.join(u' '), text(names));
    }
}

void HostileCodeTest::faultsWithMacros()
{
    const rows::Table<int> table{
        // texts that follow each other, parted by "|", and the line of the last; 0: no fault
        {"#define OPEN {\n\nOPEN", 3},
        {"#define OPEN {\n|a;\nOPEN b;", 2},
        {"#define OPEN {\n#define CLOSE }\nOPEN a; CLOSE", 0},
        {"#define OPEN {\nOPEN a; }", 0},
        {"#define OPEN {\n#undef OPEN\nOPEN", 0},
        {"#define OPEN {\n#define A OPEN\nA", 3},
        {"#define A A {\nA }", 0},
        {"#define A(x) { x\nA(1);", 2},
        {"#define A(x) { x\nint A = 1;", 0},
        {"#define A(x) x\nA({) A(})", 0},
        {"#define A(x, y) x##y\nA(OP, EN) }", 0},
        {"#define A \\\n  {\n\n}", 4},
        {"#if 1\n{\n#else\n{\n#endif\n}", 0},
        {"a;\n#ifdef A\n#if B\n#endif", 2},
        {"a;\n#endif", 2},
        {"#if 0\n#define A {\n#endif|A", 0},
        {"#define OPEN {\n|#if 1\n#undef OPEN\n#endif|OPEN\n{", 0},
        {"#if 0\n#endif|{", 1},
        {"a;\n # line 5", 2},
        {"a;\n\n#5 \"b\"", 3},
        {"#else", 1},
        {"#define A\n/* {", 2},
        {"#define A\n\"x;", 2},
        {"#if 0\n#error don't\nit's\n#endif", 0}};
    for (const auto& [texts, line] : table) {
        const rows::Named named(texts);
        codegen::Macros macros;
        codegen::CodeFault fault;
        for (const QString& each : text(texts).split(u'|'))
            fault = macros.take(each.toStdString());
        QCOMPARE(fault.line, line);
        QCOMPARE(fault.words != nullptr, line > 0);
    }
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
    QCOMPARE(problemsOf({bad, later, statement("half", "#if 0\nint a;")}),
             text("bad 2: 括号不匹配: 缺少右括号|half 1: #if 没有对应的 #endif"));
    QCOMPARE(problemsOf({expression("e", "", "1;\n#define if(x) if(!(x))\n2"),
                         expression("fine", "n", "'#' + 1")})
                 .remove(QRegularExpression(text(" \\d"))),
             text("e: 此处不能使用预处理指令"));
    // Names are shown whole, though texts are passed on up to their first zero.
    QVERIFY(problemsOf({fixedFor("f", std::string("a\0b\nc", 5), 0, 1, 1, {})})
                .endsWith(text(": “a\uFFFDb c”不能用作循环变量名")));
}

PE_TEST("hostile_code", HostileCodeTest)
#include "hostile_code_test.moc"
