#include "standalone/codegen/CodeWriter.h"

#include "standalone/codegen/code_text.h"

#include <algorithm>

namespace codegen {

void CodeWriter::setOwner(int owner)
{
    m_owner = owner;
    m_ranges.push_back({m_file, m_line, owner, nullptr, 0});
}

void CodeWriter::raw(const std::string& text)
{
    m_text += text;
    m_text += '\n';
    m_line += 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

void CodeWriter::line(const std::string& text, const char* userText)
{
    if (userText)
        m_ranges.push_back({m_file, m_line, m_owner, userText, 1});
    raw(std::string(static_cast<std::size_t>(m_depth) * 4, ' ') + text);
    if (userText)
        m_ranges.push_back({m_file, m_line, m_owner, nullptr, 0});
}

void CodeWriter::blankLine()
{
    raw(std::string());
}

void CodeWriter::comment(const std::string& text)
{
    line("// " + commentText(text));
}

void CodeWriter::open(const std::string& text, const char* userText)
{
    line(text.empty() ? "{" : text + " {", userText);
    ++m_depth;
}

void CodeWriter::close(const std::string& text, const char* userText)
{
    --m_depth;
    line(text, userText);
}

void CodeWriter::label(const std::string& name)
{
    --m_depth;
    line(name + ":");
    ++m_depth;
}

void CodeWriter::userCode(const std::string& code, const char* userText, int firstLine)
{
    m_ranges.push_back({m_file, m_line, m_owner, userText, firstLine});
    // The lines of a raw string literal mean what they hold, and those that a backslash joins may
    // be in the middle of a word: they are not indented.
    const bool verbatim = code.find("R\"") != std::string::npos ||
                          code.find("\\\n") != std::string::npos ||
                          code.find("\\\r\n") != std::string::npos;
    std::size_t begin = 0;
    while (begin <= code.size()) {
        std::size_t end = code.find('\n', begin);
        if (end == std::string::npos)
            end = code.size();
        std::string text = code.substr(begin, end - begin);
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        if (verbatim)
            raw(text);
        else if (text.empty())
            blankLine();
        else
            line(text);
        begin = end + 1;
    }
    // A backslash at the end would take the next line with it, also with blanks behind it.
    const std::size_t last = code.find_last_not_of(" \t\r\v\f");
    if (last != std::string::npos && code[last] == '\\')
        blankLine();
    m_ranges.push_back({m_file, m_line, m_owner, nullptr, 0});
}

} // namespace codegen
