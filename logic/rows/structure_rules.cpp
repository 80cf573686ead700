#include "logic/rows/structure_rules.h"

#include "logic/rows/row_kinds.h"

#include <QCoreApplication>
#include <QStandardItem>

#include <algorithm>

namespace structure_rules {
namespace {

using row_kinds::basicStepType;

bool isLoopExit(StepKind kind)
{
    return kind.baseType == BasicStep &&
           (kind.stepType == step_type::Break || kind.stepType == step_type::Continue);
}

/// Null outside the children.
QStandardItem* sibling(const QStandardItem* row, int offset)
{
    const QStandardItem* parent = row->parent();
    const int at = row->row() + offset;
    return parent && at >= 0 && at < parent->rowCount() ? parent->child(at) : nullptr;
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

Place lastOf(QStandardItem* parent)
{
    return {parent, parent->rowCount(), true};
}

} // namespace

QString reasonOf(Refusal refusal)
{
    const auto text = [](const char* reason) {
        return QCoreApplication::translate("structure_rules", reason);
    };
    switch (refusal) {
    case Refusal::BranchWithoutIf:
        return text("else和else if只能接在if或else if之后");
    case Refusal::BranchOutOfOrder:
        return text("else只能放在endif之前，else if不能放在else之后");
    case Refusal::LoopExitOutside:
        return text("break和continue只能放在循环内");
    case Refusal::LoopExitAtEdge:
        return text("break和continue只能放在两个基本步骤之间");
    case Refusal::IntoItself:
        return text("不能移入自身");
    case Refusal::NoContainer:
        return text("此步骤不能包含其他步骤");
    case Refusal::CloserAlone:
        return text("结束行不能单独添加或移动");
    case Refusal::ForeignStep:
        return text("该步骤不属于当前序列");
    case Refusal::NoStep:
        return text("这里只能放置步骤");
    case Refusal::None:
        break;
    }
    return QString();
}

bool isBranch(StepKind kind)
{
    return kind.baseType == BasicStep && step_kinds::isBranch(kind.stepType);
}

bool isInLoop(const QStandardItem* row)
{
    for (; row; row = row->parent()) {
        if (step_kinds::isLoop(basicStepType(*row)))
            return true;
    }
    return false;
}

Refusal check(const QStandardItem* anchor, StepKind added)
{
    if (!isBranch(added) && !isLoopExit(added))
        return Refusal::None;
    const QStandardItem* next = sibling(anchor, 1);
    const int anchorType = basicStepType(*anchor);
    const int nextType = next ? basicStepType(*next) : step_type::None;
    if (isBranch(added))
        return checkBranch(added.stepType, anchorType, nextType);
    if (!isInLoop(anchor))
        return Refusal::LoopExitOutside;
    const bool betweenSteps = anchorType != step_type::None && nextType != step_type::None;
    return betweenSteps ? Refusal::None : Refusal::LoopExitAtEdge;
}

std::optional<Place> placeAt(QStandardItem* anchor, StepKind added,
                             const TakesChildren& takesChildren)
{
    if (!isBranch(added) && takesChildren(anchor))
        return lastOf(anchor);
    QStandardItem* parent = anchor->parent();
    if (!parent)
        return std::nullopt;
    return Place{parent, anchor->row() + 1, false};
}

std::optional<Place> placeBefore(const QStandardItem* anchor, StepKind added,
                                 const TakesChildren& takesChildren)
{
    QStandardItem* parent = anchor->parent();
    if (!parent)
        return std::nullopt;
    QStandardItem* above = sibling(anchor, -1);
    if (above && !isBranch(added) && takesChildren(above))
        return lastOf(above);
    return Place{parent, anchor->row(), false};
}

QStandardItem* partner(const QStandardItem* row)
{
    using row_kinds::Direction;
    const int type = basicStepType(*row);
    if (step_kinds::isOpener(type))
        return row_kinds::seek(*row, step_kinds::closerOf(type), Direction::Forward);
    if (step_kinds::isCloser(type))
        return row_kinds::seek(*row, step_kinds::openerOf(type), Direction::Backward);
    return nullptr;
}

Rows rowsOfStep(const QStandardItem* row)
{
    const QStandardItem* other = partner(row);
    const int otherRow = other ? other->row() : row->row();
    return {std::min(row->row(), otherRow), std::max(row->row(), otherRow)};
}

} // namespace structure_rules
