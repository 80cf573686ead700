#pragma once

#include "model/process_blocks.h"
#include "standalone/codegen/applet_source.h"

#include <functional>

/// Short ways to write a tree of steps down. A step's name is its uuid.
namespace builders {

using BlockPtr = std::shared_ptr<IProcessBlock>;
using Blocks = std::vector<BlockPtr>;
using Change = std::function<void(IProcessBlock&)>;

template <class Block>
std::shared_ptr<Block> named(std::shared_ptr<Block> block, const std::string& uuid,
                             const Blocks& children = {})
{
    block->uuid = uuid;
    block->name = uuid;
    block->children = children;
    return block;
}

inline BlockPtr plain(int stepType, const std::string& uuid, const Blocks& children = {})
{
    return named(std::make_shared<PlainProcessBlock>(stepType), uuid, children);
}

inline BlockPtr statement(const std::string& uuid, const std::string& code, bool splitFile = false)
{
    auto block = named(std::make_shared<StatementProcessBlock>(), uuid);
    block->setCustomCode(code);
    block->setSplitFile(splitFile);
    return block;
}

template <class Block>
BlockPtr condition(const std::string& uuid, const std::string& left, const std::string& comparison,
                   const std::string& right, const Blocks& children = {})
{
    auto block = named(std::make_shared<Block>(), uuid, children);
    block->setFun1(left);
    block->setOperator(comparison, false, 1);
    block->setFun2(right);
    return block;
}

inline BlockPtr fixedFor(const std::string& uuid, const std::string& variable, int begin, int end,
                         int step, const Blocks& children)
{
    auto block = named(std::make_shared<ForProcessBlock>(), uuid, children);
    block->setVariableName(variable, true);
    block->setRangeValue(begin, end, step);
    return block;
}

inline BlockPtr customFor(const std::string& uuid, const std::string& init,
                          const std::string& condition, const std::string& increment,
                          const Blocks& children)
{
    auto block = named(std::make_shared<ForProcessBlock>(), uuid, children);
    block->setCustom(true);
    block->setFun1(init);
    block->setFun2(condition);
    block->setFun3(increment);
    return block;
}

inline BlockPtr expression(const std::string& uuid, const std::string& left,
                           const std::string& right)
{
    auto block = named(std::make_shared<ExpressionProcessBlock>(), uuid);
    block->leftValue = left;
    block->rightExpression = right;
    return block;
}

inline BlockPtr call(const std::string& uuid, const std::string& sequenceId)
{
    auto block = named(std::make_shared<SequenceProcessBlock>(), uuid);
    block->sourceKind = SequenceProcessBlock::AppletSequence;
    block->sequenceId = sequenceId;
    block->sequenceName = sequenceId;
    return block;
}

inline BlockPtr callTemplate(const std::string& uuid, const std::string& templateId)
{
    auto block = named(std::make_shared<SequenceProcessBlock>(), uuid);
    block->sourceKind = SequenceProcessBlock::TemplateSequence;
    block->templateId = templateId;
    return block;
}

inline BlockPtr delay(const std::string& uuid, int milliseconds)
{
    auto block = named(std::make_shared<DelayProcessBlock>(), uuid);
    block->delay = milliseconds;
    return block;
}

inline BlockPtr jump(const std::string& uuid, const std::string& targetUuid,
                     const std::string& targetTag = std::string())
{
    auto block = named(std::make_shared<GotoProcessBlock>(), uuid);
    block->targetUuid = targetUuid;
    block->targetTag = targetTag;
    return block;
}

inline BlockPtr with(BlockPtr block, const Change& change)
{
    change(*block);
    return block;
}

inline processVariable variable(const std::string& name, const std::string& type,
                                const std::string& value, int length = 1)
{
    processVariable record;
    record.uuid = name;
    record.name = name;
    record.type = type;
    record.value = value;
    record.length = length;
    return record;
}

inline codegen::SequenceSource sequence(const std::string& id, const Blocks& mainFlow,
                                        const std::vector<processVariable>& variables = {})
{
    codegen::SequenceSource source;
    source.info.id = id;
    source.info.name = id;
    source.flows[1] = mainFlow;
    source.variables = variables;
    return source;
}

/// An applet whose first sequence is the target.
inline codegen::AppletSource applet(const std::vector<codegen::SequenceSource>& sequences,
                                    const std::vector<processVariable>& variables = {})
{
    codegen::AppletSource source;
    source.applet.name = "applet";
    source.applet.sequences = sequences;
    source.applet.variables = variables;
    source.targetSequenceId = sequences.front().info.id;
    return source;
}

/// Of one step "s" with that code.
inline codegen::AppletSource oneStep(const std::string& code)
{
    return applet({sequence("main", {statement("s", code)})});
}

/// Of one step that waits, for longer than any test does.
inline codegen::AppletSource waiting()
{
    return applet({sequence("main", {delay("wait", 600000)})});
}

} // namespace builders
