#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <string_view>

/// The one way in which files are read whole. What stands in a file's place may be anything: a pipe
/// without a writer, a device without an end, a folder. Any thread.
namespace file_reading {

/// The most that files of a kind may hold, in bytes.
constexpr qint64 MostOfDocument = 512LL * 1024 * 1024; ///< strings of Qt end at four times that
constexpr qint64 MostOfTable = 64LL * 1024 * 1024;

struct Result
{
    bool isRead = false;
    bool isMissing = false; ///< there is nothing of that name
    QByteArray content;
    QString complaint; ///< why it could not be read, in a few words; empty when read or missing
};

/// Reads a regular file of at most @p mostBytes, or where a link leads to one; never waits for
/// anything but a disk.
Result read(const QString& path, qint64 mostBytes);

/// Shows @p take the content of a regular file piece by piece, so that none of it has to be held:
/// in pieces of PieceBytes, and one of the rest. False if it can't be read, or @p take wants no
/// more.
bool readPieces(const QString& path, const std::function<bool(std::string_view piece)>& take);
constexpr int PieceBytes = 64 * 1024;

/// Whether there is a regular file, or a link to one.
bool isRegularFile(const QString& path);

} // namespace file_reading
