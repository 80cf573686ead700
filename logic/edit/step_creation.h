#pragma once

#include "model/step_kinds.h"

#include <QList>
#include <QString>

class QStandardItem;

/// New steps: the model service makes their blocks, then the rows follow. GUI thread only.
namespace step_creation {

/// A step to be made: a kind, or a quick step if @c quickStepId is not empty.
struct Request
{
    QString appName;
    QString sequenceId;
    QString parentUuid; ///< a block's uuid, or "0", "1" or "2" for a flow
    int index = 0;      ///< among the siblings; at or behind their number means the end
    logicBlockType baseType = BasicStep;
    int stepType = step_type::None;
    QString quickStepId;
};

/// The cells of a row with the rows under it, the caller's until they stand in a tree.
using Row = QList<QStandardItem*>;

/// Makes the blocks: the step itself, and behind an opener its closer; a quick step of an opener's
/// kind gets a new closer too. Gives their rows in order, or none if the service gave no block for
/// one of them; what it has made until then stays with it.
QList<Row> buildRows(const Request& request);

} // namespace step_creation
