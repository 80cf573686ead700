#pragma once

#include "model/DrelFunction.h"
#include "model/compile_records.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

/// Service facade: applets in the runtime, their runners, and the conversion for a VCI device.
/// An int result of 0 is success, any other value a failure. GUI thread unless said otherwise.
namespace sdk_ui_interface {
namespace capplet {

/// Creates the applet in the runtime. Fails for an empty name and for one that exists.
int createCApplet(QString appName, AppletType type);
/// Removes it; a run of it is stopped first.
int destroyCApplet(QString appName);
bool isCAppletExist(const QString& appName);

/// Unloads the compiled module (the .mp file), so that the file can be replaced.
int unloadCAppletMp(const QString& appName);

/// End and stop the applet's runner. Success, too, when there is none.
int removeRunnerFunction(const QString& appName);
int stopRunnerFunction(const QString& appName);
/// @p status becomes 0 while the runner's function is executing; unchanged for an unknown runner.
int getStatusRunnerFunction(const QString& runnerName, int& status);

/// Converts generated code for the VCI device; blocks, called on a worker thread with the applet's
/// name, the target folder and the names of the sequences. 0 success, -1 failure, else cancelled.
int transCCodeToVciCode(QString sourcePath, QString targetPath, QStringList sequenceNames);

/// Functions that an applet can call: the runtime's own, and those of the applet's user, each of
/// these with its kind. Appends to the list.
int getCAppletInnerFuncs(const QString& appName, QList<_DrelFunction>& functions);
int getCAppletUserFuncs(const QString& appName, QList<QPair<_DrelFunction, int>>& functions);

} // namespace capplet
} // namespace sdk_ui_interface
