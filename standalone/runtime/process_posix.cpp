#include "standalone/runtime/ChildProcess.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#ifdef __linux__
#include <sys/syscall.h>
#endif

extern char** environ;

namespace standalone {

namespace {

constexpr int ReportPipe = 3;
constexpr int CommandPipe = 4;
constexpr int TraceNumber = 5;
/// Our own ends lie above the numbers that they take in the child, so that none is overwritten.
constexpr int LowestOwn = 16;
/// Read of a stream at once: some thousand lines at worst, when each is empty.
constexpr std::size_t PieceSize = 4 * 1024;
/// Reads per stream after the child's end: more than its pipe can hold, which is a megabyte where
/// the child has widened it.
constexpr int MaxRoundsAfterExit = (1 << 20) / PieceSize + 1;

void closeFile(int& file)
{
    if (file >= 0)
        ::close(file);
    file = -1;
}

/// A pipe that no other child inherits, however closely both are started.
bool makePipe(int (&ends)[2])
{
    int low[2];
    if (pipe2(low, O_CLOEXEC) != 0)
        return false;
    for (int i = 0; i < 2; ++i) {
        ends[i] = fcntl(low[i], F_DUPFD_CLOEXEC, LowestOwn);
        ::close(low[i]);
    }
    return ends[0] >= 0 && ends[1] >= 0;
}

void setNonBlocking(int file)
{
    fcntl(file, F_SETFL, fcntl(file, F_GETFL) | O_NONBLOCK);
}

int openExitWatch(pid_t pid)
{
#ifdef SYS_pidfd_open
    return static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
#else
    (void)pid;
    return -1;
#endif
}

/// What is set for the child before its program begins: streams, and signals as a fresh program
/// expects them.
class SpawnSetup
{
public:
    SpawnSetup()
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&attributes, &set);
        sigaddset(&set, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &set);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                  POSIX_SPAWN_SETSID);
    }
    ~SpawnSetup()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

} // namespace

ChildProcess::ChildProcess() = default;

ChildProcess::~ChildProcess()
{
    if (m_pid > 0) {
        kill();
        reap();
    }
    for (int& stream : m_streams)
        closeFile(stream);
    closeFile(m_exited);
    closeFile(m_wake[0]);
    closeFile(m_wake[1]);
    closeCommands();
}

/// @p childEnds: of the three streams, in their order, and of the command channel.
bool ChildProcess::openPipes(ChildEnds& childEnds)
{
    for (int i = 0; i < StreamCount; ++i) {
        int ends[2] = {-1, -1};
        const bool made = makePipe(ends);
        m_streams[i] = ends[0];
        childEnds[i] = ends[1];
        if (!made)
            return false;
        setNonBlocking(ends[0]);
    }
    int commands[2] = {-1, -1};
    const bool made = makePipe(commands);
    childEnds[Commands] = commands[0];
    m_commands = commands[1];
    if (!made || !makePipe(m_wake))
        return false;
    setNonBlocking(m_commands);
    setNonBlocking(m_wake[0]);
    setNonBlocking(m_wake[1]);
    return true;
}

bool ChildProcess::start(const QString& program, QStringList arguments, int traceFile)
{
    arguments << QString::number(ReportPipe) << QString::number(CommandPipe)
              << QString::number(TraceNumber);
    std::vector<QByteArray> texts{QFile::encodeName(program)};
    for (const QString& argument : qAsConst(arguments))
        texts.push_back(QFile::encodeName(argument));
    std::vector<char*> argv;
    for (QByteArray& text : texts)
        argv.push_back(text.data());
    argv.push_back(nullptr);

    ChildEnds childEnds = {-1, -1, -1, -1};
    int result = 0;
    pid_t pid = -1;
    if (openPipes(childEnds)) {
        SpawnSetup setup;
        posix_spawn_file_actions_addopen(&setup.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&setup.actions, childEnds[Output], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&setup.actions, childEnds[Errors], STDERR_FILENO);
        posix_spawn_file_actions_adddup2(&setup.actions, childEnds[Reports], ReportPipe);
        posix_spawn_file_actions_adddup2(&setup.actions, childEnds[Commands], CommandPipe);
        if (traceFile >= 0)
            posix_spawn_file_actions_adddup2(&setup.actions, traceFile, TraceNumber);
        result =
            posix_spawn(&pid, argv[0], &setup.actions, &setup.attributes, argv.data(), environ);
    } else {
        result = errno;
    }
    for (int& end : childEnds)
        closeFile(end);
    if (result != 0) {
        m_error = QString::fromLocal8Bit(std::strerror(result));
        return false;
    }
    m_pid = pid;
    m_exited = openExitWatch(pid);
    return true;
}

bool ChildProcess::pump(int timeout, const Sink& sink)
{
    pollfd sources[StreamCount + 2];
    for (int i = 0; i < StreamCount; ++i)
        sources[i] = {m_streams[i], POLLIN, 0};
    sources[StreamCount] = {m_wake[0], POLLIN, 0};
    sources[StreamCount + 1] = {m_exited, POLLIN, 0};
    poll(sources, StreamCount + 2, timeout);

    if (sources[StreamCount].revents != 0)
        takeWakes();
    // A process that could not be ended may hold the streams open: the child's own end counts, and
    // what it left in the pipes is read before.
    const bool exited = sources[StreamCount + 1].revents != 0;
    bool open = false;
    bool gotMore = false;
    for (int i = 0; i < StreamCount; ++i) {
        if (m_streams[i] < 0)
            continue;
        if (exited || sources[i].revents != 0) {
            const bool read = readStream(i, sink);
            gotMore = gotMore || read;
        }
        open = open || m_streams[i] >= 0;
    }
    if (exited)
        return gotMore && ++m_roundsAfterExit < MaxRoundsAfterExit;
    return open || m_exited >= 0;
}

/// Hands over one piece of what a stream holds; false if there was nothing. Closes it at its end.
bool ChildProcess::readStream(int stream, const Sink& sink)
{
    char bytes[PieceSize];
    const ssize_t size = ::read(m_streams[stream], bytes, sizeof bytes);
    if (size > 0) {
        sink(static_cast<Stream>(stream), bytes, static_cast<std::size_t>(size));
        return true;
    }
    if (size == 0 || (errno != EAGAIN && errno != EINTR))
        closeFile(m_streams[stream]);
    return false;
}

void ChildProcess::waitForWake(int timeout)
{
    pollfd source = {m_wake[0], POLLIN, 0};
    poll(&source, 1, timeout);
    takeWakes();
}

void ChildProcess::takeWakes()
{
    char bytes[64];
    while (::read(m_wake[0], bytes, sizeof bytes) > 0) {
    }
}

void ChildProcess::wake()
{
    const char byte = 0;
    // A full pipe wakes as well.
    const ssize_t written = ::write(m_wake[1], &byte, 1);
    (void)written;
}

ChildProcess::Sent ChildProcess::sendCommand(const unsigned char* data, std::size_t size)
{
    const std::lock_guard<std::mutex> lock(m_commandMutex);
    if (m_commands < 0)
        return Sent::Gone;
    // The write may find the child gone; the signal that comes with it is for this thread only.
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    const ssize_t written = ::write(m_commands, data, size);
    const bool isGone = written < 0 && errno == EPIPE;
    if (isGone && !sigismember(&pending, SIGPIPE)) {
        const timespec atOnce = {0, 0};
        sigtimedwait(&pipeSignal, nullptr, &atOnce);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return isGone ? Sent::Gone : written == static_cast<ssize_t>(size) ? Sent::Done : Sent::Full;
}

void ChildProcess::closeCommands()
{
    const std::lock_guard<std::mutex> lock(m_commandMutex);
    closeFile(m_commands);
}

void ChildProcess::kill()
{
    closeCommands();
    if (m_pid > 0)
        ::kill(static_cast<pid_t>(m_pid), SIGCONT); // no process of the run holds it up
}

void ChildProcess::killAtOnce()
{
    if (m_pid <= 0)
        return;
    ::kill(static_cast<pid_t>(-m_pid), SIGKILL);
    ::kill(static_cast<pid_t>(m_pid), SIGKILL); // it may have left its group
}

/// Whether the child has ended and nobody else is to be told of it first.
bool ChildProcess::canBeReaped() const
{
    siginfo_t info = {};
    const int result =
        ::waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOWAIT | WNOHANG);
    return result == 0 ? info.si_pid != 0 : errno != EINTR;
}

std::optional<ChildEnd> ChildProcess::reapWithin(std::chrono::milliseconds patience)
{
    constexpr std::chrono::milliseconds Slice{5};
    closeCommands();
    const auto giveUpAt = std::chrono::steady_clock::now() + patience;
    while (!canBeReaped()) {
        if (std::chrono::steady_clock::now() >= giveUpAt)
            return std::nullopt;
        std::this_thread::sleep_for(Slice);
    }
    return reap();
}

ChildEnd ChildProcess::reap()
{
    closeCommands();
    int status = 0;
    pid_t result = 0;
    do {
        result = ::waitpid(static_cast<pid_t>(m_pid), &status, 0);
    } while (result < 0 && errno == EINTR);
    m_pid = -1;
    if (result <= 0)
        return {};
    if (WIFEXITED(status))
        return {true, WEXITSTATUS(status)};
    return {false, WTERMSIG(status)};
}

} // namespace standalone
