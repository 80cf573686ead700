#include "standalone/runtime/runtime.h"

#include "standalone/runtime/RunnerRegistry.h"

#include "standalone/runtime/machine_memory.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>

namespace standalone {

namespace {

QString chosenPath;
std::atomic<qint64> chosenLimit{-1};

} // namespace

void setRunnerPath(const QString& path)
{
    chosenPath = path;
}

QString runnerPath()
{
    if (!chosenPath.isEmpty())
        return chosenPath;
#ifdef Q_OS_WIN
    return QCoreApplication::applicationDirPath() + QStringLiteral("/applet_runner.exe");
#else
    return QCoreApplication::applicationDirPath() + QStringLiteral("/applet_runner");
#endif
}

void setMemoryLimit(qint64 bytes)
{
    chosenLimit = bytes;
}

qint64 memoryLimit()
{
    constexpr qint64 Most = qint64(2) << 30;
    constexpr qint64 Share = 4;
    const qint64 chosen = chosenLimit;
    if (chosen >= 0)
        return chosen;
    const qint64 machine = machineMemory();
    return machine > 0 ? std::min(Most, machine / Share) : Most;
}

QString runRecord(const QString& appName)
{
    const auto record = RunnerRegistry::instance().record(appName.toLocal8Bit().toStdString());
    return record ? record->path() : QString();
}

void shutdownRuntime()
{
    RunnerRegistry::instance().shutDown();
}

} // namespace standalone
