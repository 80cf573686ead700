#pragma once

#include "standalone/codegen/applet_source.h"

#include <string>

namespace codegen {

/// Writes one source file line by line, indents it and notes who made which lines.
class CodeWriter
{
public:
    CodeWriter(std::size_t file, std::vector<LineRange>& ranges) : m_file(file), m_ranges(ranges) {}

    /// From here on lines belong to this one of the owners, -1: to nobody.
    void setOwner(int owner);

    /// One line; a line end within the text goes on as it stands. With a @p userText the line holds
    /// this text of its owner, from the text's first line.
    void line(const std::string& text, const char* userText = nullptr);
    void blankLine();
    void comment(const std::string& text);
    /// A line that ends with "{", after which all is deeper, and its counterpart.
    void open(const std::string& text, const char* userText = nullptr);
    void close(const std::string& text = "}", const char* userText = nullptr);
    /// Deeper than what is around, without a brace of its own.
    void indent() { ++m_depth; }
    void outdent() { --m_depth; }
    /// At the margin of the surrounding brace.
    void label(const std::string& name);
    /// Code as a user typed it, as lines of its own: @p userText of the owner from @p firstLine.
    void userCode(const std::string& code, const char* userText, int firstLine = 1);

    const std::string& text() const { return m_text; }
    /// Of the next line, from 1.
    int lineNumber() const { return m_line; }

private:
    void raw(const std::string& text);

    std::size_t m_file;
    std::vector<LineRange>& m_ranges;
    std::string m_text;
    int m_depth = 0;
    int m_line = 1;
    int m_owner = -1;
};

} // namespace codegen
