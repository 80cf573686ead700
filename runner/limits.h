#pragma once

#include <cstddef>

/// What the run may take of the machine, so that a step that allocates without end ends its run and
/// nothing else.
namespace limits {

/// In bytes; 0: no limit. Allocations fail far beyond it only, since most code doesn't expect that;
/// it is for the watching thread to end the run before.
void apply(std::size_t memory);

/// Whether the process has more memory than that. Async-signal-safe.
bool isMemoryExceeded();

} // namespace limits
