// Programs whose results are known from elsewhere, a sequence each, that stand in the model as a
// user composes them and are generated, compiled and run from there.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

using namespace builders;

namespace {

std::string nextName()
{
    static int steps = 0;
    return "step" + std::to_string(++steps);
}

BlockPtr set(const char* left, const char* right)
{
    return expression(nextName(), left, right);
}

BlockPtr code(const char* text)
{
    return statement(nextName(), text);
}

template <class Block>
BlockPtr when(const char* left, const char* comparison, const char* right, const Blocks& steps)
{
    return condition<Block>(nextName(), left, comparison, right, steps);
}

const auto ifs = when<IfProcessBlock>;

BlockPtr otherwise(const Blocks& steps)
{
    return plain(step_type::Else, nextName(), steps);
}

BlockPtr count(const char* variable, int begin, int end, const Blocks& steps)
{
    return fixedFor(nextName(), variable, begin, end, 1, steps);
}

BlockPtr leave(int stepType)
{
    return plain(stepType, nextName());
}

codegen::SequenceSource primes()
{
    const BlockPtr prime = ifs(
        "composite[i]", "==", "0",
        {code("list += to_string(i) + \" \";"),
         customFor(nextName(), "int j = i * i", "j < 60", "j += i", {set("composite[j]", "1")})});
    return sequence("primes", {count("i", 2, 60, {prime}), code("log_info(\"primes %s\", list);")},
                    {variable("composite", "u8*", ""), variable("list", "string", "")});
}

codegen::SequenceSource gcd()
{
    return sequence(
        "gcd",
        {when<WhileProcessBlock>("b", "!=", "",
                                 {set("rest", "a % b"), set("a", "b"), set("b", "rest")}),
         code("log_info(\"gcd %u\", a);")},
        {variable("a", "u32", "1071"), variable("b", "u32", "462"), variable("rest", "u32", "0")});
}

/// Of the step's own loop: F(0) to F(90).
codegen::SequenceSource fibonacci()
{
    const BlockPtr sum = with(set("sum", "current + next"), [](IProcessBlock& block) {
        block.preStatements = "s64 sum = 0;";
        block.loopType = 2;
        block.loopInit = "int turn = 0";
        block.loopCondition = "turn < 90";
        block.loopStep = "++turn, current = next, next = sum";
    });
    return sequence("fibonacci", {sum, code("log_info(\"fibonacci %lld\", (long long)current);")},
                    {variable("current", "s64", "0"), variable("next", "s64", "1")});
}

/// Calls itself, on variables of the applet and of all applets.
codegen::SequenceSource factorial()
{
    return sequence("factorial", {ifs("factor", ">", "1",
                                      {set("factorial", "factorial * factor"),
                                       set("factor", "factor - 1"), call("again", "factorial")}),
                                  ifs("factor", "==", "1",
                                      {code("log_info(\"factorial %d\", (int)factorial);"),
                                       set("factor", "0")})});
}

codegen::SequenceSource power()
{
    const auto api = named(std::make_shared<ApiProcessBlock>(), nextName());
    api->callText = "pow(double,double)";
    api->returnType = "double";
    api->returnVariable = "root";
    api->setParameters({{"double", "2", ""}, {"double", "0.5 * 20", ""}});
    return sequence("power", {api, code("log_info(\"power %g\", root);")},
                    {variable("root", "double", "0")});
}

codegen::SequenceSource sort()
{
    const BlockPtr pair = ifs("values[k]", ">", "values[k + 1]",
                              {set("kept", "values[k]"), set("values[k]", "values[k + 1]"),
                               set("values[k + 1]", "kept"), set("swapped", "1")});
    const BlockPtr round = count("round", 0, 8,
                                 {set("swapped", "0"), count("k", 0, 7, {pair}),
                                  ifs("swapped", "==", "0", {leave(step_type::Break)})});
    return sequence(
        "sort",
        {round, code("string text;\nfor (int i = 0; i < 8; ++i)\n"
                     "    text += to_string(values[i]) + \" \";\nlog_info(\"sort %s\", text);")},
        {variable("values", "s32*", "170,45,-75,90,802,24,2,66"), variable("swapped", "s32", "0"),
         variable("kept", "s32", "0")});
}

codegen::SequenceSource binary()
{
    const BlockPtr digit = when<DoWhileProcessBlock>(
        "n", ">", "0",
        {ifs("n % 2", "==", "1", {set("digits", "\"1\" + digits")}),
         otherwise({set("digits", "\"0\" + digits")}), set("n", "n / 2")});
    return sequence("binary",
                    {digit, set("buffer", "digits"),
                     code("log_info(\"binary %s %d\", buffer, (int)digits.size());")},
                    {variable("n", "u16", "2021"), variable("digits", "string", ""),
                     variable("buffer", "char*", "")});
}

/// Over the nine digits, as the catalogues of these checksums do.
codegen::SequenceSource crc()
{
    const BlockPtr bit =
        count("bit", 0, 8,
              {set("ccitt", "ccitt & 0x8000 ? (ccitt << 1) ^ 0x1021 : ccitt << 1"),
               ifs("arc & 1", "!=", "", {set("arc", "(arc >> 1) ^ 0xA001")}),
               otherwise({set("arc", "arc >> 1")}),
               set("crc32", "crc32 & 1 ? (crc32 >> 1) ^ 0xEDB88320 : crc32 >> 1")});
    const BlockPtr byte =
        count("at", 0, 9,
              {set("ccitt", "ccitt ^ (text[at] << 8)"), set("arc", "arc ^ text[at]"),
               set("crc32", "crc32 ^ (u8)text[at]"), bit});
    return sequence("crc",
                    {byte, set("crc32", "~crc32"),
                     code("log_info(\"crc %04X %04X %08X\", ccitt, arc, crc32);")},
                    {variable("text", "char*", "123456789"), variable("ccitt", "u16", "0xFFFF"),
                     variable("arc", "u16", "0"), variable("crc32", "u32", "0xFFFFFFFF")});
}

codegen::SequenceSource perfect()
{
    const BlockPtr divisor =
        count("d", 1, 250,
              {ifs("d", ">=", "n", {leave(step_type::Break)}),
               ifs("n % d", "!=", "0", {leave(step_type::Continue)}), set("sum", "sum + d")});
    return sequence("perfect",
                    {count("n", 2, 500,
                           {set("sum", "0"), divisor,
                            ifs("sum", "==", "n", {code("list += to_string(n) + \" \";")})}),
                     code("log_info(\"perfect %s\", list);")},
                    {variable("sum", "s32", "0"), variable("list", "string", "")});
}

codegen::SequenceSource collatz()
{
    const BlockPtr turn = with(set("turns", "turns + 1"), [](IProcessBlock& block) {
        block.tagEnabled = true;
        block.tag = "again";
        block.preCondition = "n != 1";
    });
    return sequence(
        "collatz",
        {turn,
         ifs("n & 1", "==", "1",
             {set("n", "3 * n + 1"), ifs("n", ">", "peak", {set("peak", "n")})}),
         otherwise({set("n", "n / 2")}), ifs("n", ">", "1", {jump(nextName(), "", "again")}),
         code("log_info(\"collatz %d %u\", turns, peak);")},
        {variable("n", "u32", "27"), variable("turns", "s32", "0"), variable("peak", "u32", "0")});
}

/// The step leads back to itself as long as its post-condition holds.
codegen::SequenceSource digits()
{
    const BlockPtr digit = with(set("sum", "sum + n % 10"), [](IProcessBlock& block) {
        block.postStatements = "n /= 10;";
        block.postConditionCode = "n > 0";
        block.trueAction = 1;
        block.trueTarget = block.uuid;
    });
    return sequence("digits", {digit, code("log_info(\"digits %u\", sum);")},
                    {variable("n", "u32", "32768"), variable("sum", "u32", "0")});
}

} // namespace

class KnownProgramsTest : public QObject
{
    Q_OBJECT

private slots:
    void results();
};

void KnownProgramsTest::results()
{
    const QString app = text("programs");
    const applet_fixture::ScopedApplet scoped(app);
    const std::vector<std::pair<codegen::SequenceSource, const char*>> programs = {
        {primes(), "primes 2 3 5 7 11 13 17 19 23 29 31 37 41 43 47 53 59 "},
        {gcd(), "gcd 21"},
        {fibonacci(), "fibonacci 2880067194370816120"},
        {factorial(), "factorial 3628800"},
        {power(), "power 1024"},
        {sort(), "sort -75 2 24 45 66 90 170 802 "},
        {binary(), "binary 11111100101 11"},
        {crc(), "crc 29B1 BB3D CBF43926"},
        {perfect(), "perfect 6 28 496 "},
        {collatz(), "collatz 111 9232"},
        {digits(), "digits 26"},
    };
    std::vector<codegen::SequenceSource> sequences{sequence("main", {})};
    QStringList expected;
    for (const auto& [program, said] : programs) {
        sequences[0].flows[1].push_back(call(nextName(), program.info.id));
        sequences.push_back(program);
        expected << text("1 ") + text(said);
    }
    auto source = applet(sequences, {variable("factor", "s32", "10")});
    source.globalVariables = {variable("factorial", "s64", "1")};

    RuntimeHarness harness;
    RuntimeHarness::putIntoModel(app, source);
    QCOMPARE(RuntimeHarness::buildFromModel(app, text("main")), QString());
    QVERIFY(harness.start(app));
    QCOMPARE(RuntimeHarness::end(app), run_events::Finished);
    QCOMPARE(harness.logLines(app), expected);
    QVERIFY(harness.reports(app).filter(text("!")).isEmpty()); // no step failed on the way
}

PE_TEST("known_programs", KnownProgramsTest)
#include "known_programs_test.moc"
