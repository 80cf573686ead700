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

/// The row of a block alone, without the rows of its children.
QList<QStandardItem*> stepRow(const IProcessBlock& block, Purpose purpose);

/// Writes name, description and settings of @p block into an existing row; @p stale marks the
/// description of a block that must be compiled again.
void refreshTexts(QStandardItem* nameItem, const IProcessBlock& block, bool stale);

/// Puts the mark of a block that must be compiled again behind the description, or takes it off.
/// Does nothing where it stands as wanted.
void setStaleMark(QStandardItem* descriptionItem, bool stale);

/// The uuid of the block that a row shows; "0", "1" or "2" for a flow's.
QString uuidOf(const QStandardItem* nameItem);

bool isFlow(const QStandardItem* nameItem);

/// The cell of @p column in the row of @p nameItem, which stands in a tree; null if there is none.
QStandardItem* cell(const QStandardItem* nameItem, int column);

/// The icon of a step kind, shared by all its rows; null for a kind without one.
QIcon icon(int baseType, int stepType);

/// A step's name as a person reads it.
QString translatedName(const std::string& name);

} // namespace step_rows
