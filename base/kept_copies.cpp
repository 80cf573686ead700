#include "base/kept_copies.h"

#include "base/file_reading.h"
#include "base/file_writing.h"

#include <QFile>
#include <QFileInfo>

namespace kept_copies {

namespace {

bool haveSameContent(const QString& fileName, const QString& otherName)
{
    const qint64 size = QFileInfo(fileName).size();
    if (QFileInfo(otherName).size() != size)
        return false;
    const auto file = file_reading::read(fileName, size);
    const auto other = file_reading::read(otherName, size);
    return file.isRead && other.isRead && file.content == other.content;
}

} // namespace

const QString damaged = QStringLiteral(".damaged");
const QString replaced = QStringLiteral(".replaced");
const QString good = QStringLiteral(".good");

QString keep(const QString& fileName, const QString& suffix)
{
    QString copy = fileName + suffix;
    for (int number = 2; QFileInfo::exists(copy) || QFileInfo(copy).isSymLink(); ++number) {
        // Opened again before anything was saved: it is kept already.
        if (haveSameContent(fileName, copy))
            return copy;
        copy = fileName + suffix + QString::number(number);
    }
    const auto file = file_reading::read(fileName, file_reading::MostOfDocument);
    // What is no file, or can't be read, can still be moved.
    if (!file.isRead)
        return QFile::rename(fileName, copy) ? copy : QString();
    if (!file_writing::replace(copy, file.content).isEmpty())
        return QString();
    QFile::setPermissions(copy, QFile::permissions(fileName));
    return copy;
}

} // namespace kept_copies
