#include "standalone/compiler/ObjectCache.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "standalone/compiler/code_folder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <string_view>

namespace standalone {

namespace {

const QString groupsName = QStringLiteral("/groups.txt");
constexpr int FewestKept = 64;
constexpr int GenerationsKept = 4;

QByteArray hashOf(const char* data, std::size_t size)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(data, static_cast<int>(size));
    return hash.result();
}

/// The time of the compile, whether a file is there, or a file that the assembler reads: no list of
/// files that were read tells it.
template <class Text> bool asksForMoreThanFiles(const Text& text)
{
    const std::string_view view(text.data(), std::size_t(text.size()));
    for (const char* word :
         {"__DATE__", "__TIME__", "__TIMESTAMP__", "__has_include", ".incbin", ".include"}) {
        if (view.find(word) != std::string_view::npos)
            return true;
    }
    return false;
}

/// Such words in the headers of the system and the compiler stand there for all to see, and in
/// nearly each of them.
bool isOfSystem(const QString& path)
{
    return path.startsWith(QLatin1String("/usr/"));
}

/// What stands in the folder of the objects: only what bears a key is ours.
QFileInfoList objectFiles(const QString& folder)
{
    static const QRegularExpression key(QStringLiteral("^[0-9a-f]{64}$"));
    QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Unsorted);
    files.erase(std::remove_if(
                    files.begin(), files.end(),
                    [](const QFileInfo& file) { return !key.match(file.baseName()).hasMatch(); }),
                files.end());
    return files;
}

/// At most that many of them.
QStringList newest(QStringList files, int count)
{
    if (files.size() <= count)
        return files;
    QHash<QString, qint64> modified;
    for (const QString& file : qAsConst(files))
        modified.insert(file, fileState(file).modified);
    std::nth_element(files.begin(), files.begin() + count, files.end(),
                     [&](const QString& a, const QString& b) { return modified[a] > modified[b]; });
    return files.mid(0, count);
}

QString objectFolder(const QString& codeFolder)
{
    return codeFolder + QStringLiteral("/objects");
}

QByteArray contentOf(const QString& path)
{
    return file_reading::read(path, file_reading::MostOfTable).content;
}

} // namespace

ObjectCache::ObjectCache(const QString& codeFolder, const codegen::GeneratedCode& code,
                         const CompilerCommand& command)
    : m_codeFolder(codeFolder), m_folder(objectFolder(codeFolder)),
      m_begun(QDateTime::currentMSecsSinceEpoch()), m_shared(command.identity())
{
    const auto share = [this](const QString& name, const QByteArray& hash) {
        if (name.endsWith(QLatin1String(".h")))
            m_shared += '\n' + name.toUtf8() + '\n' + hash;
    };
    for (const codegen::GeneratedFile& file : code.files) {
        const QString name = QString::fromStdString(file.name);
        const QByteArray hash = hashOf(file.text.data(), file.text.size());
        m_hashes.insert(name, asksForMoreThanFiles(file.text) ? QByteArray() : hash);
        share(name, hash);
    }
    for (const RuntimeHeader& header : runtimeHeaders()) {
        const QString name = QString::fromLatin1(header.name);
        const QByteArray hash = hashOf(header.text, qstrlen(header.text));
        m_hashes.insert(name, hash);
        share(name, hash);
    }
}

bool ObjectCache::prepare() const
{
    return QDir().mkpath(m_folder);
}

QByteArray ObjectCache::keyOf(const UnitGroup& units) const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(m_shared);
    for (const codegen::GeneratedFile* unit : units) {
        hash.addData(QByteArray::fromStdString('\n' + unit->name + '\n'));
        hash.addData(unit->text.data(), static_cast<int>(unit->text.size()));
    }
    return hash.result().toHex();
}

bool ObjectCache::holds(const QByteArray& key)
{
    const QByteArray sum = contentOf(pathOf(key, ".sum"));
    if (sum.isEmpty())
        return false;
    const Made now = made(key);
    if (sum != now.sum)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_outside.insert(key, now.outside);
    return true;
}

void ObjectCache::forget(const QByteArray& key)
{
    QFile::remove(pathOf(key, ".sum"));
    QFile::remove(dependenciesOf(key));
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_outside.remove(key);
}

void ObjectCache::keep(const QByteArray& key)
{
    const Made now = made(key);
    if (now.sum.isEmpty())
        return;
    for (const QString& path : now.outside) {
        // A file that was looked at before it was read tells of an older state, which the next
        // compile finds changed.
        if (!isOlder(stateOf(path), m_begun))
            return;
        if (!isOfSystem(path)) {
            const auto file = file_reading::read(path, file_reading::MostOfTable);
            if (!file.isRead || asksForMoreThanFiles(file.content))
                return;
        }
    }
    // Without it the object is made anew.
    if (!file_writing::replace(pathOf(key, ".sum"), now.sum, file_writing::Content::Derived)
             .isEmpty()) {
        QFile::remove(pathOf(key, ".sum"));
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_outside.insert(key, now.outside);
}

/// What an object is, and what it was made of, by the files as they are.
ObjectCache::Made ObjectCache::made(const QByteArray& key)
{
    Made made;
    const FileState object = fileState(objectOf(key));
    const QStringList names = dependenciesIn(contentOf(dependenciesOf(key)));
    if (!object.isFile() || names.isEmpty())
        return made;
    const QDir folder(m_codeFolder);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArray::number(object.size) + '\n');
    for (const QString& name : names) {
        QByteArray state = m_hashes.value(name);
        if (!m_hashes.contains(name)) {
            const QString path = folder.absoluteFilePath(name);
            const FileState file = stateOf(path);
            state = file.isFile() ? file.toText() : QByteArray();
            made.outside << path;
        }
        if (state.isEmpty())
            return made;
        hash.addData(name.toUtf8() + '\n' + state + '\n');
    }
    made.sum = hash.result().toHex();
    return made;
}

FileState ObjectCache::stateOf(const QString& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto known = m_states.constFind(path);
    return known == m_states.constEnd() ? *m_states.insert(path, fileState(path)) : *known;
}

std::optional<FileStates> ObjectCache::outsideFiles(const QList<QByteArray>& keys) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    FileStates outside;
    for (const QByteArray& key : keys) {
        const auto paths = m_outside.constFind(key);
        if (paths == m_outside.constEnd())
            return std::nullopt;
        for (const QString& path : *paths)
            outside.insert(path, m_states.value(path));
    }
    return outside;
}

QList<QByteArrayList> ObjectCache::groups() const
{
    QList<QByteArrayList> groups;
    for (const QByteArray& line : contentOf(m_folder + groupsName).split('\n'))
        groups << line.split(' ');
    return groups;
}

void ObjectCache::keepGroups(const QList<QByteArrayList>& groups) const
{
    QByteArrayList lines;
    for (const QByteArrayList& group : groups)
        lines << group.join(' ');
    // Without it units are divided anew.
    if (!file_writing::replace(m_folder + groupsName, lines.join('\n'),
                               file_writing::Content::Derived)
             .isEmpty())
        QFile::remove(m_folder + groupsName);
}

void ObjectCache::prune(const QSet<QByteArray>& used) const
{
    const QFileInfoList files = objectFiles(m_folder);
    QStringList unused;
    for (const QFileInfo& file : files) {
        if (file.suffix() == QLatin1String("o") &&
            !used.contains(file.completeBaseName().toLatin1()))
            unused << file.filePath();
    }
    const int left = std::max(FewestKept, GenerationsKept * used.size()) - used.size();
    QSet<QByteArray> kept = used;
    for (const QString& object : newest(unused, left))
        kept.insert(QFileInfo(object).completeBaseName().toLatin1());
    for (const QFileInfo& file : files) {
        if (file.suffix() == QLatin1String("new") ||
            !kept.contains(file.completeBaseName().toLatin1()))
            QFile::remove(file.filePath());
    }
}

void ObjectCache::removeAll(const QString& codeFolder)
{
    const QString folder = objectFolder(codeFolder);
    for (const QFileInfo& file : objectFiles(folder))
        QFile::remove(file.filePath());
    QFile::remove(folder + groupsName);
    QDir().rmdir(folder);
}

QString ObjectCache::pathOf(const QByteArray& key, const char* suffix) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(key) + QLatin1String(suffix);
}

} // namespace standalone
