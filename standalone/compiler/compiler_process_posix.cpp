#include "standalone/compiler/compiler_process.h"

#include <QElapsedTimer>
#include <QProcess>

#include <csignal>
#include <unistd.h>

namespace standalone {

namespace {

/// A process with its children in a group of its own, so that one signal ends them all.
class GroupProcess : public QProcess
{
public:
    void killGroup()
    {
        if (processId() > 0)
            ::kill(-static_cast<pid_t>(processId()), SIGKILL);
        waitForFinished(-1);
    }

protected:
    void setupChildProcess() override { ::setpgid(0, 0); }
};

} // namespace

CompilerOutcome runCompiler(const QString& program, const QStringList& arguments,
                            const QString& folder, int timeout, const std::atomic<bool>& cancelled)
{
    constexpr int LookEvery = 100;
    GroupProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setWorkingDirectory(folder);
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!process.waitForStarted(timeout))
        return {CompilerOutcome::NotFound, process.errorString().toUtf8()};

    while (process.state() != QProcess::NotRunning && !process.waitForFinished(LookEvery)) {
        if (process.state() == QProcess::NotRunning)
            break;
        if (cancelled || timer.hasExpired(timeout)) {
            process.killGroup();
            return {cancelled ? CompilerOutcome::Cancelled : CompilerOutcome::TimedOut,
                    process.readAll()};
        }
    }
    const bool good = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return {good ? CompilerOutcome::Succeeded : CompilerOutcome::Failed, process.readAll()};
}

} // namespace standalone
