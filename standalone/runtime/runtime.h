#pragma once

#include <QString>

namespace standalone {

/// Where the program that runs applets stands. Without it: "applet_runner" in the folder of the
/// application. GUI thread.
void setRunnerPath(const QString& path);
QString runnerPath();

/// How much memory a run may take, in bytes; one that takes more is ended with a word about it. 0:
/// no limit. Counts for runs that start later; without a call a share of the machine's memory, at
/// most 2 GB. Any thread.
void setMemoryLimit(qint64 bytes);
qint64 memoryLimit();

/// The file that holds all that the applet's last run has said, little behind while it
/// runs. Empty if it has said nothing, or not all of it could be written. Any thread.
QString runRecord(const QString& appName);

/// Kills all runs and waits for their threads; no callback comes after it. The host calls it before
/// it tears down what the callbacks use. GUI thread.
void shutdownRuntime();

} // namespace standalone
