#pragma once

#include <QLatin1String>

class QMimeData;

/// What drags within the program carry. Values are UTF-8, numbers decimal. What comes in is data
/// from outside all the same: it is looked up, never followed.
namespace mime_types {

inline const QLatin1String BaseType("application/baseType");
inline const QLatin1String StepType("application/type");
inline const QLatin1String StepName("application/stepName");
inline const QLatin1String StepItem("application/stepitem"); ///< the palette's mark
inline const QLatin1String QuickStepId("application/isQuickStep");
inline const QLatin1String BlockUuid("application/blockUuid");
inline const QLatin1String DragItem("application/dragItem"); ///< the address of a row's first item
inline const QLatin1String VariableUuids("application/uuidVec");
inline const QLatin1String AppletName("application/capp_name");
inline const QLatin1String SequenceId("application/sequence_id");
inline const QLatin1String SequenceDrag("application/sequence_drag"); ///< the mark of one

/// Adds the two empty lists by which item views know a drag as one of items.
void markAsItems(QMimeData& data);

} // namespace mime_types
