#include "logic/rows/step_drops.h"

#include "logic/rows/row_kinds.h"

#include <QStandardItem>

#include <algorithm>

namespace step_drops {

using row_kinds::basicStepType;
using structure_rules::Place;
using structure_rules::Refusal;
using structure_rules::Rows;

namespace {

int typeAt(const QStandardItem& parent, int row)
{
    const QStandardItem* child = parent.child(row);
    return child ? basicStepType(*child) : step_type::None;
}

bool isIfOrElseIf(int type)
{
    return type == step_type::If || type == step_type::ElseIf;
}

Refusal checkBranch(const Drop& drop, bool isElseIf)
{
    const bool isOn = drop.row < 0;
    const QStandardItem* parent = isOn ? drop.target->parent() : drop.target;
    if (!parent)
        return Refusal::BranchWithoutIf;
    const int row = isOn ? drop.target->row() + 1 : drop.row;
    const int before = typeAt(*parent, row - 1);
    if (isOn ? before != step_type::If : !isIfOrElseIf(before))
        return Refusal::BranchWithoutIf;
    const int after = typeAt(*parent, row);
    const bool isBeforeBranch = after == step_type::ElseIf || (after == step_type::Else && !isOn);
    const bool fits = after == step_type::EndIf || (isElseIf && isBeforeBranch);
    return fits ? Refusal::None : Refusal::BranchOutOfOrder;
}

Refusal checkLoopExit(const Drop& drop)
{
    if (drop.row >= 0) {
        const int before = typeAt(*drop.target, drop.row - 1);
        const int after = typeAt(*drop.target, drop.row);
        if (step_kinds::isLoop(before) && after == step_kinds::closerOf(before))
            return Refusal::None;
        if (!drop.target->child(drop.row))
            return Refusal::LoopExitAtEdge;
    }
    return structure_rules::isInLoop(drop.target) ? Refusal::None : Refusal::LoopExitOutside;
}

Refusal checkKind(const Drop& drop)
{
    if (drop.kind.baseType != BasicStep)
        return drop.kind.baseType == DiagnosticStep ? Refusal::None : Refusal::NoStep;
    if (step_kinds::isCloser(drop.kind.stepType))
        return Refusal::CloserAlone;
    if (drop.isOnGround && drop.row < 0)
        return Refusal::None;
    switch (drop.kind.stepType) {
    case step_type::Else:
    case step_type::ElseIf:
        return checkBranch(drop, drop.kind.stepType == step_type::ElseIf);
    case step_type::Break:
    case step_type::Continue:
        return checkLoopExit(drop);
    default:
        return Refusal::None;
    }
}

/// Whether a step or a flow can hold others: what a view asks, too, before it lets a step fall on a
/// row.
bool takesSteps(const QStandardItem& row)
{
    return row.isDropEnabled();
}

/// Moved rows must not come to stand among themselves, nor a branch away from an if.
Refusal checkMove(const Drop& drop)
{
    if (drop.isOnGround && structure_rules::isBranch(drop.kind))
        return Refusal::BranchWithoutIf;
    const QStandardItem* source = drop.dragged->parent();
    const Rows moved = rowsMoved(drop.dragged);
    const Place place = placeOf(drop);
    if (place.parent == source && place.row > moved.first && place.row <= moved.last)
        return Refusal::IntoItself;
    for (const QStandardItem* row = place.parent; row; row = row->parent()) {
        if (row->parent() == source && row->row() >= moved.first && row->row() <= moved.last)
            return Refusal::IntoItself;
    }
    return takesSteps(*place.parent) ? Refusal::None : Refusal::NoContainer;
}

} // namespace

Refusal check(const Drop& drop)
{
    const Refusal refusal = checkKind(drop);
    if (refusal != Refusal::None || !drop.dragged)
        return refusal;
    return checkMove(drop);
}

Rows rowsMoved(const QStandardItem* dragged)
{
    if (step_kinds::isOpener(basicStepType(*dragged)))
        return structure_rules::rowsOfStep(dragged);
    return {dragged->row(), dragged->row()};
}

Place placeOf(const Drop& drop)
{
    const auto lastOf = [](QStandardItem* parent) {
        return Place{parent, parent->rowCount(), true};
    };
    const bool isBranch = structure_rules::isBranch(drop.kind);
    if (drop.row < 0) {
        if (isBranch && isIfOrElseIf(basicStepType(*drop.target)) && drop.target->parent())
            return {drop.target->parent(), drop.target->row() + 1, false};
        return lastOf(drop.target);
    }
    QStandardItem* above = drop.target->child(drop.row - 1);
    const int type = above ? basicStepType(*above) : step_type::None;
    const bool holdsSteps = step_kinds::isOpener(type) || step_kinds::isBranch(type);
    if (holdsSteps && !isBranch)
        return lastOf(above);
    return {drop.target, std::min(drop.row, drop.target->rowCount()), false};
}

} // namespace step_drops
