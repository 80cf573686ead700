// The functions that the runtime offers to an applet's code: what they return, and what they ask
// the editor for.

#include "tests/standalone/codegen_builders.h"
#include "tests/standalone/runtime_harness.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include "model/dialogs/user_dialogs.h"
#include "model/services/capplet.h"
#include "model/services/processedit.h"
#include "standalone/variables/SystemVariables.h"

#include <QtTest>

#include <algorithm>

using namespace builders;
using namespace run_events;
using standalone::SystemVariables;

namespace {

using user_dialogs::Button;
using user_dialogs::Message;

/// Answers what is asked as long as it lives.
class Answering
{
public:
    explicit Answering(user_dialogs::Handler handler)
        : m_before(user_dialogs::setHandler(std::move(handler)))
    {
    }
    ~Answering() { user_dialogs::setHandler(m_before); }
    Q_DISABLE_COPY_MOVE(Answering)

private:
    const user_dialogs::Handler m_before;
};

} // namespace

class RuntimeFunctionsTest : public QObject
{
    Q_OBJECT

private slots:

    void areDocumented();
    void values();
    void calledByApiSteps();
    void systemVariables();
    void questions();
    void longAnswerIsRefused();
    void questionsWithoutEndAreStopped();
    void questionGoesWithTheRun();

    void nobodyIsAtTheScreen();

private:
    RuntimeHarness m_harness;
};

void RuntimeFunctionsTest::areDocumented()
{
    QList<_DrelFunction> functions;
    QCOMPARE(sdk_ui_interface::capplet::getCAppletInnerFuncs(QString(), functions), 0);
    QVERIFY(functions.size() >= 30);
    QStringList names;
    for (const _DrelFunction& function : qAsConst(functions)) {
        names << QString::fromUtf8(function.name);
        QVERIFY2(function.description[0], function.name);
        // Cut nowhere, for it would be in the middle of a character.
        QVERIFY2(!QString::fromUtf8(function.description).contains(QChar::ReplacementCharacter),
                 function.name);
        for (const auto& parameter : function.params)
            QVERIFY2(!parameter.name[0] || parameter.description[0], function.name);
    }
    QCOMPARE(names.removeDuplicates(), 0);
    QVERIFY(names.contains(text("show_procedure_box")));
    QVERIFY(names.contains(text("show_capplet_box")));
}

/// Each line is a check of its own; one that doesn't hold is logged.
void RuntimeFunctionsTest::values()
{
    const char* const texts[] = {
        "text_length(\"电压\") == 6",
        "text_part(\"voltage\", 3, 2) == \"ta\"",
        "text_part(\"voltage\", 3, -1) == \"tage\"",
        "text_part(\"voltage\", 30, 4) == \"\" && text_part(\"abc\", -5, 99) == \"abc\"",
        "text_find(\"banana\", \"an\", 0) == 1 && text_find(\"banana\", \"an\", 2) == 3",
        "text_find(\"banana\", \"x\", 0) == -1 && text_find(\"ab\", \"abc\", 0) == -1",
        "text_replace(\"a-b-c\", \"-\", \"--\") == \"a--b--c\" && text_replace(\"ab\", \"\", "
        "\"x\") == \"ab\"",
        "text_upper(\"aZ9电\") == \"AZ9电\" && text_lower(\"aZ9\") == \"az9\"",
        "text_trim(\" \\t a b\\r\\n\") == \"a b\" && text_trim(\"  \") == \"\"",
        "text_format(\"%d/%s/%.2f\", 7, \"x\", 1.5) == \"7/x/1.50\"",
        "text_to_integer(\"-42\", 10) == -42 && text_to_integer(\"0xFF\", 16) == 255",
        "text_to_integer(\"101\", 2) == 5 && text_to_integer(\"x\", 10) == 0",
        "text_to_number(\"13.8\") == 13.8 && text_to_number(\"-1e3\") == -1000",
        "integer_to_text(-255, 16) == \"-FF\" && integer_to_text(0, 2) == \"0\"",
        "integer_to_text(-9223372036854775807 - 1, 10) == \"-9223372036854775808\"",
        "number_to_text(2.0 / 3, 3) == \"0.667\"",
        "hex_to_bytes(\"01 ab,FF\", b, 4) == 3 && b[0] == 1 && b[1] == 0xab && b[2] == 0xff",
        "hex_to_bytes(\"0102030405\", b, 4) == -1 && hex_to_bytes(\"0\", b, 4) == -1",
        "hex_to_bytes(\"zz\", b, 4) == -1 && hex_to_bytes(\"\", b, 4) == 0",
        "bytes_to_hex(d, 3) == \"31 32 33\" && bytes_to_hex(d, 0) == \"\"",
        // The catalogue's check values.
        "crc8(\"CRC-8/SMBUS\", d, 9) == 0xf4 && crc8(\"CRC-8/SAE-J1850\", d, 9) == 0x4b",
        "crc8(\"CRC-8/AUTOSAR\", d, 9) == 0xdf && crc8(\"CRC-8/MAXIM-DOW\", d, 9) == 0xa1",
        "crc8(\"crc-8/rohc\", d, 9) == 0xd0",
        "crc16(\"CRC-16/ARC\", d, 9) == 0xbb3d && crc16(\"CRC-16/IBM-3740\", d, 9) == 0x29b1",
        "crc16(\"CRC-16/CCITT-FALSE\", d, 9) == 0x29b1 && crc16(\"CRC-16/IBM-SDLC\", d, 9) == "
        "0x906e",
        "crc16(\"CRC-16/KERMIT\", d, 9) == 0x2189 && crc16(\"CRC-16/MODBUS\", d, 9) == 0x4b37",
        "crc16(\"CRC-16/XMODEM\", d, 9) == 0x31c3 && crc16(\"CRC-16/USB\", d, 9) == 0xb4c8",
        "crc32(\"CRC-32/ISO-HDLC\", d, 9) == 0xcbf43926 && crc32(\"CRC-32\", d, 9) == 0xcbf43926",
        "crc32(\"CRC-32/AUTOSAR\", d, 9) == 0x1697d06a && crc32(\"CRC-32/BZIP2\", d, 9) == "
        "0xfc891918",
        "crc32(\"CRC-32/ISCSI\", d, 9) == 0xe3069283 && crc32(\"CRC-32/MPEG-2\", d, 9) == "
        "0x0376e6e7",
        "get_u16_be(d, 0) == 0x3132 && get_u16_le(d, 0) == 0x3231",
        "get_u32_be(d, 1) == 0x32333435 && get_u32_le(d, 1) == 0x35343332 && get_byte(d, 8) == "
        "0x39",
        "(set_u16_be(b, 0, 0x1234), set_u16_le(b, 2, 0x1234), b[0] == 0x12 && b[3] == 0x12)",
        "(set_u32_le(b, 0, 0xfedcba98), get_u32_be(b, 0) == 0x98badcfe)",
        "(text_copy(t, \"voltage\", 4), string(t) == \"vol\")",
        "text_length(time_text(\"%Y-%m-%d\")) == 10 && unix_time() > 1700000000",
        "(wait_until(now_ms() + 20), wait_until(0), true)",
    };
    Blocks steps;
    const std::string variables = "u8 d[] = {49, 50, 51, 52, 53, 54, 55, 56, 57}; u8 b[4] = {0}; "
                                  "char t[8] = {0}; (void)d; (void)b; (void)t; ";
    for (const char* text : texts)
        steps.push_back(
            statement("s" + std::to_string(steps.size()),
                      variables + "if (!(" + text + ")) log_error(\"%s\", R\"(" + text + ")\");"));
    steps.push_back(statement("last", variables + "log_info(\"%d\", crc8(\"CRC-16/ARC\", d, 9));"));
    QCOMPARE(m_harness.run(app, applet({sequence("main", steps)})), Finished);
    QCOMPARE(m_harness.log(app), text("3 未知的校验算法: CRC-16/ARC|1 0"));
}

void RuntimeFunctionsTest::calledByApiSteps()
{
    const auto api = [](const char* name, const char* call, const char* result,
                        const std::vector<std::string>& values) {
        auto block = named(std::make_shared<ApiProcessBlock>(), name);
        std::vector<ApiProcessBlock::Parameter> parameters;
        for (const std::string& value : values)
            parameters.push_back({"", value, ""});
        block->setParameters(parameters);
        block->callText = call;
        block->returnVariable = result;
        return block;
    };
    auto source = applet(
        {sequence("main",
                  {api("part", "text_part(string,s32,s32)", "part", {"whole", "1", "2"}),
                   api("crc", "crc16(string,u8*,s32)", "sum", {"\"CRC-16/ARC\"", "data", "2"}),
                   statement("log", "log_info(\"%s %04x\", part.c_str(), sum);")})},
        {variable("part", "string", "", 16), variable("whole", "string", "abcd"),
         variable("sum", "u16", "0"), variable("data", "u8*", "[49, 50]", 2)});
    QCOMPARE(m_harness.run(app, source), Finished);
    QCOMPARE(m_harness.log(app), text("1 bc 4594"));
}

void RuntimeFunctionsTest::systemVariables()
{
    auto& variables = SystemVariables::instance();
    const QString speed = text("speed");
    const QString title = text("title");
    QCOMPARE(variables.define({speed, QString(), 1, SignedCategory, text("0x10"), 2}),
             SystemVariables::Done);
    QCOMPARE(variables.define({title, QString(), 1, TextCategory, text("标题"), 2}),
             SystemVariables::Done);
    const char* const code =
        "log_info(\"%g %s\", get_system_number(\"speed\"), get_system_text(\"title\").c_str()); "
        "int a = set_system_number(\"speed\", 42); int b = set_system_number(\"speed\", 1.5); "
        "int c = set_system_text(\"nothing\", \"x\"); log_info(\"%d %d %d\", a, b, c); "
        "set_system_text(\"title\", get_system_text(\"title\") + \" 2\"); "
        "log_info(\"[%s]\", get_system_text(\"nothing\").c_str());";
    QCOMPARE(m_harness.run(app, oneStep(code)), Finished);
    QStringList lines = m_harness.logLines(app);
    std::stable_sort(lines.begin(), lines.end(), // the two streams are not ordered between them
                     [](const QString& a, const QString& b) { return a[0] < b[0]; });
    QCOMPARE(lines.join(u'|'), text("1 16 标题|1 0 -1 -1|1 []|3 系统变量“speed”不接受值“1.5”|"
                                    "3 没有系统变量“nothing”|3 没有系统变量“nothing”"));
    system_variate::SystemVarInfo info;
    QVERIFY(variables.find(speed, info) && info.value == text("42"));
    QVERIFY(variables.find(title, info) && info.value == text("标题 2"));
}

void RuntimeFunctionsTest::questions()
{
    QStringList asked;
    const Answering answering([&](const Message& message) {
        asked << QString::number(int(message.kind)) + u' ' + message.title + u' ' + message.text +
                     u' ' + message.value;
        if (message.kind == user_dialogs::Kind::YesNo)
            return user_dialogs::Answer{asked.size() == 1 ? Button::Yes : Button::No, QString()};
        return user_dialogs::Answer{Button::Ok, message.value + text("!")};
    });
    const char* const code = "bool yes = ask_yes_no(\"继续?\"); bool no = ask_yes_no(\"again\"); "
                             "string text = ask_text(\"name\", \"值\"); "
                             "int shown = show_procedure_box(\"title\", \"text\"); "
                             "log_info(\"%d %d %s %d %d\", yes, no, text.c_str(), shown, "
                             "show_capplet_box(\"text\"));";
    QCOMPARE(m_harness.run(app, oneStep(code)), Finished);
    QCOMPARE(m_harness.log(app), text("1 1 0 值! 0 0"));
    QCOMPARE(asked.join(u'|'), text("3 小程序 继续? |3 小程序 again |5 小程序 name 值|"
                                    "0 title text |0 小程序 text "));
}

/// Not cut without a word, and neither is what the log says of it.
void RuntimeFunctionsTest::longAnswerIsRefused()
{
    const Answering answering([](const Message&) {
        return user_dialogs::Answer{Button::Ok, QString(9000, u'x')};
    });
    const char* const code = "string text = ask_text(\"name\", \"\"); "
                             "log_info(\"[%s]\", text.c_str()); char name[5000]; "
                             "memset(name, 'y', 4999); name[4999] = 0; get_system_number(name);";
    QCOMPARE(m_harness.run(app, oneStep(code)), Finished);
    QCOMPARE(
        m_harness.log(app),
        text("3 输入的文本过长, 无法传给小程序|1 []|3 没有系统变量“%1…”").arg(QString(200, u'y')));
}

void RuntimeFunctionsTest::questionsWithoutEndAreStopped()
{
    int shown = 0;
    const Answering answering([&](const Message&) {
        return user_dialogs::Answer{++shown < 20 ? Button::Ok : Button::WayOut, QString()};
    });
    QCOMPARE(m_harness.run(app, oneStep("while (true) show_capplet_box(\"x\");")), Stopped);
    QCOMPARE(shown, 20);
}

/// No widgets and no handler: questions are declined, while a notice needs nobody.
void RuntimeFunctionsTest::nobodyIsAtTheScreen()
{
    QCOMPARE(m_harness.run(app, oneStep("int shown = show_capplet_box(\"x\"); "
                                        "log_info(\"%d %d\", shown, ask_yes_no(\"?\"));")),
             Finished);
    QCOMPARE(m_harness.log(app), text("1 0 0"));
}

/// A question that nobody answers holds neither the run nor its reports.
void RuntimeFunctionsTest::questionGoesWithTheRun()
{
    const rows::Table<std::string, int> table{{"stop", "", Stopped},
                                              {"crash", "delay_ms(100); abort();", Crashed}};
    for (const auto& [row, meanwhile, event] : table) {
        const rows::Named named(row);
        QEventLoop* open = nullptr;
        int shown = 0;
        const Answering answering([&](const Message&) {
            ++shown;
            QEventLoop loop; // as a dialog that stays
            open = &loop;
            loop.exec();
            open = nullptr;
            return user_dialogs::Answer{Button::Yes, QString()};
        });
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &watch, [&, &meanwhile = meanwhile] {
            if (open && meanwhile.empty())
                sdk_ui_interface::processedit::stopCApplet(app, false);
            if (open && !m_harness.events(app).isEmpty())
                open->quit();
        });
        watch.start(10);
        QCOMPARE(m_harness.run(app, oneStep("struct T { static void* f(void*) { " + meanwhile +
                                            " return 0; } }; int start(unsigned long*, const "
                                            "void*, void* (*)(void*), void*) "
                                            "__asm__(\"pthread_create\"); unsigned long id; "
                                            "start(&id, 0, T::f, 0); ask_yes_no(\"?\"); "
                                            "log_info(\"answered\");")),
                 event);
        QTRY_VERIFY_WITH_TIMEOUT(shown == 1, Patience);
        QVERIFY(!m_harness.logLines(app).contains(text("1 answered")) || event == Stopped);
    }
}

PE_TEST("runtime_functions_test", RuntimeFunctionsTest)
#include "runtime_functions_test.moc"
