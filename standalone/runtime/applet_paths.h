#pragma once

#include <QString>

/// Where the parts of a compiled applet and the records of its runs stand, below the folder of the
/// open project. Empty without a project. Any thread.
namespace standalone {

QString appletCodeFolder(const QString& appName);
QString appletRecordFolder(const QString& appName);
QString appletModuleFolder(const QString& appName);
QString appletModulePath(const QString& appName);

} // namespace standalone
