// Fixed-size types of the CAD platform's interfaces.
#pragma once

#include <cstdint>

#include "windows.h"

typedef wchar_t ACHAR;

struct Adesk {
    typedef int8_t Int8;
    typedef int16_t Int16;
    typedef int32_t Int32;
    typedef int64_t Int64;
    typedef uint8_t UInt8;
    typedef uint16_t UInt16;
    typedef uint32_t UInt32;
    typedef uint64_t UInt64;
    typedef intptr_t IntPtr;
    typedef uintptr_t UIntPtr;
    typedef intptr_t LongPtr;
    typedef uintptr_t ULongPtr;
    typedef bool Boolean;
    typedef bool Bool;
    static constexpr Boolean kFalse = false;
    static constexpr Boolean kTrue = true;
};
