#include "standalone/runtime/RunRecord.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace standalone {

bool RunRecord::open(const QString& path, QString& reason)
{
    constexpr mode_t Mode = 0666; // less what the user's mask takes
    m_file = ::open(QFile::encodeName(path).constData(),
                    O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, Mode);
    if (m_file < 0 && errno != EEXIST)
        reason = qt_error_string(errno);
    return m_file >= 0;
}

QString RunRecord::write(const std::string& bytes) const
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(m_file, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno != EINTR)
            return qt_error_string(errno);
        written += count > 0 ? std::size_t(count) : 0;
    }
    return QString();
}

void RunRecord::close()
{
    if (m_file >= 0)
        ::close(m_file);
    m_file = -1;
}

} // namespace standalone
