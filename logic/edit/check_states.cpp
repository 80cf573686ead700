#include "logic/edit/check_states.h"

#include "logic/edit/CheckTree.h"
#include "logic/rows/row_kinds.h"
#include "model/step_kinds.h"

#include <QStandardItem>

#include <vector>

using row_kinds::basicStepType;
using row_kinds::Direction;
using row_kinds::seek;

namespace check_states {
namespace {

void handDown(CheckTree& tree, QStandardItem* row)
{
    const Qt::CheckState state = tree.state(row);
    if (state == Qt::PartiallyChecked)
        return;
    std::vector<QStandardItem*> pending{row};
    while (!pending.empty()) {
        const QStandardItem* parent = pending.back();
        pending.pop_back();
        for (int i = 0; i < parent->rowCount(); ++i) {
            QStandardItem* child = parent->child(i);
            tree.setState(child, state);
            if (child->hasChildren())
                pending.push_back(child);
        }
    }
}

void bringAlong(CheckTree& tree, QStandardItem* partner, bool enabled)
{
    // A partner that is partly enabled is enabled; it keeps what it has.
    if (!partner || (tree.state(partner) != Qt::Unchecked) == enabled)
        return;
    tree.setState(partner, enabled ? Qt::Checked : Qt::Unchecked);
    handDown(tree, partner);
}

void syncPair(CheckTree& tree, const QStandardItem& row)
{
    const int type = basicStepType(row);
    const bool enabled = tree.state(&row) != Qt::Unchecked;
    if (step_kinds::isOpener(type)) {
        bringAlong(tree, seek(row, step_kinds::closerOf(type), Direction::Forward), enabled);
    } else if (type == step_type::EndIf) {
        bringAlong(tree, seek(row, step_type::If, Direction::Backward), enabled);
    } else if (step_kinds::isBranch(type) && enabled) {
        bringAlong(tree, seek(row, step_type::If, Direction::Backward), enabled);
        bringAlong(tree, seek(row, step_type::EndIf, Direction::Forward), enabled);
    }
}

Qt::CheckState stateOfChildren(const CheckTree& tree, const QStandardItem& parent)
{
    const int disabled = tree.disabledChildren(&parent);
    if (disabled == 0)
        return Qt::Checked;
    return disabled == parent.rowCount() ? Qt::Unchecked : Qt::PartiallyChecked;
}

} // namespace

void propagate(CheckTree& tree, QStandardItem* row)
{
    tree.setState(row, tree.state(row));
    syncPair(tree, *row);
    updateUpward(tree, row);
    handDown(tree, row);
}

void propagateFlow(CheckTree& tree, QStandardItem* flowRow)
{
    // All rows get one and the same state. Hence it doesn't matter which block of the flow is
    // paired with which row, partners can't come to differ, and nothing above a row depends on it
    // but the flow's box, which has that state already: to go down once ends as going down, along
    // and up from each of the rows would.
    handDown(tree, flowRow);
}

void followChildren(CheckTree& tree, QStandardItem* row)
{
    tree.setState(row, stateOfChildren(tree, *row));
}

void updateUpward(CheckTree& tree, const QStandardItem* row)
{
    for (QStandardItem* parent = row->parent(); parent; parent = parent->parent()) {
        followChildren(tree, parent);
        syncPair(tree, *parent);
    }
}

} // namespace check_states
