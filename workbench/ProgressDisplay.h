#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

/// The status bar's account of what goes on: what the editor is doing, for how long, and the run's
/// progress. Times are wall-clock.
class ProgressDisplay : public QWidget
{
    Q_OBJECT
public:
    explicit ProgressDisplay(QWidget* parent = nullptr);

    /// Something begins: its name, and time from zero, unless it goes on what is under way: a run
    /// counts from the press that had it compiled. @p hasProgress shows the bar for it.
    void start(const QString& activity, bool hasProgress);
    /// It has ended; the time stands still. A failure is red. What never began took no time.
    void finish(const QString& text, bool isFailure);
    /// Nothing was started yet.
    void reset();
    bool isBusy() const { return m_refresh.isActive(); }

    void setProgress(double percent, int state);
    /// The run has broken off: the bar stays where it is, though the editor brings every run that
    /// no step has failed to its end.
    void holdProgress() { m_isHeld = true; }

private:
    void showElapsed();
    void showActivity(const QString& text, bool isFailure);

    QLabel* m_activity;
    QLabel* m_elapsedLabel;
    QProgressBar* m_bar;
    bool m_isHeld = false;
    QElapsedTimer m_elapsed;
    QTimer m_refresh;
};
