#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace standalone {

/// The system's C++ compiler: the environment's CXX, which may bring arguments of its own, or else
/// "c++". Files are named as the working folder knows them.
struct CompilerCommand
{
    QString program;
    QStringList arguments; ///< of the environment

    /// Makes one object of units, as if they were one, and lists the files that it reads in
    /// @p dependencies, if that names a file. It tells fifty errors at most.
    QStringList compileArguments(QStringList sources, const QString& object,
                                 const QString& dependencies = QString()) const;
    /// Makes the module of all objects.
    QStringList linkArguments(const QStringList& objects, const QString& module) const;

    /// As a text for messages and for telling two commands apart.
    QString toText() const;
    /// What an object's content depends on besides the files that are compiled: the command, the
    /// programs that it names (one may start another), and the environment's folders.
    QByteArray identity() const;
};

CompilerCommand compilerCommand();

} // namespace standalone
