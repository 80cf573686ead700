#pragma once

#include "logic/rows/structure_rules.h"

/// Which steps may be dropped where, and where moved rows then go: functions over rows, as those of
/// structure_rules. What is asked while a drag hovers costs the way to the root and a partner's
/// search among siblings.
namespace step_drops {

struct Drop
{
    QStandardItem* target = nullptr; ///< what it is dropped on or into; never null
    int row = -1;                    ///< before this row of the target; negative: on the target
    bool isOnGround = false;         ///< below or between the flows: the target is the main flow
    structure_rules::StepKind kind;
    const QStandardItem* dragged = nullptr; ///< null for a new step
};

/// Why a drop is refused.
structure_rules::Refusal check(const Drop& drop);

/// The rows that are moved with @p dragged: of an opener those to its closer.
structure_rules::Rows rowsMoved(const QStandardItem* dragged);

/// Where moved rows go that have passed the check: counted with the moved rows still at their old
/// place.
structure_rules::Place placeOf(const Drop& drop);

} // namespace step_drops
