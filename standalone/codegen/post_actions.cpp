#include "standalone/codegen/post_actions.h"

#include "model/blocks/GotoProcessBlock.h"
#include "standalone/codegen/SequencePlan.h"

namespace codegen {

std::vector<PostAction> postActions(const IProcessBlock& block)
{
    std::vector<PostAction> actions;
    for (const bool whenTrue : {true, false}) {
        const int kind = whenTrue ? block.trueAction : block.falseAction;
        if (kind > PostAction::NextStep && kind <= PostAction::EndProcess)
            actions.push_back({whenTrue, static_cast<PostAction::Kind>(kind),
                               whenTrue ? block.trueTarget : block.falseTarget});
    }
    return actions;
}

bool pauses(const IProcessBlock& block)
{
    constexpr int Pause = 5;
    return block.trueAction == Pause || block.falseAction == Pause;
}

std::string jumpTarget(const PlannedSequence& sequence, const GotoProcessBlock& jump)
{
    if (sequence.steps.count(jump.targetUuid))
        return jump.targetUuid;
    const auto tagged = sequence.tags.find(jump.targetTag);
    return tagged == sequence.tags.end() ? std::string() : tagged->second;
}

} // namespace codegen
