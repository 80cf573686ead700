#pragma once

#include "standalone/codegen/applet_source.h"
#include "standalone/compiler/compiler_command.h"
#include "standalone/compiler/dependencies.h"
#include "standalone/compiler/unit_groups.h"

#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <mutex>
#include <optional>

namespace standalone {

/// The objects of an applet's units, kept in a folder from one compile to the next. An object is
/// named by a hash of the command, its units' texts and the headers that all units share. Beside it
/// stand the list of files that the compiler read for it, as the compiler wrote it (.d), and what
/// those files and the object were (.sum): it is used again only if they are so still. Made for one
/// compile of one applet; its units' threads may call at once, each about its own unit.
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

    /// Of the object that units make together.
    QByteArray keyOf(const UnitGroup& units) const;
    QString objectOf(const QByteArray& key) const { return pathOf(key, ".o"); }
    /// Where the compiler lists the files that it reads.
    QString dependenciesOf(const QByteArray& key) const { return pathOf(key, ".d"); }

    /// Whether the object is there, made of the same files as they are now. Before any of them is
    /// compiled, on one thread.
    bool holds(const QByteArray& key);
    /// Before its object is made anew, or when it turned out to be of no use.
    void forget(const QByteArray& key);
    /// After it was made. The object isn't used again if it can't be told of what it was made: the
    /// compiler wrote no list, a file changed meanwhile, or one asks for what no file holds.
    void keep(const QByteArray& key);

    /// The files outside the generated code of which the objects of these keys were made, as they
    /// were then; nothing if that can't be told of one. A file is looked at once a compile, however
    /// many units read it.
    std::optional<FileStates> outsideFiles(const QList<QByteArray>& keys) const;

    /// The units of each object that was made of several, by the keys that each would have alone;
    /// what keepGroups() was told last. Any text may stand in their file.
    QList<QByteArrayList> groups() const;
    void keepGroups(const QList<QByteArrayList>& groups) const;

    /// Keeps the objects of these keys and the newest of the others; what a killed compiler left
    /// goes.
    void prune(const QSet<QByteArray>& used) const;

    /// Removes all objects of a code folder, and their folder unless somebody else's files are in
    /// it. While nobody compiles there.
    static void removeAll(const QString& codeFolder);

private:
    struct Made
    {
        QByteArray sum; ///< empty: of what it was made can't be told
        QStringList outside;
    };

    QString pathOf(const QByteArray& key, const char* suffix) const;
    Made made(const QByteArray& key);
    FileState stateOf(const QString& path);

    const QString m_codeFolder;
    const QString m_folder;
    const qint64 m_begun; ///< milliseconds since the epoch
    QByteArray m_shared;  ///< what all keys are made of
    /// Generated files and headers of the runtime, by name; empty for one that asks for what no
    /// file holds.
    QHash<QString, QByteArray> m_hashes;
    mutable std::mutex m_mutex; ///< guards the two below
    FileStates m_states;        ///< of the files outside, as they were first looked at
    QHash<QByteArray, QStringList> m_outside; ///< by the key of an object that is kept
};

} // namespace standalone
