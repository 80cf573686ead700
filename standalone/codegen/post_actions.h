#pragma once

#include <string>
#include <vector>

class GotoProcessBlock;
class IProcessBlock;

namespace codegen {

struct PlannedSequence;

/// What follows a step, as its post-condition holds or fails.
struct PostAction
{
    enum Kind : int { NextStep = 0, ToStep = 1, ToSequence = 2, EndSequence = 3, EndProcess = 4 };

    bool whenTrue = true;
    Kind kind = NextStep;
    std::string target; ///< uuid of the step or sequence
};

/// Whether a step shall pause the run, which can't be done yet: the next step follows.
bool pauses(const IProcessBlock& block);

/// The actions of a step but for those that lead to the next step anyway.
std::vector<PostAction> postActions(const IProcessBlock& block);

/// The uuid of the step that a goto leads to; empty if it is found neither by uuid nor by tag.
std::string jumpTarget(const PlannedSequence& sequence, const GotoProcessBlock& jump);

} // namespace codegen
