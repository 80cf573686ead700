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

/// Tells one content of a file from another without reading it: size, time of its last change, and
/// the time that the system keeps of any change, which no program can set. Empty if @p path is no
/// file.
QByteArray fileState(const QString& path);

/// Files by their paths, each with its fileState().
using FileStates = QMap<QString, QByteArray>;

/// Whether any change of the file from @p moment on (milliseconds since the epoch) shows in its
/// fileState(): it was last changed clearly before, by the coarse clock of file systems.
bool isOlder(const QString& path, qint64 moment);

} // namespace standalone
