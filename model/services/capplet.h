#pragma once

#include "model/DrelFunction.h"
#include "model/compile_records.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

/// Service facade: applets in the runtime, their runners, and the conversion for a VCI device.
/// An int result of 0 is success, any other value a failure. GUI thread unless said otherwise; what
/// an applet runs, and what it says, comes from threads of the runtime.
namespace sdk_ui_interface {
namespace capplet {

/// Creates the applet in the runtime. Fails for an empty name and for one that exists.
int createCApplet(QString appName, AppletType type);
/// Removes it, with its log callback; a run of it is stopped first. Does not wait for the run's
/// end: its reports and its run event may come afterwards, and the editor takes them.
int destroyCApplet(QString appName);
bool isCAppletExist(const QString& appName);

/// Unloads the compiled module, "<project>/CApplet/<name>_mp/<name>.mp", so that the file can be
/// replaced. Fails while the applet runs; a success when there is nothing to unload.
int unloadCAppletMp(const QString& appName);

/// Forgets the applet's runner, so that getCAppletRunState knows none, and ends a run that is under
/// way as after a stop, without patience. The editor calls it after each run event, and while a
/// widget is being destroyed: it should return at once. It may wait for the runner's thread, since
/// no callback of the editor waits for the GUI thread, but need not: reports, log lines and the run
/// event of what it has ended may come afterwards, and the editor takes them. Success, too, when
/// there is no runner.
int removeRunnerFunction(const QString& appName);
/// As stopCApplet: asks, and returns at once. Success, too, when there is no runner.
int stopRunnerFunction(const QString& appName);
/// @p runnerName is that of getCAppletRunState. @p status becomes 0 while the runner's function is
/// executing, another value when it has ended; unchanged, with a failure, for an unknown runner.
int getStatusRunnerFunction(const QString& runnerName, int& status);

/// Converts generated code for the VCI device; blocks, called on a worker thread with the applet's
/// name, the target folder and the names of the sequences. 0 success, -1 failure, else cancelled.
/// The editor has no way to interrupt it: a conversion that its user cancels goes on by itself.
int transCCodeToVciCode(QString sourcePath, QString targetPath, QStringList sequenceNames);

/// Functions that an applet can call: the runtime's own, and those of the applet's user, each of
/// these with its kind once more. Append to the list.
int getCAppletInnerFuncs(const QString& appName, QList<_DrelFunction>& functions);
int getCAppletUserFuncs(const QString& appName, QList<QPair<_DrelFunction, int>>& functions);

} // namespace capplet
} // namespace sdk_ui_interface
