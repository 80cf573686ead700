#include "model/services/host.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

bool GetDirHaveWritePermission(const QString& path)
{
    // Asked for the user whose rights files are written with.
    return QFileInfo(path).isDir() &&
           faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
}

bool SetDirWritePermission(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (stat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    if (chmod(name.constData(), status.st_mode | S_IWUSR | S_IXUSR) != 0)
        return false;
    return GetDirHaveWritePermission(path);
}
