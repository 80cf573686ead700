#pragma once

#include "standalone/codegen/applet_source.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// How a run ends, as its event says.
namespace run_events {
constexpr int Finished = 1;
constexpr int Stopped = 2;
constexpr int Crashed = 3;
/// How long an event may take, in milliseconds: a loaded machine; no run comes near it.
constexpr int Patience = 60000;
} // namespace run_events

/// A project folder of its own, and a recorder of everything the runtime and the compiler report.
/// One at a time.
class RuntimeHarness
{
public:
    RuntimeHarness();
    ~RuntimeHarness();

    QString projectPath() const { return m_folder.path(); }

    /// Generates and compiles, and waits for it; empty on success, else the message.
    QString build(const QString& appName, const codegen::AppletSource& source);
    /// Starts what was built.
    bool start(const QString& appName, const QString& sequenceId = QStringLiteral("main"));

    /// So far: step reports as "uuid:progress" with "!result" for a failure, sequences as ">id" and
    /// "<id", those of a template as ">template/id". Any thread.
    static QStringList reports(const QString& appName);
    /// Without those that an equal one follows: what a run may leave out on the way.
    static QStringList lastOfEach(QStringList reports);
    static QStringList logLines(const QString& appName);
    /// All run events so far.
    static QList<int> events(const QString& appName);
    /// What the last run event's record held.
    static QStringList lastRunInfo();
    static int reportCount();

private:
    QTemporaryDir m_folder;
};
