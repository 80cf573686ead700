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

/// Brings a folder to hold the generated files and the headers of the runtime. A file that holds
/// the same already is not touched; the others are replaced atomically; files that were written
/// here at an earlier time go, other ones stay. False with @p error set, also for a folder that
/// holds an applet's document. Any thread, one at a time for a folder.
bool writeCodeFolder(const QString& folder, const std::vector<codegen::GeneratedFile>& files,
                     QString& error);

} // namespace standalone
