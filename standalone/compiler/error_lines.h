#pragma once

#include "standalone/codegen/applet_source.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Errors as lines of the compiler's message: where, then what, and at the end the reference to the
/// place (model/step_reference.h).
namespace standalone {

/// "出错步骤: 序列“main”, 步骤“电压”, 语句第 2 行: words [sequence id/step id]", with as much of it
/// as the place holds. One line, whatever the names hold: control characters show as U+FFFD.
QString errorLine(const codegen::CodePlace& place, const QString& words);

/// The same for what forbids nothing: "警告: 序列“main”, 步骤“电压”: words [...]".
QString warningLine(const codegen::CodePlace& place, const QString& words);

/// The sequence whose unit a generated file is; of no name for any other file.
codegen::CodePlace unitPlace(const codegen::GeneratedCode& code, const QString& fileName);

/// A line for each error of a compiler or a linker that lies in what the user wrote, in the order
/// of their telling, none twice.
QStringList errorLines(const QByteArray& compilerOutput, const codegen::GeneratedCode& code);

} // namespace standalone
