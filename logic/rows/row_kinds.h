#pragma once

class QStandardItem;

/// What kinds of steps rows of the edit tree stand for. Rows are the items of column 0.
namespace row_kinds {

enum class Direction { Backward = -1, Forward = 1 };

/// The step type, or None for all rows that are no basic steps: other base types use the same
/// numbers.
int basicStepType(const QStandardItem& row);

/// The nearest sibling of a basic step type; null if there is none. A structure's rows are siblings
/// and its body lies below them, so the nearest one belongs to the same structure.
QStandardItem* seek(const QStandardItem& row, int stepType, Direction direction);

} // namespace row_kinds
