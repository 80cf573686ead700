#pragma once

#include "model/process_blocks.h"
#include "standalone/model_service/documents/StoredBlock.h"
#include "standalone/model_service/documents/action_fields.h"
#include "standalone/model_service/documents/flow_fields.h"

#include <type_traits>
#include <typeinfo>

/// The fields of every block class, once for reading, writing and searching.
///
/// An archive has field(name, value, default), record(name, value, visitor) and
/// list(name, values, visitor), and the constant Reads. The names and defaults are the document's
/// format: a member that holds its default is left out of it, so a default never changes.
namespace standalone {
namespace block_fields {

/// What identifies a step and how it stands in the tree.
template <class Archive, class Block> void visitIdentity(Archive& ar, Block& b)
{
    ar.field("uuid", b.uuid);
    ar.field("name", b.name);
    ar.field("remark", b.remark);
    ar.field("enableState", b.enableState, 2);
}

/// The general settings that every step has.
template <class Archive, class Block> void visitGeneral(Archive& ar, Block& b)
{
    ar.field("tagEnabled", b.tagEnabled, false);
    ar.field("tag", b.tag);
    ar.field("preCondition", b.preCondition);
    ar.field("loopType", b.loopType, 0);
    ar.field("loopResultInReport", b.loopResultInReport, false);
    ar.field("loopCount", b.loopCount, 10);
    ar.field("loopVariable", b.loopVariable, "i");
    ar.field("loopInit", b.loopInit);
    ar.field("loopCondition", b.loopCondition);
    ar.field("loopStep", b.loopStep);
    ar.field("trueAction", b.trueAction, 0);
    ar.field("trueTarget", b.trueTarget);
    ar.field("falseAction", b.falseAction, 0);
    ar.field("falseTarget", b.falseTarget);
    ar.field("postConditionCode", b.postConditionCode);
    ar.field("preStatements", b.preStatements);
    ar.field("postStatements", b.postStatements);
}

/// Visits @p block as a @p Class, const or not as it is; nothing if it is another.
template <class Class, class Block, class Visit> void visitAs(Block& block, Visit visit)
{
    using Target = std::conditional_t<std::is_const_v<Block>, const Class, Class>;
    if (typeid(block) == typeid(StoredBlock<Class>)) // most are; the cast below looks far around
        visit(static_cast<Target&>(block));
    else if (auto* typed = dynamic_cast<Target*>(&block))
        visit(*typed);
}

/// The fields that the block's class adds to those of every step.
template <class Archive, class Block> void visitOwn(Archive& ar, Block& block)
{
    if (block.baseType() == DiagnosticStep)
        return visitAs<UdsProcessBlock>(block, [&](auto& b) { visitUds(ar, b); });
    switch (block.stepType()) {
    case step_type::If:
    case step_type::ElseIf:
    case step_type::While:
    case step_type::DoWhile:
    case step_type::Condition:
        return visitAs<ConditionProcessBlock>(block, [&](auto& b) { visitCondition(ar, b); });
    case step_type::For:
        return visitAs<ForProcessBlock>(block, [&](auto& b) { visitFor(ar, b); });
    case step_type::Goto:
        return visitAs<GotoProcessBlock>(block, [&](auto& b) { visitGoto(ar, b); });
    case step_type::Sequence:
        return visitAs<SequenceProcessBlock>(block, [&](auto& b) { visitSequence(ar, b); });
    case step_type::Api:
        return visitAs<ApiProcessBlock>(block, [&](auto& b) { visitApi(ar, b); });
    case step_type::Statement:
        return visitAs<StatementProcessBlock>(block, [&](auto& b) { visitStatement(ar, b); });
    case step_type::Expression:
        return visitAs<ExpressionProcessBlock>(block, [&](auto& b) { visitExpression(ar, b); });
    case step_type::PopupWindow:
        return visitAs<PopupWindowProcessBlock>(block, [&](auto& b) { visitPopup(ar, b); });
    case step_type::Delay:
        return visitAs<DelayProcessBlock>(block, [&](auto& b) { visitDelay(ar, b); });
    case step_type::SendMessage:
        return visitAs<SendMessageProcessBlock>(block, [&](auto& b) { visitSend(ar, b); });
    case step_type::RecvMessage:
        return visitAs<RecvMessageProcessBlock>(block, [&](auto& b) { visitRecv(ar, b); });
    case step_type::Buzz:
        return visitAs<BuzzProcessBlock>(block, [&](auto& b) { visitBuzz(ar, b); });
    default:
        return;
    }
}

} // namespace block_fields
} // namespace standalone
