#include "model/services/processedit.h"

#include "model/services/log.h"
#include "standalone/compiler/CompileService.h"
#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/runtime/applet_paths.h"
#include "standalone/runtime/runtime.h"

#include <QFileInfo>
#include <QTextCodec>

namespace sdk_ui_interface {
namespace processedit {

namespace {

/// Why a run can't be asked for; empty if it can. Whether the module can be loaded shows in the
/// child only; that it is there shows here.
QString hindrance(const QString& appName, const standalone::AppletRun::Request& request)
{
    const QFileInfo program(request.program);
    if (QString::fromLocal8Bit(request.appName.c_str()) != appName)
        return QStringLiteral("系统的区域设置 (%1) 无法表示小程序的名称: %2")
            .arg(QString::fromLatin1(QTextCodec::codecForLocale()->name()), appName);
    if (!program.isFile())
        return QStringLiteral("找不到运行程序: ") + request.program;
    if (!program.isExecutable())
        return QStringLiteral("运行程序没有执行权限: ") + request.program;
    if (!QFileInfo(request.module).isFile())
        return QStringLiteral("找不到编译好的模块, 请重新编译: ") + request.module;
    // Between the end of a compile and the load the folder is anybody's.
    if (standalone::CompileService::instance().isReplaced(request.module))
        return QStringLiteral("模块已被另一个程序替换, 请重新编译: ") + appName;
    return QString();
}

} // namespace

bool runCApplet(const QString& appName, const QString& sequenceId, RunEventCallback onRunEvent)
{
    standalone::AppletRun::Request request;
    request.program = standalone::runnerPath();
    request.module = standalone::appletModulePath(appName);
    request.appName = appName.toLocal8Bit().toStdString();
    request.sequenceId = sequenceId.toStdString();
    request.recordFolder = standalone::appletRecordFolder(appName);
    request.memoryLimit = standalone::memoryLimit();
    request.onRunEvent = onRunEvent;
    if (!onRunEvent || request.sequenceId.empty())
        return false;
    const QString reason = hindrance(appName, request);
    if (!reason.isEmpty()) {
        log::log_error(QStringLiteral("[流程编辑] 无法运行: ") + reason);
        return false;
    }
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
