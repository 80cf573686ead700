#pragma once

#include <QString>

class ProcessEditWidget;

/// Shows a step to the user: its sequence on the edit tab, its row current and in sight, its
/// panels. With an empty @p stepId the sequence alone. False if the editor has no such sequence or
/// step.
bool showStep(ProcessEditWidget& editor, const QString& sequenceId, const QString& stepId);
