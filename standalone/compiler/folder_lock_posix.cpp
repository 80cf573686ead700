#include "standalone/compiler/folder_lock.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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
    const auto fail = [this] {
        m_error = path() + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
        return Impossible;
    };
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (m_file < 0) {
            QDir().mkpath(m_folder);
            m_file =
                ::open(QFile::encodeName(path()).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        }
        if (m_file < 0)
            return fail();
        if (::flock(m_file, LOCK_EX | LOCK_NB) == 0) {
            // A file that its holder has removed meanwhile keeps nobody out any more.
            struct stat status = {};
            if (::fstat(m_file, &status) != 0)
                return fail();
            if (status.st_nlink > 0)
                return Held;
            ::close(m_file);
            m_file = -1;
        } else if (errno != EWOULDBLOCK && errno != EINTR) {
            return fail();
        } else if (cancelled || timer.hasExpired(timeout)) {
            return HeldByAnother;
        } else {
            QThread::msleep(LookEvery);
        }
    }
}

void FolderLock::removeFile()
{
    QFile::remove(path());
}

} // namespace standalone
