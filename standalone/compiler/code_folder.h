#pragma once

#include "standalone/codegen/applet_source.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace standalone {

/// A header of the runtime, as it stands in runner/, for the generated code to include.
struct RuntimeHeader
{
    const char* name;
    const char* text;
};
const std::vector<RuntimeHeader>& runtimeHeaders();

/// Ends the name of what a compiler or linker is still writing.
inline const QString unfinishedSuffix = QStringLiteral(".new");

/// Brings a folder to hold the generated files and the headers of the runtime. A file that holds
/// the same already is not touched; the others are replaced atomically; files that were written
/// here at an earlier time go, other ones stay. False with @p error set, also for a folder that
/// holds an applet's document. Any thread, one at a time for a folder.
bool writeCodeFolder(const QString& folder, const std::vector<codegen::GeneratedFile>& files,
                     QString& error);

/// Removes what compiles have made of an applet that is gone: generated files and objects in
/// @p codeFolder, and the module. What somebody else has put there stays, and so does its folder; a
/// folder that holds an applet's document isn't touched. False if another program is compiling
/// there: then everything stays. Any thread.
bool removeGenerated(const QString& codeFolder, const QString& modulePath);

} // namespace standalone
