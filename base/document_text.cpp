#include "base/document_text.h"

#include "base/json_scan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace document_text {

namespace {

/// Finds the members of the outermost object and takes the white space out of them.
class Splitter
{
public:
    Splitter(std::string_view text, Parts& parts) : m_text(text), m_parts(parts)
    {
        m_parts.values.reset(new char[text.size()]); // pages that stay untouched cost nothing
        m_valueBegin = m_out = m_parts.values.get();
    }

    void begin(char bracket, std::size_t at)
    {
        if (m_depth == 0)
            m_parts.isObject = bracket == '{';
        if (m_depth == 1)
            openValue(at);
        ++m_depth;
    }
    void end(std::size_t at)
    {
        if (--m_depth == 1)
            closeValue(at + 1);
    }
    void key(std::size_t begin, std::size_t end, bool)
    {
        if (m_depth != 1)
            return;
        m_name = m_text.substr(begin, end - begin);
    }
    void string(std::size_t begin, std::size_t end, bool) { takeScalar(begin - 1, end + 1); }
    void scalar(std::size_t begin, std::size_t end) { takeScalar(begin, end); }
    void space(std::size_t begin, std::size_t end)
    {
        if (m_depth > 1)
            copyTo(begin);
        m_copied = end;
    }
    /// Takes what the text breaks off in.
    void finish(std::size_t at)
    {
        if (m_depth > 1)
            closeValue(at);
    }

private:
    void takeScalar(std::size_t begin, std::size_t end)
    {
        if (m_depth != 1)
            return;
        openValue(begin);
        closeValue(end);
    }
    void openValue(std::size_t at)
    {
        m_valueBegin = m_out;
        m_copied = at;
    }
    void closeValue(std::size_t at)
    {
        copyTo(at);
        if (m_parts.isObject)
            m_parts.members[m_name] = {m_valueBegin,
                                       static_cast<std::size_t>(m_out - m_valueBegin)};
    }
    void copyTo(std::size_t end)
    {
        // Most pieces are short: they are copied with what stands behind them, which the next one
        // covers.
        constexpr std::size_t step = 16;
        const auto size = end - m_copied;
        const char* const from = m_text.data() + m_copied;
        if (size <= 2 * step && m_text.size() - m_copied >= 2 * step) {
            std::memcpy(m_out, from, step);
            std::memcpy(m_out + step, from + step, step);
        } else {
            std::memcpy(m_out, from, size);
        }
        m_out += size;
        m_copied = end;
    }

    std::string_view m_text;
    Parts& m_parts;
    std::string_view m_name;
    char* m_valueBegin;       ///< in the values of the parts
    char* m_out;              ///< where the values go on
    std::size_t m_copied = 0; ///< how much of the text is copied, or left out
    std::size_t m_depth = 0;
};

/// Half a pair of surrogates, as \ud800, which only an escape can say.
bool isSurrogate(std::string_view digits)
{
    return (digits[0] == 'd' || digits[0] == 'D') && digits[1] >= '8';
}

/// Whether a string with escapes has them where QJsonDocument has them.
bool isUsual(std::string_view string)
{
    for (auto at = string.find('\\'); at != std::string_view::npos;
         at = string.find('\\', at + 2)) {
        const char c = string[at + 1];
        const bool isControl = c == 'u' && string.substr(at + 2, 2) == "00" &&
                               (string[at + 4] == '0' || string[at + 4] == '1');
        if (c == '/' || (c == 'u' && !isControl && !isSurrogate(string.substr(at + 2, 2))))
            return false;
    }
    return true;
}

/// A text that is written piece by piece into room that is there already.
class Output
{
public:
    /// @p guess bytes are about what will be written.
    Output(std::string& text, std::size_t guess) : m_text(text) { m_text.resize(guess); }

    void put(std::string_view piece)
    {
        std::memcpy(room(piece.size()), piece.data(), piece.size());
        m_size += piece.size();
    }
    void blanks(std::size_t count)
    {
        std::memset(room(count), ' ', count);
        m_size += count;
    }
    /// Ends the text where it was written to.
    void finish() { m_text.resize(m_size); }

private:
    char* room(std::size_t count)
    {
        if (m_text.size() - m_size < count)
            m_text.resize(m_text.size() * 2 + count);
        return m_text.data() + m_size;
    }

    std::string& m_text;
    std::size_t m_size = 0;
};

/// Writes what it is shown, indented.
class Indenter
{
public:
    /// @p outer levels stand around the text.
    Indenter(std::string_view text, Output& out, std::size_t outer)
        : m_text(text), m_out(out), m_outer(outer)
    {
    }

    void begin(char bracket, std::size_t)
    {
        openElement();
        m_out.put(bracket == '{' ? "{\n" : "[\n");
        m_levels.push_back({bracket, true, {}});
        m_isTooDeep = m_isTooDeep || m_levels.size() > MostLevels;
    }
    void end(std::size_t)
    {
        if (!m_levels.back().isEmpty)
            m_out.put("\n");
        const char bracket = m_levels.back().bracket;
        m_levels.pop_back();
        indent();
        m_out.put(bracket == '{' ? "}" : "]");
    }
    void key(std::size_t begin, std::size_t end, bool isPlain)
    {
        const auto name = m_text.substr(begin, end - begin);
        auto& level = m_levels.back();
        m_isUsual =
            m_isUsual && isPlain && (level.isEmpty || json_scan::isBefore(level.lastName, name));
        level.lastName = name;
        openElement();
        append(begin - 1, end + 1);
        m_out.put(": ");
        m_isNamed = true;
    }
    void string(std::size_t begin, std::size_t end, bool isPlain)
    {
        m_isUsual = m_isUsual && (isPlain || isUsual(m_text.substr(begin, end - begin)));
        openElement();
        append(begin - 1, end + 1);
    }
    void scalar(std::size_t begin, std::size_t end)
    {
        openElement();
        append(begin, end);
    }
    void space(std::size_t, std::size_t) {}

    bool isUsualSoFar() const { return m_isUsual; }
    bool isTooDeep() const { return m_isTooDeep; }

private:
    static constexpr std::size_t MostLevels = 1024; // as the library reads
    struct Level
    {
        char bracket;
        bool isEmpty;
        std::string_view lastName;
    };

    void openElement()
    {
        if (m_isNamed) {
            m_isNamed = false;
            return;
        }
        if (m_levels.empty())
            return;
        if (!m_levels.back().isEmpty)
            m_out.put(",\n");
        m_levels.back().isEmpty = false;
        indent();
    }
    void indent()
    {
        // Too deep a text is of no use, and its indentation would grow with the square.
        if (!m_isTooDeep)
            m_out.blanks((m_levels.size() + m_outer) * 4);
    }
    void append(std::size_t begin, std::size_t end)
    {
        m_out.put(m_text.substr(begin, end - begin));
    }

    std::string_view m_text;
    Output& m_out;
    std::size_t m_outer;
    std::vector<Level> m_levels;
    bool m_isNamed = false; ///< a name was written whose value comes
    bool m_isUsual = true;
    bool m_isTooDeep = false;
};

/// How many bytes an indented text may have: half of a document of steps is indentation.
std::size_t guessFor(std::string_view json)
{
    return json.size() * 2 + 64;
}

/// How many bytes of @p text make its first character; 0 if they are none.
std::size_t lengthOfCharacter(std::string_view text)
{
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const auto follows = [&](std::size_t i, unsigned least, unsigned most) {
        return byte(i) >= least && byte(i) <= most;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return follows(1, 0x80, 0xBF) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool isSecond = follows(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
        return isSecond && follows(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool isSecond = follows(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
        return isSecond && follows(2, 0x80, 0xBF) && follows(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

} // namespace

Parts split(std::string_view text)
{
    Parts parts;
    Splitter splitter(text, parts);
    const auto result = json_scan::scan(text, splitter);
    splitter.finish(result.offset);
    parts.fault = result.fault;
    parts.faultOffset = result.offset;
    return parts;
}

QByteArray utf8Of(const QString& text)
{
    constexpr int piece = 16 * 1024;
    QByteArray bytes;
    bytes.reserve(text.size() + text.size() / 8);
    for (int begin = 0; begin < text.size();) {
        int end = std::min(begin + piece, text.size());
        if (end < text.size() && text.at(end - 1).isHighSurrogate())
            --end;
        bytes += text.midRef(begin, end - begin).toUtf8();
        begin = end;
    }
    return bytes;
}

QString lineAndColumn(std::string_view text, std::size_t offset)
{
    const auto before = text.substr(0, offset);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const auto lineBegin = before.rfind('\n') + 1; // npos + 1 is 0
    return QStringLiteral("行 %1 列 %2").arg(line).arg(before.size() - lineBegin + 1);
}

std::size_t firstForeignByte(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        while (text.size() - at >= 8) {
            std::uint64_t bytes;
            std::memcpy(&bytes, text.data() + at, sizeof bytes);
            if ((bytes & 0x8080808080808080u) != 0)
                break;
            at += 8;
        }
        if (at == text.size())
            break;
        const auto length = lengthOfCharacter(text.substr(at));
        if (length == 0)
            return at;
        at += length;
    }
    return std::string_view::npos;
}

bool indent(std::string_view json, std::string& text, QString& complaint)
{
    Output out(text, guessFor(json));
    Indenter indenter(json, out, 0);
    const auto result = json_scan::scan(json, indenter);
    if (result.fault)
        complaint = QStringLiteral("%1 (%2)").arg(QString::fromUtf8(result.fault),
                                                  lineAndColumn(json, result.offset));
    else if (indenter.isTooDeep())
        complaint = QStringLiteral("嵌套过深");
    out.put("\n");
    out.finish();
    if (!complaint.isEmpty())
        text.clear();
    return complaint.isEmpty();
}

bool join(const std::map<std::string_view, std::string_view>& members, std::string& text)
{
    std::size_t size = 64;
    for (const auto& member : members)
        size += guessFor(member.second);
    Output out(text, size);
    const char* before = "{\n    \"";
    for (const auto& [name, json] : members) {
        out.put(before);
        out.put(name);
        out.put("\": ");
        Indenter indenter(json, out, 1); // they stand in the object
        if (json_scan::scan(json, indenter).fault || !indenter.isUsualSoFar())
            return false;
        before = ",\n    \"";
    }
    out.put(members.empty() ? "{\n}\n" : "\n}\n");
    out.finish();
    return true;
}

} // namespace document_text
