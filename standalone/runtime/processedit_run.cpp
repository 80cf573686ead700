#include "model/services/processedit.h"

#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"

#include <QFileInfo>

namespace sdk_ui_interface {
namespace processedit {

bool runCApplet(const QString& appName, const QString& sequenceId, RunEventCallback onRunEvent)
{
    standalone::AppletRun::Request request;
    request.program = standalone::runnerPath();
    request.module = standalone::appletModulePath(appName);
    request.appName = appName.toLocal8Bit().toStdString();
    request.sequenceId = sequenceId.toStdString();
    request.memoryLimit = standalone::memoryLimit();
    request.onRunEvent = onRunEvent;
    // Whether the module can be loaded shows in the child only; that it is there shows here.
    if (!onRunEvent || request.sequenceId.empty() || !QFileInfo(request.program).isExecutable() ||
        !QFileInfo(request.module).isFile())
        return false;
    return standalone::RunnerRegistry::instance().run(std::move(request));
}

bool stopCApplet(const QString& appName, bool)
{
    return standalone::RunnerRegistry::instance().stop(appName.toLocal8Bit().toStdString());
}

std::pair<std::string, CAppletRunState> getCAppletRunState(const QString& appName)
{
    const std::string name = appName.toLocal8Bit().toStdString();
    const auto state = standalone::RunnerRegistry::instance().runnerState(name);
    if (!state)
        return {std::string(), AppletStopped};
    return {name, *state ? AppletRunning : AppletStopped};
}

} // namespace processedit
} // namespace sdk_ui_interface
