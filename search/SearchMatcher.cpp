#include "search/SearchMatcher.h"

#include <algorithm>
#include <cstring>

#include "base/Text.h"
#include "base/ValueData.h"
#include "platform/Platform.h"

namespace {

// "0x..." is hexadecimal, anything else decimal; wraps modulo 2^32 as the
// C library's unsigned arithmetic does.
bool ParseNumber(const CString& text, DWORD& value)
{
    value = 0;
    const size_t length = text.GetLength();
    size_t start = 0;
    DWORD base = 10;
    if (length >= 2 && text.GetAt(0) == '0' && (text.GetAt(1) == 'x' || text.GetAt(1) == 'X')) {
        start = 2;
        base = 16;
    }
    if (start == length)
        return false;
    DWORD result = 0;
    for (size_t i = start; i < length; ++i) {
        const int digit = HexDigitValue(text.GetAt(i));
        if (digit < 0 || static_cast<DWORD>(digit) >= base)
            return false;
        result = result * base + static_cast<DWORD>(digit);
    }
    value = result;
    return true;
}

// Pairs of hex digits, blanks allowed between bytes; a lone digit counts only
// as the very last character.
std::vector<BYTE> ParseHexBytes(const CString& text)
{
    std::vector<BYTE> bytes;
    const size_t length = text.GetLength();
    for (size_t i = 0; i < length;) {
        if (IsSpace(text.GetAt(i))) {
            ++i;
            continue;
        }
        const int high = HexDigitValue(text.GetAt(i));
        if (high < 0)
            return {};
        if (i + 1 == length) {
            bytes.push_back(static_cast<BYTE>(high));
            break;
        }
        const int low = HexDigitValue(text.GetAt(i + 1));
        if (low < 0)
            return {};
        bytes.push_back(static_cast<BYTE>(high * 16 + low));
        i += 2;
    }
    return bytes;
}

// The ANSI form is used only when every character became exactly one byte;
// a multi-byte or failed conversion would shift the comparison.
std::vector<BYTE> ToAnsiBytes(const CString& text)
{
    const int length = static_cast<int>(text.GetLength());
    if (length == 0)
        return {};
    std::vector<BYTE> bytes(static_cast<size_t>(length));
    const int converted = Platform().WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, text, length,
                                                         reinterpret_cast<char*>(bytes.data()), length);
    if (converted != length)
        return {};
    return bytes;
}

BYTE FoldAscii(BYTE c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<BYTE>(c + ('a' - 'A')) : c;
}

// UTF-16 text of `units` units from raw value data, which need not be aligned.
CString TextFromData(const BYTE* data, size_t units)
{
    CString text;
    if (units == 0)
        return text;
    LPWSTR buffer = text.GetBuffer(units);
    for (size_t i = 0; i < units; ++i)
        buffer[i] = UnitAt(data, i);
    text.ReleaseBuffer(static_cast<int>(units));
    return text;
}

bool ContainsBytes(const BYTE* data, size_t size, const std::vector<BYTE>& pattern)
{
    if (pattern.empty() || pattern.size() > size)
        return false;
    return std::search(data, data + size, pattern.begin(), pattern.end()) != data + size;
}

}  // namespace

void CSearchMatcher::SetUp(const SSearchParams& params)
{
    m_params = params;
    const CString& text = m_params.searchString;
    m_lowered = text;
    m_lowered.MakeLower();
    m_numberValid = ParseNumber(text, m_number);
    m_utf16.clear();
    m_utf16Lowered.clear();
    for (size_t i = 0; i < text.GetLength(); ++i) {
        const uint16_t unit = static_cast<uint16_t>(text.GetAt(i));
        m_utf16.push_back(static_cast<BYTE>(unit & 0xFF));
        m_utf16.push_back(static_cast<BYTE>(unit >> 8));
        m_utf16Lowered.push_back(ToLowerChar(text.GetAt(i)));
    }
    m_ansi = ToAnsiBytes(text);
    m_hex = ParseHexBytes(text);
}

bool CSearchMatcher::GetNumber(DWORD& value) const
{
    value = m_number;
    return m_numberValid;
}

bool CSearchMatcher::MatchName(LPCWSTR text, size_t length) const
{
    const CString& wanted = m_params.searchString;
    const size_t wantedLength = wanted.GetLength();
    if (m_params.wholeStringOnly) {
        if (length != wantedLength)
            return false;
        return m_params.caseSensitive ? std::equal(text, text + length, wanted.GetString())
                                      : CompareNoCaseN(text, wanted, length) == 0;
    }
    if (wantedLength == 0 || wantedLength > length)
        return false;
    if (m_params.caseSensitive)
        return std::search(text, text + length, wanted.GetString(), wanted.GetString() + wantedLength) !=
               text + length;
    // The same as lower-casing a copy of the text and searching it, without
    // the copy.
    LPCWSTR lowered = m_lowered.GetString();
    return std::search(text, text + length, lowered, lowered + wantedLength,
                       [](WCHAR a, WCHAR b) { return ToLowerChar(a) == b; }) != text + length;
}

bool CSearchMatcher::MatchData(DWORD type, const BYTE* data, size_t size) const
{
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ: {
        if (!m_params.typeStrings)
            return false;
        const CString text = TextFromData(data, size / 2);
        return MatchName(text, StrLen(text));
    }
    case REG_MULTI_SZ:
        return m_params.typeMultiStrings && MatchMultiString(data, size);
    case REG_DWORD: {
        if (!m_params.typeDwords || !m_numberValid)
            return false;
        const DWORD value = size < 4 ? 0 : DwordAt(data);
        return value == m_number;
    }
    default:
        return m_params.typeBinary && MatchBinary(data, size);
    }
}

bool CSearchMatcher::MatchMultiString(const BYTE* data, size_t size) const
{
    const CString text = TextFromData(data, size / 2);
    LPCWSTR units = text.GetString();
    const size_t length = text.GetLength();
    size_t start = 0;
    for (size_t i = 0; i <= length; ++i) {
        if (i < length && units[i] != 0)
            continue;
        // The piece after the final NUL is the list's end, not an element.
        const bool trailing = i == length && start == length;
        if (!trailing && MatchName(units + start, i - start))
            return true;
        start = i + 1;
    }
    return false;
}

bool CSearchMatcher::MatchBinary(const BYTE* data, size_t size) const
{
    return ContainsBytes(data, size, m_hex) || ContainsUtf16(data, size) || ContainsAnsi(data, size);
}

bool CSearchMatcher::ContainsUtf16(const BYTE* data, size_t size) const
{
    if (m_params.caseSensitive)
        return ContainsBytes(data, size, m_utf16);
    const size_t units = m_utf16Lowered.size();
    if (units == 0 || units * 2 > size)
        return false;
    // Occurrences at odd offsets count too: binary data has no alignment.
    for (size_t offset = 0; offset + units * 2 <= size; ++offset) {
        size_t i = 0;
        while (i < units && ToLowerChar(UnitAt(data + offset, i)) == m_utf16Lowered[i])
            ++i;
        if (i == units)
            return true;
    }
    return false;
}

bool CSearchMatcher::ContainsAnsi(const BYTE* data, size_t size) const
{
    if (m_params.caseSensitive)
        return ContainsBytes(data, size, m_ansi);
    if (m_ansi.empty() || m_ansi.size() > size)
        return false;
    return std::search(data, data + size, m_ansi.begin(), m_ansi.end(),
                       [](BYTE a, BYTE b) { return FoldAscii(a) == FoldAscii(b); }) != data + size;
}
