#include "logic/rows/row_kinds.h"

#include "logic/rows/logic_roles.h"
#include "model/step_kinds.h"

#include <QStandardItem>

namespace row_kinds {

int basicStepType(const QStandardItem& row)
{
    if (row.data(logic_roles::BaseType).toInt() != BasicStep)
        return step_type::None;
    return row.data(logic_roles::StepType).toInt();
}

QStandardItem* seek(const QStandardItem& row, int stepType, Direction direction)
{
    const QStandardItem* parent = row.parent();
    const int count = parent ? parent->rowCount() : 0;
    const int step = int(direction);
    for (int at = row.row() + step; at >= 0 && at < count; at += step) {
        QStandardItem* sibling = parent->child(at);
        if (basicStepType(*sibling) == stepType)
            return sibling;
    }
    return nullptr;
}

} // namespace row_kinds
