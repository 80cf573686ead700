#include "standalone/codegen/statement_functions.h"

#include <algorithm>
#include <cctype>

namespace codegen {

namespace {

struct Token
{
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string text; ///< empty at the end of the code
    bool isWord = false;
};

bool isWordStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_' || (c & 0x80);
}

bool isWordPart(char c)
{
    return isWordStart(c) || std::isdigit(static_cast<unsigned char>(c));
}

/// Reads a C++ text token by token; comments, literals and preprocessor lines are passed over.
class Scanner
{
public:
    explicit Scanner(const std::string& code) : m_code(code) {}

    Token next()
    {
        skip();
        Token token;
        token.begin = token.end = m_at;
        if (m_at >= m_code.size())
            return token;
        const char c = m_code[m_at];
        token.isWord = isWordStart(c);
        if (isWordPart(c)) {
            while (token.end < m_code.size() && isWordPart(m_code[token.end]))
                ++token.end;
        } else {
            token.end += m_code.compare(m_at, 2, "::") == 0 ? 2 : 1;
        }
        token.text = m_code.substr(token.begin, token.end - token.begin);
        m_at = token.end;
        return token;
    }

    /// Passes over what an opening bracket encloses; the place behind the closing one, or npos.
    std::size_t close(const char* open, const char* closing)
    {
        for (int depth = 1;;) {
            const Token token = next();
            if (token.text.empty())
                return std::string::npos;
            depth += (token.text == open) - (token.text == closing);
            if (depth == 0)
                return token.end;
        }
    }

private:
    bool startsWith(const char* text) const { return m_code.compare(m_at, 2, text) == 0; }
    void skipTo(const std::string& end, std::size_t from)
    {
        const std::size_t found = m_code.find(end, from);
        m_at = found == std::string::npos ? m_code.size() : found + end.size();
    }
    void skipLiteral(char quote)
    {
        for (++m_at; m_at < m_code.size() && m_code[m_at] != quote; ++m_at)
            m_at += m_code[m_at] == '\\';
        m_at = std::min(m_at + 1, m_code.size());
    }
    void skipRawLiteral()
    {
        const std::size_t bracket = m_code.find('(', m_at);
        if (bracket == std::string::npos)
            m_at = m_code.size();
        else
            skipTo(')' + m_code.substr(m_at + 2, bracket - m_at - 2) + '"', bracket);
    }
    void skip()
    {
        while (m_at < m_code.size()) {
            const char c = m_code[m_at];
            if (std::isspace(static_cast<unsigned char>(c)))
                ++m_at;
            else if (startsWith("//") || c == '#')
                skipTo("\n", m_at);
            else if (startsWith("/*"))
                skipTo("*/", m_at + 2);
            else if (startsWith("R\""))
                skipRawLiteral();
            else if (c == '"' || c == '\'')
                skipLiteral(c);
            else
                return;
        }
    }

    const std::string& m_code;
    std::size_t m_at = 0;
};

bool isOneOf(const std::string& word, std::initializer_list<const char*> words)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// As one writes a type: words parted by blanks, the other signs close to what is before them.
std::string typeText(std::vector<Token>::const_iterator first,
                     std::vector<Token>::const_iterator last)
{
    std::string text;
    bool wasWord = false;
    for (; first != last; ++first) {
        if (isOneOf(first->text, {"static", "inline", "extern"}))
            continue;
        const bool isWord = isWordPart(first->text.front());
        text += (wasWord && isWord ? " " : "") + first->text;
        wasWord = isWord;
    }
    return text;
}

StatementFunction::Parameter parameter(std::vector<Token> tokens, std::size_t number)
{
    const auto cut = std::find_if(tokens.begin(), tokens.end(), [](const Token& token) {
        return token.text == "=" || token.text == "[";
    });
    const std::string pointer = cut != tokens.end() && cut->text == "[" ? "*" : "";
    tokens.erase(cut, tokens.end());
    StatementFunction::Parameter result;
    const auto isName = [](const Token& token) {
        return token.isWord && !isOneOf(token.text, {"int", "char", "double", "float", "long",
                                                     "short", "unsigned", "signed", "const"});
    };
    if (tokens.size() > 1 && isName(tokens.back())) {
        result.name = tokens.back().text;
        tokens.pop_back();
    } else {
        result.name = "p" + std::to_string(number);
    }
    result.type = typeText(tokens.begin(), tokens.end()) + pointer;
    return result;
}

std::vector<StatementFunction::Parameter> parameters(const std::vector<Token>& tokens,
                                                     std::size_t first, std::size_t last)
{
    std::vector<StatementFunction::Parameter> result;
    std::vector<Token> part;
    for (std::size_t i = first; i <= last; ++i) {
        if (i < last && tokens[i].text != ",") {
            part.push_back(tokens[i]);
            continue;
        }
        if (!part.empty() && !(part.size() == 1 && part.front().text == "void"))
            result.push_back(parameter(part, result.size() + 1));
        part.clear();
    }
    return result;
}

/// What stands between the end of what is before and an opening brace: the head of a function, or
/// something without a name.
StatementFunction head(const std::vector<Token>& tokens)
{
    StatementFunction function;
    const auto bracket = std::find_if(tokens.begin(), tokens.end(),
                                      [](const Token& token) { return token.text == "("; });
    const auto name = static_cast<std::size_t>(bracket - tokens.begin());
    if (name < 2 || bracket == tokens.end() || tokens.back().text != ")")
        return function;
    const bool isType = std::all_of(tokens.begin(), bracket, [](const Token& token) {
        return isWordPart(token.text.front()) || isOneOf(token.text, {"*", "&", "::"});
    });
    if (!isType || !tokens[name - 1].isWord || tokens[name - 2].text == "::" ||
        isOneOf(tokens.front().text,
                {"if", "else", "for", "while", "do", "switch", "case", "return", "struct", "class",
                 "enum", "union", "namespace", "goto", "new", "template", "using", "typedef"}))
        return function;
    function.returnType = typeText(tokens.begin(), bracket - 1);
    function.name = tokens[name - 1].text;
    function.parameters = parameters(tokens, name + 1, tokens.size() - 1);
    function.begin = tokens.front().begin;
    return function;
}

/// The lines right above a place that are comments to their end.
std::string commentAbove(const std::string& code, std::size_t place)
{
    std::string comment;
    std::size_t lineBegin = code.rfind('\n', place ? place - 1 : 0);
    while (lineBegin != std::string::npos && place > 0) {
        const std::size_t end = lineBegin;
        const std::size_t before = end ? code.rfind('\n', end - 1) : std::string::npos;
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        std::size_t at = code.find_first_not_of(" \t", begin);
        if (at >= end || code.compare(at, 2, "//") != 0)
            break;
        at = std::min(code.find_first_not_of("/! \t", at), end);
        std::string line = code.substr(at, end - at);
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
            line.pop_back();
        comment = line + (comment.empty() || line.empty() ? "" : " ") + comment;
        lineBegin = begin ? begin - 1 : std::string::npos;
    }
    return comment;
}

} // namespace

std::vector<StatementFunction> statementFunctions(const std::string& code)
{
    std::vector<StatementFunction> functions;
    Scanner scanner(code);
    std::vector<Token> before;
    for (Token token = scanner.next(); !token.text.empty(); token = scanner.next()) {
        if (token.text == ";") {
            before.clear();
        } else if (token.text == "{") {
            StatementFunction function = head(before);
            const std::size_t end = scanner.close("{", "}");
            if (end == std::string::npos)
                break;
            if (!function.name.empty()) {
                function.comment = commentAbove(code, function.begin);
                function.body = token.begin;
                function.end = end;
                functions.push_back(std::move(function));
            }
            before.clear();
        } else {
            before.push_back(token);
        }
    }
    return functions;
}

std::string withoutFunctions(const std::string& code,
                             const std::vector<StatementFunction>& functions)
{
    std::string rest = code;
    for (auto function = functions.rbegin(); function != functions.rend(); ++function) {
        const auto first = rest.begin() + static_cast<std::ptrdiff_t>(function->begin);
        const auto last = rest.begin() + static_cast<std::ptrdiff_t>(function->end);
        rest.replace(first, last,
                     std::string(static_cast<std::size_t>(std::count(first, last, '\n')), '\n'));
    }
    return rest;
}

} // namespace codegen
