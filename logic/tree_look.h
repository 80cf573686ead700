#pragma once

#include <QSet>
#include <QString>

class CustonStandModel;
class QItemSelectionModel;
class QTreeView;

/// What the edit and the run tree have in common, and marks that cover a whole tree.
namespace tree_look {

/// Header, icon size and colours of a logic tree.
void apply(QTreeView* tree);

/// Marks the rows of @p blockUuids as to be compiled again, and unmarks all others. The model sends
/// no signals for it: the caller has the view drawn again.
void markStaleRows(CustonStandModel& model, const QSet<QString>& blockUuids);

/// Whether a selection holds a flow row and a step row.
bool mixesFlowsAndSteps(const QItemSelectionModel* selection);

} // namespace tree_look
