#pragma once

#include "model/step_kinds.h"

#include <functional>
#include <optional>

class QStandardItem;
class QString;

/// What the tree of a flow may look like: which steps may be added where, where they go, and which
/// rows belong together.
///
/// A structure's rows are siblings: an opener, the branches of an if, and the closer behind them;
/// what an opener or a branch holds are its children. All operations are linear in the siblings at
/// most. Rows are the items of column 0, in which base and step type stand; a flow's row has no
/// parent. No state; of a tree on screen GUI thread only.
namespace structure_rules {

/// Why a step may not be added or moved somewhere.
enum class Refusal {
    None,
    BranchWithoutIf,  ///< else, else if: what is before is neither if nor else if
    BranchOutOfOrder, ///< else not directly before endif; else if not before a row of its if
    LoopExitOutside,  ///< break, continue: in no loop
    LoopExitAtEdge,   ///< break, continue: what is before or behind is no basic step
    IntoItself,       ///< rows would come to stand among themselves
    NoContainer,      ///< the row can't hold steps
    CloserAlone,      ///< endif and its like come and go with their openers
    ForeignStep,      ///< a row that isn't one of this tree
    NoStep            ///< no step at all
};

/// What its user is told; empty for None.
QString reasonOf(Refusal refusal);

/// Where rows go: before the row @c row of @c parent, or behind its last one.
struct Place
{
    QStandardItem* parent = nullptr;
    int row = 0;
    bool isLast = false; ///< behind the last child; @c row is then the number of children
};

/// Sibling rows, both ends included.
struct Rows
{
    int first = 0;
    int last = 0;
};

struct StepKind
{
    int baseType = NoBlock; ///< logicBlockType
    int stepType = step_type::None;
};

/// Whether steps can be put under a row: always for a flow's, for a step by its kind.
using TakesChildren = std::function<bool(const QStandardItem* row)>;

/// Else and else if.
bool isBranch(StepKind kind);
/// Whether a row or one above it opens a loop.
bool isInLoop(const QStandardItem* row);

/// Whether a step of kind @p added may be added at the row @p anchor. Only else, else if, break and
/// continue are ever refused.
Refusal check(const QStandardItem* anchor, StepKind added);

/// Where a step goes that is added at a row: into a row that takes steps, behind any other; a
/// branch always behind. Nothing if that would be beside the flows.
std::optional<Place> placeAt(QStandardItem* anchor, StepKind added,
                             const TakesChildren& takesChildren);

/// Where a step goes that is dropped between two rows, above @p anchor: into the upper row if that
/// takes steps, but for a branch; else between the two. Nothing for a flow's row.
std::optional<Place> placeBefore(const QStandardItem* anchor, StepKind added,
                                 const TakesChildren& takesChildren);

/// The other end of the structure that an opener or a closer bounds: the nearest sibling of that
/// kind. Null for all other rows and for a row that lacks its partner.
QStandardItem* partner(const QStandardItem* row);

/// The rows that go when @p row goes: from an opener to its closer with all branches between, from
/// a closer likewise, any other row alone.
Rows rowsOfStep(const QStandardItem* row);

} // namespace structure_rules
