#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace standalone {

/// How a process has ended.
struct ChildEnd
{
    bool hasExited = false; ///< by itself; else by a signal
    int number = 0;         ///< its exit code, or the signal's number
};

/// A child process with a report channel, a command channel, and its output and error streams as
/// pipes, in a session of its own. The child answers for all that it starts: when the command
/// channel closes, by kill or with this process's death, it ends them and itself, and it ends no
/// sooner than they. One thread owns it: it starts the child, pumps it and reaps it. Only
/// sendCommand and wake may be called from other threads.
class ChildProcess
{
public:
    enum Stream { Reports, Output, Errors, StreamCount };
    using Sink = std::function<void(Stream, const char* data, std::size_t size)>;

    ChildProcess();
    /// Kills and reaps a child that still lives.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The numbers of the report pipe, the command pipe and @p traceFile are appended to the
    /// arguments. The child inherits nothing but these, its streams and an empty input. False:
    /// error() tells why.
    bool start(const QString& program, QStringList arguments, int traceFile);
    QString error() const { return m_error; }

    /// Waits, at most that many milliseconds (negative: without end), and hands what arrived to the
    /// sink. False once the child has ended and everything it wrote was handed over.
    bool pump(int timeout, const Sink& sink);

    /// Waits for a wake alone: the child is not read, so that it waits once its pipes are full.
    void waitForWake(int timeout);

    /// Makes a pump that waits return. Any thread.
    void wake();
    /// What became of a command. Full: the child has taken none for long.
    enum class Sent { Done, Full, Gone };
    /// Writes to the command channel without waiting. Any thread.
    Sent sendCommand(const unsigned char* data, std::size_t size);

    /// Makes the child end all that it has started, and itself, at once.
    void kill();
    /// Kills it without that: for a child that doesn't do as it is told. What it has started may
    /// stay.
    void killAtOnce();
    /// Leaves a child that nobody will wait for any more.
    void forget() { m_pid = -1; }
    /// Waits for the end of the child.
    ChildEnd reap();
    /// The same, but no longer than that: empty if the child hasn't ended, or has and is held by
    /// another process, as by a debugger.
    std::optional<ChildEnd> reapWithin(std::chrono::milliseconds patience);

private:
    static constexpr int Commands = StreamCount; ///< the command channel, behind the streams
    using ChildEnds = int[StreamCount + 1];
    bool openPipes(ChildEnds& childEnds);
    bool readStream(int stream, const Sink& sink);
    void closeCommands();
    bool canBeReaped() const;
    void takeWakes();

    qint64 m_pid = -1;
    int m_streams[StreamCount] = {-1, -1, -1};
    int m_exited = -1; ///< becomes readable with the child's end, where the system has that
    int m_roundsAfterExit = 0;
    int m_wake[2] = {-1, -1};
    std::mutex m_commandMutex; ///< guards m_commands
    int m_commands = -1;
    QString m_error;
};

} // namespace standalone
