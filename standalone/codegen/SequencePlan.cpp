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
    reserve(source.globalVariables);
    reserve(source.applet.variables);
    add(&source.applet, source.targetSequenceId);
    // The list grows while it is walked.
    for (std::size_t i = 0; i < m_sequences.size(); ++i) {
        const SequenceSource& sequence = *m_sequences[i].source;
        m_sequences[i].firstStep = static_cast<std::uint32_t>(m_steps.size());
        for (const Blocks& flow : sequence.flows)
            scan(i, flow, 0);
        for (const Blocks& flow : sequence.flows)
            resolveJumps(m_sequences[i], flow);
    }
}

void SequencePlan::reserve(const std::vector<processVariable>& variables)
{
    for (const processVariable& variable : variables)
        uniqueName(variable.name);
}

std::string SequencePlan::uniqueName(const std::string& name)
{
    const auto lower = [](std::string text) {
        for (char& c : text)
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        return text;
    };
    constexpr std::size_t MostCharacters = 80; // files are named so too
    const std::string base = name.substr(0, MostCharacters);
    std::string unique = base;
    while (!m_names.insert(lower(unique)).second)
        unique = base + '_' + std::to_string(++m_numbers[lower(base)] + 1);
    return unique;
}

std::string SequencePlan::spaceFor(const SequenceGroup* group)
{
    auto& space = m_spaces[group];
    if (space.empty()) {
        space = uniqueName(group == &m_source.applet ? "process"
                                                     : "template_" + identifierText(group->name));
        m_groups.push_back(group);
        if (group != &m_source.applet)
            reserve(group->variables);
    }
    return space;
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
    const bool isApplet = group == &m_source.applet;
    const std::string& name = found->info.name;
    PlannedSequence sequence;
    sequence.source = &*found;
    sequence.group = group;
    sequence.index = static_cast<std::uint32_t>(m_sequences.size());
    sequence.space = spaceFor(group);
    sequence.function = uniqueName("sequence_" + identifierText(name));
    sequence.templateUnit = isApplet ? std::string() : sequence.space + '_' + sequence.function;
    sequence.title = isApplet ? name : group->name + '/' + name;
    m_indices[{group, sequenceId}] = m_sequences.size();
    m_sequences.push_back(std::move(sequence));
}

void SequencePlan::scan(std::size_t sequence, const Blocks& blocks, std::uint32_t turnStep)
{
    const std::vector<bool> out = leftOut(blocks);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto& block = blocks[i];
        if (out[i])
            continue;
        const auto index = static_cast<std::uint32_t>(m_steps.size());
        m_steps.push_back(
            {static_cast<std::uint32_t>(sequence), block->uuid, block->name, turnStep});
        m_sequences[sequence].steps.emplace(block->uuid, index - m_sequences[sequence].firstStep);
        if (block->tagEnabled && !block->tag.empty())
            m_sequences[sequence].tags.emplace(block->tag, block->uuid);
        scanCalls(m_sequences[sequence].group, *block);
        const bool isLoop = block->baseType() == BasicStep && step_kinds::isLoop(block->stepType());
        scan(sequence, block->children, isLoop ? index + 1 : turnStep);
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
