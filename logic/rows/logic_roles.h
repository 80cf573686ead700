#pragma once

#include <Qt>

/// What the cells of the logic trees and the items of the palette hold, beside their texts. Rows
/// hold identities only; whatever else a row shows is read from its block.
namespace logic_roles {

constexpr int BaseType = Qt::UserRole;      ///< logicBlockType as int; flow rows have theirs
constexpr int StepType = Qt::UserRole + 1;  ///< int; flow rows have none
constexpr int BlockUuid = Qt::UserRole + 2; ///< QString; "0", "1" and "2" on flow rows

// Palette items only.
constexpr int Draggable = Qt::UserRole + 3;   ///< bool
constexpr int IsQuickStep = Qt::UserRole + 4; ///< bool: the item stands in the quick step folder
constexpr int QuickStepId = Qt::UserRole + 5; ///< QString

} // namespace logic_roles

/// Columns of the logic trees; only the run tree has the last one.
namespace logic_columns {
constexpr int Name = 0;
constexpr int Description = 1;
constexpr int Setting = 2;
constexpr int State = 3;
constexpr int EditCount = 3;
constexpr int RunCount = 4;
} // namespace logic_columns
