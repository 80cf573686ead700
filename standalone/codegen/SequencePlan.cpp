#include "standalone/codegen/SequencePlan.h"

#include "model/blocks/GotoProcessBlock.h"
#include "model/blocks/SequenceProcessBlock.h"
#include "standalone/codegen/code_text.h"
#include "standalone/codegen/post_actions.h"

#include <algorithm>

namespace codegen {

std::string flowTitle(std::size_t flow)
{
    static const char* const names[] = {"初始流程", "主流程", "结束流程"};
    return std::string("---- ") + names[flow] + " ----";
}

bool isDisabled(const IProcessBlock& block)
{
    return block.enableState == 0;
}

bool isBranch(const IProcessBlock& block)
{
    return block.baseType() == BasicStep && step_kinds::isBranch(block.stepType());
}

std::vector<bool> leftOut(const std::vector<std::shared_ptr<IProcessBlock>>& siblings)
{
    std::vector<bool> out(siblings.size());
    bool ifIsOut = false;
    for (std::size_t i = 0; i < siblings.size(); ++i) {
        const IProcessBlock& block = *siblings[i];
        ifIsOut = isBranch(block) ? ifIsOut
                                  : block.baseType() == BasicStep &&
                                        block.stepType() == step_type::If && isDisabled(block);
        out[i] = ifIsOut || isDisabled(block);
    }
    return out;
}

SequencePlan::SequencePlan(const AppletSource& source) : m_source(source)
{
    add(&source.applet, source.targetSequenceId);
    // The list grows while it is walked.
    for (std::size_t i = 0; i < m_sequences.size(); ++i) {
        const SequenceSource& sequence = *m_sequences[i].source;
        for (const Blocks& flow : sequence.flows)
            scan(i, flow);
        for (const Blocks& flow : sequence.flows)
            resolveJumps(m_sequences[i], flow);
    }
}

void SequencePlan::add(const SequenceGroup* group, const std::string& sequenceId)
{
    if (!group || sequenceId.empty() || m_indices.count({group, sequenceId}))
        return;
    const auto found =
        std::find_if(group->sequences.begin(), group->sequences.end(),
                     [&](const SequenceSource& source) { return source.info.id == sequenceId; });
    if (found == group->sequences.end())
        return;
    if (!m_spaces.count(group)) {
        const bool isApplet = group == &m_source.applet;
        m_spaces[group] = isApplet ? "process" : "template_" + std::to_string(m_groups.size());
        m_groups.push_back(group);
    }
    PlannedSequence sequence;
    sequence.source = &*found;
    sequence.group = group;
    sequence.index = static_cast<std::uint32_t>(m_sequences.size());
    sequence.space = m_spaces[group];
    sequence.function =
        "sequence_" + std::to_string(sequence.index) + '_' + identifierText(found->info.name);
    m_indices[{group, sequenceId}] = m_sequences.size();
    m_sequences.push_back(std::move(sequence));
}

void SequencePlan::scan(std::size_t sequence, const Blocks& blocks)
{
    const std::vector<bool> out = leftOut(blocks);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto& block = blocks[i];
        if (out[i])
            continue;
        const auto index = static_cast<std::uint32_t>(m_steps.size());
        m_steps.push_back({static_cast<std::uint32_t>(sequence), block->uuid});
        m_sequences[sequence].steps.emplace(block->uuid, index);
        if (block->tagEnabled && !block->tag.empty())
            m_sequences[sequence].tags.emplace(block->tag, block->uuid);
        scanCalls(m_sequences[sequence].group, *block);
        scan(sequence, block->children);
    }
}

void SequencePlan::scanCalls(const SequenceGroup* group, const IProcessBlock& block)
{
    if (const auto* call = dynamic_cast<const SequenceProcessBlock*>(&block)) {
        const Target target = targetOf(group, *call);
        add(target.first, target.second);
    }
    for (const PostAction& action : postActions(block)) {
        if (action.kind == PostAction::ToSequence)
            add(group, action.target);
    }
}

void SequencePlan::resolveJumps(PlannedSequence& sequence, const Blocks& blocks)
{
    const std::vector<bool> out = leftOut(blocks);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto& block = blocks[i];
        if (out[i])
            continue;
        if (const auto* jump = dynamic_cast<const GotoProcessBlock*>(block.get())) {
            const std::string target = jumpTarget(sequence, *jump);
            if (!target.empty())
                sequence.jumpTargets.insert(target);
        }
        for (const PostAction& action : postActions(*block)) {
            if (action.kind == PostAction::ToStep)
                sequence.jumpTargets.insert(action.target);
        }
        resolveJumps(sequence, block->children);
    }
}

SequencePlan::Target SequencePlan::targetOf(const SequenceGroup* group,
                                            const SequenceProcessBlock& call) const
{
    if (call.sourceKind == SequenceProcessBlock::AppletSequence)
        return {group, call.sequenceId};
    if (call.sourceKind != SequenceProcessBlock::TemplateSequence)
        return {nullptr, std::string()};
    const std::string& id = call.templateId.empty() ? call.carried.id : call.templateId;
    for (const SequenceGroup* owner : {group, &m_source.applet}) {
        const auto found = owner->templates.find(id);
        if (found != owner->templates.end() && !found->second.sequences.empty())
            return {&found->second, found->second.sequences.front().info.id};
    }
    return {nullptr, std::string()};
}

const PlannedSequence* SequencePlan::planned(const Target& target) const
{
    const auto found = m_indices.find(target);
    return found == m_indices.end() ? nullptr : &m_sequences[found->second];
}

const PlannedSequence* SequencePlan::callee(const PlannedSequence& caller,
                                            const SequenceProcessBlock& call) const
{
    return planned(targetOf(caller.group, call));
}

const PlannedSequence* SequencePlan::sequence(const PlannedSequence& caller,
                                              const std::string& id) const
{
    return planned({caller.group, id});
}

} // namespace codegen
