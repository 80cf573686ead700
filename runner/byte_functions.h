// Conversion, checksums and bytes, for statements, expressions and API steps. Written
// beside the generated code like applet_runtime.h.
//
// Positions and sizes count bytes, from 0. Buffers of bytes come with no size of their own where
// none is named: it is the caller's to stay inside.

#pragma once

#include "text_functions.h"

namespace rt {

inline int hex_digit(char digit)
{
    return digit >= '0' && digit <= '9'   ? digit - '0'
           : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10
           : digit >= 'A' && digit <= 'F' ? digit - 'A' + 10
                                          : -1;
}

inline u64 bytes_at(const u8* data, s32 index, int count, bool highest_first)
{
    u64 value = 0;
    for (int i = 0; i < count; ++i)
        value |= static_cast<u64>(data[index + i]) << 8 * (highest_first ? count - 1 - i : i);
    return value;
}

inline void set_bytes_at(u8* data, s32 index, int count, bool highest_first, u64 value)
{
    for (int i = 0; i < count; ++i)
        data[index + i] = static_cast<u8>(value >> 8 * (highest_first ? count - 1 - i : i));
}

} // namespace rt

// Conversion

/// To the base 2 to 36; 0x may stand in front with 16. 0 for what is no number.
inline s64 text_to_integer(const string& text, s32 base)
{
    return base < 2 || base > 36 ? 0 : static_cast<s64>(strtoll(text.c_str(), 0, base));
}

inline double text_to_number(const string& text)
{
    return strtod(text.c_str(), 0);
}

/// To the base 2 to 36, with capitals.
inline string integer_to_text(s64 value, s32 base)
{
    if (base < 2 || base > 36)
        return string();
    char digits[66];
    char* at = digits + sizeof digits;
    u64 rest = value < 0 ? 0 - static_cast<u64>(value) : static_cast<u64>(value);
    do {
        *--at = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[rest % static_cast<u64>(base)];
        rest /= static_cast<u64>(base);
    } while (rest > 0);
    if (value < 0)
        *--at = '-';
    return string(at, static_cast<size_t>(digits + sizeof digits - at));
}

inline string number_to_text(double value, s32 decimals)
{
    return text_format("%.*f", decimals < 0 ? 0 : decimals, value);
}

/// "01 AB" or "01AB" into a buffer of @p size bytes. How many it were; -1 for what is no such text
/// or doesn't fit.
inline s32 hex_to_bytes(const string& text, u8* data, s32 size)
{
    s32 count = 0;
    int high = -1;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text.c_str()[i];
        if (high < 0 && (c == ' ' || c == ',' || c == '\t'))
            continue;
        const int digit = rt::hex_digit(c);
        if (digit < 0 || (high >= 0 && count >= size))
            return -1;
        if (high >= 0)
            data[count++] = static_cast<u8>(16 * high + digit);
        high = high < 0 ? digit : -1;
    }
    return high < 0 ? count : -1;
}

/// "01 AB"
inline string bytes_to_hex(const u8* data, s32 size)
{
    string text;
    for (s32 i = 0; i < size; ++i)
        text += text_format(i > 0 ? " %02X" : "%02X", data[i]);
    return text;
}

// Checksums, by the catalogue's name

inline u8 crc8(const string& name, const u8* data, s32 size)
{
    return static_cast<u8>(rt::api->crc(name.c_str(), 8, data, size < 0 ? 0 : size));
}

inline u16 crc16(const string& name, const u8* data, s32 size)
{
    return static_cast<u16>(rt::api->crc(name.c_str(), 16, data, size < 0 ? 0 : size));
}

inline u32 crc32(const string& name, const u8* data, s32 size)
{
    return rt::api->crc(name.c_str(), 32, data, size < 0 ? 0 : size);
}

// Bytes; be: the highest byte first, le: the lowest first

inline u8 get_byte(const u8* data, s32 index)
{
    return data[index];
}
inline void set_byte(u8* data, s32 index, u8 value)
{
    data[index] = value;
}
inline u16 get_u16_be(const u8* data, s32 index)
{
    return static_cast<u16>(rt::bytes_at(data, index, 2, true));
}
inline u16 get_u16_le(const u8* data, s32 index)
{
    return static_cast<u16>(rt::bytes_at(data, index, 2, false));
}
inline u32 get_u32_be(const u8* data, s32 index)
{
    return static_cast<u32>(rt::bytes_at(data, index, 4, true));
}
inline u32 get_u32_le(const u8* data, s32 index)
{
    return static_cast<u32>(rt::bytes_at(data, index, 4, false));
}
inline void set_u16_be(u8* data, s32 index, u16 value)
{
    rt::set_bytes_at(data, index, 2, true, value);
}
inline void set_u16_le(u8* data, s32 index, u16 value)
{
    rt::set_bytes_at(data, index, 2, false, value);
}
inline void set_u32_be(u8* data, s32 index, u32 value)
{
    rt::set_bytes_at(data, index, 4, true, value);
}
inline void set_u32_le(u8* data, s32 index, u32 value)
{
    rt::set_bytes_at(data, index, 4, false, value);
}
