#pragma once

#include <QString>

#include <atomic>

namespace standalone {

/// Holds a folder against other programs and other threads of this one, as long as it lives. The
/// system gives the lock back when its holder is gone, however that ended: nothing is ever stale.
/// Processes that the holder starts don't hold it. One thread at a time.
class FolderLock
{
public:
    /// Nothing is held yet. The folder is made if it isn't there; the lock is a file in it.
    explicit FolderLock(const QString& folder) : m_folder(folder) {}
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    enum Result {
        Held,
        HeldByAnother, ///< for as long as was waited
        Impossible     ///< the lock can't be made; errorText() says why
    };

    /// Waits for milliseconds at most, or until @p cancelled, which is looked at many times a
    /// second.
    Result lock(int timeout, const std::atomic<bool>& cancelled);
    /// Removes the file of the lock that is held, for a folder that is about to go. Whoever waits
    /// for it gets a new one.
    void removeFile();
    QString errorText() const { return m_error; }

private:
    QString path() const { return m_folder + QStringLiteral("/.lock"); }

    const QString m_folder;
    QString m_error;
    int m_file = -1;
};

} // namespace standalone
