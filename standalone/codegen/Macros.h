#pragma once

#include "standalone/codegen/user_code.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace codegen {

class CodeWriter;

/// The macros of one step: what its texts have defined so far, as far as that can be told without a
/// preprocessor.
class Macros
{
public:
    /// Reads a text that stands behind those before. Its fault, as faultIn tells it, with macros in
    /// their places: a bracket that a macro opens and nobody closes is one of the line that names
    /// the macro. Also an #if without its #endif, and a #line. Brackets of a text with an #if are
    /// left to the compiler, those of all later ones too if a macro hangs on it, and so is what a
    /// macro makes of brackets in its arguments.
    CodeFault take(const std::string& code);

private:
    struct Macro
    {
        bool hasParameters = false;
        std::string body;
    };

    void define(const std::string& text);
    bool expand(const std::string& code, int line, std::unordered_set<std::string>& open);
    bool skipArguments(const std::string& code, std::size_t& at) const;

    std::unordered_map<std::string, Macro> m_known;
    bool m_isKnown = true;      ///< false: which macros there are hangs on conditions
    std::string m_brackets;     ///< of the text that is read, with those of macros
    std::vector<int> m_lines;   ///< the line of each
    std::size_t m_expanded = 0; ///< of macros, in characters
};

/// The names that a text defines or undefines, each once, in their order.
std::vector<std::string> macrosIn(const std::string& code);

/// Whether there is a directive of the preprocessor in the text.
bool hasDirectives(const std::string& code);

/// Writes what keeps the present meanings of the names until restoreMacros brings them back. A name
/// that isn't ASCII has none afterwards.
void keepMacros(CodeWriter& writer, const std::vector<std::string>& names);
void restoreMacros(CodeWriter& writer, const std::vector<std::string>& names);

/// The names among them that the lines between two texts of a step are made of.
std::vector<std::string> reservedAmong(const std::vector<std::string>& names);

} // namespace codegen
