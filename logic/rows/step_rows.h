#pragma once

#include "model/step_kinds.h"

#include <QIcon>
#include <QList>
#include <QStringList>

class IProcessBlock;
class QStandardItem;
class QStandardItemModel;

/// The rows of the logic trees, made from blocks. A row is one QStandardItem a column, which
/// belongs to the caller until it is inserted somewhere. GUI thread only.
namespace step_rows {

/// Edit rows have three columns and a check box, run rows a fourth column and none.
enum class Purpose { Edit, Run };

/// The headers of a tree, translated.
QStringList headers(Purpose purpose);

/// The top row of a flow: InitialFlow, MainFlow or EndFlow. Checked on the edit tree.
QList<QStandardItem*> flowRow(logicBlockType flow, Purpose purpose);

/// The row of a block alone, without the rows of its children. On the edit tree only the first cell
/// is an item: CustonStandModel shows the texts of the others as the block has them. Cells without
/// a text are null on the run tree.
QList<QStandardItem*> stepRow(const IProcessBlock& block, Purpose purpose);

/// Brings an edit row to the flags that its block's property gives it: where it can be dragged, and
/// whether steps can stand in it.
void followProperty(QStandardItem* nameItem, const IProcessBlock& block);

/// What the description or the settings column shows of a block; @p stale marks the description of
/// one that must be compiled again.
QString cellText(const IProcessBlock& block, int column, bool stale);

/// The uuid of the block that a row shows; "0", "1" or "2" for a flow's.
QString uuidOf(const QStandardItem* nameItem);

bool isFlow(const QStandardItem* nameItem);

/// Whether steps can be put under the row: always for a flow's, for a step as its block's kind
/// says.
bool takesChildren(const QString& appName, const QStandardItem* nameItem);

/// The cell of @p column in the row of @p nameItem, which stands in a tree; null if there is none.
QStandardItem* cell(const QStandardItem* nameItem, int column);

/// The icon of a step kind, shared by all its rows; null for a kind without one.
QIcon icon(int baseType, int stepType);

/// A step's name as a person reads it.
QString translatedName(const std::string& name);

} // namespace step_rows
