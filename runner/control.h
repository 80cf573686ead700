#pragma once

#include "runner/report_buffer.h"

#include <cstdint>
#include <string>

/// The side of the runner that listens to the editor while the applet runs: a thread that takes
/// the stop command, flushes reports that have waited for some milliseconds, and ends the process
/// when the applet has closed the command channel, or when the supervisor says that it has taken
/// too much memory; and one that ends it when the supervisor is gone.
namespace control {

/// Before everything else here; false if the system refuses, errno tells why.
bool open(int commandPipe);

/// Waits for the start command on the command channel; empty if the channel ended instead.
std::string awaitStart();

/// Starts the threads. @p noticePipe is the supervisor's. All live to the end of the process. False
/// if the system refuses, errno tells why.
bool start(int noticePipe, ReportBuffer& reports);

/// Whether a stop command has come. Any thread.
bool isStopAsked();

/// The same as a number that is not 0, for the applet to look at between its steps.
const volatile int* stopFlag();

/// Tells the thread that reports wait. Any thread, cheap.
void expectFlush();

/// Waits; false if a stop cut it short. A stop that came before counts as well.
bool wait(std::int64_t milliseconds);

/// Milliseconds of a clock that never goes back.
std::int64_t now();

} // namespace control
