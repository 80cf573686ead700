#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

using namespace builders;

/// Compiles and runs each kind of control flow and compares all that it reports.
class CodegenRunTest : public QObject
{
    Q_OBJECT

private slots:
    void branches();
    void loops();
    void jumps();
    void calls();
    void failures();
    void settingsOfSteps();
    void variablesAndNames();
    void longSequence();

private:
    /// What the applet reports and logs, each joined by blanks or "|".
    void check(const char* name, const codegen::AppletSource& source, const char* reports,
               const char* log = "");
    /// An applet of one sequence.
    void check(const char* name, const Blocks& blocks, const char* reports, const char* log = "",
               const std::vector<processVariable>& variables = {})
    {
        check(name, applet({sequence("main", blocks)}, variables), reports, log);
    }

    RuntimeHarness m_harness;
};

namespace {

const std::vector<processVariable> n = {variable("n", "s32", "0")};

BlockPtr tell(const char* uuid, const std::string& values)
{
    return statement(uuid, "log_info(" + values + ");");
}

/// With what happens after the step: the actions if the condition holds and if it doesn't.
BlockPtr ending(BlockPtr block, const char* condition, int trueAction, const char* trueTarget = "",
                int falseAction = 0)
{
    block->postConditionCode = condition;
    block->trueAction = trueAction;
    block->trueTarget = trueTarget;
    block->falseAction = falseAction;
    return block;
}

BlockPtr onlyIf(BlockPtr block, const char* condition)
{
    block->preCondition = condition;
    return block;
}

BlockPtr off(BlockPtr block)
{
    block->enableState = 0;
    return block;
}

} // namespace

void CodegenRunTest::check(const char* name, const codegen::AppletSource& source,
                           const char* reports, const char* log)
{
    const QString app = text("小程序_") + text(name);
    QVERIFY2(m_harness.run(app, source) == run_events::Finished, name);
    // Of equal reports in a loop the last may stand for all.
    const QStringList expected = text(reports).split(u' ');
    const QString told = RuntimeHarness::lastOfEach(m_harness.reports(app)).join(u' ');
    QVERIFY2(told == RuntimeHarness::lastOfEach(expected).join(u' '),
             qPrintable(text(name) + text(": ") + told));
    QStringList lines = m_harness.logLines(app);
    if (text(log).contains(u'!')) // the two streams are not ordered between each other
        lines.sort();
    QVERIFY2(lines.join(u'|') == text(log), qPrintable(text(name) + text(": ") + lines.join(u'|')));
}

void CodegenRunTest::branches()
{
    auto flows = applet({sequence("main", {statement("m", "")})});
    flows.applet.sequences[0].flows[0] = {statement("i", "")};
    flows.applet.sequences[0].flows[2] = {statement("e", "")};
    check("flows", flows, "i:0 i:100 m:0 m:100 e:0 e:100");
    check("each branch",
          {customFor("for", "int i = 1", "i <= 3", "++i",
                     {condition<IfProcessBlock>("if", "i", "==", "1", {tell("a", "\"a\"")}),
                      condition<ElseIfProcessBlock>("elif", "i", "==", "2", {tell("b", "\"b\"")}),
                      plain(step_type::Else, "else", {tell("c", "\"c\"")}),
                      plain(step_type::EndIf, "end")})},
          "for:0 if:0 a:0 a:100 if:100 end:0 end:100 "
          "if:0 if:100 elif:0 b:0 b:100 elif:100 end:0 end:100 "
          "if:0 if:100 elif:0 elif:100 else:0 c:0 c:100 else:100 end:0 end:100 for:100",
          "1 a|1 b|1 c");
    check("a pre-condition of an if",
          {onlyIf(condition<IfProcessBlock>("if", "1", "==", "1", {statement("a", "")}), "false"),
           plain(step_type::EndIf, "end")},
          "if:0 if:100 end:0 end:100");
    const auto arrays = condition<IfProcessBlock>("if", "x", "", "y", {statement("a", "")});
    dynamic_cast<ConditionProcessBlock&>(*arrays).setOperator("==", true, 2);
    check("arrays", {arrays}, "if:0 a:0 a:100 if:100", "",
          {variable("x", "u8*", "1,2,3", 3), variable("y", "u8*", "[0x1, 2, 4]", 3)});
    check("disabled steps",
          {off(tell("off", "\"off\"")),
           with(statement("partly", ""), [](IProcessBlock& block) { block.enableState = 1; }),
           off(condition<IfProcessBlock>("if", "1", "==", "1", {})),
           condition<ElseIfProcessBlock>("elif", "1", "==", "1", {statement("a", "")}),
           plain(step_type::Else, "else", {statement("b", "")}), plain(step_type::EndIf, "end")},
          "partly:0 partly:100 end:0 end:100");
}

void CodegenRunTest::loops()
{
    check("with a counter",
          {fixedFor("up", "i", 3, 5, 1, {tell("a", "\"%d\", i")}), plain(step_type::EndFor, "end"),
           fixedFor("down", "i", 4, 0, -2, {tell("b", "\"%d\", i")}),
           fixedFor("none", "i", 0, 0, 1, {statement("never", "")})},
          "up:0 a:0 a:100 up:50 a:0 a:100 up:100 end:0 end:100 "
          "down:0 b:0 b:100 down:50 b:0 b:100 down:100 none:0 none:100",
          "1 3|1 4|1 4|1 2");
    check("of the user's own",
          {customFor("for", "int i = 0", "i < 2 // twice", "++i", {tell("s", "\"%d\", i")})},
          "for:0 s:0 s:100 s:0 s:100 for:100", "1 0|1 1");
    check(
        "while and continue",
        {condition<WhileProcessBlock>("while", "n", "<", "2",
                                      {expression("add", "n", "n + 1"),
                                       plain(step_type::Continue, "next"), statement("never", "")}),
         plain(step_type::EndWhile, "end")},
        "while:0 add:0 add:100 next:0 next:100 add:0 add:100 next:0 next:100 while:100 end:0 "
        "end:100",
        "", n);
    check("do while and break",
          {condition<DoWhileProcessBlock>(
               "do", "1", "==", "1",
               {condition<IfProcessBlock>("if", "n++", "==", "1", {plain(step_type::Break, "out")}),
                plain(step_type::EndIf, "fi")}),
           plain(step_type::EndDoWhile, "end")},
          "do:0 if:0 if:100 fi:0 fi:100 if:0 out:0 out:100 do:100 end:0 end:100", "", n);
}

void CodegenRunTest::jumps()
{
    const auto tagged = with(tell("in", "\"%d\", i"), [](IProcessBlock& block) {
        block.tagEnabled = true;
        block.tag = "here";
    });
    check("into a loop by tag, which starts with a counter of its own",
          {jump("go", "", "here"), statement("skipped", ""),
           fixedFor("for", "i", 5, 6, 1, {tagged}), plain(step_type::EndFor, "end")},
          "go:0 go:100 in:0 in:100 for:100 end:0 end:100", "1 5");
    check("into a loop without a variable",
          {jump("go", "in"), fixedFor("for", "", 0, 3, 1, {statement("in", "++n;")}),
           tell("s", "\"%d\", n")},
          "go:0 go:100 in:0 in:100 for:33 in:0 in:100 for:66 in:0 in:100 for:100 s:0 s:100", "1 3",
          n);
    check("without a target", {jump("go", ""), statement("s", "")}, "go:0 go:100 s:0 s:100");
    check("a failed pre-condition takes the jump with it",
          {ending(onlyIf(tell("s", "\"never\""), "n > 1"), "true", 4), onlyIf(jump("go", "s"), "n"),
           statement("after", "")},
          "s:0 s:100 go:0 go:100 after:0 after:100", "", n);
    check("after a step to another",
          {ending(statement("s", ""), "true", 1, "last"), statement("never", ""),
           statement("last", "")},
          "s:0 s:100 last:0 last:100");
    auto flows =
        sequence("main", {ending(statement("s", ""), "true", 1, "last"), statement("never", "")});
    flows.flows[2] = {statement("skipped", ""), statement("last", "")};
    check("after a step to one of another flow", applet({flows}), "s:0 s:100 last:0 last:100");
    check("a pause is not open yet",
          {ending(statement("s", ""), "true", 5), statement("after", "")},
          "s:0 s:100 after:0 after:100");
    const auto called = [](const Blocks& blocks) {
        return applet({sequence("main", {call("c", "sub"), statement("after", "")}),
                       sequence("sub", blocks), sequence("other", {statement("o", "")})});
    };
    check("to the end of the sequence",
          called({ending(statement("s", ""), "true", 3), statement("never", "")}),
          "c:0 >sub s:0 s:100 <sub c:100 after:0 after:100");
    check("to the end of the process", called({ending(statement("s", ""), "1 == 2", 0, "", 4)}),
          "c:0 >sub s:0 s:100 <sub c:100");
    const auto declared = with(statement("s", "k = 3;"),
                               [](IProcessBlock& block) { block.preStatements = "int k = 0;"; });
    check("to a sequence, on a variable of the statements before",
          called({ending(declared, "k == 3", 2, "other", 4), statement("never", "")}),
          "c:0 >sub s:0 s:100 >other o:0 o:100 <other <sub c:100 after:0 after:100");
}

void CodegenRunTest::calls()
{
    check("sequence",
          applet({sequence("main", {call("c1", "sub"), call("c2", "sub")}),
                  sequence("sub",
                           {expression("inc", "n", "n + 1"), tell("s", "\"%d %d\", n, total += n")},
                           n)},
                 {variable("total", "s32", "40")}),
          "c1:0 >sub inc:0 inc:100 s:0 s:100 <sub c1:100 "
          "c2:0 >sub inc:0 inc:100 s:0 s:100 <sub c2:100",
          "1 1 41|1 1 42");
    auto source = applet({sequence("main", {callTemplate("call", "T")})}, n);
    codegen::SequenceGroup group;
    group.templateId = "T";
    group.sequences = {sequence("inner", {tell("s", "\"%d\", n"), call("deep", "sub")}),
                       sequence("sub", {})};
    group.variables = {variable("n", "s32", "2")};
    source.applet.templates["T"] = group;
    check("template", source,
          "call:0 >T/inner s:0 s:100 deep:0 >T/sub <T/sub deep:100 <T/inner call:100", "1 2");
    check("functions of statements are known everywhere",
          applet({sequence("main", {tell("s", "\"%d\", twice(n)"), call("c", "sub")}),
                  sequence("sub", {statement("d", "static s32 twice(s32 value, const char* name = "
                                                  "\"a,)\",\ns32 factor = fmax(1, 2)) // (\n{\n"
                                                  "    n += 20;\n    return n * factor;\n}")})},
                 n),
          "s:0 s:100 c:0 >sub d:0 d:100 <sub c:100", "1 40");
}

void CodegenRunTest::failures()
{
    check(
        "in the turns of a loop",
        {condition<WhileProcessBlock>(
             "while", "n", "<", "4",
             {expression("add", "n", "n + 1"),
              condition<IfProcessBlock>("if", "n", "<", "3", {plain(step_type::Continue, "next")}),
              statement("bad", "step_fail(n);")}),
         statement("after", "step_fail();")},
        "while:0 add:0 add:100 if:0 next:0 next:100 add:0 add:100 if:0 next:0 next:100 "
        "add:0 add:100 if:0 if:100 bad:0 bad:99!-3 add:0 add:100 if:0 if:100 bad:0 bad:99!-4 "
        "while:100 after:0 after:99!-1",
        "3 序列“main”的步骤“bad”失败(-3), 循环第 3 次|"
        "3 序列“main”的步骤“bad”失败(-4), 循环第 4 次|3 序列“main”的步骤“after”失败(-1)",
        n);
    check("of a sequence that calls itself in a loop",
          {customFor("for", "int i = 0", "i < 2", "++i",
                     {onlyIf(call("call", "main"), "!n++"), statement("bad", "step_fail();")}),
           plain(step_type::EndFor, "end")},
          "for:0 call:0 >main for:0 call:0 call:100 bad:0 bad:99!-1 call:0 call:100 bad:0 "
          "bad:99!-1 for:100 end:0 end:100 <main call:100 bad:0 bad:99!-1 call:0 call:100 bad:0 "
          "bad:99!-1 for:100 end:0 end:100",
          "3 序列“main”的步骤“bad”失败(-1), 循环第 1 次|"
          "3 序列“main”的步骤“bad”失败(-1), 循环第 2 次|"
          "3 序列“main”的步骤“bad”失败(-1)|3 序列“main”的步骤“bad”失败(-1)",
          n);
    const auto repeated = with(call("c", "sub"), [](IProcessBlock& block) {
        block.loopType = 1;
        block.loopCount = 2;
        block.postStatements = "if (n == 2) step_fail();";
    });
    check("in a step's own loop",
          applet({sequence("main", {repeated}),
                  sequence("sub", {statement("bad", "if (n++) step_fail();")})},
                 n),
          "c:0 >sub bad:0 bad:100 <sub c:50 >sub bad:0 bad:99!-1 <sub c:99!-1",
          "3 序列“sub”的步骤“bad”失败(-1)|3 序列“main”的步骤“c”失败(-1)");
    check("what this runtime can't do", {named(std::make_shared<BuzzProcessBlock>(), "buzz")},
          "buzz:0 buzz:100", "2 步骤“buzz”(蜂鸣器)未执行: 此运行时暂不支持该类步骤");
}

void CodegenRunTest::settingsOfSteps()
{
    check("statements around, and so many turns",
          {with(tell("s", "\"%d %d\", k, i"),
                [](IProcessBlock& block) {
                    block.preStatements = "int k = 7;";
                    block.postStatements = "log_info(\"after %d\", k);";
                    block.loopType = 1;
                    block.loopCount = 2;
                })},
          "s:0 s:50 s:100", "1 7 0|1 7 1|1 after 7");
    check("a loop of its own, with its turns in the log",
          {with(statement("s", "if (k == 2) step_fail(9);"),
                [](IProcessBlock& block) {
                    block.preStatements = "int k;";
                    block.loopType = 2;
                    block.loopInit = "k = 1";
                    block.loopCondition = "k <= 3 // times";
                    block.loopStep = "++k;";
                    block.loopResultInReport = true;
                })},
          "s:0 s:99!-9",
          "1 步骤“s”第 1 次循环: 成功|1 步骤“s”第 2 次循环: 失败(-9)|1 步骤“s”第 3 次循环: 成功|"
          "3 序列“main”的步骤“s”失败(-9), 重复第 2 次");
    check("exceptions within a step",
          {statement("s", "try { throw 5; } catch (int n) { log_info(\"%d\", n); }")}, "s:0 s:100",
          "1 5");
    check("comments that end in a backslash",
          {condition<IfProcessBlock>("if", "n // c:\\", "==", "0 // d:\\",
                                     {statement("a", "n = 4; // e:\\ \r")}),
           expression("e", "n", "n + 1 // f:\\"), statement("s", "log_info(\"%d\", n); // g:\\\t")},
          "if:0 a:0 a:100 if:100 e:0 e:100 s:0 s:100", "1 5", n);
}

void CodegenRunTest::variablesAndNames()
{
    check("texts and output",
          {statement("s", "text += \"!\"; printf(\"%s %d\\n\", text.c_str(), (int)buffer[0]);"),
           statement("own", "log_warning(\"own %s\", text.c_str());", true)},
          "s:0 s:100 own:0 own:100", "1 电压\"\\! 65|2 own 电压\"\\!",
          {variable("text", "string", "电压\"\\", 20), variable("buffer", "char*", "AB", 8)});
    check("texts keep to their length",
          {statement(
              "s", "for (int i = 0; i < 5; ++i) text += \"ab\"; log_info(\"%s\", text);"
                   "text = \"压压\"; buffer = text + \"x\"; log_info(\"%s %s\", text, buffer);"
                   "string& alias = text; alias = \"123456\"; sprintf(buffer, \"%s\", \"abcdef\");"
                   "string copy = text; copy += \"6\"; log_info(\"%s %s %s\", alias, buffer, copy);"
                   "if (buffer == \"abcde\" && text != buffer) log_info(\"%d\", buffer[4]);")},
          "s:0 s:100", "1 ababa|1 压 压x|1 12345 abcde 123456|1 101",
          {variable("text", "string", "", 5), variable("buffer", "char*", "", 5)});
    check("arrays keep to their length",
          {statement("in", "a = {1, 2, 3, 4}; b = a; a[1] = 0x1FF; "
                           "log_info(\"%d %d %d %d\", a[0], a[1], a[2], b[3]);"),
           statement("out", "a[3] = 7; a[-1] = 8; int n = text[9]; log_info(\"%d %d\", a[2], n);"),
           expression("element", "a[0]", "b[2] + 1"), tell("end", "\"%d\", a[0]")},
          "in:0 in:100 out:0 out:99!-1 element:0 element:100 end:0 end:100",
          "1 1 255 3 0|3 下标 3 超出范围, 有效范围为 0 到 2|1 3 0|"
          "3 序列“main”的步骤“out”失败(-1)|1 4",
          {variable("a", "u8*", "", 3), variable("b", "s32*", "9,9,9,9", 4),
           variable("text", "string", "abc", 9)});
    std::vector<processVariable> records;
    for (const char* type : {"PDrelCan", "PDrelUds", "PDrelEcuInfo", "DrelBigMsg*", "XcpCanCfg",
                             "XcpODTEntry*", "XcpDAQListCfg", "XcpTransportLayerCan",
                             "XcpProtocolLayerCfg", "XcpCalibrationPage", "XcpProgramFormat"})
        records.push_back(variable("r" + std::to_string(records.size()), type, "0"));
    check("records are passed on",
          {statement("s", "void fill(PDrelCan frame, XcpODTEntry* entry, XcpCanCfg& c)\n{\n"
                          "    frame->Id += 0x123;\n    entry->DAQSize = 4;\n    c.fd = true;\n}\n"
                          "fill(r0, r5, r4);\n"
                          "log_info(\"%x %d %d\", r0->Id, r5->DAQSize, r4.fd);")},
          "s:0 s:100", "1 123 4 1", records);
    auto clashes = applet(
        {sequence("main",
                  {tell("s", "\"%d %d %d %d %d %d %d\", process, NAN, EOF, can->Id, can_storage, "
                             "y0, time")},
                  {variable("NAN", "s32", "2")})},
        {variable("EOF", "s32", "3"), variable("can", "PDrelCan", ""),
         variable("can_storage", "s32", "4"), variable("y0", "s32", "5"),
         variable("time", "s32", "6"), variable("sequence_main", "s32", "7"),
         variable("first", "s32", "8")});
    clashes.globalVariables = {variable("process", "s32", "1")};
    check("names of macros and of the code itself", clashes, "s:0 s:100", "1 1 2 3 0 4 5 6");
}

/// Long enough to become several functions: variables, order and the ends of flows stay the same.
void CodegenRunTest::longSequence()
{
    constexpr int Steps = 999;
    Blocks blocks;
    QString expected;
    for (int i = 0; i < Steps; i += 3) {
        const std::string number = std::to_string(i);
        blocks.push_back(condition<IfProcessBlock>("if" + number, "n", "<", "0"));
        blocks.push_back(
            plain(step_type::Else, "else" + number, {expression("add" + number, "n", "n + 1")}));
        expected += QStringLiteral("if%1:0 if%1:100 else%1:0 add%1:0 add%1:100 else%1:100 ").arg(i);
    }
    auto source = applet(
        {sequence("main", blocks,
                  {variable("n", "s32", "0"), variable("list", "u8*", "1,2", 4),
                   variable("text", "string", "abc", 3), variable("buffer", "char*", "de", 3),
                   variable("can", "PDrelCan", "0")})});
    source.applet.sequences.front().flows[2] = {
        statement("end", "text += \"f\"; buffer[2] = 'f'; can->Id = list[1];\n"
                         "log_info(\"%d %s %s %d\", n, text, buffer, can->Id);")};
    QVERIFY(codegen::generate(source).files.back().text.find("part_6()") != std::string::npos);
    const QString app = text("long");
    QCOMPARE(m_harness.run(app, source), run_events::Finished);
    QCOMPARE(m_harness.reports(app).join(u' '), expected + text("end:0 end:100"));
    QCOMPARE(m_harness.log(app), text("1 333 abc def 2"));
}

PE_TEST("codegen_run_test", CodegenRunTest)
#include "codegen_run_test.moc"
