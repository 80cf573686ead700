#include "runner/checksums.h"

#include <cctype>
#include <cstring>

namespace checksums {

namespace {

/// A CRC in the parameters that catalogues describe it by.
struct Variant
{
    const char* name;
    const char* alias;
    int width;
    std::uint32_t polynomial;
    std::uint32_t start;
    bool isReflected; ///< bits go in and come out lowest first
    std::uint32_t finalXor;
};

const Variant variants[] = {
    {"CRC-8/SMBUS", "CRC-8", 8, 0x07, 0x00, false, 0x00},
    {"CRC-8/SAE-J1850", "CRC-8/J1850", 8, 0x1d, 0xff, false, 0xff},
    {"CRC-8/AUTOSAR", "CRC-8/8H2F", 8, 0x2f, 0xff, false, 0xff},
    {"CRC-8/MAXIM-DOW", "CRC-8/MAXIM", 8, 0x31, 0x00, true, 0x00},
    {"CRC-8/ROHC", "", 8, 0x07, 0xff, true, 0x00},
    {"CRC-16/ARC", "CRC-16", 16, 0x8005, 0x0000, true, 0x0000},
    {"CRC-16/IBM-3740", "CRC-16/CCITT-FALSE", 16, 0x1021, 0xffff, false, 0x0000},
    {"CRC-16/IBM-SDLC", "CRC-16/X-25", 16, 0x1021, 0xffff, true, 0xffff},
    {"CRC-16/KERMIT", "CRC-16/CCITT", 16, 0x1021, 0x0000, true, 0x0000},
    {"CRC-16/MODBUS", "", 16, 0x8005, 0xffff, true, 0x0000},
    {"CRC-16/XMODEM", "", 16, 0x1021, 0x0000, false, 0x0000},
    {"CRC-16/USB", "", 16, 0x8005, 0xffff, true, 0xffff},
    {"CRC-32/ISO-HDLC", "CRC-32", 32, 0x04c11db7, 0xffffffff, true, 0xffffffff},
    {"CRC-32/AUTOSAR", "", 32, 0xf4acfb13, 0xffffffff, true, 0xffffffff},
    {"CRC-32/BZIP2", "", 32, 0x04c11db7, 0xffffffff, false, 0xffffffff},
    {"CRC-32/ISCSI", "CRC-32C", 32, 0x1edc6f41, 0xffffffff, true, 0xffffffff},
    {"CRC-32/MPEG-2", "", 32, 0x04c11db7, 0xffffffff, false, 0x00000000},
};

bool isSameName(const char* left, const char* right)
{
    for (; *left && *right; ++left, ++right) {
        if (std::toupper(static_cast<unsigned char>(*left)) !=
            std::toupper(static_cast<unsigned char>(*right)))
            return false;
    }
    return *left == *right;
}

std::uint32_t reversed(std::uint32_t value, int width)
{
    std::uint32_t result = 0;
    for (int bit = 0; bit < width; ++bit)
        result |= (value >> bit & 1u) << (width - 1 - bit);
    return result;
}

/// With the register's highest bit first, or with all mirrored and its lowest bit first.
std::uint32_t compute(const Variant& variant, const unsigned char* data, std::size_t size)
{
    const int width = variant.width;
    const std::uint32_t mask = 0xffffffffu >> (32 - width);
    std::uint32_t table[256];
    const std::uint32_t mirrored = reversed(variant.polynomial, width);
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = variant.isReflected ? byte : byte << (width - 8);
        for (int bit = 0; bit < 8; ++bit) {
            const bool isSet = variant.isReflected ? value & 1u : value >> (width - 1) & 1u;
            value = variant.isReflected ? value >> 1 : value << 1;
            if (isSet)
                value ^= variant.isReflected ? mirrored : variant.polynomial;
        }
        table[byte] = value & mask;
    }
    // All starts are the same either way round.
    std::uint32_t value = variant.start;
    for (std::size_t i = 0; i < size; ++i) {
        if (variant.isReflected)
            value = table[(value ^ data[i]) & 0xff] ^ (width > 8 ? value >> 8 : 0);
        else
            value = (table[(value >> (width - 8) ^ data[i]) & 0xff] ^ value << 8) & mask;
    }
    return value ^ variant.finalXor;
}

} // namespace

bool crc(const char* name, int width, const unsigned char* data, std::size_t size,
         std::uint32_t& value)
{
    if (!name || !*name)
        return false;
    for (const Variant& variant : variants) {
        if (variant.width != width ||
            (!isSameName(name, variant.name) && !isSameName(name, variant.alias)))
            continue;
        value = compute(variant, data, size);
        return true;
    }
    return false;
}

} // namespace checksums
