#pragma once

#include <cstddef>

/// The pipes to the editor, as the numbers that the command line names.
namespace channel {

/// Takes a pipe over from its number on the command line: under a number that nobody meets by
/// counting, and private to this process.
int adopt(int pipe);

/// Lets a write to a closed pipe fail instead of ending the process.
void outliveReader();

/// Writes everything. False if nobody reads it any more, or if the pipe was closed on this side.
/// Async-signal-safe.
bool write(int pipe, const void* data, std::size_t size);

/// Reads what is there, waiting for the first byte; 0 at the end of the channel.
std::size_t read(int pipe, void* data, std::size_t size);

/// Ends the process without running any of its exit handlers. Async-signal-safe.
[[noreturn]] void leave(int exitCode);

} // namespace channel
