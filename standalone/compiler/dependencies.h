#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/// What a compiler says a unit was made of.
namespace standalone {

/// The prerequisites of the one rule in a compiler's dependency file, in its order: paths as the
/// compiler names them, relative ones as its working folder knows them. Empty if @p text is no
/// such rule.
QStringList dependenciesIn(const QByteArray& text);

/// Tells one content of a file from another without reading it.
struct FileState
{
    qint64 size = -1;    ///< bytes; negative: there is no such file
    qint64 modified = 0; ///< the last change of the content, in nanoseconds since the epoch
    qint64 changed = 0;  ///< the same of any change, which no program can set

    bool isFile() const { return size >= 0; }
    QByteArray toText() const;
    bool operator==(const FileState& other) const
    {
        return size == other.size && modified == other.modified && changed == other.changed;
    }
    bool operator!=(const FileState& other) const { return !(*this == other); }
};

/// Asks the system once.
FileState fileState(const QString& path);

/// Whether any change of the file from @p moment on (milliseconds since the epoch) shows in its
/// state: it was last changed clearly before, by the coarse clock of file systems.
bool isOlder(const FileState& state, qint64 moment);

/// Files by their absolute paths.
using FileStates = QMap<QString, FileState>;

} // namespace standalone
