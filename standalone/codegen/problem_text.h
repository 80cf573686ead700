#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <string>

namespace codegen {

/// A message for the user: the translation of @p source in the context "codegen", with its places
/// %1, %2, ... filled, as parts of one line.
std::string problemText(const char* source, std::initializer_list<std::string> arguments = {});

} // namespace codegen
