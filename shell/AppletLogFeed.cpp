#include "shell/AppletLogFeed.h"

#include <QCoreApplication>
#include <QMutexLocker>

AppletLogFeed::AppletLogFeed(std::function<void()> wake) : m_wake(std::move(wake)) {}

void AppletLogFeed::put(const QString& appName, const QString& text)
{
    QMutexLocker lock(&m_mutex);
    if (!m_wake)
        return;
    if (m_waiting.size() >= MostWaiting) {
        ++m_lost;
        return;
    }
    m_waiting.append({appName, text});
    if (m_waiting.size() == 1)
        m_wake();
}

void AppletLogFeed::close()
{
    QMutexLocker lock(&m_mutex);
    m_wake = nullptr;
    m_waiting.clear();
    m_lost = 0;
}

QVector<AppletLogFeed::Line> AppletLogFeed::take()
{
    QVector<Line> lines;
    int lost = 0;
    {
        QMutexLocker lock(&m_mutex);
        lines.swap(m_waiting);
        std::swap(lost, m_lost);
    }
    if (lost > 0)
        lines.append(
            {lines.last().appName,
             QCoreApplication::translate("AppletLogFeed", "(输出过快，省略 %1 行)").arg(lost)});
    return lines;
}
