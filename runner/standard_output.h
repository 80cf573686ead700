#pragma once

/// What the applet prints: line by line, for a write at each call would be dear where a step prints
/// signs or numbers one by one. The line that has begun is not lost with the process.
namespace standard_output {

/// Before anything is printed.
void take();

/// For a signal handler that ends the process: writes out the line that has begun.
void flushAfterCrash();

/// The same from another thread than the printing one, unless that is inside a call.
void flushUnlessBusy();

/// In a process that the applet has forked: its copy of that line is the other's.
void detach();

} // namespace standard_output
