#pragma once

#include "model/step_reference.h"

#include <QString>
#include <QVector>

#include <optional>

/// A line of output as the pane shows it.
struct OutputLine
{
    enum class Kind {
        Plain,
        Heading, ///< of the details that follow it
        Detail   ///< folded away until somebody opens its heading
    };

    QString text;   ///< without the ids of the place that it leads to
    QString target; ///< sequence of that place; empty if it leads nowhere
    QString step;   ///< step of that place; empty: the sequence itself
    Kind kind = Kind::Plain;
};

/// Cuts a text of output into lines. What only explains another line becomes its details: the steps
/// before the one that crashed, and a compiler's own words behind errors that have been told with
/// their places. A text without such places keeps all its lines in sight. Empty lines at the
/// beginning and one at the end are left out.
QVector<OutputLine> outputLines(const QString& text);
