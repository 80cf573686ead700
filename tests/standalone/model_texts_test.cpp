#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QtTest>

namespace facade = sdk_ui_interface::processedit;

namespace {

const QString textsApp = QStringLiteral("texts_app");

/// A step with members as a document has them.
std::shared_ptr<IProcessBlock> step(int type, const char* members, int baseType = BasicStep)
{
    facade::loadProcessJson(textsApp, text(R"({"sequences": [{"id": "s", "name": "n", "mainFlow":
        [{"uuid": "a", "baseType": %1, "stepType": %2%3}]}]})")
                                          .arg(baseType)
                                          .arg(type)
                                          .arg(*members ? text(", ") + text(members) : QString()));
    return facade::getProcess(textsApp, text("a"));
}

} // namespace

/// The two texts by which a row is understood without opening it.
class ModelTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { samples::forget(textsApp); }
    void descriptions();
    void settings();
    void targetsAreNamedAsTheyStand();
    void popupButtonsKeepToTheirList();
};

void ModelTextsTest::descriptions()
{
    using namespace step_type;
    const rows::Table<int, const char*> table{
        {"如果 a %1 == b %2", If, R"("left": "a %1", "right": "b %2")"},
        {"如果 0 == 0", If, ""},
        {"否则如果 a %2 != b（数组，前 8 个元素）", ElseIf,
         R"("left": "a %2", "operator": "!=", "right": "b", "isArray": true, "arraySize": 8)"},
        {"否则", Else, ""},
        {"如果结束", EndIf, ""},
        {"当 x >= 1 时循环", While, R"("left": "x", "operator": ">=", "right": "1")"},
        {"循环，直到 x == 0 不成立", DoWhile, R"("left": "x")"},
        {"循环结束", EndDoWhile, ""},
        {"跳出循环", Break, ""},
        {"继续下一次循环", Continue, ""},
        {"循环 i = 0 … 9，步长 1", For, ""},
        {"循环 i = 0 … 8，步长 4", For, R"("step": 4)"},
        {"循环 i = -2147483648 … 2147483646，步长 1", For,
         R"("begin": -2147483648, "end": 2147483647)"},
        {"循环 0 次（i = 5，不小于 5）", For, R"("begin": 5, "end": 5)"},
        {"循环 i = 0，到不了 5，步长 0", For, R"("end": 5, "step": 0)"},
        {"循环 int i = 0; i < n; i += 2", For,
         R"("custom": true, "initialisation": "int i = 0", "condition": "i < n",
            "increment": "i += 2")"},
        {"发送 CAN 标准帧 0x7E0，通道 1，8 字节：02 10 03 00 00 00 00 00", SendMessage,
         R"("frameId": 2016, "data": "02 10 03 00 00 00 00 00")"},
        {"发送 CAN FD BRS 扩展帧 0x18DA00F1，通道 3，12 字节：01 02 03 04 05 06 07 08 …",
         SendMessage,
         R"("frameFormat": 2, "idType": 0, "frameId": 416940273, "dataSize": 12, "channel": 3,
            "data": "01 02 03 04 05 06 07 08 09 0A 0B 0C")"},
        {"发送 CAN 标准远程帧 0x0，通道 1，8 字节", SendMessage, R"("frameType": 1, "data": "01")"},
        {"发送报文变量 frame", SendMessage, R"("messageVariable": "frame")"},
        {"接收 CAN，最多等待 1000 毫秒", RecvMessage, ""},
        {"接收 CAN，最多等待 0 毫秒：ID → id，数据 → buf", RecvMessage,
         R"("id": {"variable": "id"}, "data": {"variable": "buf"}, "waitTime": 0)"},
        {"a = 1;\nb = 2;", Statement, R"("code": ["a = 1;", "b = 2;"])"},
        {"空语句", Statement, ""},
        {"x = a + b", Expression, R"("left": "x", "right": "a + b")"},
        {"空表达式", Expression, ""},
        {"ret = write_log(\"hi\", s32)", Api,
         R"-("call": "write_log(string, s32)", "returnVariable": "ret",
            "parameters": [{"type": "string", "value": "\"hi\""}, {"type": "s32"}])-"},
        {"未选择函数", Api, ""},
        {"延时 500 毫秒", Delay, R"("delay": 500)"},
        {"弹窗“提示”：请接通电源 [确定] [取消]，输入 int32 → answer", PopupWindow,
         R"("title": "提示", "content": "请接通电源", "assignmentKind": 1,
            "buttons": [{"name": "确定"}, {"name": "取消"}], "variableName": "answer")"},
        {"蜂鸣器通道 1：5000 Hz 500 毫秒，3000 Hz 500 毫秒，重复 1 次", Buzz, ""},
        {"未选择序列", Sequence, ""},
        {"调用模板 刷写", Sequence, R"("source": 2, "templateName": "刷写")"},
        {"不跳转", Goto, ""},
        {"未知的步骤类型 4711", 4711, ""}};
    for (const auto& [expected, type, members] : table) {
        const auto block = step(type, members);
        QCOMPARE(QString::fromStdString(block->description()), text(expected));
        QCOMPARE(QString::fromStdString(block->settingText()), QString());
    }
    QCOMPARE(step(1, R"("text": "10 03")", DiagnosticStep)->description(), std::string("10 03"));
}

void ModelTextsTest::settings()
{
    const rows::Table<const char*> table{
        {"标签: retry", R"("tagEnabled": true, "tag": "retry")"},
        {"", R"("tag": "retry")"},
        {"循环 3 次 | 记录每次循环结果",
         R"("loopType": 1, "loopCount": 3, "loopResultInReport": true)"},
        {"标签: t | 前置条件: a < b | 循环 i = 0; i < 2; i++ | 前执行语句 | 后执行语句 | "
         "条件 global_ret == 0 成立→终止序列 | 条件 global_ret == 0 不成立→跳转到序列 | "
         "备注: 第一行 第二行",
         R"("tagEnabled": true, "tag": "t", "preCondition": ["a <", "  b"], "loopType": 2,
            "loopInit": "i = 0", "loopCondition": "i < 2", "loopStep": "i++",
            "preStatements": "x = 1;", "postStatements": "x = 2;",
            "postConditionCode": "global_ret == 0", "trueAction": 3, "falseAction": 2,
            "falseTarget": "gone", "remark": ["第一行", "第二行"])"},
        {"条件成立→终止流程", R"("trueAction": 4)"}};
    for (const auto& [expected, members] : table)
        QCOMPARE(QString::fromStdString(step(step_type::Delay, members)->clone()->settingText()),
                 text(expected)); // of a copy that stands nowhere
}

void ModelTextsTest::targetsAreNamedAsTheyStand()
{
    const QString sequence = facade::createSeuqence(textsApp, text("read_dtc"));
    const auto create = [&](int type) {
        return facade::getProcess(
            textsApp, facade::createProcess(textsApp, sequence, text("1"), BasicStep, type, -1));
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

void ModelTextsTest::popupButtonsKeepToTheirList()
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

PE_TEST("model_texts_test", ModelTextsTest)
#include "model_texts_test.moc"
