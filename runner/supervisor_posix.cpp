#include "runner/supervisor.h"

#include "protocol/run_limits.h"
#include "protocol/run_trace.h"
#include "runner/channel.h"
#include "runner/control.h"
#include "runner/limits.h"
#include "runner/process_tree.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <limits>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>
#include <unordered_set>
#include <vector>

namespace supervisor {

namespace {

constexpr int LookMilliseconds = 40;
constexpr int LeaveMilliseconds = 200;
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
        leaveAsRunner();
    }

private:
    /// False when the run is to be ended.
    bool watch()
    {
        // Nothing is read from the command channel here: what counts is that its other end closes.
        pollfd sources[] = {{m_duty.commandPipe, 0, 0}, {m_childSignals, POLLIN, 0}};
        const auto left = static_cast<int>(std::max<std::int64_t>(0, m_lookAt - control::now()));
        poll(sources, 2, left);
        if (sources[0].revents != 0)
            return false;
        reap();
        if (m_hasRunnerEnded)
            return false;
        if (control::now() < m_lookAt)
            return true;
        if (m_cause != run_trace::NoCause) // it was told to leave, and hasn't
            return false;
        m_cause = findExcess();
        if (m_cause == run_trace::ProcessLimit) // told to leave, it would go on forking
            return false;
        const bool isOverMemory = m_cause == run_trace::MemoryLimit;
        if (isOverMemory) {
            endDescendants(true);
            channel::write(m_noticePipe, "", 1);
        }
        m_lookAt = control::now() + (isOverMemory ? LeaveMilliseconds : LookMilliseconds);
        return true;
    }

    /// What can't be looked at, twice, is too much of it.
    run_trace::Cause findExcess() const
    {
        process_tree::Descendants found = findAll();
        if (!found.isWhole)
            found = findAll();
        if (found.pids.size() > std::size_t(run_limits::MostProcesses))
            return run_trace::ProcessLimit;
        if (m_duty.memoryLimit > 0 &&
            (!found.isWhole || limits::isExceededBy(m_runner, found.pids)))
            return run_trace::MemoryLimit;
        return run_trace::NoCause;
    }

    /// The processes of the run; whatever the system tells, the runner until it has ended.
    process_tree::Descendants findAll(const std::function<void(int pid)>& onMet = nullptr) const
    {
        process_tree::Descendants found = process_tree::descendants(onMet);
        std::vector<int>& pids = found.pids;
        if (!m_hasRunnerEnded && std::find(pids.begin(), pids.end(), m_runner) == pids.end())
            pids.insert(pids.begin(), m_runner);
        return found;
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

    /// What was met is told at once, since the editor's patience ends too.
    void endAll()
    {
        std::int64_t giveUpAt = 0;
        std::uint32_t fewest = std::numeric_limits<std::uint32_t>::max();
        while (reap()) {
            m_survivors = endDescendants(false);
            tell();
            // A round takes long when there are many: what counts is whether they become fewer.
            if (m_survivors < fewest)
                giveUpAt = control::now() + run_limits::EndMilliseconds;
            else if (control::now() >= giveUpAt)
                return;
            fewest = std::min(fewest, m_survivors);
            pollfd childEnds = {m_childSignals, POLLIN, 0};
            poll(&childEnds, 1, RoundMilliseconds);
        }
        m_survivors = 0;
        tell();
    }

    /// How many were alive. Each is stopped as it is met, so that none starts another meanwhile,
    /// and all are looked at before the first is ended, since each may be in the group of another.
    /// Groups are ended whole: that finds those that fork and end faster than they can be met.
    std::uint32_t endDescendants(bool spareRunner)
    {
        const auto isSpared = [&](int pid) { return spareRunner && pid == m_runner; };
        const pid_t runnersGroup = m_hasRunnerEnded ? -1 : getpgid(m_runner);
        if (!spareRunner && runnersGroup > 0 && runnersGroup != getpgrp())
            kill(-runnersGroup, SIGSTOP); // at once
        const process_tree::Descendants found = findAll([&](int pid) {
            if (!isSpared(pid))
                kill(pid, SIGSTOP);
        });
        std::vector<process_tree::Member> members;
        for (const int pid : found.pids) {
            process_tree::Member member;
            if (!isSpared(pid) && (process_tree::describe(pid, member) || pid == m_runner))
                members.push_back(member);
        }
        std::uint32_t alive = 0;
        std::unordered_set<int> groups = {0, getpgrp()};
        if (spareRunner)
            groups.insert(runnersGroup);
        for (const process_tree::Member& member : members) {
            if (groups.insert(member.group).second)
                kill(-member.group, SIGKILL);
            if (member.hasEnded)
                continue;
            ++alive;
            if (member.pid != m_runner)
                note(member);
            kill(member.pid, SIGKILL);
        }
        return alive;
    }

    void note(const process_tree::Member& member)
    {
        if (!m_noted.insert(member.pid).second || m_noted.size() > run_trace::MaxEnded)
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

    /// What others have written meanwhile is told anew by the next call.
    void tell() const
    {
        if (m_cause != run_trace::NoCause)
            put(&m_cause, sizeof m_cause, offsetof(run_trace::Area, cause));
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
        sigset_t own;
        sigemptyset(&own);
        sigaddset(&own, number);
        sigprocmask(SIG_UNBLOCK, &own, nullptr);
        channel::leave(1);
    }

    const Duty m_duty;
    const pid_t m_runner;
    const int m_noticePipe;
    int m_childSignals = -1;
    bool m_hasRunnerEnded = false;
    int m_runnerStatus = 0;
    run_trace::Cause m_cause = run_trace::NoCause; ///< why the run is ended, if it is from here
    std::int64_t m_lookAt = control::now() + LookMilliseconds; ///< at what the run takes
    std::unordered_set<pid_t> m_noted;
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
