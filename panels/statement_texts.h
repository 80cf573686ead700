#pragma once

#include <QString>

/// What is read out of the code of a statement. No state, any thread.
namespace statement_texts {

/// The declarations of the functions that @p code defines, without their return types, each with a
/// ";" behind it. Found are functions that return void, int, float, double or char; a body ends
/// with its first "}".
QString functionDeclarations(const QString& code);

} // namespace statement_texts
