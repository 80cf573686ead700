#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

class IProcessBlock;

namespace standalone {

class AppletModel;
struct SequenceContent;

/// The sequences of the applet that a sequence leads to, by calls and by jumps after a step, in
/// the order of the steps, each once. Disabled steps count only if @p withDisabled is set.
std::vector<std::string> calledSequences(const SequenceContent& sequence, bool withDisabled);

/// True if a sequence that is reached from @p sequenceId leads back to itself.
bool hasCallLoop(const AppletModel& applet, const std::string& sequenceId);

/// The identifiers in all code and expressions of blocks and their children.
std::unordered_set<std::string>
usedWords(const std::vector<std::shared_ptr<IProcessBlock>>& blocks);

} // namespace standalone
