#pragma once

#include "standalone/compiler/compiler_command.h"

#include <QByteArray>

#include <atomic>

namespace standalone {

struct CompilerOutcome
{
    enum Kind { Succeeded, Failed, NotFound, TimedOut, Cancelled };
    Kind kind = Failed;
    QByteArray output; ///< the compiler's own words, both streams together
};

/// Runs the compiler and waits for it; its own children end with it. Any thread.
/// @p timeout is in milliseconds; @p cancelled is looked at several times a second.
CompilerOutcome runCompiler(const CompilerCommand& command, const QStringList& files,
                            const QString& folder, int timeout, const std::atomic<bool>& cancelled);

} // namespace standalone
