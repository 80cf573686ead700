#pragma once

#include <QVector>
#include <Qt>

class QAbstractItemView;
class QItemSelectionModel;
class QMimeData;
class QModelIndex;
class QStandardItem;
class QTreeView;

/// What the edit and the run tree have in common.
namespace tree_look {

/// Header, icon size and colours of a logic tree.
void apply(QTreeView* tree);

/// Draws rows anew that have changed without a signal of the model; in constant time for rows that
/// are above the ones in sight.
void redraw(QTreeView* tree, const QVector<QStandardItem*>& rows);

/// Drags @p data to where it is dropped, with the picture of a row beside the pointer. Gives what
/// became of it.
Qt::DropAction drag(QAbstractItemView& view, const QModelIndex& row, QMimeData* data,
                    Qt::DropActions actions);

/// Whether a selection holds a flow row and a step row.
bool mixesFlowsAndSteps(const QItemSelectionModel* selection);

} // namespace tree_look
