#include "standalone/compiler/folder_lock.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace standalone {

FolderLock::~FolderLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

FolderLock::Result FolderLock::lock(int timeout, const std::atomic<bool>& cancelled)
{
    constexpr unsigned long LookEvery = 10;
    const QString path = m_folder + QStringLiteral("/.lock");
    const auto fail = [&] {
        m_error = path + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
        return Impossible;
    };
    QDir().mkpath(m_folder);
    // The file stays: were it removed, two could hold locks on files of the same name.
    m_file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (m_file < 0)
        return fail();
    QElapsedTimer timer;
    timer.start();
    while (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return fail();
        if (cancelled || timer.hasExpired(timeout))
            return HeldByAnother;
        QThread::msleep(LookEvery);
    }
    return Held;
}

} // namespace standalone
