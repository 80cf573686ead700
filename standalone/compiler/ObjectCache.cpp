#include "standalone/compiler/ObjectCache.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "standalone/compiler/code_folder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace standalone {

namespace {

constexpr int FewestKept = 64;
constexpr int GenerationsKept = 4;

QByteArray hashOf(const char* data, std::size_t size)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(data, static_cast<int>(size));
    return hash.result();
}

/// The time of the compile, or whether a file is there: no list of files that were read tells it.
bool asksForMoreThanFiles(const std::string& text)
{
    for (const char* word : {"__DATE__", "__TIME__", "__TIMESTAMP__", "__has_include"}) {
        if (text.find(word) != std::string::npos)
            return true;
    }
    return false;
}

QByteArray contentOf(const QString& path)
{
    return file_reading::read(path, file_reading::MostOfTable).content;
}

} // namespace

ObjectCache::ObjectCache(const QString& codeFolder, const codegen::GeneratedCode& code,
                         const CompilerCommand& command)
    : m_codeFolder(codeFolder), m_folder(codeFolder + QStringLiteral("/objects")),
      m_identity(command.identity()), m_begun(QDateTime::currentMSecsSinceEpoch())
{
    for (const codegen::GeneratedFile& file : code.files)
        m_hashes.insert(QString::fromStdString(file.name),
                        asksForMoreThanFiles(file.text)
                            ? QByteArray()
                            : hashOf(file.text.data(), file.text.size()));
    for (const RuntimeHeader& header : runtimeHeaders())
        m_hashes.insert(QString::fromLatin1(header.name),
                        hashOf(header.text, qstrlen(header.text)));
}

bool ObjectCache::prepare() const
{
    return QDir().mkpath(m_folder);
}

QByteArray ObjectCache::keyOf(const codegen::GeneratedFile& unit) const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(m_identity);
    hash.addData(QByteArray::fromStdString('\n' + unit.name + '\n'));
    hash.addData(unit.text.data(), static_cast<int>(unit.text.size()));
    return hash.result().toHex();
}

bool ObjectCache::holds(const QByteArray& key)
{
    const QByteArray sum = contentOf(pathOf(key, ".sum"));
    return !sum.isEmpty() && QFileInfo(objectOf(key)).isFile() && sum == sumOf(key, m_seen);
}

void ObjectCache::forget(const QByteArray& key) const
{
    QFile::remove(pathOf(key, ".sum"));
    QFile::remove(dependenciesOf(key));
}

void ObjectCache::keep(const QByteArray& key) const
{
    // First what the files are now, then whether they were so all the time.
    FileStates now;
    const QByteArray sum = sumOf(key, now);
    if (sum.isEmpty())
        return;
    for (const QString& path : dependenciesIn(contentOf(dependenciesOf(key)))) {
        if (!m_hashes.contains(path) && !isOlder(QDir(m_codeFolder).filePath(path), m_begun))
            return;
    }
    // Without it the object is made anew.
    if (!file_writing::replace(pathOf(key, ".sum"), sum, file_writing::Content::Derived).isEmpty())
        QFile::remove(pathOf(key, ".sum"));
}

/// Of all files that the compiler has read; empty if that can't be told.
QByteArray ObjectCache::sumOf(const QByteArray& key, FileStates& seen) const
{
    const QStringList paths = dependenciesIn(contentOf(dependenciesOf(key)));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString& path : paths) {
        QByteArray state;
        if (m_hashes.contains(path)) {
            state = m_hashes.value(path);
        } else {
            auto known = seen.constFind(path);
            if (known == seen.constEnd())
                known = seen.insert(path, fileState(QDir(m_codeFolder).filePath(path)));
            state = *known;
        }
        if (state.isEmpty())
            return {};
        hash.addData(path.toUtf8() + '\n' + state + '\n');
    }
    return paths.isEmpty() ? QByteArray() : hash.result().toHex();
}

std::optional<FileStates> ObjectCache::outsideFiles(const QList<QByteArray>& keys) const
{
    FileStates outside;
    for (const QByteArray& key : keys) {
        if (!QFileInfo::exists(pathOf(key, ".sum")))
            return std::nullopt;
        for (const QString& name : dependenciesIn(contentOf(dependenciesOf(key)))) {
            const QString path = QDir(m_codeFolder).absoluteFilePath(name);
            if (m_hashes.contains(name) || outside.contains(path))
                continue;
            outside.insert(path, fileState(path));
            if (!isOlder(path, m_begun))
                return std::nullopt;
        }
    }
    return outside;
}

void ObjectCache::prune(const QSet<QByteArray>& used) const
{
    const QFileInfoList files =
        QDir(m_folder).entryInfoList(QDir::Files, QDir::Time); // the newest first
    int left = std::max(FewestKept, GenerationsKept * used.size()) - used.size();
    QSet<QByteArray> kept = used;
    for (const QFileInfo& file : files) {
        if (file.suffix() == QLatin1String("o") && left > 0 &&
            !used.contains(file.completeBaseName().toLatin1())) {
            kept.insert(file.completeBaseName().toLatin1());
            --left;
        }
    }
    for (const QFileInfo& file : files) {
        if (file.suffix() == QLatin1String("new") ||
            !kept.contains(file.completeBaseName().toLatin1()))
            QFile::remove(file.filePath());
    }
}

QString ObjectCache::pathOf(const QByteArray& key, const char* suffix) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(key) + QLatin1String(suffix);
}

} // namespace standalone
