#pragma once

#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"

#include <QList>
#include <QStandardItem>

/// What a drop within the tree does with its rows.
namespace drop_rows {

/// The cells of a row and all rows under it.
inline QList<QStandardItem*> copyOf(const QStandardItem* parent, int row)
{
    QList<QStandardItem*> cells;
    for (int column = 0; column < logic_columns::EditCount; ++column) {
        const QStandardItem* cell = parent->child(row, column);
        cells.append(cell ? cell->clone() : nullptr);
    }
    for (int i = 0; i < parent->child(row)->rowCount(); ++i)
        cells.first()->appendRow(copyOf(parent->child(row), i));
    return cells;
}

/// Moves @p count rows from the one of @p first on: copies come to the row @p at of @p parent,
/// counted without the rows themselves, then the rows go and the model tells of it.
inline void move(CustonStandModel& model, const QString& first, int count, const QString& parent,
                 int at)
{
    QStandardItem* target = model.rowOf(parent);
    QStandardItem* source = model.rowOf(first)->parent();
    const int from = model.rowOf(first)->row();
    const bool isUp = target == source && at <= from;
    if (target == source && !isUp)
        at += count;
    QList<QList<QStandardItem*>> copies;
    for (int i = 0; i < count; ++i)
        copies.append(copyOf(source, from + i));
    for (const auto& cells : qAsConst(copies))
        target->insertRow(at++, cells);
    source->removeRows(isUp ? from + count : from, count);
    QModelIndexList moved;
    for (const auto& cells : qAsConst(copies))
        moved.append(cells.first()->index());
    emit model.dropEnd(moved);
}

} // namespace drop_rows
