#include "base/file_writing.h"

#include "base/file_reading.h"
#include "base/file_sync.h"

#include <QSaveFile>

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
    const auto present = file_reading::read(path, content.size());
    return present.isRead && present.content == content;
}

QString reasonOf(const QSaveFile& file)
{
    const QString reason = file.errorString();
    return reason.isEmpty() ? QStringLiteral("写入失败") : reason;
}

} // namespace

QString replace(const QString& path, const QByteArray& content, Content kind)
{
    if (holds(path, content))
        return QString();
    QSaveFile file(path);
    // Without this the file would be written in place where the folder can't take a second one.
    file.setDirectWriteFallback(false);
    if (fails(Step::Open, path) || !file.open(QIODevice::WriteOnly))
        return reasonOf(file);
    // A commit alone would succeed though its own flush fails, and leave an empty file.
    const bool isWritten = !fails(Step::Write, path) && file.write(content) == content.size() &&
                           !fails(Step::Flush, path) && file.flush() &&
                           (kind == Content::Derived ||
                            (!fails(Step::Sync, path) && file_sync::bringToDisk(file.handle()))) &&
                           !fails(Step::Rename, path);
    if (!isWritten)
        file.cancelWriting();
    const QString reason = reasonOf(file); // a cancelled commit has none of its own
    return file.commit() ? QString() : isWritten ? reasonOf(file) : reason;
}

void setFault(Fault newFault)
{
    fault() = std::move(newFault);
}

} // namespace file_writing
