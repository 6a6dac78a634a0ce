#pragma once

#include <cstddef>
#include <cstdint>

#include "base/WinTypes.h"

// Character and string helpers for UTF-16 text that behave the same on every
// build (the C library's wide functions work on 32-bit units on Linux and
// follow the locale on Windows).

size_t StrLen(LPCWSTR text);
int StrCmp(LPCWSTR a, LPCWSTR b);
// The position of `needle` in `text`, or null; an empty needle is found at 0.
LPCWSTR StrStr(LPCWSTR text, LPCWSTR needle);

// The one case-insensitive comparison of the program. Letters are equal when
// their simple upper-case forms are, as the registry decides name equality
// (so "Ä" equals "ä"). The order is that of the C library's _wcsicmp for ASCII
// (letters sort as lower case, so "_" comes before "a") and of the upper-case
// forms elsewhere. Returns <0, 0 or >0.
int CompareNoCase(LPCWSTR a, LPCWSTR b);
// As CompareNoCase, over at most `count` units (_wcsnicmp).
int CompareNoCase(LPCWSTR a, LPCWSTR b, size_t count);
// Compares exactly `length` units of each, NULs included.
int CompareNoCaseN(LPCWSTR a, LPCWSTR b, size_t length);

WCHAR ToUpperChar(WCHAR c);
WCHAR ToLowerChar(WCHAR c);
// Lower-cases in place (CharLowerW).
void LowerInPlace(LPWSTR text, size_t length);

// White space as iswctype(c, _SPACE) classes it.
inline bool IsSpace(WCHAR c)
{
    const unsigned unit = static_cast<uint16_t>(c);
    if (unit <= 0x20)
        return unit == 0x20 || (unit >= 0x09 && unit <= 0x0D);
    return unit == 0x85 || unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) ||
           unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

// The value of a hexadecimal digit, or -1.
inline int HexDigitValue(WCHAR c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}
