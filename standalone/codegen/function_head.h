#pragma once

#include "standalone/codegen/user_code.h"

#include <string>
#include <vector>

namespace codegen {

/// What a caller wants to know of a function that a statement defines.
struct FunctionHead
{
    struct Parameter
    {
        std::string type; ///< as "const u8*"; an array counts as a pointer
        std::string name; ///< one of our own where there is none
    };

    std::string returnType;
    std::string name;
    std::vector<Parameter> parameters;
    std::string comment; ///< the comment lines right above it, without their signs
};

/// @p definition is one of those in @p code.
FunctionHead headOf(const std::string& code, const FunctionDefinition& definition);

} // namespace codegen
