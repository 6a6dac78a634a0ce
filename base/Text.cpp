#include "base/Text.h"

#include "base/CaseFoldTable.h"

size_t StrLen(LPCWSTR text)
{
    size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

int StrCmp(LPCWSTR a, LPCWSTR b)
{
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return static_cast<int>(static_cast<uint16_t>(*a)) - static_cast<int>(static_cast<uint16_t>(*b));
}

LPCWSTR StrStr(LPCWSTR text, LPCWSTR needle)
{
    if (*needle == 0)
        return text;
    for (; *text != 0; ++text) {
        size_t i = 0;
        while (needle[i] != 0 && text[i] == needle[i])
            ++i;
        if (needle[i] == 0)
            return text;
    }
    return nullptr;
}

WCHAR ToUpperChar(WCHAR c)
{
    const uint16_t unit = static_cast<uint16_t>(c);
    return static_cast<WCHAR>(
        static_cast<uint16_t>(unit + casefold::kUpperDeltas[casefold::kUpperIndex[unit >> 8]][unit & 0xFF]));
}

WCHAR ToLowerChar(WCHAR c)
{
    const uint16_t unit = static_cast<uint16_t>(c);
    return static_cast<WCHAR>(
        static_cast<uint16_t>(unit + casefold::kLowerDeltas[casefold::kLowerIndex[unit >> 8]][unit & 0xFF]));
}

void LowerInPlace(LPWSTR text, size_t length)
{
    for (size_t i = 0; i < length; ++i)
        text[i] = ToLowerChar(text[i]);
}

namespace {

// Equal for exactly the units the registry takes as equal; ordered like
// _wcsicmp, which compares ASCII letters in lower case.
int SortKey(WCHAR c)
{
    const int upper = static_cast<uint16_t>(ToUpperChar(c));
    return upper >= 'A' && upper <= 'Z' ? upper + ('a' - 'A') : upper;
}

}  // namespace

int CompareNoCase(LPCWSTR a, LPCWSTR b)
{
    for (;; ++a, ++b) {
        const int difference = SortKey(*a) - SortKey(*b);
        if (difference != 0 || *a == 0)
            return difference;
    }
}

int CompareNoCase(LPCWSTR a, LPCWSTR b, size_t count)
{
    for (; count > 0; --count, ++a, ++b) {
        const int difference = SortKey(*a) - SortKey(*b);
        if (difference != 0 || *a == 0)
            return difference;
    }
    return 0;
}

int CompareNoCaseN(LPCWSTR a, LPCWSTR b, size_t length)
{
    for (size_t i = 0; i < length; ++i) {
        const int difference = SortKey(a[i]) - SortKey(b[i]);
        if (difference != 0)
            return difference;
    }
    return 0;
}
