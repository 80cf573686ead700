#pragma once

#include <cstddef>

/// The program is two processes: one that runs the applet, and its parent, the supervisor, which
/// stands between it and the editor and sees to it that nothing of a run is left behind.
///
/// The supervisor is the parent of whatever loses its own, so that every process that the applet
/// starts, by whatever way, stays its descendant. It ends them all when the applet's process has
/// ended and when the editor closes the command channel or is gone, whatever the reason, and writes
/// into the trace which it met. It watches the memory that all of them take together, and how many
/// they are. Then it ends as the applet's process did: with its exit code, or by its signal.
///
/// It protects against accidents. Code that runs as the same user can kill it; the applet's process
/// dies with it then, what that has started does not.
namespace supervisor {

struct Duty
{
    std::size_t memoryLimit = 0; ///< in bytes, over all processes of the run; 0: none
    int commandPipe = -1;
    int traceFile = -1; ///< of run_trace.h
};

/// Returns in the applet's process only, before that has started a thread. The result is a pipe
/// that becomes readable when the run has taken too much memory: the process has a moment to write
/// out what it has to say and to end itself. -1 if there is no second process; errno tells why.
int divide(const Duty& duty);

/// Whether the supervisor lives. The applet's process asks now and then, since the system forgets
/// that it is to die with the supervisor when it changes its user.
bool isThere();

} // namespace supervisor
