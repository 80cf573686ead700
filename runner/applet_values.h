#pragma once

/// The variables of an applet that hold more than one number, and what lets them be written to the
/// log as they are. Written beside the generated code like applet_runtime.h.

#include "applet_runtime.h"

#include "applet_records.h"
#include "byte_functions.h"
#include "editor_functions.h"
#include "text_functions.h"

typedef void* pvoid;
typedef u8* pu8;
typedef s8* ps8;
typedef u16* pu16;
typedef s16* ps16;
typedef u32* pu32;
typedef s32* ps32;
typedef u64* pu64;
typedef s64* ps64;
typedef float* pfloat;
typedef double* pdouble;
typedef char* pchar;
typedef bool* pbool;

namespace rt {

/// A variable of a type like u8*: so many elements. It passes for a pointer to the first; an index
/// out of range fails the step and touches nothing. What is assigned is copied: elements that it
/// lacks become 0, those that don't fit are dropped.
template <class T, size_t N> struct array
{
    T values[N];

    ~array() {} // keeps it from passing through "..." unseen

    size_t size() const { return N; }
    T* data() const { return const_cast<T*>(values); }
    operator T*() const { return data(); }

    template <class Index> T& operator[](Index index) const
    {
        if (static_cast<size_t>(index) < N)
            return data()[index];
        bad_index(static_cast<s64>(index), N);
        static T spare;
        return spare = T();
    }

    template <size_t M> array& operator=(const T (&other)[M]) { return take(other, M); }
    template <class U, size_t M> array& operator=(const array<U, M>& other)
    {
        return take(other.values, M);
    }
    /// How many elements a pointer leads to is unknown: take() is told.
    array& operator=(const T* other) = delete;

    template <class U> array& take(const U* other, size_t count)
    {
        for (size_t i = 0; i < N; ++i)
            values[i] = i < count ? static_cast<T>(other[i]) : T();
        return *this;
    }
};

/// A variable of the type char*: a text of at most N bytes.
template <size_t N> struct text
{
    char values[N + 1];

    ~text() {}

    size_t size() const { return N; }
    char* data() const { return const_cast<char*>(values); }
    operator char*() const { return data(); }

    /// The byte behind the last one reads as 0.
    template <class Index> char& operator[](Index index) const
    {
        if (static_cast<size_t>(index) < N)
            return data()[index];
        if (static_cast<size_t>(index) != N)
            bad_index(static_cast<s64>(index), N);
        static char spare;
        return spare = 0;
    }

    text& operator=(const text& other) { return *this = other.values; }
    template <size_t M> text& operator=(const text<M>& other) { return *this = other.values; }
    text& operator=(const string& other) { return *this = other.c_str(); }
    text& operator=(const char* other)
    {
        const size_t size = other ? fitting(other, strlen(other), N) : 0;
        memmove(values, other, size);
        memset(values + size, 0, N + 1 - size);
        return *this;
    }
};

// As an argument of a function with "...".
inline const char* plain(const char* value)
{
    return value;
}
inline const char* plain(const string& value)
{
    return value.c_str();
}
template <size_t N> const char* plain(const text<N>& value)
{
    return value.values;
}
template <class T, size_t N> T* plain(const array<T, N>& value)
{
    return value.data();
}
template <class T> T plain(const T& value)
{
    return value;
}

/// One turn of a step's own loop, for the log.
inline void log_turn(const char* step)
{
    if (failure == 0 || failure_turn != turn)
        log_info("步骤“%s”第 %lld 次循环: 成功", step, static_cast<long long>(turn));
    else
        log_info("步骤“%s”第 %lld 次循环: 失败(%d)", step, static_cast<long long>(turn), failure);
}

// Texts are compared by what they hold, not by where they lie.
#define APPLET_COMPARE_TEXTS(sizes, Left, Right)                                                   \
    template <sizes> bool operator==(Left left, Right right)                                       \
    {                                                                                              \
        return strcmp(plain(left), plain(right)) == 0;                                             \
    }                                                                                              \
    template <sizes> bool operator!=(Left left, Right right)                                       \
    {                                                                                              \
        return !(left == right);                                                                   \
    }
#define APPLET_TWO_SIZES size_t N, size_t M
APPLET_COMPARE_TEXTS(size_t N, const text<N>&, const char*)
APPLET_COMPARE_TEXTS(size_t N, const char*, const text<N>&)
APPLET_COMPARE_TEXTS(size_t N, const text<N>&, const string&)
APPLET_COMPARE_TEXTS(size_t N, const string&, const text<N>&)
APPLET_COMPARE_TEXTS(APPLET_TWO_SIZES, const text<N>&, const text<M>&)
#undef APPLET_TWO_SIZES
#undef APPLET_COMPARE_TEXTS

} // namespace rt

/// In the applet's namespace the formatting functions take variables of all types.
namespace applet {

#define APPLET_FORMATTING(name, Result)                                                            \
    template <class Format, class... Arguments>                                                    \
    inline Result name(const Format& format, const Arguments&... arguments)                        \
    {                                                                                              \
        return ::name(rt::plain(format), rt::plain(arguments)...);                                 \
    }
APPLET_FORMATTING(log_debug, void)
APPLET_FORMATTING(log_info, void)
APPLET_FORMATTING(log_warning, void)
APPLET_FORMATTING(log_error, void)
APPLET_FORMATTING(printf, int)
APPLET_FORMATTING(text_format, string)
#undef APPLET_FORMATTING

template <class... Arguments>
inline int snprintf(char* target, size_t size, const char* format, const Arguments&... arguments)
{
    return ::snprintf(target, size, format, rt::plain(arguments)...);
}

/// Into a variable no more is written than it holds.
template <size_t N, class... Arguments>
inline int sprintf(rt::text<N>& target, const char* format, const Arguments&... arguments)
{
    return ::snprintf(target.values, N + 1, format, rt::plain(arguments)...);
}
template <class... Arguments>
inline int sprintf(char* target, const char* format, const Arguments&... arguments)
{
    return ::sprintf(target, format, rt::plain(arguments)...);
}

} // namespace applet
