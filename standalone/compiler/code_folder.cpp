#include "standalone/compiler/code_folder.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace standalone {

namespace {

bool holds(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() == text.size() && file.readAll() == text;
}

bool writeFile(const QString& path, const QByteArray& text, QString& error)
{
    if (holds(path, text))
        return true;
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    error = path + QStringLiteral(": ") + file.errorString();
    return false;
}

} // namespace

bool writeCodeFolder(const QString& folder, const std::vector<codegen::GeneratedFile>& files,
                     QString& error)
{
    QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("."))) {
        error = folder;
        return false;
    }
    for (const RuntimeHeader& header : runtimeHeaders()) {
        const QByteArray text = QByteArray::fromRawData(header.text, int(qstrlen(header.text)));
        if (!writeFile(dir.filePath(QString::fromLatin1(header.name)), text, error))
            return false;
    }
    QStringList stale =
        dir.entryList({QStringLiteral("statement_*.inc"), QStringLiteral("sequence_*.cpp"),
                       QStringLiteral("template_*.cpp")},
                      QDir::Files);
    for (const codegen::GeneratedFile& file : files) {
        const QString name = QString::fromStdString(file.name);
        stale.removeOne(name);
        if (!writeFile(dir.filePath(name), QByteArray::fromStdString(file.text), error))
            return false;
    }
    for (const QString& name : qAsConst(stale))
        dir.remove(name);
    return true;
}

} // namespace standalone
