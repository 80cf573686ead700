#include "standalone/runtime/runtime.h"

#include "standalone/runtime/RunnerRegistry.h"

#include <QCoreApplication>

namespace standalone {

namespace {

QString chosenPath;

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

void shutdownRuntime()
{
    RunnerRegistry::instance().shutDown();
}

} // namespace standalone
