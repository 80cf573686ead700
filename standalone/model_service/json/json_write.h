#pragma once

#include "standalone/model_service/json/JsonTree.h"

#include <string>
#include <string_view>

/// JSON text on one line, as Qt's own library writes it.
namespace standalone {

/// In quotes, with the escapes that must be.
void appendJsonString(std::string& json, std::string_view text);

/// A text as a document holds it: a string, or with line ends an array of its lines, so that code
/// can be compared line by line.
void appendJsonText(std::string& json, std::string_view text);

/// Nesting of what is kept without being understood: deeper, other programs could not read the
/// document that holds it.
constexpr int MaxKeptNesting = 256;

/// A value as it was read, numbers digit by digit and half a pair of surrogates as its escape.
/// False, with nothing appended, for a value that other programs would refuse the document for:
/// nested too deep, or with a number that is beyond any double.
bool appendJsonValue(std::string& json, const JsonValue& value);

} // namespace standalone
