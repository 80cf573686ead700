#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

#include <functional>

namespace facade = sdk_ui_interface::processedit;

namespace {

const QString textsApp = QStringLiteral("texts_app");

using Make = std::function<std::shared_ptr<IProcessBlock>()>;

template <class Block> Make make(std::function<void(Block&)> change = {})
{
    return [change] {
        auto block = std::make_shared<Block>();
        if (change)
            change(*block);
        return block;
    };
}

} // namespace

Q_DECLARE_METATYPE(Make)

/// The two texts by which a row is understood without opening it.
class ModelTextsTest : public QObject
{
    Q_OBJECT

    static void row(const char* name, const Make& block, const char* expected)
    {
        QTest::newRow(name) << block << text(expected);
    }

    static void conditionRows()
    {
        const auto set = [](const char* left, const char* op, const char* right, bool isArray) {
            return [=](ConditionProcessBlock& b) {
                b.setFun1(left);
                b.setOperator(op, isArray, 8);
                b.setFun2(right);
            };
        };
        row("if", make<IfProcessBlock>(set("retry", "<", "3", false)), "如果 retry < 3");
        row("if, nothing set", make<IfProcessBlock>(), "如果 0 == 0");
        row("percent signs", make<IfProcessBlock>(set("a %1", "==", "b %2", false)),
            "如果 a %1 == b %2");
        row("arrays", make<ElseIfProcessBlock>(set("a %2", "!=", "b", true)),
            "否则如果 a %2 != b（数组，前 8 个元素）");
        row("while", make<WhileProcessBlock>(set("x", ">=", "1", false)), "当 x >= 1 时循环");
        row("do while", make<DoWhileProcessBlock>(set("x", "==", "", false)),
            "循环，直到 x == 0 不成立");
    }

    static void loopRows()
    {
        const auto range = [](int begin, int end, int step) {
            return make<ForProcessBlock>(
                [=](ForProcessBlock& b) { b.setRangeValue(begin, end, step); });
        };
        row("for", range(0, 10, 1), "循环 i = 0 … 9，步长 1");
        row("for by three", range(0, 10, 3), "循环 i = 0 … 9，步长 3");
        row("for by four", range(0, 10, 4), "循环 i = 0 … 8，步长 4");
        row("for the whole range", range(-2147483647 - 1, 2147483647, 1),
            "循环 i = -2147483648 … 2147483646，步长 1");
        row("for nothing", range(5, 5, 1), "循环 0 次（i = 5，不小于 5）");
        row("for ever", range(0, 5, 0), "循环 i = 0，到不了 5，步长 0");
        row("custom for", make<ForProcessBlock>([](ForProcessBlock& b) {
                b.setCustom(true);
                b.setFun1("int i = 0");
                b.setFun2("i < n");
                b.setFun3("i += 2");
            }),
            "循环 int i = 0; i < n; i += 2");
    }

    static void messageRows()
    {
        row("CAN", make<SendMessageProcessBlock>([](SendMessageProcessBlock& b) {
                b.frameId = 0x7E0;
                b.data = "02 10 03 00 00 00 00 00";
            }),
            "发送 CAN 标准帧 0x7E0，通道 1，8 字节：02 10 03 00 00 00 00 00");
        row("CAN FD", make<SendMessageProcessBlock>([](SendMessageProcessBlock& b) {
                b.frameFormat = SendMessageProcessBlock::CanFdBrs;
                b.idType = SendMessageProcessBlock::ExtendedId;
                b.frameId = 0x18DA00F1;
                b.dataSize = 12;
                b.channel = 3;
                b.data = "01 02 03 04 05 06 07 08 09 0A 0B 0C";
            }),
            "发送 CAN FD BRS 扩展帧 0x18DA00F1，通道 3，12 字节：01 02 03 04 05 06 07 08 …");
        row("remote frame", make<SendMessageProcessBlock>([](SendMessageProcessBlock& b) {
                b.frameType = SendMessageProcessBlock::RemoteFrame;
                b.data = "01";
            }),
            "发送 CAN 标准远程帧 0x0，通道 1，8 字节");
        row("message variable", make<SendMessageProcessBlock>([](SendMessageProcessBlock& b) {
                b.messageVariable = "frame";
            }),
            "发送报文变量 frame");
        row("receive", make<RecvMessageProcessBlock>(), "接收 CAN，最多等待 1000 毫秒");
        row("receive and store", make<RecvMessageProcessBlock>([](RecvMessageProcessBlock& b) {
                b.id.variable = "id";
                b.data.variable = "buf";
                b.waitTime = 0;
            }),
            "接收 CAN，最多等待 0 毫秒：ID → id，数据 → buf");
    }

    static void actionRows()
    {
        row("statement", make<StatementProcessBlock>([](StatementProcessBlock& b) {
                b.setCustomCode("a = 1;\nb = 2;");
            }),
            "a = 1;\nb = 2;");
        row("no statement", make<StatementProcessBlock>(), "空语句");
        row("expression", make<ExpressionProcessBlock>([](ExpressionProcessBlock& b) {
                b.leftValue = "x";
                b.rightExpression = "a + b";
            }),
            "x = a + b");
        row("no expression", make<ExpressionProcessBlock>(), "空表达式");
        row("API", make<ApiProcessBlock>([](ApiProcessBlock& b) {
                b.callText = "write_log(string, s32)";
                b.returnVariable = "ret";
                b.setParameters({{"string", "\"hi\"", ""}, {"s32", "", ""}});
            }),
            "ret = write_log(\"hi\", s32)");
        row("no API", make<ApiProcessBlock>(), "未选择函数");
        row("delay", make<DelayProcessBlock>([](DelayProcessBlock& b) { b.delay = 500; }),
            "延时 500 毫秒");
        row("pop-up", make<PopupWindowProcessBlock>([](PopupWindowProcessBlock& b) {
                b.title = "提示";
                b.content = "请接通电源";
                b.setButtons({{"确定", ""}, {"取消", ""}});
                b.assignmentKind = 1;
                b.variableName = "answer";
            }),
            "弹窗“提示”：请接通电源 [确定] [取消]，输入 int32 → answer");
        row("buzzer", make<BuzzProcessBlock>(),
            "蜂鸣器通道 1：5000 Hz 500 毫秒，3000 Hz 500 毫秒，重复 1 次");
        row("no sequence", make<SequenceProcessBlock>(), "未选择序列");
        row("template", make<SequenceProcessBlock>([](SequenceProcessBlock& b) {
                b.sourceKind = SequenceProcessBlock::TemplateSequence;
                b.templateName = "刷写";
            }),
            "调用模板 刷写");
        row("no goto", make<GotoProcessBlock>(), "不跳转");
        row(
            "UDS",
            [] {
                auto block = std::make_shared<UdsProcessBlock>(1);
                block->stepText = "10 03";
                return block;
            },
            "10 03");
        for (const auto& [type, expected] : {std::pair(step_type::Else, "否则"),
                                             {step_type::EndIf, "如果结束"},
                                             {step_type::EndDoWhile, "循环结束"},
                                             {step_type::Break, "跳出循环"},
                                             {step_type::Continue, "继续下一次循环"},
                                             {4711, "未知的步骤类型 4711"}}) {
            const int kind = type;
            row(
                expected, [kind] { return std::make_shared<PlainProcessBlock>(kind); }, expected);
        }
    }

private slots:
    void cleanup() { samples::forget(textsApp); }

    void descriptions_data()
    {
        QTest::addColumn<Make>("block");
        QTest::addColumn<QString>("expected");
        conditionRows();
        loopRows();
        messageRows();
        actionRows();
    }

    void descriptions()
    {
        QFETCH(Make, block);
        QFETCH(QString, expected);
        QCOMPARE(QString::fromStdString(block()->description()), expected);
        QCOMPARE(QString::fromStdString(block()->settingText()), QString());
    }

    void settings_data()
    {
        QTest::addColumn<Make>("block");
        QTest::addColumn<QString>("expected");
        row("tag", make<DelayProcessBlock>([](DelayProcessBlock& b) {
                b.tagEnabled = true;
                b.tag = "retry";
            }),
            "标签: retry");
        row("a tag that is switched off",
            make<DelayProcessBlock>([](DelayProcessBlock& b) { b.tag = "retry"; }), "");
        row("loop", make<DelayProcessBlock>([](DelayProcessBlock& b) {
                b.loopType = 1;
                b.loopCount = 3;
                b.loopResultInReport = true;
            }),
            "循环 3 次 | 记录每次循环结果");
        row("everything", make<DelayProcessBlock>([](DelayProcessBlock& b) {
                b.tagEnabled = true;
                b.tag = "t";
                b.preCondition = "a <\n  b";
                b.loopType = 2;
                b.loopInit = "i = 0";
                b.loopCondition = "i < 2";
                b.loopStep = "i++";
                b.preStatements = "x = 1;";
                b.postStatements = "x = 2;";
                b.postConditionCode = "global_ret == 0";
                b.trueAction = 3;
                b.falseAction = 2;
                b.falseTarget = "s";
                b.remark = "第一行\n第二行";
            }),
            "标签: t | 前置条件: a < b | 循环 i = 0; i < 2; i++ | 前执行语句 | 后执行语句 | "
            "条件 global_ret == 0 成立→终止序列 | 条件 global_ret == 0 不成立→跳转到序列 | "
            "备注: 第一行 第二行");
        row("without a condition's text",
            make<DelayProcessBlock>([](DelayProcessBlock& b) { b.trueAction = 4; }),
            "条件成立→终止流程");
    }

    void settings()
    {
        QFETCH(Make, block);
        QFETCH(QString, expected);
        QCOMPARE(QString::fromStdString(block()->settingText()), expected);
    }

    void targetsAreNamedAsTheyStand()
    {
        const QString sequence = facade::createSeuqence(textsApp, QStringLiteral("read_dtc"));
        const auto create = [&](int type) {
            return facade::getProcess(textsApp,
                                      facade::createProcess(textsApp, sequence, QStringLiteral("1"),
                                                            BasicStep, type, -1));
        };
        const auto target = create(step_type::Delay);
        target->name = "读取VIN";
        const auto jump = std::dynamic_pointer_cast<GotoProcessBlock>(create(step_type::Goto));
        jump->targetTag = "retry";
        jump->targetUuid = target->uuid;
        jump->trueAction = 1;
        jump->trueTarget = target->uuid;
        jump->falseAction = 2;
        jump->falseTarget = sequence.toStdString();
        QCOMPARE(QString::fromStdString(jump->description()), text("跳转到 retry(读取VIN)"));
        QCOMPARE(QString::fromStdString(jump->settingText()),
                 text("条件成立→跳转到步骤 读取VIN | 条件不成立→跳转到序列 read_dtc"));
        QCOMPARE(QString::fromStdString(jump->clone()->description()), text("跳转到 retry"));
        facade::removeProcess(textsApp, sequence, QString::fromStdString(target->uuid));
        QCOMPARE(QString::fromStdString(jump->description()), text("跳转到 retry（步骤不存在）"));
        QVERIFY(jump->settingText().find("跳转到步骤（不存在）") != std::string::npos);
    }

    void popupButtonsKeepToTheirList()
    {
        PopupWindowProcessBlock block;
        block.createBtn();
        block.createBtn();
        block.renameBtn(0, "按钮3");
        block.createBtn();
        block.updateBtnCode(2, "x = 1;");
        for (const int outside : {-1, 3}) {
            block.renameBtn(outside, "no");
            block.updateBtnCode(outside, "no");
            block.removeBtn(outside);
        }
        block.removeBtn(1);
        QCOMPARE(block.buttons().size(), std::size_t(2));
        QCOMPARE(block.buttons()[0].name, std::string("按钮3"));
        QCOMPARE(block.buttons()[1].name, std::string("按钮4"));
        QCOMPARE(block.buttons()[1].code, std::string("x = 1;"));
    }
};

PE_TEST("model_texts_test", ModelTextsTest)
#include "model_texts_test.moc"
