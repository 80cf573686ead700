#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include <QtTest>

using namespace builders;

/// Compiles and runs each kind of control flow and compares all that it reports.
class CodegenRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_harness = std::make_unique<RuntimeHarness>(); }
    void cleanupTestCase() { m_harness.reset(); }

    void controlFlow_data();
    void controlFlow();
    void longSequence();

private:
    std::unique_ptr<RuntimeHarness> m_harness;
};

namespace {

Blocks ifChain(const std::string& value)
{
    return {condition<IfProcessBlock>("if", value, "==", "1", {statement("a", "log_info(\"a\");")}),
            condition<ElseIfProcessBlock>("elif", value, "==", "2",
                                          {statement("b", "log_info(\"b\");")}),
            plain(step_type::Else, "else", {statement("c", "log_info(\"c\");")}),
            plain(step_type::EndIf, "end")};
}

codegen::AppletSource threeFlows()
{
    auto source = applet({sequence("main", {statement("m", "")})});
    auto& flows = source.applet.sequences.front().flows;
    flows[0] = {statement("i", "")};
    flows[2] = {statement("e", "")};
    return source;
}

codegen::AppletSource withTemplate()
{
    auto source =
        applet({sequence("main", {callTemplate("call", "T")})}, {variable("n", "s32", "1")});
    codegen::SequenceGroup group;
    group.templateId = "T";
    group.sequences = {
        sequence("inner", {statement("s", "log_info(\"%d\", n);"), call("deep", "sub")}),
        sequence("sub", {})};
    group.variables = {variable("n", "s32", "2")};
    source.applet.templates["T"] = group;
    return source;
}

} // namespace

void CodegenRunTest::controlFlow_data()
{
    QTest::addColumn<codegen::AppletSource>("source");
    QTest::addColumn<QString>("reports");
    QTest::addColumn<QString>("log");
    const auto row = [](const char* name, const codegen::AppletSource& source, const char* reports,
                        const char* log) {
        QTest::newRow(name) << source << QString::fromUtf8(reports) << QString::fromUtf8(log);
    };
    const auto main = [](const Blocks& blocks, const std::vector<processVariable>& variables = {}) {
        return applet({sequence("main", blocks)}, variables);
    };

    row("flows", threeFlows(), "i:0 i:100 m:0 m:100 e:0 e:100", "");
    row("if", main(ifChain("1")), "if:0 a:0 a:100 if:100 end:0 end:100", "1 a");
    row("else if", main(ifChain("2")), "if:0 if:100 elif:0 b:0 b:100 elif:100 end:0 end:100",
        "1 b");
    row("else", main(ifChain("3")),
        "if:0 if:100 elif:0 elif:100 else:0 c:0 c:100 else:100 end:0 end:100", "1 c");
    row("if without else",
        main({condition<IfProcessBlock>("if", "1", ">", "2"), plain(step_type::EndIf, "end")}),
        "if:0 if:100 end:0 end:100", "");
    row("if with a pre-condition",
        main({with(condition<IfProcessBlock>("if", "1", "==", "1", {statement("a", "")}),
                   [](IProcessBlock& block) { block.preCondition = "false"; }),
              plain(step_type::EndIf, "end")}),
        "if:0 if:100 end:0 end:100", "");
    row("arrays",
        main({with(condition<IfProcessBlock>("if", "x", "", "y", {statement("a", "")}),
                   [](IProcessBlock& block) {
                       dynamic_cast<ConditionProcessBlock&>(block).setOperator("==", true, 2);
                   }),
              plain(step_type::EndIf, "end")},
             {variable("x", "u8*", "1,2,3", 3), variable("y", "u8*", "[0x1, 2, 4]", 3)}),
        "if:0 a:0 a:100 if:100 end:0 end:100", "");
    row("for",
        main({fixedFor("for", "i", 3, 5, 1, {statement("s", "log_info(\"%d\", i);")}),
              plain(step_type::EndFor, "end")}),
        "for:0 s:0 s:100 for:50 s:0 s:100 for:100 end:0 end:100", "1 3|1 4");
    row("for downwards",
        main({fixedFor("for", "i", 4, 0, -2, {statement("s", "log_info(\"%d\", i);")}),
              plain(step_type::EndFor, "end")}),
        "for:0 s:0 s:100 for:50 s:0 s:100 for:100 end:0 end:100", "1 4|1 2");
    row("for of no turns",
        main(
            {fixedFor("for", "i", 0, 0, 1, {statement("s", "")}), plain(step_type::EndFor, "end")}),
        "for:0 for:100 end:0 end:100", "");
    row("custom for",
        main({customFor("for", "int i = 0", "i < 2 // twice", "++i",
                        {statement("s", "log_info(\"%d\", i);")}),
              plain(step_type::EndFor, "end")}),
        "for:0 s:0 s:100 s:0 s:100 for:100 end:0 end:100", "1 0|1 1");
    row("while and continue",
        main({condition<WhileProcessBlock>("while", "n", "<", "2",
                                           {expression("add", "n", "n + 1"),
                                            plain(step_type::Continue, "next"),
                                            statement("never", "")}),
              plain(step_type::EndWhile, "end")},
             {variable("n", "s32", "0")}),
        "while:0 add:0 add:100 next:0 next:100 add:0 add:100 next:0 next:100 while:100 end:0 "
        "end:100",
        "");
    row("do while and break",
        main({condition<DoWhileProcessBlock>(
                  "do", "1", "==", "1",
                  {condition<IfProcessBlock>("if", "n++", "==", "1",
                                             {plain(step_type::Break, "out")}),
                   plain(step_type::EndIf, "fi")}),
              plain(step_type::EndDoWhile, "end")},
             {variable("n", "s32", "0")}),
        "do:0 if:0 if:100 fi:0 fi:100 if:0 out:0 out:100 do:100 end:0 end:100", "");
    row("goto into a loop, by tag",
        main({jump("go", "", "here"), statement("skipped", ""),
              fixedFor("for", "i", 0, 1, 1,
                       {with(statement("in", "i = 5;"),
                             [](IProcessBlock& block) {
                                 block.tagEnabled = true;
                                 block.tag = "here";
                             })}),
              plain(step_type::EndFor, "end")}),
        "go:0 go:100 in:0 in:100 for:100 end:0 end:100", "");
    row("goto without a target", main({jump("go", ""), statement("s", "")}),
        "go:0 go:100 s:0 s:100", "");
    row("call",
        applet({sequence("main", {call("c1", "sub"), call("c2", "sub")}),
                sequence("sub",
                         {expression("inc", "n", "n + 1"),
                          statement("s", "log_info(\"%d %d\", n, total += n);")},
                         {variable("n", "s32", "0")})},
               {variable("total", "s32", "40")}),
        "c1:0 >sub inc:0 inc:100 s:0 s:100 <sub c1:100 c2:0 >sub inc:0 inc:100 s:0 s:100 <sub "
        "c2:100",
        "1 1 41|1 1 42");
    row("template", withTemplate(),
        "call:0 >T/inner s:0 s:100 deep:0 >T/sub <T/sub deep:100 <T/inner call:100", "1 2");
    row("disabled steps",
        main({with(statement("off", "log_info(\"off\");"),
                   [](IProcessBlock& block) { block.enableState = 0; }),
              with(statement("partly", ""), [](IProcessBlock& block) { block.enableState = 1; })}),
        "partly:0 partly:100", "");
    const auto off = [](IProcessBlock& block) { block.enableState = 0; };
    row("a disabled if takes its branches with it",
        main({with(condition<IfProcessBlock>("if", "1", "==", "1", {}), off),
              condition<ElseIfProcessBlock>("elif", "1", "==", "1", {statement("a", "")}),
              plain(step_type::Else, "else", {statement("b", "")}), plain(step_type::EndIf, "end"),
              statement("s", "")}),
        "end:0 end:100 s:0 s:100", "");
    row("failure", main({statement("bad", "step_fail(7);"), statement("good", "")}),
        "bad:0 bad:99!-7 good:0 good:100", "3 序列“main”的步骤“bad”失败(-7)");
    row("failures in the turns of a loop",
        main({condition<WhileProcessBlock>(
                  "while", "n", "<", "4",
                  {expression("add", "n", "n + 1"),
                   condition<IfProcessBlock>("if", "n", "<", "3",
                                             {plain(step_type::Continue, "next")}),
                   plain(step_type::EndIf, "fi"), statement("bad", "step_fail(n);")}),
              plain(step_type::EndWhile, "end"), statement("after", "step_fail();")},
             {variable("n", "s32", "0")}),
        "while:0 add:0 add:100 if:0 next:0 next:100 add:0 add:100 if:0 next:0 next:100 "
        "add:0 add:100 if:0 if:100 fi:0 fi:100 bad:0 bad:99!-3 "
        "add:0 add:100 if:0 if:100 fi:0 fi:100 bad:0 bad:99!-4 while:100 end:0 end:100 "
        "after:0 after:99!-1",
        "3 序列“main”的步骤“bad”失败(-3), 循环第 3 次|3 序列“main”的步骤“bad”失败(-4), 循环第 4 次|"
        "3 序列“main”的步骤“after”失败(-1)");
    row("failures of a sequence that calls itself in a loop",
        main({customFor("for", "int i = 0", "i < 2", "++i",
                        {with(call("call", "main"),
                              [](IProcessBlock& block) { block.preCondition = "!n++"; }),
                         statement("bad", "step_fail();")}),
              plain(step_type::EndFor, "end")},
             {variable("n", "s32", "0")}),
        "for:0 call:0 >main for:0 call:0 call:100 bad:0 bad:99!-1 call:0 call:100 bad:0 bad:99!-1 "
        "for:100 end:0 end:100 <main call:100 bad:0 bad:99!-1 call:0 call:100 bad:0 bad:99!-1 "
        "for:100 end:0 end:100",
        "3 序列“main”的步骤“bad”失败(-1), 循环第 1 次|3 序列“main”的步骤“bad”失败(-1), 循环第 2 次|"
        "3 序列“main”的步骤“bad”失败(-1)|3 序列“main”的步骤“bad”失败(-1)");
    row("failures in a step's own loop",
        applet({sequence("main", {with(call("c", "sub"),
                                       [](IProcessBlock& block) {
                                           block.loopType = 1;
                                           block.loopCount = 2;
                                           block.postStatements = "if (n == 2) step_fail();";
                                       })}),
                sequence("sub", {statement("bad", "if (n++) step_fail();")})},
               {variable("n", "s32", "0")}),
        "c:0 >sub bad:0 bad:100 <sub c:50 >sub bad:0 bad:99!-1 <sub c:99!-1",
        "3 序列“sub”的步骤“bad”失败(-1)|3 序列“main”的步骤“c”失败(-1)");
    row("statements around and a step's own loop",
        main({with(statement("s", "log_info(\"%d %d\", k, i);"),
                   [](IProcessBlock& block) {
                       block.preStatements = "int k = 7;";
                       block.postStatements = "log_info(\"after %d\", k);";
                       block.loopType = 1;
                       block.loopCount = 2;
                   })}),
        "s:0 s:50 s:100", "1 7 0|1 7 1|1 after 7");
    row("pre-condition",
        main({with(statement("s", "log_info(\"s\");"),
                   [](IProcessBlock& block) { block.preCondition = "n > 1"; })},
             {variable("n", "s32", "1")}),
        "s:0 s:100", "");
    row("post action ends the sequence",
        applet({sequence("main", {call("c", "sub"), statement("after", "")}),
                sequence("sub", {with(statement("s", ""),
                                      [](IProcessBlock& block) {
                                          block.postConditionCode = "true";
                                          block.trueAction = 3;
                                      }),
                                 statement("never", "")})}),
        "c:0 >sub s:0 s:100 <sub c:100 after:0 after:100", "");
    row("post action ends the process",
        applet({sequence("main", {call("c", "sub"), statement("never", "")}),
                sequence("sub", {with(statement("s", ""),
                                      [](IProcessBlock& block) {
                                          block.postConditionCode = "1 == 2";
                                          block.falseAction = 4;
                                      })})}),
        "c:0 >sub s:0 s:100 <sub c:100", "");
    row("post action jumps to a step",
        main({with(statement("s", ""),
                   [](IProcessBlock& block) {
                       block.postConditionCode = "true";
                       block.trueAction = 1;
                       block.trueTarget = "last";
                   }),
              statement("never", ""), statement("last", "")}),
        "s:0 s:100 last:0 last:100", "");
    row("texts and output",
        main({statement("s", "text += \"!\"; printf(\"%s %d\\n\", text.c_str(), (int)buffer[0]);"),
              statement("own", "log_warning(\"own %s\", text.c_str());", true)},
             {variable("text", "string", "电压\"\\", 20), variable("buffer", "char*", "AB", 8)}),
        "s:0 s:100 own:0 own:100", "1 电压\"\\! 65|2 own 电压\"\\!");
    row("exceptions within a step",
        main({statement("s", "try { throw 5; } catch (int n) { log_info(\"%d\", n); }")}),
        "s:0 s:100", "1 5");
    row("a step that this runtime can't do",
        main({named(std::make_shared<BuzzProcessBlock>(), "buzz")}), "buzz:0 buzz:100",
        "2 步骤“buzz”(蜂鸣器)未执行: 此运行时暂不支持该类步骤");
    row("goto into a loop starts with a counter of its own",
        main({jump("go", "in"),
              fixedFor("for", "i", 5, 6, 1, {statement("in", "log_info(\"%d\", i);")}),
              plain(step_type::EndFor, "end")}),
        "go:0 go:100 in:0 in:100 for:100 end:0 end:100", "1 5");
    row("a failed pre-condition takes the jump with it",
        main({with(statement("s", ""),
                   [](IProcessBlock& block) {
                       block.preCondition = "false";
                       block.postConditionCode = "true";
                       block.trueAction = 4;
                   }),
              with(jump("go", "s"), [](IProcessBlock& block) { block.preCondition = "false"; }),
              statement("after", "")}),
        "s:0 s:100 go:0 go:100 after:0 after:100", "");
    row("post action on a variable of the statements before; jump to a sequence",
        applet({sequence("main", {call("c", "sub"), statement("after", "")}),
                sequence("sub", {with(statement("s", "k = 3;"),
                                      [](IProcessBlock& block) {
                                          block.preStatements = "int k = 0;";
                                          block.postConditionCode = "k == 3";
                                          block.trueAction = 2;
                                          block.trueTarget = "other";
                                          block.falseAction = 4;
                                      }),
                                 statement("never", "")}),
                sequence("other", {statement("o", "")})}),
        "c:0 >sub s:0 s:100 >other o:0 o:100 <other <sub c:100 after:0 after:100", "");
    row("pause is not open yet",
        main({with(statement("s", ""),
                   [](IProcessBlock& block) {
                       block.postConditionCode = "true";
                       block.trueAction = 5;
                   }),
              statement("after", "")}),
        "s:0 s:100 after:0 after:100", "");
    row("a step's custom loop, with its turns in the log",
        main({with(statement("s", "if (k == 2) step_fail(9);"),
                   [](IProcessBlock& block) {
                       block.preStatements = "int k;";
                       block.loopType = 2;
                       block.loopInit = "k = 1";
                       block.loopCondition = "k <= 3 // times";
                       block.loopStep = "++k;";
                       block.loopResultInReport = true;
                   })}),
        "s:0 s:99!-9",
        "1 步骤“s”第 1 次循环: 成功|1 步骤“s”第 2 次循环: 失败(-9)|1 步骤“s”第 3 次循环: 成功|"
        "3 序列“main”的步骤“s”失败(-9), 重复第 2 次");
    row("texts keep to their length",
        main({statement(
                 "s",
                 "for (int i = 0; i < 5; ++i) text += \"ab\"; log_info(\"%s\", text);"
                 "text = \"压压\"; buffer = text + \"x\"; log_info(\"%s %s\", text, buffer);"
                 "string& alias = text; alias = \"123456\"; sprintf(buffer, \"%s\", \"abcdef\");"
                 "string copy = text; copy += \"6\"; log_info(\"%s %s %s\", alias, buffer, copy);"
                 "if (buffer == \"abcde\" && text != buffer) log_info(\"%d\", buffer[4]);")},
             {variable("text", "string", "", 5), variable("buffer", "char*", "", 5)}),
        "s:0 s:100", "1 ababa|1 压 压x|1 12345 abcde 123456|1 101");
    row("arrays keep to their length",
        main({statement("in", "a = {1, 2, 3, 4}; b = a; a[1] = 0x1FF; "
                              "log_info(\"%d %d %d %d\", a[0], a[1], a[2], b[3]);"),
              statement("out",
                        "a[3] = 7; a[-1] = 8; int n = text[9]; log_info(\"%d %d\", a[2], n);"),
              expression("element", "a[0]", "b[2] + 1"),
              statement("end", "log_info(\"%d\", a[0]);")},
             {variable("a", "u8*", "", 3), variable("b", "s32*", "9,9,9,9", 4),
              variable("text", "string", "abc", 9)}),
        "in:0 in:100 out:0 out:99!-1 element:0 element:100 end:0 end:100",
        "1 1 255 3 0|3 下标 3 超出范围, 有效范围为 0 到 2|1 3 0|"
        "3 序列“main”的步骤“out”失败(-1)|1 4");
    row("records are passed on",
        main({statement("s",
                        "void fill(PDrelCan frame, XcpODTEntry* entry, XcpCanCfg& c)\n{\n"
                        "    frame->Id += 0x123;\n    entry->DAQSize = 4;\n    c.fd = true;\n}\n"
                        "fill(can, entry, cfg);\n"
                        "log_info(\"%x %d %d\", can->Id, entry->DAQSize, cfg.fd);")},
             {variable("can", "PDrelCan", "0"), variable("uds", "PDrelUds", "0"),
              variable("ecu", "PDrelEcuInfo", "0"), variable("big", "DrelBigMsg*", "0"),
              variable("cfg", "XcpCanCfg", "0"), variable("entry", "XcpODTEntry*", "0"),
              variable("list", "XcpDAQListCfg", "0"), variable("tl", "XcpTransportLayerCan", "0"),
              variable("pl", "XcpProtocolLayerCfg", "0"),
              variable("page", "XcpCalibrationPage", ""),
              variable("program", "XcpProgramFormat", "")}),
        "s:0 s:100", "1 123 4 1");
    row("functions of statements are known everywhere",
        applet({sequence("main", {statement("s", "log_info(\"%d\", twice(n));"), call("c", "sub")}),
                sequence("sub",
                         {statement("d", "static s32 twice(s32 value, const char* name = \"a,)\",\n"
                                         "s32 factor = fmax(1, 2)) // (\n{\n    n += 1;\n"
                                         "    return value * factor;\n}")})},
               {variable("n", "s32", "20")}),
        "s:0 s:100 c:0 >sub d:0 d:100 <sub c:100", "1 40");
    row("comments that end in a backslash",
        main({condition<IfProcessBlock>("if", "n // c:\\", "==", "3 // d:\\",
                                        {statement("a", "n = 4; // e:\\ \r")}),
              plain(step_type::EndIf, "end"), expression("e", "n", "n + 1 // f:\\"),
              statement("s", "log_info(\"%d\", n); // g:\\\t")},
             {variable("n", "s32", "3")}),
        "if:0 a:0 a:100 if:100 end:0 end:100 e:0 e:100 s:0 s:100", "1 5");
    row("goto into a loop without a variable",
        main({jump("go", "in"), fixedFor("for", "", 0, 3, 1, {statement("in", "++n;")}),
              plain(step_type::EndFor, "end"), statement("s", "log_info(\"%d\", n);")},
             {variable("n", "s32", "0")}),
        "go:0 go:100 in:0 in:100 for:33 in:0 in:100 for:66 in:0 in:100 for:100 end:0 end:100 s:0 "
        "s:100",
        "1 3");
    auto clashes = main({statement("s", "log_info(\"%d %d %d %d %d\", process, NAN, EOF, "
                                        "can->Id, can_storage);")},
                        {variable("EOF", "s32", "3"), variable("can", "PDrelCan", ""),
                         variable("can_storage", "s32", "4")});
    clashes.applet.sequences.front().variables = {variable("NAN", "s32", "2")};
    clashes.globalVariables = {variable("process", "s32", "1")};
    row("names of macros and of the code itself", clashes, "s:0 s:100", "1 1 2 3 0 4");
    row("names that would clash elsewhere",
        main({statement("s", "log_info(\"%d %d %d\", y0, time, process);")},
             {variable("y0", "s32", "1"), variable("time", "s32", "2"),
              variable("process", "s32", "3"), variable("sequence_main", "s32", "4"),
              variable("first", "s32", "5")}),
        "s:0 s:100", "1 1 2 3");
}

void CodegenRunTest::controlFlow()
{
    QFETCH(codegen::AppletSource, source);
    QFETCH(QString, reports);
    QFETCH(QString, log);
    const QString appName = QStringLiteral("小程序_") + QString::fromUtf8(QTest::currentDataTag());

    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{1}, 20000);
    // Of equal reports in a loop the last may stand for all.
    QCOMPARE(RuntimeHarness::lastOfEach(m_harness->reports(appName)),
             RuntimeHarness::lastOfEach(reports.split(u' ')));
    QStringList lines = m_harness->logLines(appName);
    if (log.contains(u'!')) // the two streams are not ordered between each other
        lines.sort();
    QCOMPARE(lines.join(u'|'), log);
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
    const QString appName = QStringLiteral("long");
    QCOMPARE(m_harness->build(appName, source), QString());
    QVERIFY(codegen::generate(source).files.back().text.find("part_6()") != std::string::npos);
    QVERIFY(m_harness->start(appName));
    QTRY_COMPARE_WITH_TIMEOUT(m_harness->events(appName), QList<int>{1}, 20000);
    QCOMPARE(m_harness->reports(appName).join(u' '), expected + QStringLiteral("end:0 end:100"));
    QCOMPARE(m_harness->logLines(appName), QStringList{QStringLiteral("1 333 abc def 2")});
}

PE_TEST("codegen_run_test", CodegenRunTest)
#include "codegen_run_test.moc"
