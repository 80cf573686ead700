#pragma once

#include <QVector>

class QItemSelectionModel;
class QStandardItem;
class QTreeView;

/// What the edit and the run tree have in common.
namespace tree_look {

/// Header, icon size and colours of a logic tree.
void apply(QTreeView* tree);

/// Draws rows anew that have changed without a signal of the model; in constant time for rows that
/// are above the ones in sight.
void redraw(QTreeView* tree, const QVector<QStandardItem*>& rows);

/// Whether a selection holds a flow row and a step row.
bool mixesFlowsAndSteps(const QItemSelectionModel* selection);

} // namespace tree_look
