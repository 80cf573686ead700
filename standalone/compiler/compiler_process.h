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
        OutOfMemory,
        FileTooLarge,
        Cancelled,
        NotFound,
        NotWritten ///< a file can't be written or replaced: the output is its path
    };
    Kind kind = Failed;
    QByteArray output; ///< the compiler's own words, both streams together, as ClippedOutput has it
};

/// What a compiler may take.
struct CompilerBounds
{
    int timeout;   ///< milliseconds, also of processor time, rounded up to seconds
    qint64 memory; ///< bytes of address space for each of its processes, and of each file that they
                   ///< write; 0: no limit
};

/// Runs a compiler in a folder and waits for it. Its own children end with it, and all of them with
/// this process, however that ends. Any thread. @p cancelled is looked at several times a second.
CompilerOutcome runCompiler(const QString& program, const QStringList& arguments,
                            const QString& folder, const CompilerBounds& bounds,
                            const std::atomic<bool>& cancelled);

} // namespace standalone
