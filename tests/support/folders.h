#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace test_support {

/// Copies a folder with all that is in it; false if anything can't be copied.
inline bool copyFolder(const QString& source, const QString& target)
{
    QDirIterator walk(source, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString file = walk.next();
        const QString copy = target + QLatin1Char('/') + QDir(source).relativeFilePath(file);
        if (!QDir().mkpath(QFileInfo(copy).path()) || !QFile::copy(file, copy))
            return false;
    }
    return true;
}

/// A file's content; empty if it can't be read.
inline QByteArray content(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Replaces a file's content.
inline bool putFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace test_support
