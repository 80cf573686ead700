#pragma once

#include "standalone/codegen/applet_source.h"

#include <string>

namespace codegen {

/// Writes one source file line by line, indents it and notes who made which lines.
class CodeWriter
{
public:
    CodeWriter(std::size_t file, std::vector<LineRange>& ranges) : m_file(file), m_ranges(ranges) {}

    /// From here on lines belong to this sequence and step.
    void setOwner(const std::string& sequence, const std::string& step);

    /// One line; a line end within the text goes on as it stands.
    void line(const std::string& text);
    void blankLine();
    void comment(const std::string& text);
    /// A line that ends with "{", after which all is deeper, and its counterpart.
    void open(const std::string& text);
    void close(const std::string& text = "}");
    /// Deeper than what is around, without a brace of its own.
    void indent() { ++m_depth; }
    void outdent() { --m_depth; }
    /// At the margin of the surrounding brace.
    void label(const std::string& name);
    /// Code as a user typed it, as lines of its own.
    void userCode(const std::string& code);

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
};

} // namespace codegen
