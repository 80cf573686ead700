#pragma once

#include <QMutex>
#include <QString>
#include <QVector>

#include <functional>

/// Brings log lines of applets from the runtime's threads to the GUI thread: all that wait are
/// taken at once, in their order. No line is lost: it is for the runtime to hold back an applet
/// that writes faster than a person's pane can take.
///
/// Any thread, under its own mutex; shared by its taker and by what the threads call.
class AppletLogFeed
{
public:
    struct Line
    {
        QString appName;
        QString text;
    };
    /// Where a runtime that doesn't hold back costs lines and not the editor; how many is said in
    /// their place. Far beyond what one that does leaves here: some thousand lines a run, and once
    /// the run was killed, what its pipes hold.
    static constexpr int MostWaiting = 1000000;

    /// @p wake is called on the thread of the first line that waits, with the feed locked: it must
    /// be quick, must not call the feed, and sees to it that take() is called soon.
    explicit AppletLogFeed(std::function<void()> wake);

    void put(const QString& appName, const QString& text);
    QVector<Line> take();
    /// Nothing wakes and nothing waits afterwards.
    void close();

private:
    QMutex m_mutex;
    std::function<void()> m_wake; ///< empty once closed
    QVector<Line> m_waiting;
    int m_lost = 0;
};
