#include "standalone/runtime/LineSplitter.h"

#include "protocol/protocol.h"

#include <algorithm>
#include <cstring>

namespace standalone {

void LineSplitter::feed(const char* data, std::size_t size)
{
    while (size > 0) {
        const auto* end = static_cast<const char*>(std::memchr(data, '\n', size));
        const std::size_t length = end ? static_cast<std::size_t>(end - data) : size;
        // One byte more shows where a character ends, and one behind it whether the line does.
        const std::size_t taken = std::min(length, MaxLine + 2 - m_line.size());
        m_line.append(data, taken);
        const bool lineEnds = end && taken == length;
        if (lineEnds && !m_line.empty() && m_line.back() == '\r')
            m_line.pop_back();
        const bool mayEnd = !lineEnds && m_line.size() == MaxLine + 1 && m_line.back() == '\r';
        if (m_line.size() > MaxLine && !mayEnd)
            handOver(protocol::cutAtCharacter(m_line.data(), m_line.size(), MaxLine));
        if (lineEnds)
            handOver(m_line.size());
        data += taken + (lineEnds ? 1 : 0);
        size -= taken + (lineEnds ? 1 : 0);
    }
}

void LineSplitter::handOver(std::size_t size)
{
    m_sink(m_line.substr(0, size));
    m_line.erase(0, size);
}

void LineSplitter::finish()
{
    if (m_line.size() > MaxLine)
        handOver(MaxLine);
    if (!m_line.empty())
        handOver(m_line.size());
}

} // namespace standalone
