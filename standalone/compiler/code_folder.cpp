#include "standalone/compiler/code_folder.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "standalone/compiler/ObjectCache.h"
#include "standalone/compiler/folder_lock.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <atomic>

namespace standalone {

namespace {

/// The names of what the generator wrote, a line each: nothing else is removed.
const QString listName = QStringLiteral("generated_files.txt");

bool writeFile(const QString& path, const QByteArray& text, QString& error)
{
    const QString complaint = file_writing::replace(path, text, file_writing::Content::Derived);
    if (!complaint.isEmpty())
        error = path + QStringLiteral(": ") + complaint;
    return complaint.isEmpty();
}

QSet<QString> listedFiles(const QDir& dir)
{
    QSet<QString> names;
    const auto list = file_reading::read(dir.filePath(listName), file_reading::MostOfTable);
    for (const QByteArray& line : list.content.split('\n')) {
        const QString name = QString::fromUtf8(line);
        // A name and no path: the list may be anybody's.
        if (!name.isEmpty() && QFileInfo(name).fileName() == name && !name.startsWith(u'.'))
            names.insert(name);
    }
    return names;
}

/// An applet whose name ends as code folders do has its document where another's code would go.
bool isDocumentFolder(const QDir& dir)
{
    return dir.exists(QStringLiteral("processInfo.pedt")) ||
           dir.exists(QStringLiteral("logicview.json"));
}

void removeModule(const QString& path)
{
    const QString folder = QFileInfo(path).path();
    if (isDocumentFolder(QDir(folder)))
        return;
    for (const QString& name : {path, path + unfinishedSuffix})
        QFile::remove(name);
    QDir().rmdir(folder);
}

} // namespace

bool writeCodeFolder(const QString& folder, const std::vector<codegen::GeneratedFile>& files,
                     QString& error)
{
    QDir dir(folder);
    if (isDocumentFolder(dir)) {
        error = QStringLiteral("%1 是另一个小程序的文件夹, 请重命名其中一个小程序").arg(folder);
        return false;
    }
    if (!dir.mkpath(QStringLiteral("."))) {
        error = folder;
        return false;
    }
    QSet<QString> stale = listedFiles(dir);
    QByteArray list;
    const auto write = [&](const QString& name, const QByteArray& text) {
        stale.remove(name);
        list += name.toUtf8() + '\n';
        return writeFile(dir.filePath(name), text, error);
    };
    for (const RuntimeHeader& header : runtimeHeaders()) {
        const QByteArray text = QByteArray::fromRawData(header.text, int(qstrlen(header.text)));
        if (!write(QString::fromLatin1(header.name), text))
            return false;
    }
    for (const codegen::GeneratedFile& file : files) {
        if (!write(QString::fromStdString(file.name), QByteArray::fromStdString(file.text)))
            return false;
    }
    for (const QString& name : qAsConst(stale))
        dir.remove(name);
    return writeFile(dir.filePath(listName), list, error);
}

bool removeGenerated(const QString& codeFolder, const QString& modulePath)
{
    QDir dir(codeFolder);
    if (dir.exists() && !isDocumentFolder(dir)) {
        const std::atomic<bool> cancelled{false};
        FolderLock lock(codeFolder);
        if (lock.lock(0, cancelled) != FolderLock::Held)
            return false;
        for (const QString& name : listedFiles(dir))
            dir.remove(name);
        dir.remove(listName);
        ObjectCache::removeAll(codeFolder);
        removeModule(modulePath);
        if (dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size() == 1) {
            lock.removeFile();
            QDir().rmdir(codeFolder);
        }
        return true;
    }
    removeModule(modulePath);
    return true;
}

} // namespace standalone
