#include "standalone/codegen/code_text.h"

#include "model/type_tables.h"
#include "standalone/shown_text.h"

#include <cstdio>
#include <unordered_set>

namespace codegen {

namespace {

bool isAsciiLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

/// Bidirectional marks (U+202A..U+202E, U+2066..U+2069) would let a comment look like code.
bool isBidiMark(const std::string& text, std::size_t at)
{
    if (at + 2 >= text.size() || text[at] != '\xe2')
        return false;
    const auto second = static_cast<unsigned char>(text[at + 1]);
    const auto third = static_cast<unsigned char>(text[at + 2]);
    return (second == 0x80 && third >= 0xaa && third <= 0xae) ||
           (second == 0x81 && third >= 0xa6 && third <= 0xa9);
}

std::string withoutSemicolons(const std::string& text)
{
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && isSpace(text[begin]))
        ++begin;
    while (end > begin && (isSpace(text[end - 1]) || text[end - 1] == ';'))
        --end;
    return text.substr(begin, end - begin);
}

} // namespace

std::string commentText(const std::string& text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isBidiMark(text, i))
            i += 2;
        else if (c == '\\')
            result += '/';
        else
            result += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? ' ' : c;
    }
    return result;
}

std::string stringLiteral(const std::string& text)
{
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(byte));
            result += escape;
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string nameLiteral(const std::string& name)
{
    return stringLiteral(standalone::shownText(QString::fromStdString(name)).toStdString());
}

std::string expressionText(const std::string& text)
{
    std::string result = withoutSemicolons(text);
    // A backslash joins the line that follows, which is an empty one then.
    if (!result.empty() && result.back() == '\\')
        result += '\n';
    if (result.find("//") != std::string::npos || (!result.empty() && result.back() == '\n'))
        result += '\n';
    return result;
}

std::string operandText(const std::string& text)
{
    const std::string result = expressionText(text);
    for (const char c : result) {
        if (!isAsciiLetter(c) && !isDigit(c) && c != '.' && c != '[' && c != ']' &&
            static_cast<unsigned char>(c) < 0x80)
            return '(' + result + ')';
    }
    return result;
}

std::string trimmed(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos)
        return std::string();
    return text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1);
}

bool isWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isBlank(const std::string& text)
{
    return withoutSemicolons(text).empty();
}

bool isIdentifier(const std::string& text)
{
    static const std::unordered_set<std::string> keywords = {"alignas",      "alignof",
                                                             "and",          "and_eq",
                                                             "asm",          "auto",
                                                             "bitand",       "bitor",
                                                             "bool",         "break",
                                                             "case",         "catch",
                                                             "char",         "char16_t",
                                                             "char32_t",     "class",
                                                             "compl",        "const",
                                                             "constexpr",    "const_cast",
                                                             "continue",     "decltype",
                                                             "default",      "delete",
                                                             "do",           "double",
                                                             "dynamic_cast", "else",
                                                             "enum",         "explicit",
                                                             "export",       "extern",
                                                             "false",        "float",
                                                             "for",          "friend",
                                                             "goto",         "if",
                                                             "inline",       "int",
                                                             "long",         "mutable",
                                                             "namespace",    "new",
                                                             "noexcept",     "not",
                                                             "not_eq",       "nullptr",
                                                             "operator",     "or",
                                                             "or_eq",        "private",
                                                             "protected",    "public",
                                                             "register",     "reinterpret_cast",
                                                             "return",       "short",
                                                             "signed",       "sizeof",
                                                             "static",       "static_assert",
                                                             "static_cast",  "struct",
                                                             "switch",       "template",
                                                             "this",         "thread_local",
                                                             "throw",        "true",
                                                             "try",          "typedef",
                                                             "typeid",       "typename",
                                                             "union",        "unsigned",
                                                             "using",        "virtual",
                                                             "void",         "volatile",
                                                             "wchar_t",      "while",
                                                             "xor",          "xor_eq"};
    // What applet_values.h offers in the namespace of the variables.
    static const std::unordered_set<std::string> formatting = {
        "log_debug", "log_info", "log_warning", "log_error",
        "printf",    "sprintf",  "snprintf",    "text_format"};
    if (text.empty() || !isAsciiLetter(text[0]))
        return false;
    for (const char c : text) {
        if (!isAsciiLetter(c) && !isDigit(c))
            return false;
    }
    return keywords.count(text) == 0 && formatting.count(text) == 0 &&
           varTypeFromKeyword(text) == DrelVoid;
}

std::string macroRemoval(const std::string& name)
{
    const char first = name.empty() ? 'a' : name[0];
    return (first >= 'A' && first <= 'Z') || first == '_' ? "#undef " + name : std::string();
}

std::string identifierText(const std::string& text)
{
    std::string result;
    for (const char c : text)
        result += isAsciiLetter(c) || isDigit(c) ? c : '_';
    return result;
}

} // namespace codegen
