#include "shell/damaged_files.h"

#include <QFile>

namespace damaged_files {

namespace {

bool haveSameContent(const QString& fileName, const QString& otherName)
{
    QFile file(fileName);
    QFile other(otherName);
    return file.size() == other.size() && file.open(QIODevice::ReadOnly) &&
           other.open(QIODevice::ReadOnly) && file.readAll() == other.readAll();
}

} // namespace

QString keepCopy(const QString& fileName)
{
    QString copy = fileName + QStringLiteral(".damaged");
    for (int number = 2; QFile::exists(copy); ++number) {
        // Opened again before anything was saved: it is kept already.
        if (haveSameContent(fileName, copy))
            return copy;
        copy = QStringLiteral("%1.damaged%2").arg(fileName).arg(number);
    }
    // One that can't even be opened can still be moved.
    return QFile::copy(fileName, copy) || QFile::rename(fileName, copy) ? copy : QString();
}

} // namespace damaged_files
