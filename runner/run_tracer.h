#pragma once

#include "protocol/run_trace.h"
#include "runner/applet_module.h"

#include <cstdint>

/// Keeps the memory of run_trace.h up to date. For the thread that runs the applet, but for
/// setCause.
namespace run_tracer {

/// Lays the module's texts down in the memory behind @p file, and follows its steps from now on.
/// Without such memory it follows them in vain.
void open(int file, const applet_module& module);

/// In a process that the applet has forked: nothing of it reaches the editor.
void detach();

void begin(u32 step);
void end(u32 step);
void enter();
void leave();

/// How often a loop that runs has begun a turn, by applet_step::turn_step; 0 if there is none, or
/// it isn't known, as after a jump into the loop.
std::uint64_t turnsBegun(u32 turnStep);

/// Any thread, and signal handlers.
void setCause(run_trace::Cause cause);

} // namespace run_tracer
