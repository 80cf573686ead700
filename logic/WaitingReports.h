#pragma once

#include "logic/runProcessState.h"

#include <vector>

/// Reports in the order of their coming, each equal one once. Not shared between threads.
class WaitingReports
{
public:
    /// False if an equal report waits already; @p report is then dropped.
    bool append(runProcessState report);

    /// The report that waits last; a blank one is appended for it if none waits.
    runProcessState& last();

    std::vector<runProcessState> take();

private:
    /// Open addressing over the reports' places: a run may report faster than nodes are allocated.
    struct Slot
    {
        uint hash = 0;
        int place = -1; ///< in m_reports
    };

    void grow();

    std::vector<runProcessState> m_reports;
    std::vector<Slot> m_slots; ///< a power of two, at most half full
};
