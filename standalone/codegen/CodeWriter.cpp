#include "standalone/codegen/CodeWriter.h"

#include "standalone/codegen/code_text.h"

#include <algorithm>

namespace codegen {

void CodeWriter::setOwner(const std::string& sequence, const std::string& step)
{
    m_ranges.push_back({m_file, m_line, sequence, step});
}

void CodeWriter::raw(const std::string& text)
{
    m_text += text;
    m_text += '\n';
    m_line += 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

void CodeWriter::line(const std::string& text)
{
    raw(std::string(static_cast<std::size_t>(m_depth) * 4, ' ') + text);
}

void CodeWriter::blankLine()
{
    raw(std::string());
}

void CodeWriter::comment(const std::string& text)
{
    line("// " + commentText(text));
}

void CodeWriter::open(const std::string& text)
{
    line(text.empty() ? "{" : text + " {");
    ++m_depth;
}

void CodeWriter::close(const std::string& text)
{
    --m_depth;
    line(text);
}

void CodeWriter::label(const std::string& name)
{
    --m_depth;
    line(name + ":");
    ++m_depth;
}

void CodeWriter::userCode(const std::string& code)
{
    // The lines of a raw string literal mean what they hold: they are not indented.
    const bool verbatim = code.find("R\"") != std::string::npos;
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
    // A backslash at the end would take the next line with it.
    if (!code.empty() && code.back() == '\\')
        blankLine();
}

} // namespace codegen
