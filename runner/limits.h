#pragma once

#include <cstddef>
#include <vector>

/// What the run may take of the machine, so that a step that allocates without end ends its run and
/// nothing else.
///
/// Too much memory is more than the limit in what the applet's own process may write to, used or
/// not, or in what all processes of the run have in memory, pages that they share counted once:
/// shared mappings count, and copies that a fork would make only when written to do not. A process
/// whose memory the system doesn't tell, asked twice, is one too much. What stands in files in
/// memory without being mapped is not seen.
namespace limits {

/// In bytes; 0: no limit. Counts for isExceededBy.
void setMemory(std::size_t memory);

/// Lowers the limits that the calling process and all that it starts live under. Allocations fail
/// far beyond the memory's limit only, since most code doesn't expect that; it is for the
/// supervisor to end the run before.
void apply();

/// Whether these processes have too much memory; @p runner among them is the applet's own.
bool isExceededBy(int runner, const std::vector<int>& pids);

/// The same of the calling process alone, after apply; false if it can't be told.
/// Async-signal-safe.
bool isExceededByThis();

void forbidCoreFiles();

} // namespace limits
