#pragma once

#include "base/WinTypes.h"

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
