#pragma once

#include <QMutex>
#include <QObject>

/// Brings a run's progress from the reporting thread to the GUI thread. Only the latest value
/// matters there: however fast reports come, at most one event waits.
class LatestProgress : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Any thread; on this object's own thread the value is told at once.
    void put(double progress, int state);

signals:
    void changed(double progress, int state);

private:
    void tell();

    QMutex m_mutex; ///< guards what follows
    double m_progress = 0.0;
    int m_state = 0;
    bool m_isWaiting = false;
};
