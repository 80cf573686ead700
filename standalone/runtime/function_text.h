#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace standalone {

/// Fills a text of a _DrelFunction, cut at a character's border, so that what is left is text.
template <std::size_t Size> void copyText(char (&target)[Size], const std::string& text)
{
    std::size_t size = std::min(text.size(), Size - 1);
    while (size < text.size() && size > 0 && (text[size] & 0xC0) == 0x80)
        --size;
    std::memcpy(target, text.data(), size);
    target[size] = 0;
}

} // namespace standalone
