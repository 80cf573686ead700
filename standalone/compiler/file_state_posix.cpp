#include "standalone/compiler/dependencies.h"

#include <QFile>

#include <sys/stat.h>

namespace standalone {

FileState fileState(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    const auto nanoseconds = [](const timespec& time) {
        return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
    };
    return {qint64(status.st_size), nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

} // namespace standalone
