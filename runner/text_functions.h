// Time and text, for statements, expressions and API steps. Written beside
// the generated code like applet_runtime.h.
//
// Positions and sizes count bytes, from 0; what lies outside of a text is left alone.

#pragma once

#include "applet_runtime.h"

namespace rt {

inline size_t text_end(const string& text, s32 start)
{
    return start < 0 ? 0 : static_cast<size_t>(start) < text.size() ? start : text.size();
}

template <typename Change> string changed_text(const string& text, Change change)
{
    string result(text);
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = change(result[i]);
    return result;
}

} // namespace rt

// Time

/// Waits until now_ms() has come to that; a stop of the run ends the wait at once.
inline void wait_until(s64 moment)
{
    const s64 left = moment - now_ms();
    if (left > 0)
        delay_ms(left);
}

/// Seconds since the begin of 1970, UTC.
inline s64 unix_time()
{
    return static_cast<s64>(time(0));
}

/// The local date and time, as strftime writes it.
inline string time_text(const string& format)
{
    char text[256];
    const time_t now = time(0);
    const struct tm* parts = localtime(&now);
    return parts ? string(text, strftime(text, sizeof text, format.c_str(), parts)) : string();
}

// Text

inline s32 text_length(const string& text)
{
    return static_cast<s32>(text.size());
}

/// At most @p count bytes from @p start on; all of them with a negative count.
inline string text_part(const string& text, s32 start, s32 count)
{
    const size_t begin = rt::text_end(text, start);
    const size_t rest = text.size() - begin;
    return string(text.c_str() + begin,
                  count < 0 || static_cast<size_t>(count) > rest ? rest : count);
}

/// The position of @p part, at or behind @p start; -1 if it isn't there.
inline s32 text_find(const string& text, const string& part, s32 start)
{
    for (size_t at = rt::text_end(text, start); at + part.size() <= text.size(); ++at) {
        if (memcmp(text.c_str() + at, part.c_str(), part.size()) == 0)
            return static_cast<s32>(at);
    }
    return -1;
}

/// Every @p part replaced; an empty one is nowhere.
inline string text_replace(const string& text, const string& part, const string& other)
{
    if (part.empty())
        return text;
    string result;
    s32 begin = 0;
    for (s32 at = text_find(text, part, 0); at >= 0; at = text_find(text, part, begin)) {
        result += text_part(text, begin, at - begin);
        result += other;
        begin = at + text_length(part);
    }
    return result + text_part(text, begin, -1);
}

inline string text_upper(const string& text)
{
    return rt::changed_text(
        text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
}

inline string text_lower(const string& text)
{
    return rt::changed_text(
        text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

/// Without spaces, tabulators and line ends at both ends.
inline string text_trim(const string& text)
{
    const char* const blanks = " \t\r\n";
    size_t begin = 0;
    size_t end = text.size();
    while (begin < end && strchr(blanks, text.c_str()[begin]))
        ++begin;
    while (end > begin && strchr(blanks, text.c_str()[end - 1]))
        --end;
    return string(text.c_str() + begin, end - begin);
}

/// As printf writes it; at most 4095 bytes.
inline string text_format(const char* format, ...)
{
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    const int size = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const int longest = static_cast<int>(sizeof text) - 1;
    return string(text, size < 0 ? 0 : size < longest ? size : longest);
}

/// Into a buffer of @p size bytes, cut to fit, with its end.
inline void text_copy(char* target, const string& text, s32 size)
{
    if (size <= 0)
        return;
    const string part = text_part(text, 0, size - 1);
    memcpy(target, part.c_str(), part.size());
    target[part.size()] = 0;
}
