#include "model/services/OrnZip.h"

// This host packs no archives yet: nothing is written, and every archive counts as unreadable.

namespace OrnZip {

void zipFolder(const QString&, const QString&, const QString&, Progress, bool, bool) {}

bool unzipFolder(const QString&, const QString&, const QString&, Progress)
{
    return false;
}

void zipFile(const QString&, const QString&, const QString&) {}

QStringList getZipFolderAllFileName(const QString&)
{
    return {};
}

} // namespace OrnZip
