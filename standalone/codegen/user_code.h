#pragma once

#include <string>
#include <vector>

/// What can be told of a user's code without a compiler.
namespace codegen {

/// The code with its comments and the insides of its literals blanked: of the same length, with the
/// same line ends, but for those in comments, which end no line, if another sign is given for them.
std::string withoutLiterals(const std::string& code, char lineEndInComment = '\n');

/// The names and keywords of an expression, in their order.
std::vector<std::string> wordsIn(const std::string& code);

struct CodeFault
{
    const char* words = nullptr; ///< to be translated; null: there is none
    int line = 0;                ///< from 1
    std::size_t at = 0;          ///< in the text, of a bracket
    bool swallowsRest = false;   ///< a comment or a raw text: all that follows belongs to it
};

/// A text or a comment without its end, in any code.
CodeFault openLiteral(const std::string& code);

/// The first bracket of a text without literals and comments that has no counterpart.
CodeFault bracketFault(const std::string& masked);

/// A bracket without its counterpart, or a text or a comment without its end: what would make a
/// compiler complain somewhere else. Code with directives of the preprocessor has none; Macros
/// knows more.
CodeFault faultIn(const std::string& code);

/// A function that a statement defines: "type name(parameters) { ... }" outside of all braces.
struct FunctionDefinition
{
    std::string head; ///< "type name(parameters)"
    std::string name;
    std::string code; ///< whole
    int line = 1;     ///< where it begins in the statement
    std::size_t begin = 0;
    std::size_t end = 0; ///< behind it
};

/// In their order; none if the code has a fault.
std::vector<FunctionDefinition> functionsIn(const std::string& code);

/// The code with the functions blanked; lines keep their numbers. Empty if nothing else is there.
std::string withoutFunctions(const std::string& code,
                             const std::vector<FunctionDefinition>& functions);

} // namespace codegen
