#pragma once

#include "standalone/codegen/applet_source.h"

#include <QByteArray>
#include <QString>

namespace standalone {

/// Where a compiler's first error lies, as a line for the user that names the sequence and the
/// step; empty if the error lies outside of the generated code or there is none.
QString errorLocation(const QByteArray& compilerOutput, const codegen::GeneratedCode& code);

} // namespace standalone
