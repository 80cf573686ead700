#include "shell/damaged_files.h"

#include <QFile>

namespace damaged_files {

QString keepCopy(const QString& fileName)
{
    QString copy = fileName + QStringLiteral(".damaged");
    for (int number = 2; QFile::exists(copy); ++number)
        copy = QStringLiteral("%1.damaged%2").arg(fileName).arg(number);
    // One that can't even be opened can still be moved.
    return QFile::copy(fileName, copy) || QFile::rename(fileName, copy) ? copy : QString();
}

} // namespace damaged_files
