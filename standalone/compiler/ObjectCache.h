#pragma once

#include "standalone/codegen/applet_source.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/compiler/dependencies.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

namespace standalone {

/// The objects of an applet's units, kept in a folder from one compile to the next. An object is
/// named by a hash of the command and its unit's text. Beside it stand the list of files that the
/// compiler read for it, as the compiler wrote it (.d), and what those files were (.sum): the
/// object is used again only if they are so still. Made for one compile of one applet; its units'
/// threads may call at once, each about its own unit.
class ObjectCache
{
public:
    /// @p code stands in @p codeFolder, and nobody else writes there meanwhile. @p code must
    /// outlive the cache.
    ObjectCache(const QString& codeFolder, const codegen::GeneratedCode& code,
                const CompilerCommand& command);

    QString folder() const { return m_folder; }
    /// Makes the folder.
    bool prepare() const;

    QByteArray keyOf(const codegen::GeneratedFile& unit) const;
    QString objectOf(const QByteArray& key) const { return pathOf(key, ".o"); }
    /// Where the compiler lists the files that it reads.
    QString dependenciesOf(const QByteArray& key) const { return pathOf(key, ".d"); }

    /// Whether the object is there, made of the same files as they are now. A file that many units
    /// read is looked at once. Before any of them is compiled, on one thread.
    bool holds(const QByteArray& key);
    /// Before its object is made anew.
    void forget(const QByteArray& key) const;
    /// After it was made. The object isn't used again if it can't be told of what it was made: the
    /// compiler wrote no list, a file changed meanwhile, or the unit asks for what no file holds.
    void keep(const QByteArray& key) const;

    /// The files outside the generated code of which the objects of these keys were made; nothing
    /// if any of the objects isn't kept, or any file has changed since the compile began.
    std::optional<FileStates> outsideFiles(const QList<QByteArray>& keys) const;

    /// Keeps the objects of these keys and the newest of the others; what a killed compiler left
    /// goes.
    void prune(const QSet<QByteArray>& used) const;

private:
    QString pathOf(const QByteArray& key, const char* suffix) const;
    QByteArray sumOf(const QByteArray& key, FileStates& seen) const;

    const QString m_codeFolder;
    const QString m_folder;
    const QByteArray m_identity;
    const qint64 m_begun; ///< milliseconds since the epoch
    /// Generated files and headers of the runtime, by name; empty for one that asks for what no
    /// file holds.
    QHash<QString, QByteArray> m_hashes;
    FileStates m_seen; ///< by holds()
};

} // namespace standalone
