#include "base/file_writing.h"

#include "base/file_reading.h"
#include "base/file_sync.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>
#include <string_view>
#include <system_error>

namespace file_writing {

namespace {

Fault& fault()
{
    static Fault current;
    return current;
}

bool fails(Step step, const QString& path)
{
    return fault() && fault()(step, path);
}

bool holds(const QString& path, const QByteArray& content)
{
    std::string_view left(content.constData(), std::size_t(content.size()));
    const auto isNext = [&left](std::string_view piece) {
        const bool isSame = left.substr(0, piece.size()) == piece;
        left.remove_prefix(isSame ? piece.size() : 0);
        return isSame;
    };
    return file_reading::readPieces(path, isNext) && left.empty();
}

/// Where a link leads, whether there is a file or not; a link in a circle itself.
QFileInfo targetOf(const QString& path)
{
    constexpr int MostLinks = 128;
    QFileInfo file(path);
    for (int i = 0; i < MostLinks && file.isSymLink(); ++i)
        file.setFile(file.symLinkTarget());
    return file.isSymLink() ? QFileInfo(path) : file;
}

QString reasonOf(const QFile& file)
{
    return file.error() == QFileDevice::NoError ? QStringLiteral("写入失败") : file.errorString();
}

/// Opens a new file beside @p path, as whose name it is to go.
bool openBeside(const QString& path, QFile& file)
{
    constexpr int MostTries = 100;
    for (int i = 0; i < MostTries; ++i) {
        const QString number = QString::number(QRandomGenerator::global()->generate(), 36);
        file.setFileName(path + u'.' + number);
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return true;
        if (!QFileInfo::exists(file.fileName()))
            return false;
    }
    return false;
}

} // namespace

QString replace(const QString& path, const QByteArray& content, Content kind)
{
    if (holds(path, content))
        return QString();
    const QFileInfo target = targetOf(path);
    if (target.isDir())
        return QStringLiteral("是文件夹");
    if (target.exists() && !target.isFile())
        return QStringLiteral("不是普通文件");
    if (target.exists() && !target.isWritable())
        return QStringLiteral("文件不可写");
    QFile file;
    if (fails(Step::Open, path) || !openBeside(target.filePath(), file))
        return reasonOf(file);
    // Before there is anything to read; a file system that has none can't keep them.
    if (target.exists())
        file.setPermissions(target.permissions());
    const bool isWritten = !fails(Step::Write, path) && file.write(content) == content.size() &&
                           !fails(Step::Flush, path) && file.flush() &&
                           (kind == Content::Derived ||
                            (!fails(Step::Sync, path) && file_sync::bringToDisk(file.handle())));
    QString reason = isWritten ? QString() : reasonOf(file);
    file.close();
    if (isWritten)
        reason = fails(Step::Rename, path) ? reasonOf(file)
                                           : moveOver(file.fileName(), target.filePath());
    if (!reason.isEmpty())
        file.remove();
    return reason;
}

QString moveOver(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(from).toStdString(),
                            QFile::encodeName(to).toStdString(), error);
    return error ? qt_error_string(error.value()) : QString();
}

void setFault(Fault newFault)
{
    fault() = std::move(newFault);
}

} // namespace file_writing
