#include "tests/standalone/model_samples.h"

#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"
#include "standalone/host/Host.h"
#include "standalone/model_service/documents/block_factory.h"

#include <limits>

namespace facade = sdk_ui_interface::processedit;

namespace samples {

namespace {

/// Calls @p visit with the fields of every class, a list of their own beside the model service's.
template <class Visit> void visitGeneral(IProcessBlock& b, Visit& visit)
{
    visit(b.uuid, b.name, b.remark, b.tagEnabled, b.tag, b.preCondition, b.loopType,
          b.loopResultInReport, b.loopCount, b.loopVariable, b.loopInit, b.loopCondition,
          b.loopStep, b.trueAction, b.trueTarget, b.falseAction, b.falseTarget, b.postConditionCode,
          b.preStatements, b.postStatements, b.enableState);
    auto& p = b.property;
    visit(p.name, p.showInPalette, p.reserved1, p.hasChildren, p.editable, p.draggable, p.reserved2,
          p.nameEditable, p.tagEnabled, p.loopEnabled, p.preConditionEnabled, p.postActionEnabled,
          p.statementsEnabled, p.reserved3, p.extra["udsJson"], p.extra["键"]);
    p.children.resize(1);
    visit(p.children[0].name);
}

template <class Visit> void visitFlow(IProcessBlock& b, Visit& visit)
{
    if (auto* c = dynamic_cast<ConditionProcessBlock*>(&b)) {
        std::string left = c->getFun1(), right = c->getFun2(), comparison = c->getOperator();
        bool isArray = c->getOperatorIsArray();
        int size = c->getArraySize();
        visit(left, right, comparison, isArray, size);
        c->setFun1(left);
        c->setFun2(right);
        c->setOperator(comparison, isArray, size);
    }
    if (auto* f = dynamic_cast<ForProcessBlock*>(&b)) {
        std::string variable = f->getVariableName();
        std::string init = f->getFun1(), test = f->getFun2(), next = f->getFun3();
        bool isCustom = f->getCustom(), isDefined = f->isNeedDefine();
        int begin = f->getBeginValue(), end = f->getEndValue(), step = f->getStepValue();
        visit(variable, init, test, next, isCustom, isDefined, begin, end, step);
        f->setCustom(isCustom);
        f->setVariableName(variable, isDefined);
        f->setRangeValue(begin, end, step);
        f->setFun1(init);
        f->setFun2(test);
        f->setFun3(next);
    }
    if (auto* g = dynamic_cast<GotoProcessBlock*>(&b))
        visit(g->targetTag, g->targetUuid);
    if (auto* q = dynamic_cast<SequenceProcessBlock*>(&b))
        visit(q->sourceKind, q->sequenceName, q->sequenceId, q->templateJson, q->templateName,
              q->templateId, q->carried.id, q->carried.json, q->carried.name);
}

template <class Visit> void visitActions(IProcessBlock& b, Visit& visit)
{
    if (auto* s = dynamic_cast<StatementProcessBlock*>(&b)) {
        std::string code = s->customCode();
        bool hasFile = s->getSplitFile();
        visit(code, hasFile);
        s->setCustomCode(code);
        s->setSplitFile(hasFile);
    }
    if (auto* e = dynamic_cast<ExpressionProcessBlock*>(&b))
        visit(e->leftValue, e->rightExpression);
    if (auto* d = dynamic_cast<DelayProcessBlock*>(&b))
        visit(d->delay);
    if (auto* z = dynamic_cast<BuzzProcessBlock*>(&b))
        visit(z->firstFrequency, z->firstDuration, z->secondFrequency, z->secondDuration,
              z->repeatCount, z->channel);
    if (auto* m = dynamic_cast<SendMessageProcessBlock*>(&b))
        visit(m->frameType, m->frameFormat, m->idType, m->frameId, m->dataSize, m->channel, m->data,
              m->messageVariable);
    if (auto* r = dynamic_cast<RecvMessageProcessBlock*>(&b))
        visit(r->id.variable, r->id.isSystem, r->dataSize.variable, r->dataSize.isSystem,
              r->channel.variable, r->channel.isSystem, r->data.variable, r->data.isSystem,
              r->messageVariable, r->waitTime, r->successStatement);
}

template <class Visit> void visitLists(IProcessBlock& b, Visit& visit)
{
    if (auto* a = dynamic_cast<ApiProcessBlock*>(&b)) {
        visit(a->returnVariable, a->returnType, a->callText, a->userFunction);
        auto parameters = a->parameters();
        for (auto& parameter : visit.list(parameters))
            visit(parameter.type, parameter.value, parameter.description);
        a->setParameters(parameters);
    }
    if (auto* w = dynamic_cast<PopupWindowProcessBlock*>(&b)) {
        visit(w->title, w->content, w->assignmentKind, w->value, w->variableSource, w->variableName,
              w->variableIsSystem);
        auto buttons = w->buttons();
        for (auto& button : visit.list(buttons))
            visit(button.name, button.code);
        w->setButtons(buttons);
    }
    if (auto* u = dynamic_cast<UdsProcessBlock*>(&b)) {
        std::string config = u->udsConfig();
        visit(config, u->stepText, u->callCode, u->taskCode, u->declareCode);
        u->setUdsConfig(config);
    }
}

template <class Visit> void visitAll(IProcessBlock& block, Visit& visit)
{
    visitGeneral(block, visit);
    visitFlow(block, visit);
    visitActions(block, visit);
    visitLists(block, visit);
}

/// Gives every field a value of its own that isn't the default, and lists an empty element too.
class Filler
{
public:
    template <class... Fields> void operator()(Fields&... fields) { (fill(fields), ...); }
    template <class Element> std::vector<Element>& list(std::vector<Element>& elements)
    {
        elements.resize(2);
        return elements;
    }

private:
    void fill(bool& value) { value = !value; }
    template <class Number> void fill(Number& value)
    {
        value = Number(++m_count % 2 ? m_count : std::numeric_limits<int>::min() + m_count);
    }
    /// With what breaks naive writers: quotes, backslashes, line ends, tabs, Chinese, and a
    /// character outside the basic plane.
    void fill(std::string& value)
    {
        const std::string number = std::to_string(++m_count);
        value = m_count % 3 ? number + " \"'\\/ \r\n\t第二行 \xF0\x9F\x9A\x97\n"
                            : "\n\n" + number + ";\n\nx";
    }

    int m_count = 10000;
};

class Printer
{
public:
    template <class... Fields> void operator()(const Fields&... fields) { (add(fields), ...); }
    template <class Element> const std::vector<Element>& list(const std::vector<Element>& elements)
    {
        add(int(elements.size()));
        return elements;
    }
    void add(const std::string& value) { all += value + '\x01'; }
    template <class Number> void add(Number value) { add(std::to_string(value)); }

    std::string all;
};

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

std::vector<BlockPtr> everyClass()
{
    std::vector<BlockPtr> blocks{standalone::makeBlock(DiagnosticStep, 16),
                                 std::make_shared<ConditionProcessBlock>()};
    for (int type = 1; type <= step_type::Buzz; ++type) {
        if (const auto block = standalone::makeBlock(BasicStep, type))
            blocks.push_back(block);
    }
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        Filler filler;
        visitAll(*blocks[i], filler);
        blocks[i]->uuid = "block-" + std::to_string(i);
        blocks[i]->property.baseType = blocks[i]->baseType();
        blocks[i]->property.stepType = blocks[i]->stepType();
    }
    return blocks;
}

std::string fieldsOf(IProcessBlock& block)
{
    Printer printer;
    visitAll(block, printer);
    printer(int(block.baseType()), block.stepType(), int(block.property.baseType),
            block.property.stepType);
    for (const auto& child : block.children)
        printer.all += '[' + fieldsOf(*child) + ']';
    return printer.all;
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
