#pragma once

#include <cstddef>

/// The pipes to the editor, as the numbers that the command line names.
namespace channel {

/// Makes the pipes private to this process, ties its life to the editor's, and lets a write to a
/// closed pipe fail instead of ending the process.
void adopt(int reportPipe, int commandPipe);

/// Writes everything. Ends the process at once if the editor is gone. Async-signal-safe.
void write(int pipe, const void* data, std::size_t size);

/// Reads what is there, waiting for the first byte; 0 at the end of the channel.
std::size_t read(int pipe, void* data, std::size_t size);

/// Ends the process without running any of its exit handlers. Async-signal-safe.
[[noreturn]] void leave(int exitCode);

} // namespace channel
