#include "base/CString.h"

#include <algorithm>

#include "base/Text.h"

CFormatArg::CFormatArg(const CString& value) : m_kind(Kind::Text), m_text(value.GetString()) {}

long long CFormatArg::AsSigned() const
{
    return m_kind == Kind::Signed ? m_signed : static_cast<long long>(m_unsigned);
}

unsigned long long CFormatArg::AsUnsigned() const
{
    const unsigned long long value = m_kind == Kind::Signed ? static_cast<unsigned long long>(m_signed) : m_unsigned;
    return m_wide ? value : (value & 0xFFFFFFFFull);
}

LPCWSTR CFormatArg::AsText() const
{
    return m_kind == Kind::Text && m_text != nullptr ? m_text : TEXT("(null)");
}

CString::CString(LPCWSTR text)
{
    if (text != nullptr)
        m_text.assign(text);
}

CString::CString(LPCWSTR text, size_t length)
{
    if (text != nullptr)
        m_text.assign(text, length);
}

CString& CString::operator=(LPCWSTR text)
{
    if (text == nullptr)
        m_text.clear();
    else
        m_text.assign(text);
    return *this;
}

CString& CString::operator+=(const CString& text)
{
    m_text += text.m_text;
    return *this;
}

CString& CString::operator+=(LPCWSTR text)
{
    if (text != nullptr)
        m_text += text;
    return *this;
}

CString& CString::operator+=(WCHAR c)
{
    m_text += c;
    return *this;
}

CString& CString::Append(LPCWSTR text, size_t length)
{
    m_text.append(text, length);
    return *this;
}

int CString::Compare(LPCWSTR text) const
{
    return StrCmp(GetString(), text != nullptr ? text : TEXT(""));
}

int CString::CompareNoCase(LPCWSTR text) const
{
    return ::CompareNoCase(GetString(), text != nullptr ? text : TEXT(""));
}

int CString::Find(WCHAR c, size_t start) const
{
    const size_t found = m_text.find(c, start);
    return found == std::basic_string<WCHAR>::npos ? -1 : static_cast<int>(found);
}

int CString::Find(LPCWSTR text, size_t start) const
{
    const size_t found = m_text.find(text, start);
    return found == std::basic_string<WCHAR>::npos ? -1 : static_cast<int>(found);
}

int CString::ReverseFind(WCHAR c) const
{
    const size_t found = m_text.rfind(c);
    return found == std::basic_string<WCHAR>::npos ? -1 : static_cast<int>(found);
}

CString CString::Left(size_t count) const
{
    return CString(m_text.c_str(), std::min(count, m_text.size()));
}

CString CString::Mid(size_t start) const
{
    return start >= m_text.size() ? CString() : CString(m_text.c_str() + start, m_text.size() - start);
}

CString CString::Mid(size_t start, size_t count) const
{
    return start >= m_text.size() ? CString()
                                   : CString(m_text.c_str() + start, std::min(count, m_text.size() - start));
}

CString CString::Right(size_t count) const
{
    const size_t length = std::min(count, m_text.size());
    return CString(m_text.c_str() + m_text.size() - length, length);
}

void CString::Insert(size_t index, LPCWSTR text)
{
    m_text.insert(std::min(index, m_text.size()), text);
}

void CString::Delete(size_t index, size_t count)
{
    if (index < m_text.size())
        m_text.erase(index, count);
}

void CString::Truncate(size_t length)
{
    if (length < m_text.size())
        m_text.resize(length);
}

void CString::MakeLower()
{
    LowerInPlace(&m_text[0], m_text.size());
}

void CString::Trim()
{
    size_t end = m_text.size();
    while (end > 0 && IsSpace(m_text[end - 1]))
        --end;
    size_t start = 0;
    while (start < end && IsSpace(m_text[start]))
        ++start;
    m_text = m_text.substr(start, end - start);
}

LPWSTR CString::GetBuffer(size_t minLength)
{
    if (m_text.size() < minLength)
        m_text.resize(minLength);
    return &m_text[0];
}

void CString::ReleaseBuffer(int newLength)
{
    m_text.resize(newLength < 0 ? StrLen(m_text.c_str()) : static_cast<size_t>(newLength));
}

namespace {

struct SFieldSpec {
    bool leftAlign = false;
    bool zeroPad = false;
    size_t width = 0;
    int precision = -1;
};

void AppendPadded(std::basic_string<WCHAR>& out, const std::basic_string<WCHAR>& text, const SFieldSpec& spec,
                  bool numeric)
{
    if (text.size() >= spec.width) {
        out += text;
        return;
    }
    const size_t padding = spec.width - text.size();
    if (spec.leftAlign) {
        out += text;
        out.append(padding, ' ');
    } else if (spec.zeroPad && numeric) {
        // Zeros go after a sign, as printf puts them.
        const size_t signLength = !text.empty() && text[0] == '-' ? 1 : 0;
        out.append(text, 0, signLength);
        out.append(padding, '0');
        out.append(text, signLength, std::basic_string<WCHAR>::npos);
    } else {
        out.append(padding, ' ');
        out += text;
    }
}

std::basic_string<WCHAR> Digits(unsigned long long value, unsigned base, bool upper)
{
    const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    std::basic_string<WCHAR> text;
    do {
        text.insert(text.begin(), static_cast<WCHAR>(digits[value % base]));
        value /= base;
    } while (value != 0);
    return text;
}

}  // namespace

void CString::AppendFormatList(LPCWSTR format, std::initializer_list<CFormatArg> args)
{
    const CFormatArg* next = args.begin();
    while (*format != 0) {
        if (*format != '%') {
            m_text += *format++;
            continue;
        }
        const LPCWSTR start = format++;
        if (*format == '%') {
            m_text += *format++;
            continue;
        }
        SFieldSpec spec;
        for (;; ++format) {
            if (*format == '-')
                spec.leftAlign = true;
            else if (*format == '0')
                spec.zeroPad = true;
            else
                break;
        }
        while (*format >= '0' && *format <= '9')
            spec.width = spec.width * 10 + static_cast<size_t>(*format++ - '0');
        if (*format == '.') {
            spec.precision = 0;
            for (++format; *format >= '0' && *format <= '9'; ++format)
                spec.precision = spec.precision * 10 + (*format - '0');
        }
        while (*format == 'l' || *format == 'h' || *format == 'z' || *format == 'L')
            ++format;
        const WCHAR conversion = *format;
        const bool known = conversion == 'd' || conversion == 'i' || conversion == 'u' || conversion == 'x' ||
                           conversion == 'X' || conversion == 's' || conversion == 'c';
        if (!known || next == args.end()) {
            // Unknown conversions and missing arguments are copied as text.
            m_text.append(start, static_cast<size_t>(format - start) + (conversion != 0 ? 1 : 0));
            if (conversion != 0)
                ++format;
            continue;
        }
        ++format;
        const CFormatArg& arg = *next++;
        std::basic_string<WCHAR> text;
        switch (conversion) {
        case 'd':
        case 'i': {
            const long long value = arg.AsSigned();
            if (value < 0)
                text = TEXT("-") + Digits(0ull - static_cast<unsigned long long>(value), 10, false);
            else
                text = Digits(static_cast<unsigned long long>(value), 10, false);
            break;
        }
        case 'u':
            text = Digits(arg.AsUnsigned(), 10, false);
            break;
        case 'x':
        case 'X':
            text = Digits(arg.AsUnsigned(), 16, conversion == 'X');
            break;
        case 'c':
            text.assign(1, static_cast<WCHAR>(arg.AsUnsigned()));
            break;
        default: {
            const LPCWSTR value = arg.AsText();
            const size_t length = StrLen(value);
            text.assign(value, spec.precision >= 0 ? std::min(length, static_cast<size_t>(spec.precision)) : length);
            break;
        }
        }
        AppendPadded(m_text, text, spec, conversion != 's' && conversion != 'c');
    }
}

bool operator==(const CString& a, const CString& b)
{
    return a.GetLength() == b.GetLength() && std::equal(a.GetString(), a.GetString() + a.GetLength(), b.GetString());
}

bool operator==(const CString& a, LPCWSTR b)
{
    return a.Compare(b) == 0;
}

bool operator==(LPCWSTR a, const CString& b)
{
    return b.Compare(a) == 0;
}

bool operator!=(const CString& a, const CString& b)
{
    return !(a == b);
}

bool operator!=(const CString& a, LPCWSTR b)
{
    return !(a == b);
}

CString operator+(const CString& a, const CString& b)
{
    CString result(a);
    result += b;
    return result;
}

CString operator+(const CString& a, LPCWSTR b)
{
    CString result(a);
    result += b;
    return result;
}

CString operator+(LPCWSTR a, const CString& b)
{
    CString result(a);
    result += b;
    return result;
}

CString operator+(const CString& a, WCHAR b)
{
    CString result(a);
    result += b;
    return result;
}
