// Programs whose results are known from elsewhere, composed of steps in the model service as a user
// composes them, one sequence each, then generated, compiled and run.

#include "tests/standalone/runtime_harness.h"
#include "tests/support/test_program.h"

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QSemaphore>
#include <QtTest>

namespace service = sdk_ui_interface::processedit;

namespace {

const QString app = QStringLiteral("programs");

/// The place where steps are added: a flow or a step that holds others.
class Steps
{
public:
    Steps(const QString& sequence, const QString& parent) : m_sequence(sequence), m_parent(parent)
    {
    }

    /// Appends a step; returns the place within it.
    template <class Block> Steps add(int type, const std::function<void(Block&)>& change) const
    {
        const QString uuid = service::createProcess(app, m_sequence, m_parent, BasicStep, type, -1);
        const auto block = std::dynamic_pointer_cast<Block>(service::getProcess(app, uuid));
        if (!block)
            qFatal("no block of type %d", type);
        change(*block);
        service::updateProcess(app, m_sequence, block);
        return Steps(m_sequence, uuid);
    }

    const Steps& set(const char* left, const char* right,
                     const std::function<void(IProcessBlock&)>& change = {}) const
    {
        add<ExpressionProcessBlock>(step_type::Expression, [&](auto& block) {
            block.leftValue = left;
            block.rightExpression = right;
            if (change)
                change(block);
        });
        return *this;
    }
    const Steps& code(const char* text) const
    {
        add<StatementProcessBlock>(step_type::Statement,
                                   [&](auto& block) { block.setCustomCode(text); });
        return *this;
    }
    const Steps& call(const QString& sequence) const
    {
        add<SequenceProcessBlock>(step_type::Sequence, [&](auto& block) {
            block.sourceKind = SequenceProcessBlock::AppletSequence;
            block.sequenceId = sequence.toStdString();
        });
        return *this;
    }
    const Steps& plain(int type) const
    {
        add<PlainProcessBlock>(type, [](auto&) {});
        return *this;
    }
    Steps otherwise() const
    {
        return add<PlainProcessBlock>(step_type::Else, [](auto&) {});
    }
    template <class Block>
    Steps when(int type, const char* left, const char* comparison, const char* right) const
    {
        return add<Block>(type, [&](auto& block) {
            block.setFun1(left);
            block.setOperator(comparison, false, 1);
            block.setFun2(right);
        });
    }
    Steps ifs(const char* left, const char* comparison, const char* right) const
    {
        return when<IfProcessBlock>(step_type::If, left, comparison, right);
    }
    Steps whiles(const char* left, const char* comparison, const char* right) const
    {
        return when<WhileProcessBlock>(step_type::While, left, comparison, right);
    }
    Steps count(const char* variable, int begin, int end) const
    {
        return add<ForProcessBlock>(step_type::For, [&](auto& block) {
            block.setVariableName(variable, true);
            block.setRangeValue(begin, end, 1);
        });
    }
    Steps loop(const char* init, const char* test, const char* next) const
    {
        return add<ForProcessBlock>(step_type::For, [&](auto& block) {
            block.setCustom(true);
            block.setFun1(init);
            block.setFun2(test);
            block.setFun3(next);
        });
    }
    const Steps& jump(const char* tag) const
    {
        add<GotoProcessBlock>(step_type::Goto, [&](auto& block) { block.targetTag = tag; });
        return *this;
    }
    QString uuid() const { return m_parent; }

private:
    QString m_sequence;
    QString m_parent;
};

void define(processVariableType scope, const QString& owner, const char* name, const char* type,
            const char* value = "0")
{
    const std::string applet = app.toStdString();
    processVariable variable =
        process_edit::getVariable(process_edit::addVariable(applet, scope, owner.toStdString()));
    variable.name = name;
    variable.type = type;
    variable.value = value;
    process_edit::updateVariable(applet, variable, 0);
}

struct Program
{
    explicit Program(const char* name)
        : id(service::createSeuqence(app, QString::fromLatin1(name))),
          steps(id, QStringLiteral("1"))
    {
    }
    Program& has(const char* variable, const char* type, const char* value = "0")
    {
        define(SequenceVariable, id, variable, type, value);
        return *this;
    }
    const QString id;
    const Steps steps; ///< the main flow
};

} // namespace

class KnownProgramsTest : public QObject
{
    Q_OBJECT
private slots:
    void results();
    void cleanupTestCase() { service::removeApp(app); }

private:
    static void composeArithmetic(const Steps& main);
    static void composeTexts(const Steps& main);
    static void composeChecksums(const Steps& main);
    static void composeJumps(const Steps& main);
};

void KnownProgramsTest::composeArithmetic(const Steps& main)
{
    Program primes("primes");
    primes.has("composite", "u8*", "").has("list", "string", "");
    const Steps number = primes.steps.count("i", 2, 60);
    const Steps prime = number.ifs("composite[i]", "==", "0");
    prime.code("list += to_string(i) + \" \";");
    prime.loop("int j = i * i", "j < 60", "j += i").set("composite[j]", "1");
    primes.steps.code("log_info(\"primes %s\", list);");
    main.call(primes.id);

    Program gcd("gcd");
    gcd.has("a", "u32", "1071").has("b", "u32", "462").has("rest", "u32");
    gcd.steps.whiles("b", "!=", "").set("rest", "a % b").set("a", "b").set("b", "rest");
    gcd.steps.code("log_info(\"gcd %u\", a);");
    main.call(gcd.id);

    // Of the step's own loop: F(0) to F(90).
    Program fibonacci("fibonacci");
    fibonacci.has("current", "s64", "0").has("next", "s64", "1");
    fibonacci.steps.set("sum", "current + next", [](IProcessBlock& block) {
        block.preStatements = "s64 sum = 0;";
        block.loopType = 2;
        block.loopInit = "int turn = 0";
        block.loopCondition = "turn < 90";
        block.loopStep = "++turn, current = next, next = sum";
    });
    fibonacci.steps.code("log_info(\"fibonacci %lld\", (long long)current);");
    main.call(fibonacci.id);

    // A sequence that calls itself, on variables of the applet and of all applets.
    define(ProcessVariable, app, "factor", "s32", "10");
    define(GlobalVariable, QString(), "factorial", "s64", "1");
    Program factorial("factorial");
    const Steps more = factorial.steps.ifs("factor", ">", "1");
    more.set("factorial", "factorial * factor").set("factor", "factor - 1");
    more.call(factorial.id);
    main.call(factorial.id).code("log_info(\"factorial %d\", (int)factorial);");

    Program power("power");
    power.has("root", "double", "0");
    power.steps.add<ApiProcessBlock>(step_type::Api, [](auto& block) {
        block.callText = "pow(double,double)";
        block.returnType = "double";
        block.returnVariable = "root";
        block.setParameters({{"double", "2", ""}, {"double", "0.5 * 20", ""}});
    });
    power.steps.code("log_info(\"power %g\", root);");
    main.call(power.id);
}

void KnownProgramsTest::composeTexts(const Steps& main)
{
    Program sort("sort");
    sort.has("values", "s32*", "170,45,-75,90,802,24,2,66")
        .has("swapped", "s32")
        .has("kept", "s32");
    const Steps round = sort.steps.count("round", 0, 8);
    round.set("swapped", "0");
    const Steps pair = round.count("k", 0, 7).ifs("values[k]", ">", "values[k + 1]");
    pair.set("kept", "values[k]").set("values[k]", "values[k + 1]").set("values[k + 1]", "kept");
    pair.set("swapped", "1");
    round.ifs("swapped", "==", "0").plain(step_type::Break);
    sort.steps.code("string text;\nfor (int i = 0; i < 8; ++i)\n"
                    "    text += to_string(values[i]) + \" \";\nlog_info(\"sort %s\", text);");
    main.call(sort.id);

    Program binary("binary");
    binary.has("n", "u16", "2021").has("digits", "string", "").has("buffer", "char*", "");
    const Steps digit = binary.steps.when<DoWhileProcessBlock>(step_type::DoWhile, "n", ">", "0");
    const Steps odd = digit.ifs("n % 2", "==", "1");
    odd.set("digits", "\"1\" + digits");
    digit.otherwise().set("digits", "\"0\" + digits");
    digit.set("n", "n / 2");
    binary.steps.set("buffer", "digits");
    binary.steps.code("log_info(\"binary %s %d\", buffer, (int)digits.size());");
    main.call(binary.id);
}

void KnownProgramsTest::composeChecksums(const Steps& main)
{
    // Over the nine digits, as the catalogues of these checksums do.
    Program crc("crc");
    crc.has("text", "char*", "123456789").has("ccitt", "u16", "0xFFFF").has("arc", "u16");
    crc.has("crc32", "u32", "0xFFFFFFFF");
    const Steps byte = crc.steps.count("at", 0, 9);
    byte.set("ccitt", "ccitt ^ (text[at] << 8)").set("arc", "arc ^ text[at]");
    byte.set("crc32", "crc32 ^ (u8)text[at]");
    const Steps bit = byte.count("bit", 0, 8);
    bit.set("ccitt", "ccitt & 0x8000 ? (ccitt << 1) ^ 0x1021 : ccitt << 1");
    bit.ifs("arc & 1", "!=", "").set("arc", "(arc >> 1) ^ 0xA001");
    bit.otherwise().set("arc", "arc >> 1");
    bit.set("crc32", "crc32 & 1 ? (crc32 >> 1) ^ 0xEDB88320 : crc32 >> 1");
    crc.steps.set("crc32", "~crc32");
    crc.steps.code("log_info(\"crc %04X %04X %08X\", ccitt, arc, crc32);");
    main.call(crc.id);
}

void KnownProgramsTest::composeJumps(const Steps& main)
{
    Program perfect("perfect");
    perfect.has("sum", "s32").has("list", "string", "");
    const Steps candidate = perfect.steps.count("n", 2, 500);
    candidate.set("sum", "0");
    const Steps divisor = candidate.count("d", 1, 250);
    divisor.ifs("d", ">=", "n").plain(step_type::Break);
    divisor.ifs("n % d", "!=", "0").plain(step_type::Continue);
    divisor.set("sum", "sum + d");
    candidate.ifs("sum", "==", "n").code("list += to_string(n) + \" \";");
    perfect.steps.code("log_info(\"perfect %s\", list);");
    main.call(perfect.id);

    Program collatz("collatz");
    collatz.has("n", "u32", "27").has("turns", "s32").has("peak", "u32");
    collatz.steps.set("turns", "turns + 1", [](IProcessBlock& block) {
        block.tagEnabled = true;
        block.tag = "again";
        block.preCondition = "n != 1";
    });
    const Steps odd = collatz.steps.ifs("n & 1", "==", "1");
    odd.set("n", "3 * n + 1");
    const Steps higher = odd.ifs("n", ">", "peak");
    higher.set("peak", "n");
    collatz.steps.otherwise().set("n", "n / 2");
    collatz.steps.ifs("n", ">", "1").jump("again");
    collatz.steps.code("log_info(\"collatz %d %u\", turns, peak);");
    main.call(collatz.id);

    // The step leads back to itself as long as its post-condition holds.
    Program digits("digits");
    digits.has("n", "u32", "32768").has("sum", "u32");
    const Steps step =
        digits.steps.add<ExpressionProcessBlock>(step_type::Expression, [](auto& block) {
            block.leftValue = "sum";
            block.rightExpression = "sum + n % 10";
            block.postStatements = "n /= 10;";
            block.postConditionCode = "n > 0";
            block.trueAction = 1;
        });
    const auto block = service::getProcess(app, step.uuid());
    block->trueTarget = block->uuid;
    service::updateProcess(app, digits.id, block);
    digits.steps.code("log_info(\"digits %u\", sum);");
    main.call(digits.id);
}

void KnownProgramsTest::results()
{
    RuntimeHarness harness;
    const QString mainId = service::createSeuqence(app, QStringLiteral("main"));
    const Steps main(mainId, QStringLiteral("1"));
    composeArithmetic(main);
    composeTexts(main);
    composeChecksums(main);
    composeJumps(main);

    QSemaphore finished;
    QString failure;
    bool skipped = false;
    QVERIFY(service::compileCApplet(
        app, mainId, false, false,
        [&](compileResult result, quint64, const char*, const char* message) {
            if (result != CompileSucceeded)
                failure = QString::fromUtf8(message);
            finished.release();
        },
        skipped));
    finished.acquire();
    QCOMPARE(failure, QString());
    QVERIFY(harness.start(app, mainId));
    QTRY_COMPARE_WITH_TIMEOUT(harness.events(app), QList<int>{1}, 20000);

    const QStringList expected = {
        QStringLiteral("1 primes 2 3 5 7 11 13 17 19 23 29 31 37 41 43 47 53 59 "),
        QStringLiteral("1 gcd 21"),
        QStringLiteral("1 fibonacci 2880067194370816120"),
        QStringLiteral("1 factorial 3628800"),
        QStringLiteral("1 power 1024"),
        QStringLiteral("1 sort -75 2 24 45 66 90 170 802 "),
        QStringLiteral("1 binary 11111100101 11"),
        QStringLiteral("1 crc 29B1 BB3D CBF43926"),
        QStringLiteral("1 perfect 6 28 496 "),
        QStringLiteral("1 collatz 111 9232"),
        QStringLiteral("1 digits 26"),
    };
    QCOMPARE(harness.logLines(app), expected);
    QVERIFY(
        harness.reports(app).filter(QStringLiteral("!")).isEmpty()); // no step failed on the way
}

PE_TEST("known_programs", KnownProgramsTest)
#include "known_programs_test.moc"
