#include "shell/kept_copies.h"

#include <QFile>

namespace kept_copies {

namespace {

bool haveSameContent(const QString& fileName, const QString& otherName)
{
    QFile file(fileName);
    QFile other(otherName);
    return file.size() == other.size() && file.open(QIODevice::ReadOnly) &&
           other.open(QIODevice::ReadOnly) && file.readAll() == other.readAll();
}

} // namespace

const QString damaged = QStringLiteral(".damaged");
const QString replaced = QStringLiteral(".replaced");

QString keep(const QString& fileName, const QString& suffix)
{
    QString copy = fileName + suffix;
    for (int number = 2; QFile::exists(copy); ++number) {
        // Opened again before anything was saved: it is kept already.
        if (haveSameContent(fileName, copy))
            return copy;
        copy = fileName + suffix + QString::number(number);
    }
    // One that can't even be opened can still be moved.
    return QFile::copy(fileName, copy) || QFile::rename(fileName, copy) ? copy : QString();
}

} // namespace kept_copies
