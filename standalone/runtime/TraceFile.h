#pragma once

#include "protocol/run_trace.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace standalone {

/// A step as a run's trace names it.
struct TracedStep
{
    std::string templateId; ///< empty: of the applet itself
    std::string sequenceId;
    std::string stepId;
    /// As run_trace::StepBegin tells them.
    std::vector<std::uint64_t> passes;
};

/// A process that the applet has started and that was ended with the run.
struct EndedProcess
{
    std::string name; ///< of its program; any bytes
    int pid = 0;
};

/// What a run has left behind in its trace.
struct RunTrace
{
    bool hasBegun = false; ///< the applet's own code was reached
    run_trace::Cause cause = run_trace::NoCause;
    std::optional<TracedStep> running; ///< the innermost one that had begun and not ended
    std::vector<TracedStep> before;    ///< the ones that began before it, the last one first
    std::vector<EndedProcess> ended;   ///< the first of them
    std::uint32_t endedCount = 0;      ///< all of them
    std::uint32_t survivorCount = 0;   ///< processes of the run that could not be ended
};

/// The memory that a child process traces its run in, as a file without a name. Read by copying and
/// never mapped here: the child may change its size at any time.
class TraceFile
{
public:
    static constexpr std::size_t StepsBefore = 10;

    TraceFile() = default;
    ~TraceFile();
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    /// False if the system refuses.
    bool create();
    /// What the system knows the file by, for the start of the child; -1 without one.
    int handle() const { return m_file; }

    /// After the child's end. What can't be read or makes no sense is left out.
    RunTrace read() const;

private:
    bool readAt(std::size_t at, void* data, std::size_t size) const;
    std::string textAt(std::size_t at) const;
    std::optional<TracedStep> step(const run_trace::Area& area,
                                   const run_trace::StepBegin& begin) const;

    int m_file = -1;
};

} // namespace standalone
