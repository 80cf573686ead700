#pragma once

#include "standalone/codegen/applet_source.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class SequenceProcessBlock;

namespace codegen {

/// A sequence that the target reaches, with the numbers that the code names it and its steps by.
struct PlannedSequence
{
    const SequenceSource* source = nullptr;
    const SequenceGroup* group = nullptr;
    std::uint32_t index = 0;
    std::string space;    ///< namespace of its group
    std::string function; ///< with its namespace
    /// Enabled steps by uuid.
    std::unordered_map<std::string, std::uint32_t> steps;
    /// Tagged enabled steps: tag to uuid. The first of a tag counts.
    std::unordered_map<std::string, std::string> tags;
    /// Uuids of the steps that something jumps to.
    std::unordered_set<std::string> jumpTargets;
};

struct PlannedStep
{
    std::uint32_t sequence = 0;
    std::string uuid;
};

/// Finds what the target sequence reaches, through calls and jumps of enabled steps, and numbers it
/// in the order of its discovery.
class SequencePlan
{
public:
    explicit SequencePlan(const AppletSource& source);

    /// In the order of their index; the target is the first. Empty if there is no such sequence.
    const std::vector<PlannedSequence>& sequences() const { return m_sequences; }
    const std::vector<PlannedStep>& steps() const { return m_steps; }
    /// The groups that have sequences here, in the order of discovery.
    const std::vector<const SequenceGroup*>& groups() const { return m_groups; }
    std::string spaceOf(const SequenceGroup* group) const { return m_spaces.at(group); }

    /// What a call step of @p caller runs, or null.
    const PlannedSequence* callee(const PlannedSequence& caller,
                                  const SequenceProcessBlock& call) const;
    /// A sequence of the caller's group, or null.
    const PlannedSequence* sequence(const PlannedSequence& caller, const std::string& id) const;

private:
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;
    using Target = std::pair<const SequenceGroup*, std::string>;

    void add(const SequenceGroup* group, const std::string& sequenceId);
    void scan(std::size_t sequence, const Blocks& blocks);
    void scanCalls(const SequenceGroup* group, const IProcessBlock& block);
    void resolveJumps(PlannedSequence& sequence, const Blocks& blocks);
    Target targetOf(const SequenceGroup* group, const SequenceProcessBlock& call) const;
    const PlannedSequence* planned(const Target& target) const;

    const AppletSource& m_source;
    std::vector<PlannedSequence> m_sequences;
    std::vector<PlannedStep> m_steps;
    std::vector<const SequenceGroup*> m_groups;
    std::map<const SequenceGroup*, std::string> m_spaces;
    std::map<Target, std::size_t> m_indices;
};

/// The comment above the steps of a flow.
std::string flowTitle(std::size_t flow);

/// Whether a step's own box is off.
bool isDisabled(const IProcessBlock& block);

/// Whether a step is a branch of the if before it.
bool isBranch(const IProcessBlock& block);

/// Which of these siblings are left out with all that they hold: the disabled ones, and every
/// branch of a disabled if, since without its if a branch has no meaning.
std::vector<bool> leftOut(const std::vector<std::shared_ptr<IProcessBlock>>& siblings);

} // namespace codegen
