#include "base/kept_copies.h"

#include "base/file_reading.h"

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

QString keep(const QString& fileName, const QString& suffix)
{
    QString copy = fileName + suffix;
    for (int number = 2; QFileInfo::exists(copy); ++number) {
        // Opened again before anything was saved: it is kept already.
        if (haveSameContent(fileName, copy))
            return copy;
        copy = fileName + suffix + QString::number(number);
    }
    // One that can't be opened, or is no file, can still be moved.
    const bool isCopied = file_reading::isRegularFile(fileName) && QFile::copy(fileName, copy);
    return isCopied || QFile::rename(fileName, copy) ? copy : QString();
}

} // namespace kept_copies
