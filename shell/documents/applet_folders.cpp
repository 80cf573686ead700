#include "shell/documents/applet_folders.h"

#include "model/services/host.h"

#include <QFile>

namespace applet_folders {

namespace {

QString appletFolder(const QString& appName, const char* suffix)
{
    return QStringLiteral("%1/CApplet/%2%3")
        .arg(getProjectManager()->projectPath(), appName, QLatin1String(suffix));
}

} // namespace

QString codeFolder(const QString& appName)
{
    return appletFolder(appName, "_code");
}

QString moduleFolder(const QString& appName)
{
    return appletFolder(appName, "_mp");
}

bool moduleExists(const QString& appName)
{
    return QFile::exists(QStringLiteral("%1/%2.mp").arg(moduleFolder(appName), appName));
}

} // namespace applet_folders
