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

    /// Makes the object of one unit.
    QStringList compileArguments(const QString& source, const QString& object) const;
    /// Makes the module of all objects.
    QStringList linkArguments(const QStringList& objects, const QString& module) const;

    /// As a text for messages and for telling two commands apart.
    QString toText() const;
    /// What an object's content depends on besides the files that are compiled: the command, the
    /// program itself, and the environment's folders.
    QByteArray identity() const;
};

CompilerCommand compilerCommand();

} // namespace standalone
