#include "runner/supervisor.h"

#include "runner/channel.h"
#include "runner/control.h"
#include "runner/limits.h"
#include "runner/process_tree.h"
#include "standalone/runtime/run_trace.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace supervisor {

namespace {

constexpr int MemoryMilliseconds = 40;
constexpr int LeaveMilliseconds = 200;
/// What can't be ended is another user's, or waits in the kernel.
constexpr int EndMilliseconds = 3000;
constexpr int RoundMilliseconds = 10;

pid_t supervisorId = -1;

class Supervisor
{
public:
    Supervisor(const Duty& duty, pid_t runner, int noticePipe)
        : m_duty(duty), m_runner(runner), m_noticePipe(noticePipe)
    {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGCHLD);
        m_childSignals = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    }

    [[noreturn]] void run()
    {
        while (watch()) {
        }
        endAll();
        tell();
        leaveAsRunner();
    }

private:
    /// False when the run is to be ended.
    bool watch()
    {
        // Nothing is read from the command channel here: what counts is that its other end closes.
        pollfd sources[] = {{m_duty.commandPipe, 0, 0}, {m_childSignals, POLLIN, 0}};
        const auto left = static_cast<int>(std::max<std::int64_t>(0, m_lookAt - control::now()));
        poll(sources, 2, m_duty.memoryLimit > 0 ? left : -1);
        if (sources[0].revents != 0)
            return false;
        reap();
        if (m_hasRunnerEnded)
            return false;
        if (m_duty.memoryLimit == 0 || control::now() < m_lookAt)
            return true;
        if (m_isOverMemory) // it was told to leave, and hasn't
            return false;
        m_isOverMemory = limits::isExceededBy(m_runner, process_tree::descendants());
        if (m_isOverMemory) {
            endDescendants(true);
            channel::write(m_noticePipe, "", 1);
        }
        m_lookAt = control::now() + (m_isOverMemory ? LeaveMilliseconds : MemoryMilliseconds);
        return true;
    }

    /// Takes in the ends of children; false when there are none any more. Since orphans become
    /// children, there are no descendants either then.
    bool reap()
    {
        signalfd_siginfo ended;
        while (::read(m_childSignals, &ended, sizeof ended) > 0) {
        }
        for (;;) {
            int status = 0;
            const pid_t pid = waitpid(-1, &status, WNOHANG | __WALL);
            if (pid <= 0)
                return pid == 0 || errno != ECHILD;
            if (pid == m_runner) {
                m_hasRunnerEnded = true;
                m_runnerStatus = status;
            }
        }
    }

    void endAll()
    {
        const std::int64_t giveUpAt = control::now() + EndMilliseconds;
        while (reap()) {
            m_survivors = endDescendants(false);
            if (control::now() >= giveUpAt)
                return;
            pollfd childEnds = {m_childSignals, POLLIN, 0};
            poll(&childEnds, 1, RoundMilliseconds);
        }
        m_survivors = 0;
    }

    /// How many were alive. All are looked at before the first is ended, since each may be in the
    /// group of another; groups are ended whole, which leaves no member the time to start another.
    std::uint32_t endDescendants(bool spareRunner)
    {
        std::vector<process_tree::Member> alive;
        for (const int pid : process_tree::descendants()) {
            process_tree::Member member;
            if (process_tree::describe(pid, member) && !member.hasEnded &&
                !(spareRunner && pid == m_runner))
                alive.push_back(member);
        }
        const pid_t runnersGroup = getpgid(m_runner);
        for (const process_tree::Member& member : alive) {
            if (member.pid != m_runner)
                note(member);
            if (member.group > 0 && member.group != getpgrp() &&
                !(spareRunner && member.group == runnersGroup))
                kill(-member.group, SIGKILL);
            kill(member.pid, SIGKILL);
        }
        return static_cast<std::uint32_t>(alive.size());
    }

    void note(const process_tree::Member& member)
    {
        if (std::find(m_noted.begin(), m_noted.end(), member.pid) != m_noted.end())
            return;
        m_noted.push_back(member.pid);
        if (m_noted.size() > run_trace::MaxEnded)
            return;
        run_trace::EndedProcess& entry = m_ended[m_noted.size() - 1];
        static_assert(sizeof entry.name == sizeof member.name, "a name is copied whole");
        std::memcpy(entry.name, member.name, sizeof entry.name);
        entry.pid = member.pid;
    }

    void put(const void* data, std::size_t size, std::size_t at) const
    {
        // Without a trace the run ends all the same, and the editor says less of it.
        const ssize_t written = pwrite(m_duty.traceFile, data, size, static_cast<off_t>(at));
        (void)written;
    }

    /// Nobody else writes any more.
    void tell() const
    {
        const std::uint32_t cause = run_trace::MemoryLimit;
        if (m_isOverMemory)
            put(&cause, sizeof cause, offsetof(run_trace::Area, cause));
        const auto count = static_cast<std::uint32_t>(m_noted.size());
        put(m_ended, sizeof m_ended, offsetof(run_trace::Area, ended));
        put(&count, sizeof count, offsetof(run_trace::Area, endedCount));
        put(&m_survivors, sizeof m_survivors, offsetof(run_trace::Area, survivorCount));
    }

    [[noreturn]] void leaveAsRunner() const
    {
        if (!m_hasRunnerEnded || WIFEXITED(m_runnerStatus))
            channel::leave(m_hasRunnerEnded ? WEXITSTATUS(m_runnerStatus) : 1);
        limits::forbidCoreFiles();
        const int number = WTERMSIG(m_runnerStatus);
        std::signal(number, SIG_DFL);
        kill(getpid(), number);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        channel::leave(1);
    }

    const Duty m_duty;
    const pid_t m_runner;
    const int m_noticePipe;
    int m_childSignals = -1;
    bool m_hasRunnerEnded = false;
    int m_runnerStatus = 0;
    bool m_isOverMemory = false;
    std::int64_t m_lookAt = control::now() + MemoryMilliseconds; ///< at the memory
    std::vector<pid_t> m_noted;
    run_trace::EndedProcess m_ended[run_trace::MaxEnded] = {};
    std::uint32_t m_survivors = 0;
};

} // namespace

int divide(const Duty& duty)
{
    int notice[2];
    // Made that large now, and never smaller: the other process makes it larger.
    const int sized = ftruncate(duty.traceFile, sizeof(run_trace::Area));
    (void)sized;
    if (pipe2(notice, O_CLOEXEC) != 0)
        return -1;
    // Nothing but SIGKILL and SIGSTOP touches the supervisor, which ended children take for init.
    std::signal(SIGCHLD, SIG_DFL);
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    supervisorId = getpid();
    const pid_t runner = fork();
    if (runner < 0)
        return -1;
    if (runner > 0) {
        close(notice[0]);
        Supervisor(duty, runner, notice[1]).run();
    }
    close(notice[1]);
    // A group of its own, so that an applet that signals its group spares the supervisor.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!isThere())
        channel::leave(1);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return channel::adopt(notice[0]);
}

bool isThere()
{
    return getppid() == supervisorId;
}

} // namespace supervisor
