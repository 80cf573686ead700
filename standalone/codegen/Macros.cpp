#include "standalone/codegen/Macros.h"

#include "standalone/codegen/CodeWriter.h"
#include "standalone/codegen/code_text.h"

#include <QtGlobal>

#include <algorithm>
#include <iterator>

namespace codegen {

namespace {

/// A line as the preprocessor sees it: without comments, with the lines that backslashes join.
struct LogicalLine
{
    std::string text;
    int line = 1;     ///< where it begins
    std::string word; ///< of a directive, what it does; "#" if it does nothing
    std::string rest; ///< behind that
};

std::string wordAt(const std::string& text, std::size_t at)
{
    std::size_t end = at;
    while (end < text.size() && isWordCharacter(text[end]))
        ++end;
    return text.substr(at, end - at);
}

void readDirective(LogicalLine& line)
{
    const std::string text = trimmed(line.text);
    const std::size_t sign = text.compare(0, 1, "#") == 0    ? 1
                             : text.compare(0, 2, "%:") == 0 ? 2
                                                             : 0;
    if (sign == 0)
        return;
    const std::string behind = trimmed(text.substr(sign));
    line.word = wordAt(behind, 0);
    line.rest = trimmed(behind.substr(line.word.size()));
    if (line.word.empty())
        line.word = "#";
}

std::vector<LogicalLine> logicalLines(const std::string& code)
{
    constexpr char InComment = '\x01';
    const std::string masked = withoutLiterals(code, InComment);
    std::vector<LogicalLine> lines(1);
    int number = 1;
    for (std::size_t begin = 0; begin <= masked.size();) {
        const std::size_t end = std::min(masked.find('\n', begin), masked.size());
        std::string text = masked.substr(begin, end - begin);
        const std::size_t last = text.find_last_not_of(" \t\r\v\f");
        const bool isJoined = last != std::string::npos && text[last] == '\\';
        if (isJoined)
            text.resize(last);
        number += 1 + static_cast<int>(std::count(text.begin(), text.end(), InComment));
        std::replace(text.begin(), text.end(), InComment, ' ');
        lines.back().text += text;
        if (!isJoined && end < masked.size()) {
            lines.emplace_back();
            lines.back().line = number;
        }
        begin = end + 1;
    }
    for (LogicalLine& line : lines)
        readDirective(line);
    return lines;
}

/// Whether there is an #if at all goes to @p isConditional.
CodeFault conditionalFault(const std::vector<LogicalLine>& lines, bool& isConditional)
{
    std::vector<int> open;
    for (const LogicalLine& line : lines) {
        if (line.word == "if" || line.word == "ifdef" || line.word == "ifndef") {
            open.push_back(line.line);
            isConditional = true;
        } else if (line.word == "else" || line.word == "elif" || line.word == "endif") {
            if (open.empty())
                return {QT_TRANSLATE_NOOP("codegen", "预处理指令没有对应的 #if"), line.line};
            if (line.word == "endif")
                open.pop_back();
        }
    }
    if (open.empty())
        return {};
    return {QT_TRANSLATE_NOOP("codegen", "#if 没有对应的 #endif"), open.back()};
}

/// Lines that count anew would make the compiler tell of errors somewhere else.
CodeFault numberFault(const std::vector<LogicalLine>& lines)
{
    for (const LogicalLine& line : lines) {
        if (line.word == "line" || (line.word[0] >= '0' && line.word[0] <= '9'))
            return {QT_TRANSLATE_NOOP("codegen", "不能使用 #line"), line.line};
    }
    return {};
}

/// Of other names GCC takes the ASCII beginning where a pragma names a macro.
bool isAscii(const std::string& name)
{
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isBracket(char c)
{
    return c == '(' || c == ')' || c == '[' || c == ']' || c == '{' || c == '}';
}

} // namespace

CodeFault Macros::take(const std::string& code)
{
    if (m_isKnown && m_known.empty() && !hasDirectives(code))
        return faultIn(code);
    const std::vector<LogicalLine> lines = logicalLines(code);
    bool isConditional = false;
    for (const CodeFault& fault : {conditionalFault(lines, isConditional), numberFault(lines)}) {
        if (fault.words)
            return fault;
    }
    // Elsewhere a single quote may stand in words that no compiler reads.
    const CodeFault literal = openLiteral(code);
    const bool isRead =
        !isConditional && std::none_of(lines.begin(), lines.end(), [&](const auto& l) {
            return !l.word.empty() && l.line == literal.line;
        });
    if (literal.words && (literal.swallowsRest || isRead))
        return literal;
    m_brackets.clear();
    m_lines.clear();
    m_expanded = 0;
    bool isKnown = m_isKnown && !isConditional;
    for (const LogicalLine& line : lines) {
        std::unordered_set<std::string> open;
        if (isConditional && (line.word == "define" || line.word == "undef"))
            m_isKnown = false;
        if (line.word == "define")
            define(line.rest);
        else if (line.word == "undef")
            m_known.erase(wordAt(line.rest, 0));
        else if (line.word.empty())
            isKnown = isKnown && expand(line.text, line.line, open);
    }
    if (!isKnown)
        return {};
    CodeFault brackets = bracketFault(m_brackets);
    if (brackets.words)
        brackets.line = m_lines[brackets.at];
    return brackets;
}

void Macros::define(const std::string& text)
{
    const std::string name = wordAt(text, 0);
    Macro macro;
    macro.hasParameters = text.compare(name.size(), 1, "(") == 0;
    const std::size_t close = macro.hasParameters ? text.find(')') : std::string::npos;
    macro.body = text.substr(std::min(
        text.size(), macro.hasParameters && close != std::string::npos ? close + 1 : name.size()));
    m_known[name] = macro;
}

/// Adds the brackets of a text with those of the macros in it, which are not @p open; false if they
/// can't be told.
bool Macros::expand(const std::string& code, int line, std::unordered_set<std::string>& open)
{
    // Macros of macros grow without end, and stand in one another as deep as they like.
    constexpr std::size_t MostExpanded = 1000000;
    constexpr std::size_t MostOpen = 200;
    for (std::size_t at = 0; at < code.size();) {
        const std::string word = wordAt(code, at);
        if (word.empty()) {
            if (isBracket(code[at])) {
                m_brackets += code[at];
                m_lines.push_back(line);
            }
            ++at;
            continue;
        }
        at += word.size();
        const auto known = m_known.find(word);
        if (known == m_known.end() || open.count(word))
            continue;
        const Macro& macro = known->second;
        if (macro.hasParameters) {
            if (code.find_first_not_of(" \t", at) == std::string::npos)
                return false; // the arguments may stand in the next line
            if (code[code.find_first_not_of(" \t", at)] != '(')
                continue;
            if (!skipArguments(code, at))
                return false;
        }
        m_expanded += macro.body.size() + 1;
        if (m_expanded > MostExpanded || open.size() >= MostOpen ||
            macro.body.find("##") != std::string::npos)
            return false;
        open.insert(word);
        const bool isTold = expand(macro.body, line, open);
        open.erase(word);
        if (!isTold)
            return false;
    }
    return true;
}

/// To behind them; false if they aren't whole, or if what becomes of them matters.
bool Macros::skipArguments(const std::string& code, std::size_t& at) const
{
    const std::size_t begin = code.find('(', at);
    int depth = 0;
    for (at = begin; at < code.size(); ++at) {
        depth += (code[at] == '(') - (code[at] == ')');
        if (depth == 0)
            break;
    }
    if (depth != 0)
        return false;
    ++at;
    const std::string arguments = code.substr(begin, at - begin);
    const std::vector<std::string> words = wordsIn(arguments);
    return !bracketFault(arguments).words &&
           std::none_of(words.begin(), words.end(),
                        [this](const std::string& word) { return m_known.count(word) > 0; });
}

std::vector<std::string> macrosIn(const std::string& code)
{
    std::vector<std::string> names;
    std::unordered_set<std::string> known;
    if (!hasDirectives(code))
        return names;
    for (const LogicalLine& line : logicalLines(code)) {
        const std::string name = wordAt(line.rest, 0);
        if ((line.word == "define" || line.word == "undef") && !name.empty() &&
            known.insert(name).second)
            names.push_back(name);
    }
    return names;
}

bool hasDirectives(const std::string& code)
{
    if (code.find('#') == std::string::npos && code.find("%:") == std::string::npos)
        return false;
    const std::vector<LogicalLine> lines = logicalLines(code);
    return std::any_of(lines.begin(), lines.end(),
                       [](const LogicalLine& line) { return !line.word.empty(); });
}

void keepMacros(CodeWriter& writer, const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        if (isAscii(name))
            writer.line("#pragma push_macro(\"" + name + "\")");
    }
}

void restoreMacros(CodeWriter& writer, const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        writer.line(isAscii(name) ? "#pragma pop_macro(\"" + name + "\")" : "#undef " + name);
}

std::vector<std::string> reservedAmong(const std::vector<std::string>& names)
{
    static const std::unordered_set<std::string> ofTheRuntime = {
        "rt",       "arrays_equal", "call",      "finished",   "first",
        "log_turn", "own_turns",    "running",   "step_begin", "step_delay",
        "step_end", "step_test",    "step_turn", "turn",       "turns_of_this_step"};
    std::vector<std::string> reserved;
    std::copy_if(names.begin(), names.end(), std::back_inserter(reserved),
                 [](const std::string& name) {
                     const bool isWord = name == identifierText(name);
                     return ofTheRuntime.count(name) > 0 || (isWord && !isIdentifier(name));
                 });
    return reserved;
}

} // namespace codegen
