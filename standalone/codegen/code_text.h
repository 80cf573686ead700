#pragma once

#include <string>

/// Texts of the user as parts of C++ source.
namespace codegen {

/// For a line comment: one line, and nothing in it that could end the comment or join the next line
/// to it.
std::string commentText(const std::string& text);

/// A string literal of exactly these bytes.
std::string stringLiteral(const std::string& text);

/// The same of a name for the user, as one line shows it.
std::string nameLiteral(const std::string& name);

/// What is left of an expression without outer blanks and closing semicolons. Ends with a line end
/// if it may hold a line comment.
std::string expressionText(const std::string& text);

/// The same as an operand: in parentheses unless it is one simple term.
std::string operandText(const std::string& text);

/// Without blanks and line ends at both ends.
std::string trimmed(const std::string& text);

bool isBlank(const std::string& text);

/// Whether it may be part of a word of C++: beyond ASCII anything may.
bool isWordCharacter(char c);

/// Whether it can name a variable: an identifier, no keyword, and nothing that the code around a
/// variable is made of: a type, a function that formats.
bool isIdentifier(const std::string& text);

/// What lets a name be a variable's though a header of the C library has it for a macro; empty if
/// no macro is named so.
std::string macroRemoval(const std::string& name);

/// An identifier that resembles the text.
std::string identifierText(const std::string& text);

} // namespace codegen
