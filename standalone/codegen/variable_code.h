#pragma once

#include "model/process_records.h"

#include <string>
#include <vector>

namespace codegen {

/// The definition of a variable with its starting value.
struct VariableCode
{
    std::vector<std::string> lines; ///< empty with a problem
    std::string problem;            ///< for the user; empty if there is none
};

/// @p isStatic: at file scope; else a local of a function. A variable of a record type, which this
/// runtime doesn't know, becomes a comment: only a use of it is an error.
VariableCode variableCode(const processVariable& variable, bool isStatic);

} // namespace codegen
