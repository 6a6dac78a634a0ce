#pragma once

#include <cstddef>
#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"
#include "search/SearchParams.h"

// Decides whether a name or a value's data matches the criteria of a
// search. The search text is turned once, when the search is set up, into
// every form that data is compared with: lower case, a number, UTF-16 bytes,
// ANSI bytes and a list of hexadecimal bytes.
class CSearchMatcher {
public:
    CSearchMatcher() = default;

    void SetUp(const SSearchParams& params);
    const SSearchParams& Params() const { return m_params; }

    // Key and value names, and the text of string data.
    bool MatchName(LPCWSTR text, size_t length) const;
    bool MatchName(const CString& text) const { return MatchName(text, text.GetLength()); }
    // The data of a value of the given registry type.
    bool MatchData(DWORD type, const BYTE* data, size_t size) const;

    // The derived forms of the search text. A form the text cannot take is
    // empty (or, for the number, not valid).
    bool GetNumber(DWORD& value) const;
    const std::vector<BYTE>& Utf16Bytes() const { return m_utf16; }
    const std::vector<BYTE>& AnsiBytes() const { return m_ansi; }
    const std::vector<BYTE>& HexBytes() const { return m_hex; }

private:
    bool MatchMultiString(const BYTE* data, size_t size) const;
    bool MatchBinary(const BYTE* data, size_t size) const;
    bool ContainsUtf16(const BYTE* data, size_t size) const;
    bool ContainsAnsi(const BYTE* data, size_t size) const;

    SSearchParams m_params;
    CString m_lowered;
    DWORD m_number = 0;
    bool m_numberValid = false;
    std::vector<BYTE> m_utf16;
    // The UTF-16 units lower-cased, for comparisons that ignore case.
    std::vector<WCHAR> m_utf16Lowered;
    std::vector<BYTE> m_ansi;
    std::vector<BYTE> m_hex;
};
