#pragma once

#include <cstddef>
#include <cstdint>

namespace checksums {

/// The CRC of that catalogue name ("CRC-16/MODBUS"), or of an alias of it; upper case and lower
/// case are the same. False if there is none of that width.
bool crc(const char* name, int width, const unsigned char* data, std::size_t size,
         std::uint32_t& value);

} // namespace checksums
