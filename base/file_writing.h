#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// The one way in which files are replaced: the content is written beside the file, flushed,
/// brought to the disk and renamed over it. At any moment the file is the old one or the new one,
/// whole. A file that may not be written isn't replaced. Permissions of an old one stay; a link
/// stays, what it points to is replaced. Any thread.
namespace file_writing {

enum class Content {
    Unique, ///< a person's work: it is on the disk before the old one goes
    Derived ///< can be made again: a power cut may take it, and nobody waits for the disk
};

/// Empty when the file holds @p content, else why it doesn't, in a few words for a message that
/// names the file; it is then as it was. A file that holds the content already is not touched.
/// The folder must be there.
[[nodiscard]] QString replace(const QString& path, const QByteArray& content,
                              Content kind = Content::Unique);

/// Renames @p from over @p to, on the same disk; empty, or why not in a few words.
[[nodiscard]] QString moveOver(const QString& from, const QString& to);

/// For tests: asked before each step of a write, true lets the step fail. Not to be changed while
/// another thread writes; empty takes it back.
enum class Step { Open, Write, Flush, Sync, Rename };
using Fault = std::function<bool(Step step, const QString& path)>;
void setFault(Fault fault);

} // namespace file_writing
