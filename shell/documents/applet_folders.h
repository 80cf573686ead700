#pragma once

#include <QString>

/// Where the compile service keeps an applet's generated code and its module, in the open project.
/// Applet names are as the user gave them. GUI thread only.
namespace applet_folders {

/// "<project>/CApplet/<appName>_code" and "<project>/CApplet/<appName>_mp".
QString codeFolder(const QString& appName);
QString moduleFolder(const QString& appName);

/// Whether the compiled module is there.
bool moduleExists(const QString& appName);

} // namespace applet_folders
