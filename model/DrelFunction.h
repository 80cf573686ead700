#pragma once

#include <cstddef>
#include <cstdint>

/// One function known to the applet runtime. A fixed layout of 9688 bytes, copied whole; texts are
/// zero-terminated UTF-8. The bytes that have no name here are the runtime's.
struct _DrelFunction
{
    struct Parameter
    {
        char name[64]; ///< empty: no further parameters
        char description[128];
        std::int32_t type; ///< DrelVarType
        char opaque[148];
    };

    char name[128];
    char description[254];
    char prefix[138];  ///< what stands before the name in a call; empty: nothing
    std::int32_t kind; ///< user functions of kind 3 are hidden
    char opaque1[4];
    Parameter params[10];
    char opaque2[192];
    std::int32_t returnType; ///< DrelVarType
    char opaque3[5524];
};

static_assert(sizeof(_DrelFunction::Parameter) == 344);
static_assert(offsetof(_DrelFunction, description) == 128);
static_assert(offsetof(_DrelFunction, prefix) == 382);
static_assert(offsetof(_DrelFunction, kind) == 520);
static_assert(offsetof(_DrelFunction, params) == 528);
static_assert(offsetof(_DrelFunction, returnType) == 4160);
static_assert(sizeof(_DrelFunction) == 9688);
