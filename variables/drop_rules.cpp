#include "variables/drop_rules.h"

#include <QtGlobal>

#include <algorithm>

namespace drop_rules {

Target targetOf(int parentGroup, int row, const QVector<int>& groupSizes)
{
    const int groups = groupSizes.size();
    if (groups == 0 || parentGroup >= groups)
        return {};
    if (parentGroup >= 0) {
        const int size = groupSizes[parentGroup];
        return {parentGroup, row < 0 ? size : qMin(row, size)};
    }
    const int group = row < 0 ? groups - 1 : qBound(0, row - 1, groups - 1);
    return {group, groupSizes[group]};
}

int rowWithout(const QVector<int>& draggedRows, int row)
{
    const auto above = std::count_if(draggedRows.begin(), draggedRows.end(),
                                     [row](int dragged) { return dragged < row; });
    return row - int(above);
}

} // namespace drop_rules
