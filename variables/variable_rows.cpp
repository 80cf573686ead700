#include "variables/variable_rows.h"

#include "base/row_runs.h"
#include "model/type_tables.h"

#include <QMap>
#include <QSet>
#include <QStandardItemModel>

#include <algorithm>

namespace variable_rows {

namespace {

QList<QStandardItem*> makeItems()
{
    QList<QStandardItem*> items;
    for (int column = 0; column < ColumnCount; ++column)
        items.append(new QStandardItem);
    return items;
}

void writeItems(const QList<QStandardItem*>& items, const processVariable& variable)
{
    const std::string* texts[] = {&variable.name, &variable.value, &variable.type,
                                  &variable.description};
    for (int column = 0; column < ColumnCount; ++column) {
        items[column]->setText(QString::fromStdString(*texts[column]));
        items[column]->setToolTip(items[column]->text());
    }
    QStandardItem* first = items.first();
    first->setData(QString::fromStdString(variable.uuid), UuidRole);
    first->setData(int(variable.scope), ScopeRole);
    first->setData(isCompositeVarType(varTypeFromKeyword(variable.type)), CompositeRole);
    first->setData(variable.isEditable, EditableRole);
    first->setData(variable.length, LengthRole);
}

template <class Visitor> void forEachVariable(const QAbstractItemModel& model, Visitor visit)
{
    for (int groupRow = 0; groupRow < model.rowCount(); ++groupRow) {
        const QModelIndex group = model.index(groupRow, NameColumn);
        const int rows = model.rowCount(group);
        for (int row = 0; row < rows; ++row)
            visit(model.index(row, NameColumn, group));
    }
}

} // namespace

QList<QStandardItem*> makeGroup(const QString& title, processVariableType scope,
                                const std::vector<processVariable>& variables)
{
    const QList<QStandardItem*> row = makeItems();
    for (QStandardItem* item : row)
        item->setDragEnabled(false);
    row.first()->setText(title);
    row.first()->setData(int(scope), ScopeRole);
    for (const processVariable& variable : variables)
        row.first()->appendRow(makeVariable(variable));
    return row;
}

QList<QStandardItem*> makeVariable(const processVariable& variable)
{
    const QList<QStandardItem*> row = makeItems();
    for (QStandardItem* item : row) {
        item->setDropEnabled(false);
        item->setDragEnabled(variable.scope != FixedVariable);
    }
    if (variable.isLocked) {
        for (int column = 0; column < ColumnCount; ++column) {
            row[column]->setSelectable(false);
            row[column]->setEnabled(column == ValueColumn && variable.isEditable);
        }
    }
    writeItems(row, variable);
    return row;
}

void write(QStandardItemModel& model, const QModelIndex& row, const processVariable& variable)
{
    QList<QStandardItem*> items;
    for (int column = 0; column < ColumnCount; ++column)
        items.append(model.itemFromIndex(row.sibling(row.row(), column)));
    writeItems(items, variable);
}

bool isGroup(const QModelIndex& index)
{
    return index.isValid() && !index.parent().isValid();
}

bool isVariable(const QModelIndex& index)
{
    return index.parent().isValid();
}

QModelIndex rowOf(const QModelIndex& index)
{
    return index.sibling(index.row(), NameColumn);
}

QModelIndex groupOf(const QModelIndex& index)
{
    return isVariable(index) ? index.parent() : rowOf(index);
}

processVariableType scopeOf(const QModelIndex& index)
{
    return processVariableType(rowOf(index).data(ScopeRole).toInt());
}

QString uuidOf(const QModelIndex& index)
{
    return rowOf(index).data(UuidRole).toString();
}

QString textOf(const QModelIndex& index, Column column)
{
    return index.sibling(index.row(), column).data().toString();
}

QModelIndexList find(const QAbstractItemModel& model, const QStringList& uuids)
{
    const QSet<QString> wanted(uuids.begin(), uuids.end());
    QModelIndexList rows;
    forEachVariable(model, [&](const QModelIndex& row) {
        if (wanted.contains(uuidOf(row)))
            rows.append(row);
    });
    return rows;
}

QStringList otherNames(const QAbstractItemModel& model, const QModelIndex& index)
{
    QStringList names;
    forEachVariable(model, [&](const QModelIndex& row) {
        if (row != rowOf(index))
            names.append(row.data().toString());
    });
    return names;
}

void remove(QStandardItemModel& model, const QModelIndexList& rows)
{
    QMap<int, QVector<int>> rowsOfGroups;
    for (const QModelIndex& row : rows)
        rowsOfGroups[row.parent().row()].append(row.row());
    for (auto group = rowsOfGroups.begin(); group != rowsOfGroups.end(); ++group) {
        QVector<int>& sorted = *group;
        std::sort(sorted.begin(), sorted.end());
        QStandardItem* parent = model.item(group.key());
        row_runs::removeFromTheLast(
            sorted, [parent](int first, int count) { parent->removeRows(first, count); });
    }
}

} // namespace variable_rows
