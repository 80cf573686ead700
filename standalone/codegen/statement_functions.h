#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Functions that the text of a statement defines beside what it does. No state, any thread.
namespace codegen {

struct StatementFunction
{
    struct Parameter
    {
        std::string type; ///< as "const u8*"; an array counts as a pointer
        std::string name; ///< a name of our own where there is none
    };

    std::string returnType;
    std::string name;
    std::vector<Parameter> parameters;
    std::string comment;   ///< the comment lines right above it, without their signs
    std::size_t begin = 0; ///< of its definition in the text, in bytes
    std::size_t body = 0;  ///< its opening brace
    std::size_t end = 0;   ///< behind its closing brace
};

/// In their order. Definitions inside of others, of templates and of operators don't count; a text
/// that ends amid a definition doesn't hold it.
std::vector<StatementFunction> statementFunctions(const std::string& code);

/// The text without these definitions, line for line: what was one becomes empty lines.
std::string withoutFunctions(const std::string& code,
                             const std::vector<StatementFunction>& functions);

} // namespace codegen
