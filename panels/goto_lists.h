#pragma once

#include <QString>

class CustomComboBox;

/// What jumps can lead to, as the lists of goto boxes. A row has its base type as Qt::UserRole and
/// its id as CustomComboBox::IdRole. GUI thread only.
namespace goto_lists {

/// The flows of a sequence with all their steps; those that can't bear a tag are grey. The box
/// shows the step of this uuid, or nothing.
void showSteps(CustomComboBox& box, const QString& appName, const QString& sequenceId,
               const QString& stepId);

/// The sequences of an applet; the box shows the one of this id, or nothing.
void showSequences(CustomComboBox& box, const QString& appName, const QString& sequenceId);

} // namespace goto_lists
