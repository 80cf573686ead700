#include "model/services/capplet.h"

#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/inner_functions.h"

using standalone::RunnerRegistry;

namespace sdk_ui_interface {
namespace capplet {

namespace {

constexpr int Success = 0;
constexpr int Failure = -1;

std::string localName(const QString& appName)
{
    return appName.toLocal8Bit().toStdString();
}

} // namespace

int createCApplet(QString appName, AppletType)
{
    if (appName.isEmpty())
        return Failure;
    const std::string module = standalone::appletModulePath(appName).toLocal8Bit().toStdString();
    return RunnerRegistry::instance().create(localName(appName), module) ? Success : Failure;
}

int destroyCApplet(QString appName)
{
    return RunnerRegistry::instance().destroy(localName(appName)) ? Success : Failure;
}

bool isCAppletExist(const QString& appName)
{
    return RunnerRegistry::instance().exists(localName(appName));
}

int unloadCAppletMp(const QString& appName)
{
    return RunnerRegistry::instance().unload(localName(appName)) ? Success : Failure;
}

int removeRunnerFunction(const QString& appName)
{
    RunnerRegistry::instance().removeRunner(localName(appName));
    return Success;
}

int stopRunnerFunction(const QString& appName)
{
    RunnerRegistry::instance().stop(localName(appName));
    return Success;
}

int getStatusRunnerFunction(const QString& runnerName, int& status)
{
    constexpr int Executing = 0;
    constexpr int Ended = 1;
    const auto state = RunnerRegistry::instance().runnerState(localName(runnerName));
    if (!state)
        return Failure;
    status = *state ? Executing : Ended;
    return Success;
}

int getCAppletInnerFuncs(const QString&, QList<_DrelFunction>& functions)
{
    functions.append(standalone::innerFunctions());
    return Success;
}

} // namespace capplet
} // namespace sdk_ui_interface
