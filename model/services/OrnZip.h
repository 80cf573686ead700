#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// Archives. Paths are absolute; an empty password means a plain archive. Blocks; any thread.
namespace OrnZip {

/// Told the done count, the total, and whether all is done; false cancels.
using Progress = std::function<bool(int done, int total, bool finished)>;

/// Packs a folder's content. The two flags are reserved.
void zipFolder(const QString& folder, const QString& zipPath, const QString& password,
               Progress progress, bool reserved1, bool reserved2);
/// Unpacks; false on a failure or a wrong password.
bool unzipFolder(const QString& zipPath, const QString& folder, const QString& password,
                 Progress progress);
/// Packs one file.
void zipFile(const QString& file, const QString& zipPath, const QString& password);
/// Names of the archive's members, without unpacking; empty on failure.
QStringList getZipFolderAllFileName(const QString& zipPath);

} // namespace OrnZip
