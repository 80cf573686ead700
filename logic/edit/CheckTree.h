#pragma once

#include <Qt>

class QStandardItem;

/// Where the states of a tree's rows are kept: what check_states needs to know beside the rows.
/// Rows are the items of column 0; their base and step types stand in them.
class CheckTree
{
public:
    virtual ~CheckTree() = default;

    /// The state of the row's block. A row without a block, as a flow's, answers by its box.
    virtual Qt::CheckState state(const QStandardItem* row) const = 0;

    /// Gives the block that state, then the box; only the box where there is no block.
    virtual void setState(QStandardItem* row, Qt::CheckState state) = 0;

    /// How many of the rows directly below @p row are disabled, by their boxes.
    virtual int disabledChildren(const QStandardItem* row) const = 0;
};
