#include "base/regular_file.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

QString regular_file::open(QFile& file)
{
    // Without O_NONBLOCK the opening of a pipe waits for a writer.
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(),
                                  O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return qt_error_string(errno);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return S_ISDIR(status.st_mode) ? QStringLiteral("是文件夹")
                                       : QStringLiteral("不是普通文件");
    }
    if (file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return QString();
    ::close(descriptor);
    return file.errorString();
}
