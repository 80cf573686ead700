#include "shell/AppletLogFeed.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QMutexLocker>

AppletLogFeed::AppletLogFeed(QObject* receiver, Sink sink)
    : m_receiver(receiver), m_sink(std::move(sink))
{
}

void AppletLogFeed::put(const QString& appName, const QString& text)
{
    QMutexLocker lock(&m_mutex);
    if (!m_receiver)
        return;
    if (m_waiting.size() >= MostWaiting) {
        ++m_lost;
        return;
    }
    const bool isFirst = m_waiting.isEmpty();
    m_waiting.append({appName, text});
    if (isFirst)
        QMetaObject::invokeMethod(
            m_receiver, [self = shared_from_this()] { self->flush(); }, Qt::QueuedConnection);
}

void AppletLogFeed::close()
{
    QMutexLocker lock(&m_mutex);
    m_receiver = nullptr;
}

void AppletLogFeed::flush()
{
    QVector<Line> lines;
    int lost = 0;
    {
        QMutexLocker lock(&m_mutex);
        if (!m_receiver)
            return;
        lines.swap(m_waiting);
        std::swap(lost, m_lost);
    }
    for (const Line& line : qAsConst(lines))
        m_sink(line.appName, line.text);
    if (lost > 0)
        m_sink(lines.last().appName,
               QCoreApplication::translate("AppletLogFeed", "(输出过快，省略 %1 行)").arg(lost));
}
