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
/// The applet of most tests.
const QString app = QStringLiteral("小程序");
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
    /// Puts its sequences, with those ids, and its variables into the model, as a user makes them.
    static void putIntoModel(const QString& appName, const codegen::AppletSource& source);
    /// The same as build() by the contract's operation, from the model.
    static QString buildFromModel(const QString& appName, const QString& sequenceId);
    /// Starts what was built.
    bool start(const QString& appName, const QString& sequenceId = QStringLiteral("main"));
    /// Forgets what was recorded under that name, builds and starts; false with a warning if it
    /// can't.
    bool launch(const QString& appName, const codegen::AppletSource& source);
    /// Waits for the end of a launched run; its event, 0 if there is none.
    static int end(const QString& appName);
    static int stopped(const QString& appName);                           ///< after a stop
    int run(const QString& appName, const codegen::AppletSource& source); ///< to its end
    /// Waits until the log holds a line, or anything if it is empty.
    static bool hasSaid(const QString& appName, const QString& line = QString());

    /// So far: step reports as "uuid:progress" with "!result" for a failure, sequences as ">id" and
    /// "<id", those of a template as ">template/id". Any thread.
    static QStringList reports(const QString& appName);
    /// Without those that an equal one follows: what a run may leave out on the way.
    static QStringList lastOfEach(QStringList reports);
    static QStringList logLines(const QString& appName);
    static QString log(const QString& appName); ///< the lines joined by "|"
    /// All run events so far.
    static QList<int> events(const QString& appName);

private:
    QTemporaryDir m_folder;
};
