#include "standalone/compiler/compiler_process.h"

#include "standalone/compiler/ClippedOutput.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/resource.h>
#include <unistd.h>

namespace standalone {

namespace {

/// Runs "$@" and ends with its code. Standard input is a pipe from this process into which nothing
/// is ever written: it closes with this process, whatever ended it and whichever thread started
/// the compiler, and that ends the whole group.
const QString guard =
    QStringLiteral("exec 3<&0 </dev/null; "
                   "{ read -r end <&3; kill -KILL -$$; } >/dev/null 2>&1 & guard=$!; "
                   "\"$@\" 3<&-; code=$?; "
                   "kill -KILL $guard; wait $guard 2>/dev/null; exit $code");
// What the shell says of a program that it can't start.
constexpr int CannotStart = 126;
constexpr int NoSuchProgram = 127;

template <class Resource> void limit(Resource resource, qint64 most)
{
    rlimit now;
    if (::getrlimit(resource, &now) != 0)
        return;
    now.rlim_max = std::min(now.rlim_max, static_cast<rlim_t>(most));
    now.rlim_cur = std::min(now.rlim_cur, now.rlim_max);
    ::setrlimit(resource, &now);
}

/// A process with its children in a group of its own, so that one signal ends them all.
class GroupProcess : public QProcess
{
public:
    explicit GroupProcess(const CompilerBounds& bounds) : m_bounds(bounds) {}

    void killGroup()
    {
        if (processId() > 0)
            ::kill(-static_cast<pid_t>(processId()), SIGKILL);
        waitForFinished(-1);
    }

protected:
    void setupChildProcess() override
    {
        ::setpgid(0, 0);
        limit(RLIMIT_CORE, 0);
        // The clock ends a compiler before; this holds even where nobody looks at the clock.
        limit(RLIMIT_CPU, m_bounds.timeout / 1000 + 1);
        if (m_bounds.memory > 0) {
            limit(RLIMIT_AS, m_bounds.memory);
            limit(RLIMIT_FSIZE, m_bounds.memory);
        }
    }

private:
    const CompilerBounds m_bounds;
};

/// The program's own place, since the compiler starts in another folder.
QString placeOf(const QString& program)
{
    if (!program.contains(u'/'))
        return QStandardPaths::findExecutable(program);
    const QFileInfo file(program);
    return file.isExecutable() && !file.isDir() ? file.absoluteFilePath() : QString();
}

/// Compilers, assemblers and linkers say so at the beginning of a line, where the user's code has
/// no say, and none translates it.
bool saysOutOfMemory(const QByteArray& output)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:[^ :\n]{1,255}: out of memory allocating |virtual memory exhausted: "
                       "|LLVM ERROR: out of memory|[^ :\n]{1,255}: .{0,255}memory exhausted$"
                       "|terminate called after throwing an instance of 'std::bad_alloc')"),
        QRegularExpression::MultilineOption);
    return pattern.match(QString::fromUtf8(output)).hasMatch();
}

/// The driver tells of its children's signals in the words of the system, as the shell does.
bool saysFileTooLarge(const QByteArray& output)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(?:[^ :\\n]{1,255}: .{0,255})?") +
            QRegularExpression::escape(QString::fromLocal8Bit(strsignal(SIGXFSZ))),
        QRegularExpression::MultilineOption);
    return pattern.match(QString::fromUtf8(output)).hasMatch();
}

CompilerOutcome::Kind failureOf(const QByteArray& output, const CompilerBounds& bounds)
{
    if (bounds.memory > 0 && saysOutOfMemory(output))
        return CompilerOutcome::OutOfMemory;
    return bounds.memory > 0 && saysFileTooLarge(output) ? CompilerOutcome::FileTooLarge
                                                         : CompilerOutcome::Failed;
}

} // namespace

CompilerOutcome runCompiler(const QString& program, const QStringList& arguments,
                            const QString& folder, const CompilerBounds& bounds,
                            const std::atomic<bool>& cancelled)
{
    constexpr int LookEvery = 100;
    const QString place = placeOf(program);
    if (place.isEmpty())
        return {CompilerOutcome::NotFound, std::strerror(ENOENT)};
    GroupProcess process(bounds);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(folder);
    QElapsedTimer timer;
    timer.start();
    process.start(QStringLiteral("/bin/sh"),
                  QStringList{QStringLiteral("-c"), guard, QStringLiteral("sh"), place} +
                      arguments);
    if (!process.waitForStarted(bounds.timeout))
        return {CompilerOutcome::NotFound, process.errorString().toUtf8()};

    const auto group = static_cast<pid_t>(process.processId());
    ClippedOutput output;
    while (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(LookEvery);
        output.add(process.readAll());
        if (process.state() != QProcess::NotRunning &&
            (cancelled || timer.hasExpired(bounds.timeout))) {
            process.killGroup();
            output.add(process.readAll());
            return {cancelled ? CompilerOutcome::Cancelled : CompilerOutcome::TimedOut,
                    output.toText()};
        }
    }
    // What it has started and left behind; a group keeps its number as long as it has members.
    ::kill(-group, SIGKILL);
    output.add(process.readAll());
    const QByteArray words = output.toText();
    if (process.exitStatus() != QProcess::NormalExit)
        return {CompilerOutcome::Failed, words};
    switch (process.exitCode()) {
    case 0:
        return {CompilerOutcome::Succeeded, words};
    case CannotStart:
    case NoSuchProgram:
        return {CompilerOutcome::NotFound, words.trimmed()};
    default:
        return {failureOf(words, bounds), words};
    }
}

} // namespace standalone
