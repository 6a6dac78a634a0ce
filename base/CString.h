#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "base/WinTypes.h"

class CString;

// One argument of CString::Format, captured with its type so that the
// format string cannot read it wrongly.
class CFormatArg {
public:
    enum class Kind { Signed, Unsigned, Text, Char };

    CFormatArg(int value) : m_kind(Kind::Signed), m_signed(value) {}
    CFormatArg(long value) : m_kind(Kind::Signed), m_signed(value), m_wide(sizeof(long) > 4) {}
    CFormatArg(long long value) : m_kind(Kind::Signed), m_signed(value), m_wide(true) {}
    CFormatArg(unsigned value) : m_kind(Kind::Unsigned), m_unsigned(value) {}
    CFormatArg(unsigned long value) : m_kind(Kind::Unsigned), m_unsigned(value), m_wide(sizeof(long) > 4) {}
    CFormatArg(unsigned long long value) : m_kind(Kind::Unsigned), m_unsigned(value), m_wide(true) {}
    CFormatArg(WCHAR value) : m_kind(Kind::Char), m_unsigned(static_cast<uint16_t>(value)) {}
    CFormatArg(LPCWSTR value) : m_kind(Kind::Text), m_text(value) {}
    CFormatArg(const CString& value);

    Kind GetKind() const { return m_kind; }
    long long AsSigned() const;
    // The value as the C library's %u and %x see it: 32 bits unless the
    // argument was wider.
    unsigned long long AsUnsigned() const;
    LPCWSTR AsText() const;

private:
    Kind m_kind;
    long long m_signed = 0;
    unsigned long long m_unsigned = 0;
    LPCWSTR m_text = nullptr;
    bool m_wide = false;
};

// The program's string: UTF-16 code units on every build. Positions and
// lengths are in code units; searches return -1 when nothing is found.
class CString {
public:
    CString() = default;
    CString(LPCWSTR text);
    CString(LPCWSTR text, size_t length);

    size_t GetLength() const { return m_text.size(); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    LPCWSTR GetString() const { return m_text.c_str(); }
    operator LPCWSTR() const { return m_text.c_str(); }
    WCHAR GetAt(size_t index) const { return m_text[index]; }

    CString& operator=(LPCWSTR text);
    CString& operator+=(const CString& text);
    CString& operator+=(LPCWSTR text);
    CString& operator+=(WCHAR c);
    CString& Append(LPCWSTR text, size_t length);

    int Compare(LPCWSTR text) const;
    int CompareNoCase(LPCWSTR text) const;

    int Find(WCHAR c, size_t start = 0) const;
    int Find(LPCWSTR text, size_t start = 0) const;
    int ReverseFind(WCHAR c) const;

    CString Left(size_t count) const;
    CString Mid(size_t start) const;
    CString Mid(size_t start, size_t count) const;
    CString Right(size_t count) const;

    void Insert(size_t index, LPCWSTR text);
    void Delete(size_t index, size_t count = 1);
    void Truncate(size_t length);
    void MakeLower();
    // Removes white space (IsSpace) at both ends.
    void Trim();

    // printf-style formatting as the C library's wide printf: %s takes a
    // wide string (or a CString), %c a WCHAR; %d %i %u %x %X with flags '-'
    // and '0', a width and, for %s, a precision.
    template <typename... Args>
    void Format(LPCWSTR format, const Args&... args)
    {
        m_text.clear();
        AppendFormatList(format, {CFormatArg(args)...});
    }
    template <typename... Args>
    void AppendFormat(LPCWSTR format, const Args&... args)
    {
        AppendFormatList(format, {CFormatArg(args)...});
    }
    template <typename... Args>
    static CString Formatted(LPCWSTR format, const Args&... args)
    {
        CString result;
        result.AppendFormatList(format, {CFormatArg(args)...});
        return result;
    }

    // A writable buffer of at least minLength units plus a terminator, for
    // calls that fill text in place; ReleaseBuffer sets the length (the first
    // NUL when -1).
    LPWSTR GetBuffer(size_t minLength);
    void ReleaseBuffer(int newLength = -1);

private:
    void AppendFormatList(LPCWSTR format, std::initializer_list<CFormatArg> args);

    std::basic_string<WCHAR> m_text;
};

bool operator==(const CString& a, const CString& b);
bool operator==(const CString& a, LPCWSTR b);
bool operator==(LPCWSTR a, const CString& b);
bool operator!=(const CString& a, const CString& b);
bool operator!=(const CString& a, LPCWSTR b);
CString operator+(const CString& a, const CString& b);
CString operator+(const CString& a, LPCWSTR b);
CString operator+(LPCWSTR a, const CString& b);
CString operator+(const CString& a, WCHAR b);
