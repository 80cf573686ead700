#pragma once

class CheckTree;
class QStandardItem;

/// How an enabled state travels from one row of the edit tree to others.
///
/// - A row hands its state down to all that is under it, unless it is partly enabled.
/// - A structure's rows go together: an opener takes its closer along, an endif its if. A branch
///   that is enabled enables if and endif; one that is disabled goes off alone. The partner gets
///   along with all that is under it.
/// - A parent is enabled when all of its children are at least partly so, disabled when none is,
///   and partly enabled otherwise. It takes its own partner along.
///
/// All operations are linear in the rows that they hand a state down to, and in the siblings of the
/// row and of the rows above it. Deep trees need no deep stack. Nobody must be listening to the
/// model meanwhile: it is the caller who blocks its signals. GUI thread only.
namespace check_states {

/// Spreads the state that the block of @p row has now, to its own box first.
void propagate(CheckTree& tree, QStandardItem* row);

/// Gives all rows of a flow the state of the flow's box; nothing happens if that is partly checked.
void propagateFlow(CheckTree& tree, QStandardItem* flowRow);

/// Brings a row alone to what its children say.
void followChildren(CheckTree& tree, QStandardItem* row);

/// Brings the rows above @p row to what their children say. To be called also when a row has gone,
/// for one that is left beside it.
void updateUpward(CheckTree& tree, const QStandardItem* row);

} // namespace check_states
