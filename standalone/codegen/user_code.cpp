#include "standalone/codegen/user_code.h"

#include "standalone/codegen/code_text.h"

#include <QtGlobal>

#include <algorithm>
#include <unordered_set>

namespace codegen {

namespace {

int lineAt(const std::string& code, std::size_t at)
{
    return 1 + static_cast<int>(
                   std::count(code.begin(), code.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

/// Walks over code from one literal or comment to the next.
class Masker
{
public:
    explicit Masker(const std::string& code, bool masksLiterals = true,
                    char lineEndInComment = '\n')
        : m_code(code), m_masked(code), m_masksLiterals(masksLiterals),
          m_lineEndInComment(lineEndInComment)
    {
    }

    void run()
    {
        for (std::size_t at = 0; at < m_code.size();) {
            if (m_code.compare(at, 2, "//") == 0)
                at = mask(at, lineEnd(at));
            else if (m_code.compare(at, 2, "/*") == 0)
                at =
                    mask(at, behind(at, at + 2, "*/", QT_TRANSLATE_NOOP("codegen", "注释没有结束")),
                         m_lineEndInComment);
            else if (m_code[at] == '"' && isRaw(at))
                at = rawText(at);
            else if (m_code[at] == '"' || (m_code[at] == '\'' && !isSeparator(at)))
                at = literal(at);
            else
                ++at;
        }
    }

    const std::string& masked() const { return m_masked; }
    const CodeFault& fault() const { return m_fault; }

private:
    void setFault(std::size_t at, const char* words, bool swallowsRest = false)
    {
        if (!m_fault.words || swallowsRest)
            m_fault = {words, lineAt(m_code, at), at, swallowsRest};
    }

    std::size_t lineEnd(std::size_t at) const
    {
        std::size_t end = m_code.find('\n', at);
        while (end != std::string::npos && end > 0 && m_code[end - 1] == '\\')
            end = m_code.find('\n', end + 1);
        return std::min(end, m_code.size());
    }

    std::size_t behind(std::size_t begin, std::size_t from, const std::string& mark,
                       const char* words)
    {
        const std::size_t end = m_code.find(mark, from);
        if (end != std::string::npos)
            return end + mark.size();
        setFault(begin, words, true);
        return m_code.size();
    }

    /// 1'000 is a number, u8'a' a character.
    bool isSeparator(std::size_t at) const
    {
        std::size_t begin = at;
        while (begin > 0 && (isWordCharacter(m_code[begin - 1]) || m_code[begin - 1] == '\''))
            --begin;
        return begin < at && m_code[begin] >= '0' && m_code[begin] <= '9';
    }

    bool isRaw(std::size_t at) const { return at > 0 && m_code[at - 1] == 'R'; }

    std::size_t rawText(std::size_t at)
    {
        const std::size_t bracket = m_code.find('(', at);
        const std::string name =
            bracket == std::string::npos ? std::string() : m_code.substr(at + 1, bracket - at - 1);
        const char* words = QT_TRANSLATE_NOOP("codegen", "文本没有结束的引号");
        return maskLiteral(at + 1, behind(at, at + 1, ')' + name + '"', words) - 1) + 1;
    }

    std::size_t literal(std::size_t at)
    {
        for (std::size_t end = at + 1; end < m_code.size() && m_code[end] != '\n'; ++end) {
            if (m_code[end] == '\\')
                ++end;
            else if (m_code[end] == m_code[at])
                return maskLiteral(at + 1, end) + 1;
        }
        setFault(at, QT_TRANSLATE_NOOP("codegen", "文本没有结束的引号"));
        return maskLiteral(at + 1, lineEnd(at));
    }

    std::size_t maskLiteral(std::size_t begin, std::size_t end)
    {
        return m_masksLiterals ? mask(begin, end) : std::max(begin, end);
    }

    std::size_t mask(std::size_t begin, std::size_t end, char lineEnd = '\n')
    {
        for (std::size_t i = begin; i < end && i < m_masked.size(); ++i) {
            m_masked[i] = m_masked[i] == '\n' ? lineEnd : ' ';
        }
        return std::max(begin, end);
    }

    const std::string& m_code;
    std::string m_masked;
    bool m_masksLiterals;
    char m_lineEndInComment;
    CodeFault m_fault;
};

/// The name that a text defines a function by, from what stands before its body; empty if it isn't
/// the head of a function: that is a type of one word or more, a name and parameters.
std::string functionName(const std::string& masked)
{
    static const std::unordered_set<std::string> never = {
        "if",    "else",     "for",       "while", "do",     "switch", "return", "struct",
        "class", "union",    "enum",      "try",   "catch",  "new",    "case",   "goto",
        "auto",  "template", "namespace", "throw", "delete", "typedef"};
    const std::string head = trimmed(masked);
    const std::size_t bracket = head.find('(');
    if (bracket == std::string::npos || bracket == 0 || head.back() != ')')
        return std::string();
    const std::string front = head.substr(0, bracket);
    for (const char c : front) {
        static const std::string between = " \t\r\n*&:<>,";
        if (!isWordCharacter(c) && between.find(c) == std::string::npos)
            return std::string();
    }
    const std::vector<std::string> words = wordsIn(front);
    const bool isHead = words.size() >= 2 && isIdentifier(words.back()) &&
                        std::none_of(words.begin(), words.end(),
                                     [](const std::string& word) { return never.count(word) > 0; });
    return isHead ? words.back() : std::string();
}

/// Default arguments stand where a function is declared and not where it is defined. @p masked is
/// the head with its literals blanked.
std::string withoutDefaults(const std::string& head, const std::string& masked)
{
    std::string result;
    bool isDefault = false;
    int depth = 0;
    for (std::size_t at = 0; at < head.size(); ++at) {
        const char c = masked[at];
        depth -= c == ')' || c == ']' || c == '}';
        if (depth == 0 || (c == ',' && depth == 1))
            isDefault = false;
        isDefault |= c == '=' && depth == 1;
        if (!isDefault || c == '\n')
            result += head[at];
        depth += c == '(' || c == '[' || c == '{';
    }
    return result;
}

/// Behind the words that say how far a function is known: here it is known everywhere.
std::size_t behindLinkage(const std::string& masked, std::size_t at)
{
    for (;;) {
        at = masked.find_first_not_of(" \t\r\n", at);
        std::size_t end = at;
        while (isWordCharacter(masked[end]))
            ++end;
        const std::string word = masked.substr(at, end - at);
        if (word != "static" && word != "inline" && word != "extern")
            return at;
        at = end;
    }
}

} // namespace

std::string withoutLiterals(const std::string& code, char lineEndInComment)
{
    Masker masker(code, true, lineEndInComment);
    masker.run();
    return masker.masked();
}

CodeFault bracketFault(const std::string& masked)
{
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < masked.size(); ++at) {
        const char c = masked[at];
        if (c == '(' || c == '[' || c == '{') {
            open.push_back(at);
        } else if (c == ')' || c == ']' || c == '}') {
            const char wanted = c == ')' ? '(' : c == ']' ? '[' : '{';
            if (open.empty() || masked[open.back()] != wanted)
                return {QT_TRANSLATE_NOOP("codegen", "括号不匹配: 多余的右括号"),
                        lineAt(masked, at), at, false};
            open.pop_back();
        }
    }
    if (open.empty())
        return {};
    return {QT_TRANSLATE_NOOP("codegen", "括号不匹配: 缺少右括号"), lineAt(masked, open.back()),
            open.back(), false};
}

CodeFault openLiteral(const std::string& code)
{
    Masker masker(code);
    masker.run();
    return masker.fault();
}

std::vector<std::string> wordsIn(const std::string& code)
{
    std::vector<std::string> words;
    const std::string masked = withoutLiterals(code);
    for (std::size_t at = 0; at < masked.size();) {
        std::size_t end = at;
        while (end < masked.size() && isWordCharacter(masked[end]))
            ++end;
        if (end > at)
            words.push_back(masked.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

CodeFault faultIn(const std::string& code)
{
    Masker masker(code);
    masker.run();
    if (masker.masked().find('#') != std::string::npos)
        return {};
    return masker.fault().words ? masker.fault() : bracketFault(masker.masked());
}

std::vector<FunctionDefinition> functionsIn(const std::string& code)
{
    std::vector<FunctionDefinition> functions;
    if (code.find('{') == std::string::npos || faultIn(code).words)
        return functions;
    const std::string masked = withoutLiterals(code);
    Masker masker(code, false);
    masker.run();
    const std::string& commentless = masker.masked();
    std::size_t begin = 0; // of what may be a head
    std::size_t body = 0;
    int depth = 0;
    for (std::size_t at = 0; at < masked.size(); ++at) {
        const char c = masked[at];
        if (c == '{' && depth++ == 0)
            body = at;
        if (c == ';' && depth == 0)
            begin = at + 1;
        if (c != '}' || --depth != 0)
            continue;
        const std::string name = functionName(masked.substr(begin, body - begin));
        if (!name.empty()) {
            FunctionDefinition function;
            function.begin = masked.find_first_not_of(" \t\r\n", begin);
            function.end = at + 1;
            function.name = name;
            const std::size_t head = behindLinkage(masked, begin);
            function.head = trimmed(commentless.substr(head, body - head));
            const std::size_t behindHead = head + function.head.size();
            function.code = withoutDefaults(function.head, masked.substr(head)) +
                            code.substr(behindHead, at + 1 - behindHead);
            function.line = lineAt(code, head);
            functions.push_back(std::move(function));
        }
        begin = at + 1;
    }
    return functions;
}

std::string withoutFunctions(const std::string& code,
                             const std::vector<FunctionDefinition>& functions)
{
    std::string rest = code;
    for (const FunctionDefinition& function : functions) {
        for (std::size_t at = function.begin; at < function.end; ++at) {
            if (rest[at] != '\n')
                rest[at] = ' ';
        }
    }
    return !functions.empty() && isBlank(rest) ? std::string() : rest;
}

} // namespace codegen
