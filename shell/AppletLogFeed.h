#pragma once

#include <QMutex>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>

class QObject;

/// Brings log lines of applets from the runtime's threads to the GUI thread: all that wait go over
/// in one event, in their order, and an applet that writes faster than a person's pane can take
/// loses lines and not the editor. How many were lost is said in their place.
///
/// Any thread, under its own mutex; shared by its receiver and by what the threads call.
class AppletLogFeed : public std::enable_shared_from_this<AppletLogFeed>
{
public:
    using Sink = std::function<void(const QString& appName, const QString& text)>;
    static constexpr int MostWaiting = 5000;

    /// @p sink is called on the thread of @p receiver.
    AppletLogFeed(QObject* receiver, Sink sink);

    void put(const QString& appName, const QString& text);
    /// Nothing is told afterwards. On the receiver's thread, before it goes.
    void close();

private:
    struct Line
    {
        QString appName;
        QString text;
    };

    void flush();

    QMutex m_mutex;
    QObject* m_receiver;
    Sink m_sink;
    QVector<Line> m_waiting;
    int m_lost = 0;
};
