#pragma once

#include "platform/WinTypes.h"

// The four predefined roots as the 32-bit values the program stores
// (settings, search positions), always in this order.
const DWORD kRootClassesRoot = 0x80000000;
const DWORD kRootCurrentUser = 0x80000001;
const DWORD kRootLocalMachine = 0x80000002;
const DWORD kRootUsers = 0x80000003;
const DWORD kRootCount = 4;

// Root values and handles convert both ways: on 64-bit Windows the handles
// are the values sign-extended.
inline HKEY RootKeyFromValue(DWORD value)
{
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(value)));
}

inline DWORD RootValueFromKey(HKEY root)
{
    return static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(root));
}

// True for the four predefined roots.
inline bool IsPredefinedRoot(HKEY key)
{
    const ULONG_PTR value = reinterpret_cast<ULONG_PTR>(key);
    return value >= reinterpret_cast<ULONG_PTR>(HKEY_CLASSES_ROOT) &&
           value <= reinterpret_cast<ULONG_PTR>(HKEY_USERS);
}

// "HKEY_LOCAL_MACHINE" and so on; null for any other value.
LPCWSTR RootLongName(HKEY root);
// "HKLM" and so on; empty for any other value.
LPCWSTR RootShortName(HKEY root);
// A long or short root name, compared without regard to case and not
// trimmed; null when the text names no root.
HKEY ParseRootName(LPCWSTR text);
// As ParseRootName, accepting only the long names (as .reg files need).
HKEY ParseRootLongName(LPCWSTR text);
