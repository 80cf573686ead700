#pragma once

#include <QMetaType>
#include <QString>

/// How a compile ended; every value but CompileSucceeded is a failure.
enum compileResult : int { CompileSucceeded = 0, CompileFailed = 1, CompilerMissing = 2 };

/// A finished compile, as it crosses the queued signals.
struct CAppCompileResult
{
    QString appName;
    QString message;    ///< the compiler's own words
    QString sequenceId; ///< the target, as recorded when the compile was started
    compileResult result = CompileFailed;
    quint64 elapsed = 0; ///< milliseconds
    bool runAfterCompile = false;
    bool toVciAfterCompile = false;
};
Q_DECLARE_METATYPE(CAppCompileResult)

/// The kind of an applet in the runtime; the editor makes processes only.
enum AppletType : int { ProcessApplet = 1 };

/// State of an applet's runner.
enum CAppletRunState : int { AppletIdle = 0, AppletRunning = 1, AppletStopped = 2 };

/// Whose steps and variables a shared file holds.
enum BUSINESSTYPE : int { EveryBusiness = -1 };

/// Level of a line of an applet's log.
enum DrelLogLevel : int { LogDebug = 0, LogInfo = 1, LogWarning = 2, LogError = 3 };
