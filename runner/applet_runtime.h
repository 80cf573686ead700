#pragma once

/// What the code of an applet may use. This file is written beside the generated code and is all
/// that it includes; it keeps away from the heavy headers of the standard library, because it is
/// compiled anew with every applet.
///
/// For statements and expressions: the types u8 to s64 and string, the log functions, step_fail,
/// delay_ms, now_ms, what stands in the *_functions.h beside this file, and the C library. The
/// namespace rt is for the generated code itself.

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#ifndef APPLET_RUNTIME_INTERFACE_ONLY
// The C library's own headers, without the wrappers that the C++ library puts around them: these
// would double the time of a compile.
#define _GLIBCXX_INCLUDE_NEXT_C_HEADERS
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#undef _GLIBCXX_INCLUDE_NEXT_C_HEADERS
#endif

typedef uint8_t u8;
typedef int8_t s8;
typedef uint16_t u16;
typedef int16_t s16;
typedef uint32_t u32;
typedef int32_t s32;
typedef uint64_t u64;
typedef int64_t s64;

// ---- The binary interface between an applet's module and the process that runs it ----

#define APPLET_RUNTIME_VERSION 3

extern "C" {

/// A text with its size in bytes.
struct applet_text
{
    const char* bytes;
    size_t size;
};

/// What an applet asks the editor for; behind each the texts that come with it.
enum applet_question {
    applet_read_variable = 1,  ///< name
    applet_write_variable = 2, ///< name, value
    applet_ask_yes_no = 3,     ///< title, text
    applet_ask_text = 4,       ///< title, text, value to begin with
    applet_show_notice = 5     ///< title, text
};

/// What the process offers to the module. Reports are for the thread that runs the applet; the
/// rest is for any thread.
struct applet_runtime_api
{
    u32 version;
    const volatile int* stop; ///< not 0: a stop was asked for
    void (*report)(u32 step, double progress);
    /// A step has ended with a negative result. @p turn of its own loop had it; 0: none.
    void (*fail)(u32 step, int result, s64 turn);
    void (*enter)(u32 sequence);
    void (*leave)(u32 sequence);
    void (*log)(int level, const char* format, va_list arguments);
    int (*delay_ms)(s64 milliseconds); ///< 0 when a stop cut it short
    s64 (*now_ms)();
    /// Waits for the editor's answer, whose size it returns; -1 refused, -2 cut short by a stop.
    s64 (*ask)(int question, const applet_text* texts, u32 count, char* answer, size_t room);
    /// The CRC of a catalogue name; 0 and a line in the log if that width has no such name.
    u32 (*crc)(const char* name, int width, const u8* data, size_t size);
};

struct applet_sequence
{
    const char* id;
    const char* name;        ///< for the user
    const char* template_id; ///< null: a sequence of the applet itself
    void (*run)();           ///< null: only called by others
};

struct applet_step
{
    u32 sequence; ///< index into the sequences
    const char* id;
    const char* name; ///< for the user
    /// Index of the step that each turn of the innermost loop around it begins with, which is the
    /// one behind the loop itself; 0: no loop.
    u32 turn_step;
};

/// What the module offers to the process, by its one exported function.
struct applet_module
{
    u32 version;
    u32 sequence_count;
    const applet_sequence* sequences;
    u32 step_count;
    const applet_step* steps;
};
typedef const applet_module* applet_module_entry_function(const applet_runtime_api* api);

} // extern "C"

#ifndef APPLET_RUNTIME_INTERFACE_ONLY

#if defined(_WIN32)
#define APPLET_EXPORT __declspec(dllexport)
#else
#define APPLET_EXPORT __attribute__((visibility("default")))
#endif

namespace rt {

// One of each for all units of a module.
inline const applet_runtime_api* api;
inline int failure;
inline s64 turn;         // of the own loop of the step that runs; 0 outside of one
inline s64 failure_turn; // the one that failure is from
inline bool finished;    // the process was ended by a step

inline bool running()
{
    return !*api->stop && !finished;
}

/// The three below say false when the run is to unwind.
inline bool step_begin(u32 step)
{
    failure = 0;
    api->report(step, 0.0);
    return running();
}

/// The step in which a stop came doesn't come to 100: it has been cut short, or might have been.
inline bool step_end(u32 step)
{
    const int result = failure;
    failure = 0;
    if (result < 0)
        api->fail(step, result, failure_turn);
    else if (!*api->stop)
        api->report(step, 100.0);
    return running();
}

inline bool step_pass(u32 step)
{
    return step_begin(step) && step_end(step);
}

/// A branch that is not taken ends its step.
inline bool step_test(u32 step, bool holds)
{
    if (!holds)
        step_end(step);
    return holds;
}

/// Reports a turn of a loop that counts from begin to end, once a percent at most.
inline void step_turn(u32 step, s64 value, s64 begin, s64 end)
{
    const s64 total = begin < end ? end - begin : begin - end;
    const s64 done = begin < end ? value - begin : begin - value;
    if (done <= 0 || done >= total)
        return;
    const s64 percent = done * 100 / total;
    if (percent != (done - 1) * 100 / total)
        api->report(step, static_cast<double>(percent));
}

/// Waits and reports how far it got, ten times a second at most.
inline void step_delay(u32 step, s64 milliseconds)
{
    const s64 slice = milliseconds / 100 > 100 ? milliseconds / 100 : 100;
    const s64 begin = api->now_ms();
    for (s64 done = 0; done < milliseconds && running(); done = api->now_ms() - begin) {
        if (done > 0)
            api->report(step,
                        static_cast<double>(done) * 100.0 / static_cast<double>(milliseconds));
        api->delay_ms(milliseconds - done < slice ? milliseconds - done : slice);
    }
}

/// Around a step's own loop, which counts its turns, and around what is called in one.
struct own_turns
{
    const s64 outer = turn;
    own_turns() { turn = 0; }
    ~own_turns() { turn = outer; }
};

inline void call(u32 sequence, void (*run)())
{
    const own_turns none;
    api->enter(sequence);
    run();
    api->leave(sequence);
}

template <typename Left, typename Right>
bool arrays_equal(const Left& left, const Right& right, int size)
{
    for (int i = 0; i < size; ++i) {
        if (!(left[i] == right[i]))
            return false;
    }
    return true;
}

} // namespace rt

// ---- For statements and expressions ----

#define APPLET_LOG_FUNCTION(name, level)                                                           \
    inline void name(const char* format, ...)                                                      \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, format);                                                               \
        rt::api->log(level, format, arguments);                                                    \
        va_end(arguments);                                                                         \
    }
APPLET_LOG_FUNCTION(log_debug, 0)
APPLET_LOG_FUNCTION(log_info, 1)
APPLET_LOG_FUNCTION(log_warning, 2)
APPLET_LOG_FUNCTION(log_error, 3)
#undef APPLET_LOG_FUNCTION

/// Marks the running step as failed; the code is reported as a negative number.
inline void step_fail(int code = -1)
{
    rt::failure = code < 0 ? code : code > 0 ? -code : -1;
    rt::failure_turn = rt::turn;
}

/// Waits; a stop of the run ends the wait at once.
inline void delay_ms(s64 milliseconds)
{
    rt::api->delay_ms(milliseconds);
}

/// Milliseconds of a clock that never goes back.
inline s64 now_ms()
{
    return rt::api->now_ms();
}

namespace rt {

/// An index outside of a text or an array fails the step; the log tells of the first in a step.
inline void bad_index(s64 index, size_t size)
{
    if (failure == 0) {
        log_error("下标 %lld 超出范围, 有效范围为 0 到 %lld", static_cast<long long>(index),
                  static_cast<long long>(size) - 1);
        step_fail();
    }
}

/// How many bytes of a text go into @p limit; a UTF-8 character is not cut in two.
inline size_t fitting(const char* text, size_t size, size_t limit)
{
    if (size <= limit)
        return size;
    size_t end = limit;
    while (end > 0 && limit - end < 3 && (text[end] & 0xc0) == 0x80)
        --end;
    return (text[end] & 0xc0) == 0xc0 ? end : limit;
}

template <size_t N> struct text;

} // namespace rt

/// A text of bytes (UTF-8). One that was made by limited() never grows beyond its limit, whatever
/// is assigned or appended to it: the rest is dropped.
class string
{
public:
    string() {}
    string(const char* text) { append(text, text ? strlen(text) : 0); }
    string(const char* text, size_t size) { append(text, size); }
    string(const string& other) { append(other.c_str(), other.m_size); }
    template <size_t N> string(const rt::text<N>& text) : string(text.values) {}
    ~string() { free(m_data); }

    static string limited(size_t limit, const char* text) { return string(limit, text); }

    string& operator=(const string& other)
    {
        if (this != &other) {
            m_size = 0;
            append(other.c_str(), other.m_size);
        }
        return *this;
    }

    const char* c_str() const { return m_size ? m_data : ""; }
    size_t size() const { return m_size; }
    size_t length() const { return m_size; }
    bool empty() const { return m_size == 0; }
    char operator[](size_t index) const { return index < m_size ? m_data[index] : spare(index); }
    char& operator[](size_t index) { return index < m_size ? m_data[index] : spare(index); }

    string& append(const char* text, size_t size)
    {
        size = rt::fitting(text, size, m_limit - m_size);
        if (size == 0)
            return *this;
        if (m_size + size >= m_room) {
            const size_t room = (m_size + size) * 3 / 2 + 16;
            char* data = static_cast<char*>(malloc(room));
            if (!data)
                abort();
            memcpy(data, c_str(), m_size);
            memcpy(data + m_size, text, size); // the text may be a part of this one
            free(m_data);
            m_data = data;
            m_room = room;
        } else {
            memmove(m_data + m_size, text, size);
        }
        m_size += size;
        m_data[m_size] = 0;
        return *this;
    }
    string& operator+=(const string& other) { return append(other.c_str(), other.m_size); }
    string& operator+=(char character) { return append(&character, 1); }

    /// -1 if it isn't there.
    int find(const string& part) const
    {
        const char* at = strstr(c_str(), part.c_str());
        return at ? static_cast<int>(at - c_str()) : -1;
    }

private:
    string(size_t limit, const char* text) : m_limit(limit) { append(text, strlen(text)); }

    /// What stands for a byte that isn't there. The one behind the last is 0, as in C.
    char& spare(size_t index) const
    {
        static char byte;
        byte = 0;
        if (index != m_size)
            rt::bad_index(static_cast<s64>(index), m_size);
        return byte;
    }

    char* m_data = 0;
    size_t m_size = 0;
    size_t m_room = 0;
    size_t m_limit = ~static_cast<size_t>(0);
};

inline string operator+(const string& left, const string& right)
{
    string sum(left);
    sum += right;
    return sum;
}
inline bool operator==(const string& left, const string& right)
{
    return left.size() == right.size() && memcmp(left.c_str(), right.c_str(), left.size()) == 0;
}
inline bool operator!=(const string& left, const string& right)
{
    return !(left == right);
}
inline bool operator<(const string& left, const string& right)
{
    return strcmp(left.c_str(), right.c_str()) < 0;
}
inline bool operator>(const string& left, const string& right)
{
    return right < left;
}
inline bool operator<=(const string& left, const string& right)
{
    return !(right < left);
}
inline bool operator>=(const string& left, const string& right)
{
    return !(left < right);
}

inline string to_string(int value)
{
    char text[24];
    snprintf(text, sizeof text, "%d", value);
    return text;
}
inline string to_string(long value)
{
    char text[24];
    snprintf(text, sizeof text, "%ld", value);
    return text;
}
inline string to_string(unsigned long value)
{
    char text[24];
    snprintf(text, sizeof text, "%lu", value);
    return text;
}
inline string to_string(unsigned value)
{
    return to_string(static_cast<unsigned long>(value));
}
inline string to_string(double value)
{
    char text[40];
    snprintf(text, sizeof text, "%g", value);
    return text;
}

#endif // APPLET_RUNTIME_INTERFACE_ONLY
