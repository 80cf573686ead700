#pragma once

#include "standalone/runtime/TraceFile.h"

#include <QHash>
#include <QString>

namespace standalone {

/// A step as the user knows it.
struct StepName
{
    QString sequence;
    QString step;
    /// How many steps stand between it and the loop around it, in the same sequence; -1 without.
    int levelsBelowLoop = -1;
};

/// Names of steps, from the model: GUI thread. What the model doesn't know keeps its ids.
class StepNames
{
public:
    /// Without an applet everything keeps its ids; then any thread.
    explicit StepNames(const QString& appName) : m_appName(appName) {}

    StepName find(const TracedStep& step);

private:
    /// Of one sequence, or of all of a template.
    using Names = QHash<QString, StepName>;
    Names namesOf(const TracedStep& step) const;

    const QString m_appName;
    QHash<QString, Names> m_known; ///< by template or sequence
};

} // namespace standalone
