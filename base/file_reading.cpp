#include "base/file_reading.h"

#include "base/regular_file.h"

#include <QFile>
#include <QFileInfo>

namespace file_reading {

Result read(const QString& path, qint64 mostBytes)
{
    Result result;
    if (path.isEmpty() || !QFileInfo::exists(path)) {
        result.isMissing = true;
        return result;
    }
    QFile file(path);
    result.complaint = regular_file::open(file);
    if (!result.complaint.isEmpty())
        return result;
    // The size is that of what is open, whatever the name means by now; one byte more tells of a
    // file that grows.
    if (file.size() <= mostBytes)
        result.content = file.read(mostBytes + 1);
    if (file.size() > mostBytes || result.content.size() > mostBytes) {
        result.content.clear();
        result.complaint = QStringLiteral("文件过大, 超过 %1 字节").arg(mostBytes);
    } else if (file.error() != QFileDevice::NoError) {
        result.content.clear();
        result.complaint = file.errorString();
    } else {
        result.isRead = true;
    }
    return result;
}

bool isRegularFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

} // namespace file_reading
