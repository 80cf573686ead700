#pragma once

#include "model/process_records.h"

#include <QList>
#include <QModelIndex>
#include <QStringList>

class QStandardItem;
class QStandardItemModel;

/// The rows of a varStandModel: three group rows, and under them a row for each variable. All data
/// stands on column 0. GUI thread only.
namespace variable_rows {

enum Column { NameColumn, ValueColumn, TypeColumn, RemarkColumn, ColumnCount };

/// Group rows have the scope only.
enum Role { UuidRole = Qt::UserRole, ScopeRole, CompositeRole, EditableRole, LengthRole };

/// The row of a group; its row number in the model is its scope.
QList<QStandardItem*> makeGroup(const QString& title, processVariableType scope,
                                const std::vector<processVariable>& variables);
QList<QStandardItem*> makeVariable(const processVariable& variable);

/// Puts a variable's present content into its row.
void write(QStandardItemModel& model, const QModelIndex& row, const processVariable& variable);

bool isGroup(const QModelIndex& index);
bool isVariable(const QModelIndex& index);
/// The row that @p index stands in: its index in column 0.
QModelIndex rowOf(const QModelIndex& index);
/// The group that @p index is or stands in, in column 0; invalid for an invalid one.
QModelIndex groupOf(const QModelIndex& index);
processVariableType scopeOf(const QModelIndex& index);
QString uuidOf(const QModelIndex& index);
QString textOf(const QModelIndex& index, Column column);

/// The rows of variables, in the order of the model; those without a row are left out.
QModelIndexList find(const QAbstractItemModel& model, const QStringList& uuids);

/// All names in the model but that of the row of @p index.
QStringList otherNames(const QAbstractItemModel& model, const QModelIndex& index);

/// Takes rows of one model away, neighbours together.
void remove(QStandardItemModel& model, const QModelIndexList& rows);

} // namespace variable_rows
