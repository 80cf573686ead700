#include "shell/LatestProgress.h"

#include <QMutexLocker>
#include <QThread>

void LatestProgress::put(double progress, int state)
{
    {
        QMutexLocker lock(&m_mutex);
        m_progress = progress;
        m_state = state;
        if (m_isWaiting && QThread::currentThread() != thread())
            return;
        m_isWaiting = true;
    }
    if (QThread::currentThread() == thread())
        tell();
    else
        QMetaObject::invokeMethod(this, &LatestProgress::tell, Qt::QueuedConnection);
}

void LatestProgress::tell()
{
    double progress = 0.0;
    int state = 0;
    {
        QMutexLocker lock(&m_mutex);
        if (!m_isWaiting)
            return; // told by a later value on this thread
        m_isWaiting = false;
        progress = m_progress;
        state = m_state;
    }
    emit changed(progress, state);
}

#include "moc_LatestProgress.cpp"
