#pragma once

#include "standalone/codegen/applet_source.h"
#include "standalone/compiler/compiler_command.h"

#include <QSet>
#include <QString>

namespace standalone {

/// The objects of an applet's units, kept in a folder from one compile to the next. An object is
/// named by a hash of everything that its unit sees. One thread at a time, but for keyOf().
class ObjectCache
{
public:
    /// @p folder is made by prepare().
    explicit ObjectCache(const QString& folder) : m_folder(folder) {}

    bool prepare() const;

    /// What all units see: the compiler and the headers of the runtime.
    static QByteArray toolchainOf(const CompilerCommand& command);
    /// The key of a unit among the files of @p code; empty if it sees what the generated files
    /// don't hold, so that it is compiled each time.
    static QByteArray keyOf(const codegen::GeneratedFile& unit, const codegen::GeneratedCode& code,
                            const QByteArray& toolchain);

    QString pathOf(const QByteArray& key) const;
    bool holds(const QByteArray& key) const;
    /// Keeps the objects of these paths and the newest of the others; what a killed compiler left
    /// goes.
    void prune(const QSet<QString>& used) const;

private:
    QString m_folder;
};

} // namespace standalone
