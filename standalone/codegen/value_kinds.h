#pragma once

#include "standalone/codegen/applet_source.h"

#include <string>
#include <unordered_map>

namespace codegen {

/// As much of a type as tells which assignments can't be meant.
enum class ValueKind { Unknown, Number, Text, Array, Record };

ValueKind kindOfType(const std::string& keyword);
ValueKind kindOfType(DrelVarType type);

/// For the user.
std::string kindText(ValueKind kind);

/// What the expressions of a sequence are made of.
struct KnownNames
{
    std::unordered_map<std::string, ValueKind> variables;
    std::unordered_map<std::string, const FunctionSignature*> functions;
};

/// Of a literal, a variable, an element of one, or a call of a known function; Unknown for all
/// else.
ValueKind kindOfExpression(const std::string& expression, const KnownNames& names);

/// Whether the two are known and differ.
bool differ(ValueKind left, ValueKind right);

} // namespace codegen
