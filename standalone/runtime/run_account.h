#pragma once

#include "standalone/runtime/ChildProcess.h"
#include "standalone/runtime/TraceFile.h"

#include <QString>

namespace standalone {

/// What is known of a run after its end.
struct RunAccount
{
    QString appName;
    ChildEnd end;
    RunTrace trace;
    bool wasKilled = false; ///< by us, after a stop
    QString fault;          ///< what was wrong with its reports if that ended it, by us
    bool hasTold = false;   ///< the child itself has told of a fault
    bool isLeft = false;    ///< it could not be waited for: its end is unknown
    qint64 memoryLimit = 0; ///< in bytes

    /// One line about the processes that the applet left running and that were ended with the run,
    /// the first of them by name, and about those that could not be ended. Empty if there were
    /// none.
    QString leftProcesses() const;
    /// Why a run did not come to its own end, for the user. Empty if the child has told so itself.
    QString reason() const;
    /// The step that ran and those before it, one a line; empty if none had begun. By the names
    /// that the model knows: GUI thread. Without @p useModel by their ids, on any thread.
    QString steps(bool useModel) const;
};

} // namespace standalone
