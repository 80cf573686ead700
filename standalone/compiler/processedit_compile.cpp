#include "model/services/processedit.h"

#include "standalone/compiler/CompileService.h"
#include "standalone/compiler/model_source.h"
#include "standalone/model_service/stores/compile_marks.h"
#include "standalone/runtime/applet_paths.h"

namespace sdk_ui_interface {
namespace processedit {

/// The target says all about what is compiled: whether it was chosen as the current sequence makes
/// no difference here.
bool compileCApplet(const QString& appName, const QString& sequenceId, bool forVci, bool,
                    CompileFinished onFinished, bool& skipped)
{
    using standalone::CompileService;
    skipped = false;
    if (appName.isEmpty() || sequenceId.isEmpty() ||
        getCAppletRunState(appName).second == AppletRunning ||
        CompileService::instance().isCompiling(appName))
        return false;

    CompileService::Request request;
    request.appName = appName;
    request.targetSequenceId = sequenceId;
    request.forVci = forVci;
    request.isForced = standalone::needsUpdate(appName.toLocal8Bit().toStdString());
    request.codeFolder = standalone::appletCodeFolder(appName);
    request.modulePath = standalone::appletModulePath(appName);
    request.code = codegen::generate(standalone::readAppletSource(appName, sequenceId, forVci));
    request.onFinished = std::move(onFinished);
    const auto result = CompileService::instance().start(std::move(request));
    skipped = result == CompileService::Skipped;
    return result != CompileService::Refused;
}

} // namespace processedit
} // namespace sdk_ui_interface
