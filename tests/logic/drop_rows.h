#pragma once

#include "logic/rows/CustonStandModel.h"

#include <QMimeData>
#include <QStandardItem>

#include <memory>

namespace drop_rows {

/// Drags the row of a step, with what is moved with it, before the row @p row of @p parent; onto
/// that one with a negative number. False if the rows refuse it.
inline bool drop(CustonStandModel& model, const QString& step, const QString& parent, int row)
{
    const std::unique_ptr<QMimeData> data(model.mimeData({model.rowOf(step)->index()}));
    return model.dropMimeData(data.get(), Qt::MoveAction, row, 0, model.rowOf(parent)->index());
}

} // namespace drop_rows
