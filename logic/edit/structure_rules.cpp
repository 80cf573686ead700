#include "logic/edit/structure_rules.h"

#include <algorithm>

namespace structure_rules {
namespace {

using Node = StepOutline::Node;
using Kind = StepOutline::Kind;

/// The step type, or None for all rows that are no basic steps: other base types use the same
/// numbers.
int basicStepType(Kind kind)
{
    return kind.baseType == BasicStep ? kind.stepType : step_type::None;
}

bool isBranch(Kind kind)
{
    return step_kinds::isBranch(basicStepType(kind));
}

bool isLoopExit(Kind kind)
{
    const int type = basicStepType(kind);
    return type == step_type::Break || type == step_type::Continue;
}

bool isInLoop(const StepOutline& outline, Node node)
{
    for (; node; node = outline.parent(node)) {
        if (step_kinds::isLoop(basicStepType(outline.kind(node))))
            return true;
    }
    return false;
}

Node nextSibling(const StepOutline& outline, Node node)
{
    const Node parent = outline.parent(node);
    return parent ? outline.child(parent, outline.row(node) + 1) : nullptr;
}

Refusal checkBranch(int branch, int anchor, int next)
{
    if (anchor != step_type::If && anchor != step_type::ElseIf)
        return Refusal::BranchWithoutIf;
    if (next == step_type::EndIf)
        return Refusal::None;
    const bool fits = branch == step_type::ElseIf && step_kinds::isBranch(next);
    return fits ? Refusal::None : Refusal::BranchOutOfOrder;
}

Place lastOf(const StepOutline& outline, Node parent)
{
    return {parent, outline.childCount(parent), true};
}

} // namespace

Refusal check(const StepOutline& outline, Node anchor, Kind added)
{
    if (!isBranch(added) && !isLoopExit(added))
        return Refusal::None;
    const Node next = nextSibling(outline, anchor);
    const int anchorType = basicStepType(outline.kind(anchor));
    const int nextType = next ? basicStepType(outline.kind(next)) : step_type::None;
    if (isBranch(added))
        return checkBranch(added.stepType, anchorType, nextType);
    if (!isInLoop(outline, anchor))
        return Refusal::LoopExitOutside;
    const bool betweenSteps = anchorType != step_type::None && nextType != step_type::None;
    return betweenSteps ? Refusal::None : Refusal::LoopExitAtEdge;
}

std::optional<Place> placeAt(const StepOutline& outline, Node anchor, Kind added)
{
    if (!isBranch(added) && outline.takesChildren(anchor))
        return lastOf(outline, anchor);
    const Node parent = outline.parent(anchor);
    if (!parent)
        return std::nullopt;
    return Place{parent, outline.row(anchor) + 1, false};
}

std::optional<Place> placeBefore(const StepOutline& outline, Node anchor, Kind added)
{
    const Node parent = outline.parent(anchor);
    if (!parent)
        return std::nullopt;
    const int row = outline.row(anchor);
    const Node above = outline.child(parent, row - 1);
    if (above && !isBranch(added) && outline.takesChildren(above))
        return lastOf(outline, above);
    return Place{parent, row, false};
}

Node partner(const StepOutline& outline, Node node)
{
    const Node parent = outline.parent(node);
    const int type = basicStepType(outline.kind(node));
    const bool forward = step_kinds::isOpener(type);
    if (!parent || (!forward && !step_kinds::isCloser(type)))
        return nullptr;
    const int wanted = forward ? step_kinds::closerOf(type) : step_kinds::openerOf(type);
    const int step = forward ? 1 : -1;
    for (int row = outline.row(node) + step;; row += step) {
        const Node sibling = outline.child(parent, row);
        if (!sibling || basicStepType(outline.kind(sibling)) == wanted)
            return sibling;
    }
}

Rows rowsOfStep(const StepOutline& outline, Node node)
{
    const int row = outline.row(node);
    const Node other = partner(outline, node);
    const int otherRow = other ? outline.row(other) : row;
    return {std::min(row, otherRow), std::max(row, otherRow)};
}

} // namespace structure_rules
