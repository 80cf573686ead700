#pragma once

#include <QMutex>
#include <QObject>
#include <QSet>

namespace standalone {

/// What an application tells the stand-alone host services, and hears from them: the open project,
/// the log, the progress display and notices. The application shows what the signals say; nothing
/// is shown by itself.
///
/// Lives on the GUI thread. projectPath may be called on any thread; logError too, its signal is
/// then queued to the receivers.
class Host : public QObject
{
    Q_OBJECT
public:
    static Host& instance();

    QString projectPath() const;
    /// @p path is made absolute and loses a trailing slash; empty closes the project.
    void setProjectPath(const QString& path);

    void logError(const QString& text);
    void showNotice(int level, const QString& text);

    /// Handles count from 0 and are never used again.
    int createProgress(const QString& title, int maximum, const QString& text);
    void setProgressValue(int handle, int value);
    void finishProgress(int handle);

Q_SIGNALS:
    void errorLogged(const QString& text);
    /// @p level: 1 information, 2 warning.
    void noticeShown(int level, const QString& text);
    void progressCreated(int handle, const QString& title, int maximum, const QString& text);
    void progressChanged(int handle, int value);
    void progressFinished(int handle);

private:
    Host() = default;

    mutable QMutex m_pathMutex;
    QString m_projectPath;
    int m_nextProgress = 0;
    QSet<int> m_openProgress;
};

} // namespace standalone
