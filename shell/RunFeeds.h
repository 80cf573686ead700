#pragma once

#include <QObject>
#include <QString>

#include <memory>

class AppletLogFeed;
class LatestProgress;
class LogicView;
class RunReportGate;

/// What the runtime's threads have to tell one window, brought in: run reports into its LogicView,
/// log lines and progress as signals on the GUI thread. Reached from its construction on; once
/// closed, nothing of those threads comes near the window.
///
/// GUI thread only, but for report and sequenceChange.
class RunFeeds : public QObject
{
    Q_OBJECT
public:
    /// @p view outlives the open feeds.
    RunFeeds(LogicView* view, QObject* parent);
    ~RunFeeds() override;

    /// Whose reports reach the view; empty: nobody's.
    void setRunningApp(const QString& appName);

    /// Returns when nobody is inside.
    void close();

    /// As the hub does. Any thread.
    void report(const QString& appName, const QString& sequenceId, const QString& blockUuid,
                double progress, int result);
    void sequenceChange(const QString& appName, const QString& sequenceId, bool isEnd,
                        const QString& templateId);

signals:
    /// A line of any applet's log.
    void logLine(QString appName, QString text);
    /// Progress of the run, 0..100; @p state is negative after a failure.
    void progressChanged(double progress, int state);

private:
    void takeLog();

    // Shared with the hub, which the runtime's threads call.
    std::shared_ptr<RunReportGate> m_gate;
    std::shared_ptr<AppletLogFeed> m_logFeed;
    LatestProgress* m_progress;
};
