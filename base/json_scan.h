#pragma once

#include <QtAlgorithms>
#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

/// Reads a JSON text from front to end and tells a handler what stands there, without building
/// anything: for texts of any size, nested as deep as they like. No recursion, no state outside.
///
/// A handler has, with offsets into the text:
///   void begin(char bracket, std::size_t at);   '{' or '['
///   void end(std::size_t at);                   the closing bracket
///   void key(std::size_t begin, std::size_t end, bool isPlain);
///   void string(std::size_t begin, std::size_t end, bool isPlain);
///   void scalar(std::size_t begin, std::size_t end);   a number, true, false or null
///   void space(std::size_t begin, std::size_t end);   white space between them
/// Strings are told without their quotes; a plain one has no escapes.
namespace json_scan {

/// Control characters with escapes of their own, and those escapes' letters.
constexpr std::string_view escapedControls = "\b\f\n\r\t";
constexpr std::string_view escapeNames = "bfnrt";

/// Eight bytes of a text as one number, the first one lowest.
inline quint64 eightBytes(const char* at)
{
    return qFromLittleEndian<quint64>(at);
}

/// Marks which of eight bytes are below @p limit, at most 0x80; right up to the first one.
constexpr quint64 marksBelow(quint64 bytes, unsigned char limit)
{
    constexpr quint64 ones = 0x0101010101010101u;
    return (bytes - ones * limit) & ~bytes & (ones * 0x80u);
}

/// Marks which of eight bytes are @p c; right up to the first one.
constexpr quint64 marksOf(quint64 bytes, unsigned char c)
{
    return marksBelow(bytes ^ (0x0101010101010101u * c), 1);
}

/// The number of the first byte of eight that has a bit set.
inline std::ptrdiff_t firstOf(quint64 bytes)
{
    return qCountTrailingZeroBits(bytes) / 8;
}

/// Whether a text stands between quotes as it is.
inline bool isPlain(std::string_view text)
{
    const auto marks = [](quint64 bytes) {
        return marksBelow(bytes, 0x20) | marksOf(bytes, '"') | marksOf(bytes, '\\');
    };
    quint64 found = 0;
    for (; text.size() >= 8; text.remove_prefix(8))
        found |= marks(eightBytes(text.data()));
    for (const char c : text)
        found |= marks(0xFFFFFFFFFFFFFF00u | static_cast<unsigned char>(c));
    return found == 0;
}

/// What broke the text, and where. What the handler was told before holds; brackets may be open.
struct Result
{
    const char* fault = nullptr; ///< UTF-8; null for a whole text
    std::size_t offset = 0;
};

template <class Handler> class Scanner
{
public:
    Scanner(std::string_view text, Handler& handler)
        : m_begin(text.data()), m_at(m_begin), m_end(m_begin + text.size()), m_handler(handler)
    {
    }

    Result run()
    {
        if (m_end - m_at >= 3 && std::memcmp(m_at, "\xEF\xBB\xBF", 3) == 0)
            m_at += 3;
        skipSpace();
        bool isFine = value();
        while (isFine && !m_open.empty())
            isFine = next();
        // A fault stays where it is.
        if (isFine)
            skipSpace();
        if (isFine && m_at != m_end)
            fail("多余的内容");
        return {m_fault, offset()};
    }

private:
    std::size_t offset() const { return static_cast<std::size_t>(m_at - m_begin); }

    bool fail(const char* fault)
    {
        m_fault = m_at == m_end ? "内容不完整" : fault;
        return false;
    }

    /// The end of the innermost open bracket, or its next element.
    bool next()
    {
        skipSpace();
        if (m_at == m_end)
            return fail(nullptr);
        const bool isObject = m_open.back() == '{';
        if (*m_at == (isObject ? '}' : ']')) {
            m_handler.end(offset());
            m_open.pop_back();
            m_isFirst = false;
            ++m_at;
            return true;
        }
        if (!m_isFirst) {
            if (*m_at != ',')
                return fail("缺少逗号");
            ++m_at;
            skipSpace();
        }
        m_isFirst = false;
        return (!isObject || key()) && value();
    }

    bool key()
    {
        if (m_at == m_end || *m_at != '"')
            return fail("缺少成员名");
        bool isPlain = true;
        const std::size_t begin = offset() + 1;
        if (!quoted(isPlain))
            return false;
        m_handler.key(begin, offset() - 1, isPlain);
        skipSpace();
        if (m_at == m_end || *m_at != ':')
            return fail("缺少冒号");
        ++m_at;
        skipSpace();
        return true;
    }

    bool value()
    {
        if (m_at == m_end)
            return fail(nullptr);
        const std::size_t begin = offset();
        switch (*m_at) {
        case '{':
        case '[':
            m_open.push_back(*m_at);
            m_handler.begin(*m_at, begin);
            m_isFirst = true;
            ++m_at;
            return true;
        case '"': {
            bool isPlain = true;
            if (!quoted(isPlain))
                return false;
            m_handler.string(begin + 1, offset() - 1, isPlain);
            return true;
        }
        case 't':
            return word("true") && told(begin);
        case 'f':
            return word("false") && told(begin);
        case 'n':
            return word("null") && told(begin);
        default:
            return number() && told(begin);
        }
    }

    bool told(std::size_t begin)
    {
        m_handler.scalar(begin, offset());
        return true;
    }

    bool word(std::string_view expected)
    {
        if (std::string_view(m_at, static_cast<std::size_t>(m_end - m_at))
                .substr(0, expected.size()) != expected)
            return fail("无效的值");
        m_at += expected.size();
        return true;
    }

    bool digits()
    {
        const char* const first = m_at;
        while (m_at != m_end && *m_at >= '0' && *m_at <= '9')
            ++m_at;
        return m_at != first;
    }

    bool number()
    {
        const auto is = [this](char c) { return m_at != m_end && *m_at == c; };
        if (is('-'))
            ++m_at;
        if (is('0'))
            ++m_at;
        else if (!digits())
            return fail("无效的值");
        if (is('.')) {
            ++m_at;
            if (!digits())
                return fail("无效的数字");
        }
        if (is('e') || is('E')) {
            ++m_at;
            if (is('+') || is('-'))
                ++m_at;
            if (!digits())
                return fail("无效的数字");
        }
        return true;
    }

    /// From the opening quote to behind the closing one.
    bool quoted(bool& isPlain)
    {
        for (++m_at;;) {
            skipPlain();
            if (m_at == m_end)
                return fail(nullptr);
            if (*m_at == '"') {
                ++m_at;
                return true;
            }
            isPlain = false;
            if (!escape())
                return false;
        }
    }

    bool escape()
    {
        ++m_at;
        if (m_at == m_end)
            return fail(nullptr);
        if (*m_at != 'u') {
            if (std::memchr("\"\\/bfnrt", *m_at, 8) == nullptr)
                return fail("无效的转义");
            ++m_at;
            return true;
        }
        ++m_at;
        for (int i = 0; i < 4; ++i, ++m_at) {
            const bool isHex = m_at != m_end && ((*m_at >= '0' && *m_at <= '9') ||
                                                 ((*m_at | 0x20) >= 'a' && (*m_at | 0x20) <= 'f'));
            if (!isHex)
                return fail("无效的转义");
        }
        return true;
    }

    /// To the next quote or backslash.
    void skipPlain()
    {
        for (; m_end - m_at >= 8; m_at += 8) {
            const auto bytes = eightBytes(m_at);
            if (const auto marks = marksOf(bytes, '"') | marksOf(bytes, '\\')) {
                m_at += firstOf(marks);
                return;
            }
        }
        while (m_at != m_end && *m_at != '"' && *m_at != '\\')
            ++m_at;
    }

    void skipSpace()
    {
        if (m_at == m_end || static_cast<unsigned char>(*m_at) > ' ')
            return;
        const std::size_t begin = offset();
        while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t')) {
            ++m_at;
            skipBlanks();
        }
        if (offset() != begin)
            m_handler.space(begin, offset());
    }

    void skipBlanks()
    {
        constexpr quint64 blanks = 0x2020202020202020u;
        for (; m_end - m_at >= 8; m_at += 8) {
            if (const auto others = eightBytes(m_at) ^ blanks) {
                m_at += firstOf(others);
                return;
            }
        }
    }

    const char* const m_begin;
    const char* m_at;
    const char* const m_end;
    Handler& m_handler;
    std::string m_open; ///< the open brackets
    bool m_isFirst = false;
    const char* m_fault = nullptr;
};

/// The order of an object's members as Qt's library writes them: that of their names' UTF-16 units.
inline bool isBefore(std::string_view a, std::string_view b)
{
    constexpr unsigned char firstOfEe = 0xEE; // U+E000 and above, which surrogates precede
    constexpr unsigned char firstOfFour = 0xF0;
    const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (x == a.end() || y == b.end())
        return x == a.end() && y != b.end();
    const auto left = static_cast<unsigned char>(*x);
    const auto right = static_cast<unsigned char>(*y);
    if (left >= firstOfEe && right >= firstOfEe && (left >= firstOfFour) != (right >= firstOfFour))
        return left >= firstOfFour;
    return left < right;
}

template <class Handler> Result scan(std::string_view text, Handler& handler)
{
    return Scanner<Handler>(text, handler).run();
}

} // namespace json_scan
