#pragma once

#include "model/fields/action_fields.h"
#include "model/fields/flow_fields.h"
#include "model/process_blocks.h"

#include <type_traits>

/// The fields of every block class, once for reading, writing and searching.
///
/// An archive has field(name, value, default), code(name, text) for what may name variables,
/// record(name, value, visitor) and list(name, values, visitor), and the constant Reads. The names
/// and defaults are the document's format: a member that holds its default is left out of it, so a
/// default never changes.
namespace block_fields {

/// The base of an archive that searches: looks into records and lists, and at nothing else.
template <class Archive> struct Search
{
    static constexpr bool Reads = false;

    template <class Value> void field(const char*, const Value&) {}
    template <class Value, class Standard> void field(const char*, const Value&, const Standard&) {}
    template <class Record, class Visit> void record(const char*, const Record& value, Visit visit)
    {
        visit(static_cast<Archive&>(*this), value);
    }
    template <class Elements, class Visit>
    void list(const char*, const Elements& values, Visit visit)
    {
        for (const auto& value : values)
            visit(static_cast<Archive&>(*this), value);
    }
};

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
    ar.code("preCondition", b.preCondition);
    ar.field("loopType", b.loopType, 0);
    ar.field("loopResultInReport", b.loopResultInReport, false);
    ar.field("loopCount", b.loopCount, 10);
    ar.field("loopVariable", b.loopVariable, "i");
    ar.code("loopInit", b.loopInit);
    ar.code("loopCondition", b.loopCondition);
    ar.code("loopStep", b.loopStep);
    ar.field("trueAction", b.trueAction, 0);
    ar.field("trueTarget", b.trueTarget);
    ar.field("falseAction", b.falseAction, 0);
    ar.field("falseTarget", b.falseTarget);
    ar.code("postConditionCode", b.postConditionCode);
    ar.code("preStatements", b.preStatements);
    ar.code("postStatements", b.postStatements);
}

/// The usual way to a block's class. An archive's owner who knows more may bring a quicker one.
struct DynamicCast
{
    template <class Target, class Block> static Target* to(Block& block)
    {
        return dynamic_cast<Target*>(&block);
    }
};

/// Visits @p block as a @p Class, const or not as it is; nothing if it is another.
template <class Class, class Cast, class Block, class Visit> void visitAs(Block& block, Visit visit)
{
    using Target = std::conditional_t<std::is_const_v<Block>, const Class, Class>;
    if (auto* typed = Cast::template to<Target>(block))
        visit(*typed);
}

/// The fields that the block's class adds to those of every step.
template <class Cast = DynamicCast, class Archive, class Block>
void visitOwn(Archive& ar, Block& block)
{
    if (block.baseType() == DiagnosticStep)
        return visitAs<UdsProcessBlock, Cast>(block, [&](auto& b) { visitUds(ar, b); });
    switch (block.stepType()) {
    case step_type::If:
    case step_type::ElseIf:
    case step_type::While:
    case step_type::DoWhile:
    case step_type::Condition:
        return visitAs<ConditionProcessBlock, Cast>(block, [&](auto& b) { visitCondition(ar, b); });
    case step_type::For:
        return visitAs<ForProcessBlock, Cast>(block, [&](auto& b) { visitFor(ar, b); });
    case step_type::Goto:
        return visitAs<GotoProcessBlock, Cast>(block, [&](auto& b) { visitGoto(ar, b); });
    case step_type::Sequence:
        return visitAs<SequenceProcessBlock, Cast>(block, [&](auto& b) { visitSequence(ar, b); });
    case step_type::Api:
        return visitAs<ApiProcessBlock, Cast>(block, [&](auto& b) { visitApi(ar, b); });
    case step_type::Statement:
        return visitAs<StatementProcessBlock, Cast>(block, [&](auto& b) { visitStatement(ar, b); });
    case step_type::Expression:
        return visitAs<ExpressionProcessBlock, Cast>(block,
                                                     [&](auto& b) { visitExpression(ar, b); });
    case step_type::PopupWindow:
        return visitAs<PopupWindowProcessBlock, Cast>(block, [&](auto& b) { visitPopup(ar, b); });
    case step_type::Delay:
        return visitAs<DelayProcessBlock, Cast>(block, [&](auto& b) { visitDelay(ar, b); });
    case step_type::SendMessage:
        return visitAs<SendMessageProcessBlock, Cast>(block, [&](auto& b) { visitSend(ar, b); });
    case step_type::RecvMessage:
        return visitAs<RecvMessageProcessBlock, Cast>(block, [&](auto& b) { visitRecv(ar, b); });
    case step_type::Buzz:
        return visitAs<BuzzProcessBlock, Cast>(block, [&](auto& b) { visitBuzz(ar, b); });
    default:
        return;
    }
}

} // namespace block_fields
