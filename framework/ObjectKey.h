#pragma once

#include <cstddef>
#include <vector>

#include "base/WinTypes.h"

// A property sheet finds its C++ object again through its caption: the sheet
// is created with a twelve-digit key as its title, and the sheet's callback
// decodes it back. The key is eight upper-case hexadecimal digits of a 32-bit
// value, most significant first, and four check digits.

// Characters of a key, terminating zero included.
const size_t kObjectKeyLength = 13;

// Writes the key of `value` into `key`.
void EncodeObjectKey(DWORD value, WCHAR (&key)[kObjectKeyLength]);

// The value of a key, or 0 when the text is shorter than twelve digits, holds
// a character that is no hexadecimal digit (either case), or a check digit
// does not match. Characters after the twelfth are not looked at.
DWORD DecodeObjectKey(LPCWSTR text);

// Object pointers do not fit a key on a 64-bit build, so keys carry a 32-bit
// token that stands for a live object instead. Tokens are never 0. One
// instance per kind of object, used on the user-interface thread only.
class CShdObjectTokens {
public:
    // A token for the object; 0 for a null object or when memory runs out.
    DWORD Add(void* object);
    void Remove(DWORD token);
    // The object of a live token, or null.
    void* Find(DWORD token) const;

private:
    struct SEntry {
        DWORD token;
        void* object;
    };
    std::vector<SEntry> m_entries;
    DWORD m_last = 0;
};
