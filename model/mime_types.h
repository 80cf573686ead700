#pragma once

#include <QLatin1String>

class QMimeData;

/// What drags within the program carry. Values are UTF-8, numbers decimal. What comes in is data
/// from outside all the same: it is looked up, never followed.
namespace mime_types {

constexpr QLatin1String BaseType("application/baseType");
constexpr QLatin1String StepType("application/type");
constexpr QLatin1String StepName("application/stepName");
constexpr QLatin1String StepItem("application/stepitem"); ///< the palette's mark
constexpr QLatin1String QuickStepId("application/isQuickStep");
constexpr QLatin1String BlockUuid("application/blockUuid");
constexpr QLatin1String DragItem("application/dragItem"); ///< the address of a row's first item
constexpr QLatin1String VariableUuids("application/uuidVec");
constexpr QLatin1String AppletName("application/capp_name");
constexpr QLatin1String SequenceId("application/sequence_id");
constexpr QLatin1String SequenceDrag("application/sequence_drag"); ///< the mark of one

/// Adds the two empty lists by which item views know a drag as one of items.
void markAsItems(QMimeData& data);

} // namespace mime_types
