#pragma once

#include <QString>
#include <QStringList>

namespace standalone {

/// The system's C++ compiler: the environment's CXX, which may bring arguments of its own, or else
/// "c++".
struct CompilerCommand
{
    QString program;
    QStringList arguments; ///< all but the files

    /// As a text for messages and for telling two commands apart.
    QString toText() const;
};

CompilerCommand compilerCommand();

} // namespace standalone
