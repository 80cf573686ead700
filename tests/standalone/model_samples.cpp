#include "tests/standalone/model_samples.h"

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "standalone/host/Host.h"

namespace facade = sdk_ui_interface::processedit;

namespace samples {

namespace {

void fillGeneral(IProcessBlock& block, const std::string& uuid)
{
    block.uuid = uuid;
    block.name = awkwardText("name");
    block.remark = awkwardText("remark");
    block.tagEnabled = true;
    block.tag = "retry";
    block.preCondition = "a > \"b\"";
    block.loopType = 2;
    block.loopResultInReport = true;
    block.loopCount = 77;
    block.loopVariable = "k";
    block.loopInit = "int k = 0";
    block.loopCondition = "k < 3";
    block.loopStep = "k += 1";
    block.trueAction = 1;
    block.trueTarget = "true-target";
    block.falseAction = 4;
    block.falseTarget = "false-target";
    block.postConditionCode = "global_ret == 0";
    block.preStatements = "x = 1;\n\ny = 2;\n";
    block.postStatements = "\n";
    block.enableState = 1;
    block.property.name = awkwardText("kind");
    block.property.baseType = block.baseType();
    block.property.stepType = block.stepType();
    block.property.showInPalette = false;
    block.property.reserved1 = block.property.reserved2 = true;
    block.property.reserved3 = false;
    block.property.hasChildren = block.property.editable = block.property.draggable = true;
    block.property.nameEditable = block.property.tagEnabled = block.property.loopEnabled = true;
    block.property.preConditionEnabled = block.property.postActionEnabled = true;
    block.property.statementsEnabled = true;
    block.property.extra = {{"udsJson", "{\"a\": 1}\n"}, {"键", "值"}};
    block.property.children.push_back({});
    block.property.children[0].name = "nested";
}

template <class Condition> BlockPtr condition()
{
    auto block = std::make_shared<Condition>();
    block->setFun1(awkwardText("left"));
    block->setFun2("buffer");
    block->setOperator("!=", true, 8);
    return block;
}

BlockPtr loop()
{
    auto block = std::make_shared<ForProcessBlock>();
    block->setCustom(true);
    block->setVariableName("idx", false);
    block->setRangeValue(-2147483647 - 1, 2147483647, -3);
    block->setFun1("int i = 0");
    block->setFun2("i < 10");
    block->setFun3("i += 2");
    return block;
}

BlockPtr api()
{
    auto block = std::make_shared<ApiProcessBlock>();
    block->setParameters({{"u8*", "1,2,3", "字节"}, {}, {"string", awkwardText("value"), ""}});
    block->returnVariable = "ret";
    block->returnType = "s32";
    block->callText = "send(u8*, s32, string)";
    block->userFunction = true;
    return block;
}

BlockPtr popup()
{
    auto block = std::make_shared<PopupWindowProcessBlock>();
    block->title = "标题";
    block->content = awkwardText("content");
    block->assignmentKind = 10;
    block->value = "1.5";
    block->variableSource = 1;
    block->variableName = "answer";
    block->variableIsSystem = true;
    block->setButtons({{"确定", "a = 1;\nb = 2;"}, {"", ""}});
    return block;
}

BlockPtr sendMessage()
{
    auto block = std::make_shared<SendMessageProcessBlock>();
    block->frameType = SendMessageProcessBlock::RemoteFrame;
    block->frameFormat = SendMessageProcessBlock::CanFdBrs;
    block->idType = SendMessageProcessBlock::ExtendedId;
    block->frameId = 0xFFFFFFFFu;
    block->dataSize = 64;
    block->channel = 8;
    block->data = "02 10 03";
    block->messageVariable = "frame";
    return block;
}

BlockPtr recvMessage()
{
    auto block = std::make_shared<RecvMessageProcessBlock>();
    block->id = {"id", true};
    block->dataSize = {"size", false};
    block->channel = {"", true};
    block->data = {"data", true};
    block->messageVariable = "frame";
    block->waitTime = 0;
    block->successStatement = "count++;\n";
    return block;
}

BlockPtr sequenceCall()
{
    auto block = std::make_shared<SequenceProcessBlock>();
    block->sourceKind = SequenceProcessBlock::TemplateSequence;
    block->sequenceName = "read_dtc";
    block->sequenceId = "sequence-id";
    block->templateJson = "{\"id\": \"t\"}";
    block->templateName = "模板";
    block->templateId = "template-id";
    block->carried = {"carried-id", "{}", "carried"};
    return block;
}

BlockPtr uds()
{
    auto block = std::make_shared<UdsProcessBlock>(16);
    block->setUdsConfig("{\n  \"sid\": 34\n}");
    block->stepText = "读取 DID";
    block->callCode = "call();";
    block->taskCode = "void task()\n{\n}\n";
    block->declareCode = "void task();";
    return block;
}

std::vector<BlockPtr> smallOnes()
{
    auto statement = std::make_shared<StatementProcessBlock>();
    statement->setCustomCode(awkwardText("code"));
    statement->setSplitFile(true);
    auto expression = std::make_shared<ExpressionProcessBlock>();
    expression->leftValue = "y";
    expression->rightExpression = "f(x1,\n  x2)";
    auto jump = std::make_shared<GotoProcessBlock>();
    jump->targetTag = "retry";
    jump->targetUuid = "true-target";
    auto delay = std::make_shared<DelayProcessBlock>();
    delay->delay = 0;
    auto buzz = std::make_shared<BuzzProcessBlock>();
    buzz->firstFrequency = 1;
    buzz->firstDuration = 2;
    buzz->secondFrequency = 3;
    buzz->secondDuration = 4;
    buzz->repeatCount = 5;
    buzz->channel = 6;
    return {statement, expression, jump, delay, buzz};
}

void printBlocks(const QString& appName, const std::vector<BlockPtr>& blocks, int depth,
                 QString& text)
{
    for (const auto& block : blocks) {
        const bool isFound =
            facade::getProcess(appName, QString::fromStdString(block->uuid)) == block;
        text += QString(depth * 2, QLatin1Char(' ')) + QString::fromStdString(block->name) +
                (isFound ? QStringLiteral("\n") : QStringLiteral(" (not found by uuid)\n"));
        printBlocks(appName, block->children, depth + 1, text);
    }
}

} // namespace

std::string awkwardText(const char* mark)
{
    return std::string(mark) + " \"'\\/ \r\n\t第二行 \xF0\x9F\x9A\x97\n";
}

std::vector<BlockPtr> everyClass()
{
    auto blocks = smallOnes();
    for (const auto& block : {condition<IfProcessBlock>(), condition<ElseIfProcessBlock>(),
                              condition<WhileProcessBlock>(), condition<DoWhileProcessBlock>(),
                              condition<ConditionProcessBlock>(), loop(), api(), popup(),
                              sendMessage(), recvMessage(), sequenceCall(), uds()})
        blocks.push_back(block);
    for (const int type :
         {step_type::Else, step_type::EndIf, step_type::EndFor, step_type::EndWhile,
          step_type::EndDoWhile, step_type::Break, step_type::Continue, step_type::GotoTag})
        blocks.push_back(std::make_shared<PlainProcessBlock>(type));
    int number = 0;
    for (const auto& block : blocks)
        fillGeneral(*block, "block-" + std::to_string(++number));
    return blocks;
}

QString printTree(const QString& appName, const QString& sequenceId)
{
    static const char* const flows[] = {"initial", "main", "end"};
    const auto info = facade::getSequence(appName, sequenceId);
    const std::vector<std::string>* const lists[] = {&info.initialFlow, &info.mainFlow,
                                                     &info.endFlow};
    QString text;
    for (int flow = 0; flow < 3; ++flow) {
        std::vector<BlockPtr> blocks;
        for (const auto& uuid : *lists[flow])
            blocks.push_back(facade::getProcess(appName, QString::fromStdString(uuid)));
        if (blocks.empty())
            continue;
        text += QLatin1String(flows[flow]) + QLatin1Char('\n');
        printBlocks(appName, blocks, 1, text);
    }
    return text;
}

LogCatcher::LogCatcher()
{
    connect(&standalone::Host::instance(), &standalone::Host::errorLogged, this,
            [this](const QString& line) { lines.append(line); });
}

void forget(const QString& appName)
{
    const std::string name = appName.toLocal8Bit().toStdString();
    facade::removeApp(appName);
    process_edit::removeAllVarByAppName(name);
    process_edit::removeAllCustomStepProperty(name);
    facade::removeAllProcessTemplate(false);
    facade::loadQuickStepJsonStr(QString());
}

} // namespace samples
