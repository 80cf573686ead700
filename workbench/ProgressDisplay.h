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

    /// Something begins: its name, and time from zero. @p hasProgress shows the bar for it.
    void start(const QString& activity, bool hasProgress);
    /// It has ended; the time stands still.
    void finish(const QString& outcome);
    /// Nothing was started yet.
    void reset();
    bool isBusy() const { return m_refresh.isActive(); }

    void setProgress(double percent, int state);

private:
    void showElapsed();

    QLabel* m_activity;
    QLabel* m_elapsedLabel;
    QProgressBar* m_bar;
    QElapsedTimer m_elapsed;
    QTimer m_refresh;
};
