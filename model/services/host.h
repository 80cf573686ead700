#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

class QWidget;

/// The host's services. The accessors never return null; what they return belongs to the host and
/// lives as long as the process. GUI thread only, but for projectPath.

/// The open project.
class IProjectManager
{
public:
    virtual ~IProjectManager() = default;
    /// Its root folder, absolute, without a trailing slash; empty without a project. What an applet
    /// is made into lies below it, "CApplet/<name>_code" and "CApplet/<name>_mp", and what the
    /// project's applets share in it. Any thread.
    virtual QString projectPath() = 0;
};

/// The host's message bus: requests to other services, with shared buffers.
class IMessageStation
{
public:
    /// The reader of a request; returns the answer, empty if nobody answered.
    struct Request
    {
        static constexpr int Words = 66; ///< 264 bytes in four-byte words
        QString topic;
        QVector<quint32> words; ///< handles of buffers, in the order that the topic defines
        QString blockUuid;
    };

    virtual ~IMessageStation() = default;
    /// A zeroed buffer of @p size bytes; its handle, 0 on failure.
    virtual quint32 allocateBuffer(int size) = 0;
    /// The bytes of a buffer; null for an unknown handle. Valid until freeBuffer.
    virtual QByteArray* buffer(quint32 handle) = 0;
    virtual void freeBuffer(quint32 handle) = 0;
    /// Blocks until the service has answered. Empty: no service, or a refusal by its user.
    virtual QByteArray sendRequest(const Request& request) = 0;
};

/// The host's windows.
class IWindowManager
{
public:
    static constexpr int NoticeInfo = 1;
    static constexpr int NoticeWarning = 2;

    virtual ~IWindowManager() = default;
    /// Shows a host-level notice that needs no answer.
    virtual void showNotice(int level, QString text) = 0;
};

IProjectManager* getProjectManager();
IMessageStation* getMessageStation();
IWindowManager* getWindowManager();

/// Whether the user may write into a folder; false if it is missing.
bool GetDirHaveWritePermission(const QString& path);
/// Grants it; false when the user may not do that.
bool SetDirWritePermission(const QString& path);
