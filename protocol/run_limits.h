#pragma once

/// What the editor and a run's supervisor have agreed upon. No Qt here, since both share it.
namespace run_limits {

/// How long the supervisor goes on ending what the run has started while that doesn't become fewer.
/// What is alive then is another user's, or waits in the kernel; it says so and ends.
constexpr int EndMilliseconds = 1000;
/// When the editor doesn't ask the supervisor any more, after it told that to end the run.
constexpr int SupervisorMilliseconds = 1500;
static_assert(EndMilliseconds < SupervisorMilliseconds,
              "the supervisor comes to its own end before the editor kills it");
/// How long the editor waits for the end of a supervisor that it has killed. The system takes its
/// time over that where others keep it busy.
constexpr int DeathMilliseconds = 3000;

/// More processes than that at once end a run.
constexpr int MostProcesses = 1000;

} // namespace run_limits
