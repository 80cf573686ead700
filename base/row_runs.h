#pragma once

#include <QVector>

/// Rows of a list that are neighbours.
namespace row_runs {

/// Calls @p remove(first, count) for each run of neighbours among @p rows, which ascend: from the
/// last one up, so that the others keep their places. Neighbours go together, as each removal costs
/// a walk over the rows that stay.
template <class Remove> void removeFromTheLast(const QVector<int>& rows, const Remove& remove)
{
    for (int last = rows.size() - 1; last >= 0;) {
        int first = last;
        while (first > 0 && rows[first - 1] == rows[first] - 1)
            --first;
        remove(rows[first], last - first + 1);
        last = first - 1;
    }
}

} // namespace row_runs
