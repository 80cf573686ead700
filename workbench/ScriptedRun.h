#pragma once

#include "workbench/CommandLine.h"

#include <QHash>
#include <QObject>
#include <QPointer>

class MainWindow;
class ProcessEditWidget;

/// What the command line asks for beyond opening a window: presses Run and Stop and takes the
/// screenshots. Headless it also answers every dialog and prints each event as a line.
class ScriptedRun : public QObject
{
    Q_OBJECT
public:
    /// @p window has an applet open and outlives this object.
    ScriptedRun(const CommandLine& line, MainWindow& window);

    void start();

signals:
    /// All is done, with the program's exit status.
    void finished(int exitStatus);

private:
    void answerDialogs();
    void pressRun();
    void printLine(const QStringList& fields) const;
    void onState(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                 double progress, int result);
    void onRunStarted();
    void listenForLines();
    void onRunFinished();
    void endIfNothingRuns();
    void onAttemptFinished(bool success);
    void printOutput(const QString& text);
    void takeScreenshot(const QString& name);
    QString sequenceName(const QString& appName, const QString& id);
    QString stepName(const QString& appName, const QString& uuid);
    void end(int exitStatus);

    CommandLine m_line;
    MainWindow& m_window;
    QPointer<ProcessEditWidget> m_editor; ///< null once its applet was closed
    QHash<QString, QString> m_sequenceNames;
    bool m_runSeen = false;
    bool m_ended = false;
    int m_endEvent = 0;
};
