#pragma once

#include "model/process_records.h"

#include <string>
#include <vector>

namespace codegen {

/// A variable with its starting value, in C++.
struct VariableCode
{
    std::string declaration; ///< type and name, as "extern" wants it
    /// The definition; more than one line if it needs storage of its own. Empty with a problem.
    std::vector<std::string> lines;
    std::string problem; ///< for the user; empty if there is none
};

/// The same lines define a local, a member or a variable at file scope. Texts and arrays are of
/// types that keep to the variable's length; a record is zero, and a pointer to one points to one.
VariableCode variableCode(const processVariable& variable);

} // namespace codegen
