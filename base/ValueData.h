#pragma once

#include <array>
#include <cstddef>

#include "base/WinTypes.h"

// Registry value data as the registry and .reg files hand it over: bytes in
// little-endian order with no promise of alignment for WCHAR or DWORD, so it
// is read and written a byte at a time.

// The 16-bit unit at `index` (counted in units, not bytes).
inline WCHAR UnitAt(const BYTE* data, size_t index)
{
    return static_cast<WCHAR>(data[2 * index] | (data[2 * index + 1] << 8));
}

inline void PutUnit(BYTE* data, size_t index, WCHAR unit)
{
    data[2 * index] = static_cast<BYTE>(unit & 0xFF);
    data[2 * index + 1] = static_cast<BYTE>((unit >> 8) & 0xFF);
}

// The DWORD in the four bytes from `data` on.
inline DWORD DwordAt(const BYTE* data)
{
    return static_cast<DWORD>(data[0]) | (static_cast<DWORD>(data[1]) << 8) | (static_cast<DWORD>(data[2]) << 16) |
           (static_cast<DWORD>(data[3]) << 24);
}

inline std::array<BYTE, sizeof(DWORD)> DwordBytes(DWORD value)
{
    return {static_cast<BYTE>(value), static_cast<BYTE>(value >> 8), static_cast<BYTE>(value >> 16),
            static_cast<BYTE>(value >> 24)};
}

// The types whose data is UTF-16 text: strings, expandable strings and
// multi-strings.
inline bool IsStringType(DWORD type)
{
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}
