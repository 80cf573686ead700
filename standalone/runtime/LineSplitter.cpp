#include "standalone/runtime/LineSplitter.h"

#include <algorithm>
#include <cstring>

namespace standalone {

void LineSplitter::feed(const char* data, std::size_t size)
{
    while (size > 0) {
        const auto* end = static_cast<const char*>(std::memchr(data, '\n', size));
        const std::size_t length = end ? static_cast<std::size_t>(end - data) : size;
        const std::size_t taken = std::min(length, MaxLine - m_line.size());
        m_line.append(data, taken);
        const bool lineEnds = end && taken == length;
        if (lineEnds && !m_line.empty() && m_line.back() == '\r')
            m_line.pop_back();
        if (lineEnds || m_line.size() == MaxLine) {
            m_sink(m_line);
            m_line.clear();
        }
        data += taken + (lineEnds ? 1 : 0);
        size -= taken + (lineEnds ? 1 : 0);
    }
}

void LineSplitter::finish()
{
    if (!m_line.empty())
        m_sink(m_line);
    m_line.clear();
}

} // namespace standalone
