#include "framework/ObjectKey.h"

#include <new>

#include "base/Text.h"

namespace {

const int kValueDigits = 8;
const int kCheckDigits = 4;

WCHAR HexDigit(unsigned value)
{
    return static_cast<WCHAR>(value < 10 ? '0' + value : 'A' + value - 10);
}

// Each digit doubles what came before and adds itself, so a changed digit or
// two swapped digits change the check value.
unsigned NextCheck(unsigned check, unsigned digit)
{
    return digit + 2 * check;
}

}  // namespace

void EncodeObjectKey(DWORD value, WCHAR (&key)[kObjectKeyLength])
{
    unsigned check = 0;
    for (int i = 0; i < kValueDigits; ++i) {
        const unsigned digit = (value >> (4 * (kValueDigits - 1 - i))) & 15;
        key[i] = HexDigit(digit);
        check = NextCheck(check, digit);
    }
    for (int i = 0; i < kCheckDigits; ++i) {
        key[kValueDigits + i] = HexDigit(check & 15);
        check >>= 4;
    }
    key[kValueDigits + kCheckDigits] = 0;
}

DWORD DecodeObjectKey(LPCWSTR text)
{
    if (text == nullptr)
        return 0;
    DWORD value = 0;
    unsigned check = 0;
    for (int i = 0; i < kValueDigits + kCheckDigits; ++i) {
        // A shorter text ends in its zero, which is no digit.
        const int digit = HexDigitValue(text[i]);
        if (digit < 0)
            return 0;
        if (i < kValueDigits) {
            value = (value << 4) | static_cast<DWORD>(digit);
            check = NextCheck(check, static_cast<unsigned>(digit));
        } else {
            if (static_cast<unsigned>(digit) != (check & 15))
                return 0;
            check >>= 4;
        }
    }
    return value;
}

DWORD CShdObjectTokens::Add(void* object)
{
    if (object == nullptr)
        return 0;
    // Counting on from the last token keeps a token that just died from
    // being handed out again at once.
    DWORD token = m_last;
    do {
        ++token;
    } while (token == 0 || Find(token) != nullptr);
    try {
        m_entries.push_back({token, object});
    } catch (const std::bad_alloc&) {
        return 0;
    }
    m_last = token;
    return token;
}

void CShdObjectTokens::Remove(DWORD token)
{
    for (size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].token == token) {
            m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

void* CShdObjectTokens::Find(DWORD token) const
{
    for (const SEntry& entry : m_entries) {
        if (entry.token == token)
            return entry.object;
    }
    return nullptr;
}
