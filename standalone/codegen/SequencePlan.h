#pragma once

#include "standalone/codegen/applet_source.h"

#include <cstdint>
#include <map>
#include <set>
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
    std::string space;           ///< namespace of its group
    std::string function;        ///< its name there, which no variable bears
    std::string title;           ///< for the user: its name, behind that of its template
    std::uint32_t firstStep = 0; ///< index among the steps of all sequences
    /// Enabled steps by uuid, counted within the sequence.
    std::unordered_map<std::string, std::uint32_t> steps;
    /// Tagged enabled steps: tag to uuid. The first of a tag counts.
    std::unordered_map<std::string, std::string> tags;
    /// Uuids of the steps that something jumps to.
    std::unordered_set<std::string> jumpTargets;

    /// Its name among all sequences: of its unit, and of what the units know of each other.
    std::string unit() const { return templateUnit.empty() ? function : templateUnit; }
    std::string templateUnit; ///< empty for a sequence of the applet
};

struct PlannedStep
{
    std::uint32_t sequence = 0;
    std::string uuid;
    std::string name;
    /// Index of the first step within the innermost loop around it; 0: no loop.
    std::uint32_t turnStep = 0;
};

/// Finds what the target sequence reaches, through calls and jumps of enabled steps, and numbers it
/// in the order of its discovery. Names follow from the user's alone as long as they are unique, so
/// that a sequence more doesn't change the code of the others.
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
    void reserve(const std::vector<processVariable>& variables);
    std::string spaceFor(const SequenceGroup* group);
    std::string uniqueName(const std::string& name);
    void scan(std::size_t sequence, const Blocks& blocks, std::uint32_t turnStep);
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
    std::set<std::string> m_names; ///< taken, in lower case: not all systems tell files apart by it
    std::map<std::string, int> m_numbers; ///< how often a name had to be made another
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
