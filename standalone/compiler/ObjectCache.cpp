#include "standalone/compiler/ObjectCache.h"

#include "standalone/compiler/code_folder.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace standalone {

namespace {

const QString suffix = QStringLiteral(".o");
constexpr int FewestKept = 64;
constexpr int GenerationsKept = 4;

/// Adds a text and the generated files and runtime headers that it includes, each once. False if it
/// includes anything else or means the time of the compile.
class SeenTexts
{
public:
    SeenTexts(const codegen::GeneratedCode& code, QCryptographicHash& hash)
        : m_code(code), m_hash(hash)
    {
    }

    bool add(const char* data, std::size_t size)
    {
        m_hash.addData(QByteArray::number(quint64(size)) + ':');
        m_hash.addData(data, static_cast<int>(size));
        const std::string text(data, size);
        for (const char* word : {"__DATE__", "__TIME__", "__TIMESTAMP__", "__has_include"}) {
            if (text.find(word) != std::string::npos)
                return false;
        }
        static const std::string include = "#include";
        for (std::size_t at = text.find(include); at != std::string::npos;
             at = text.find(include, at + 1)) {
            const std::size_t begin = text.find('"', at);
            const std::size_t end = text.find('\n', at);
            const std::size_t close = text.find('"', begin + 1);
            if (begin >= end || close >= end || !addFile(text.substr(begin + 1, close - begin - 1)))
                return false;
        }
        return true;
    }

private:
    bool addFile(const std::string& name)
    {
        if (m_seen.contains(QString::fromStdString(name)))
            return true;
        m_seen.insert(QString::fromStdString(name));
        for (const codegen::GeneratedFile& file : m_code.files) {
            if (file.name == name)
                return add(file.text.data(), file.text.size());
        }
        for (const RuntimeHeader& header : runtimeHeaders()) {
            if (name == header.name)
                return true;
        }
        return false;
    }

    const codegen::GeneratedCode& m_code;
    QCryptographicHash& m_hash;
    QSet<QString> m_seen;
};

} // namespace

bool ObjectCache::prepare() const
{
    return QDir().mkpath(m_folder);
}

QByteArray ObjectCache::keyOf(const codegen::GeneratedFile& unit,
                              const codegen::GeneratedCode& code, const QByteArray& toolchain)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(toolchain);
    hash.addData(QByteArray::fromStdString('\n' + unit.name + '\n'));
    SeenTexts texts(code, hash);
    return texts.add(unit.text.data(), unit.text.size()) ? hash.result().toHex() : QByteArray();
}

QByteArray ObjectCache::toolchainOf(const CompilerCommand& command)
{
    // All headers of the runtime count: any may include any.
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(command.identity());
    for (const RuntimeHeader& header : runtimeHeaders())
        hash.addData(header.text, static_cast<int>(qstrlen(header.text)));
    return hash.result();
}

QString ObjectCache::pathOf(const QByteArray& key) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(key) + suffix;
}

bool ObjectCache::holds(const QByteArray& key) const
{
    return !key.isEmpty() && QFileInfo(pathOf(key)).isFile();
}

void ObjectCache::prune(const QSet<QString>& used) const
{
    const QFileInfoList files =
        QDir(m_folder).entryInfoList(QDir::Files, QDir::Time); // the newest first
    int left = std::max(FewestKept, GenerationsKept * used.size()) - used.size();
    for (const QFileInfo& file : files) {
        if (used.contains(file.filePath()))
            continue;
        if (!file.fileName().endsWith(suffix) || --left < 0)
            QFile::remove(file.filePath());
    }
}

} // namespace standalone
