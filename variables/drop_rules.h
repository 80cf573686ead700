#pragma once

#include <QVector>

/// Where dragged variables come to stand. No state, any thread.
namespace drop_rules {

/// Before the child at @c row of the group at @c group.
struct Target
{
    int group = -1; ///< -1 where there is no group at all
    int row = 0;
};

/// The place meant by a drop before child @p row of @p parentGroup, negative for a drop on the
/// group itself. A @p parentGroup of -1 means between the groups: a drop before a group lands at
/// the end of the one above it, and one in the empty space at the end of the last. @p groupSizes
/// are the groups' numbers of children.
Target targetOf(int parentGroup, int row, const QVector<int>& groupSizes);

/// @p row counted without those of @p draggedRows, in the same group, that stand above the place.
int rowWithout(const QVector<int>& draggedRows, int row);

} // namespace drop_rules
