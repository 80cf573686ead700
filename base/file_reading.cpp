#include "base/file_reading.h"

#include "base/regular_file.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

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
    // file that has grown, or that tells no size.
    const qint64 size = file.size();
    if (size <= mostBytes)
        result.content = file.read(size + 1);
    while (result.content.size() > size && result.content.size() <= mostBytes) {
        const QByteArray more =
            file.read(std::min<qint64>(PieceBytes, mostBytes + 1 - result.content.size()));
        if (more.isEmpty())
            break;
        result.content += more;
    }
    if (size > mostBytes || result.content.size() > mostBytes) {
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

bool readPieces(const QString& path, const std::function<bool(std::string_view)>& take)
{
    QFile file(path);
    if (path.isEmpty() || !regular_file::open(file).isEmpty())
        return false;
    QByteArray piece(PieceBytes, Qt::Uninitialized);
    for (qint64 size = PieceBytes; size == PieceBytes;) {
        size = file.read(piece.data(), PieceBytes);
        if (size < 0 || (size > 0 && !take({piece.constData(), std::size_t(size)})))
            return false;
    }
    return true;
}

bool isRegularFile(const QString& path)
{
    return QFileInfo(path).isFile();
}

} // namespace file_reading
