#include "standalone/runtime/applet_paths.h"

#include "model/services/host.h"

namespace standalone {

namespace {

QString appletFolder(const QString& appName, const QString& suffix)
{
    const QString project = getProjectManager()->projectPath();
    if (project.isEmpty())
        return QString();
    return project + QStringLiteral("/CApplet/") + appName + suffix;
}

} // namespace

QString appletCodeFolder(const QString& appName)
{
    return appletFolder(appName, QStringLiteral("_code"));
}

QString appletRecordFolder(const QString& appName)
{
    return appletFolder(appName, QStringLiteral("_log"));
}

QString appletModuleFolder(const QString& appName)
{
    return appletFolder(appName, QStringLiteral("_mp"));
}

QString appletModulePath(const QString& appName)
{
    const QString folder = appletModuleFolder(appName);
    return folder.isEmpty() ? QString() : folder + u'/' + appName + QStringLiteral(".mp");
}

} // namespace standalone
