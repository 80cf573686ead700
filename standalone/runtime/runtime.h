#pragma once

#include <QString>

namespace standalone {

/// Where the program that runs applets stands. Without it: "applet_runner" in the folder of the
/// application. GUI thread.
void setRunnerPath(const QString& path);
QString runnerPath();

/// Kills all runs and waits for their threads; no callback comes after it. The host calls it before
/// it tears down what the callbacks use. GUI thread.
void shutdownRuntime();

} // namespace standalone
