#pragma once

#include <QByteArray>
#include <QStringList>

#include <atomic>

namespace standalone {

struct CompilerOutcome
{
    enum Kind {
        Succeeded,
        Failed,
        TimedOut,
        Cancelled,
        NotFound,
        NotWritten ///< a file can't be written or replaced: the output is its path
    };
    Kind kind = Failed;
    QByteArray output; ///< the compiler's own words, both streams together
};

/// Runs a compiler in a folder and waits for it; its own children end with it. Any thread.
/// @p timeout is in milliseconds; @p cancelled is looked at several times a second.
CompilerOutcome runCompiler(const QString& program, const QStringList& arguments,
                            const QString& folder, int timeout, const std::atomic<bool>& cancelled);

} // namespace standalone
