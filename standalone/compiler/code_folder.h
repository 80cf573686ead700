#pragma once

#include "standalone/codegen/applet_source.h"

#include <QByteArray>
#include <QString>

namespace standalone {

/// The text of the runtime header: runner/applet_runtime.h and the *_functions.h beside it.
QByteArray runtimeHeader();

/// Brings a folder to hold the generated files and the runtime header. A file that holds the same
/// already is not touched; the others are replaced atomically; generated files of an earlier time
/// go. False with @p error set. Any thread, one at a time for a folder.
bool writeCodeFolder(const QString& folder, const std::vector<codegen::GeneratedFile>& files,
                     QString& error);

} // namespace standalone
