#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace standalone {

/// Cuts a byte stream into lines. A line that grows beyond MaxLine bytes is handed over in parts,
/// which end between two characters of UTF-8.
class LineSplitter
{
public:
    static constexpr std::size_t MaxLine = 4096;
    using Sink = std::function<void(const std::string& line)>;

    explicit LineSplitter(Sink sink) : m_sink(std::move(sink)) {}

    void feed(const char* data, std::size_t size);
    /// Hands over what stands after the last line end.
    void finish();

private:
    void handOver(std::size_t size);

    Sink m_sink;
    std::string m_line;
};

} // namespace standalone
