#pragma once

#include "logic/rows/step_rows.h"

#include <array>
#include <memory>
#include <vector>

class IProcessBlock;
class QStandardItem;
class QStandardItemModel;
struct SequenceInfo;
struct processTemplateInfo;

/// From the blocks of a sequence to the rows of a tree. GUI thread only.
namespace flow_loader {

using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

/// The top-level blocks of the initial, the main and the end flow.
using SequenceFlows = std::array<Blocks, 3>;

/// The flows of an applet's sequence; uuids without a block are left out. A diagnostic block of an
/// older document gets the description of its kind, which it lacks.
SequenceFlows sequenceFlows(const QString& appName, const SequenceInfo& sequence);

/// The flows of a sequence that a template holds: its main one or one that it calls.
SequenceFlows templateFlows(const processTemplateInfo& info, const SequenceInfo& sequence);

/// Gives an empty model its headers, the three flow rows and all rows under them. Run rows leave
/// out disabled blocks with all that they hold; on edit rows the box of a flow follows its steps.
void fill(QStandardItemModel* model, const SequenceFlows& flows, step_rows::Purpose purpose);

/// Appends the rows of blocks, and of all that is under them, to a row.
void appendRows(QStandardItem* parent, const Blocks& blocks, step_rows::Purpose purpose);

/// The state of a flow's box: checked for a flow without rows.
Qt::CheckState flowCheckState(const Blocks& blocks);

} // namespace flow_loader
