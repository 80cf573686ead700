#pragma once

#include <QString>

#include <optional>

/// A line of output that leads to a step ends in its ids, in brackets:
/// "words [sequence id/step id]". A host's output pane shows such a line without them, and leads
/// its reader there.
struct StepReference
{
    QString sequenceId;
    QString stepId; ///< empty: the sequence itself
    QString text;   ///< the line without the reference
};

/// The reference at the end of a line; none for any other text.
std::optional<StepReference> stepReference(const QString& line);

/// A line with such a reference at its end. @p sequenceId is not empty.
QString withStepReference(const QString& line, const QString& sequenceId, const QString& stepId);
