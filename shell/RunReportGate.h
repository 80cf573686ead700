#pragma once

#include <QMutex>
#include <QString>

class LogicView;

/// Where run reports pass from a runner's thread into one widget's LogicView: only those of the
/// applet that this widget runs, and none once the widget is gone. Shared by the widget and by the
/// connections that the runner's threads go through, so that a report under way while the widget is
/// being destroyed finds the gate closed and not a dead object.
///
/// Any thread, under its own mutex.
class RunReportGate
{
public:
    explicit RunReportGate(LogicView* view) : m_view(view) {}

    /// Empty: nothing passes.
    void setRunningApp(const QString& appName);
    QString runningApp() const;
    /// Returns when no report is inside; nothing passes afterwards.
    void close();

    void report(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                double progress, int result);
    /// @p templateId is empty for a sequence of the applet.
    void sequenceChange(const QString& appName, const QString& sequenceId, bool isEnd,
                        const QString& templateId);

private:
    mutable QMutex m_mutex;
    LogicView* m_view;
    QString m_runningApp;
};
