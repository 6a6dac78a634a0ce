#include "editors/ValueEditRules.h"

#include "base/Text.h"
#include "base/ValueData.h"

namespace {

const WCHAR kCr = 13;
const WCHAR kLf = 10;

// Writes the units of `text` (length units and its NUL) as little-endian
// bytes, with every CR turned into a NUL when `crIsNul`.
bool UnitsToBytes(const CString& text, bool crIsNul, CShdBinaryBuffer& bytes)
{
    const size_t units = text.GetLength() + 1;
    if (!bytes.SetSize(units * sizeof(WCHAR))) {
        bytes.Clear();
        return false;
    }
    BYTE* out = bytes.GetData();
    for (size_t i = 0; i < units; ++i) {
        WCHAR c = i < text.GetLength() ? text.GetAt(i) : 0;
        if (crIsNul && c == kCr)
            c = 0;
        PutUnit(out, i, c);
    }
    return true;
}

}  // namespace

bool StringToBytes(LPCWSTR text, CShdBinaryBuffer& bytes)
{
    return UnitsToBytes(CString(text), false, bytes);
}

CString MultiStringToText(const BYTE* data, size_t size)
{
    size_t units = size / sizeof(WCHAR);
    for (int terminator = 0; terminator < 2; ++terminator) {
        if (units > 0 && UnitAt(data, units - 1) == 0)
            --units;
    }
    CString text;
    for (size_t i = 0; i < units; ++i) {
        // A CR in the data also gets its LF, so that the edit shows it as a
        // line break and not as a stray character.
        const WCHAR c = UnitAt(data, i);
        if (c == 0 || c == kCr) {
            text += kCr;
            text += kLf;
        } else {
            text += c;
        }
    }
    return text;
}

bool TextToMultiString(LPCWSTR text, CShdBinaryBuffer& bytes)
{
    // Every line break becomes one CR, whichever way it was typed or pasted.
    const CString typed(text);
    CString lines;
    for (size_t i = 0; i < typed.GetLength(); ++i) {
        const WCHAR c = typed.GetAt(i);
        const WCHAR next = i + 1 < typed.GetLength() ? typed.GetAt(i + 1) : 0;
        if ((c == kCr && next == kLf) || (c == kLf && next == kCr)) {
            lines += kCr;
            ++i;
        } else {
            lines += c == kLf ? kCr : c;
        }
    }
    lines += kCr;
    return UnitsToBytes(lines, true, bytes);
}

CString DwordToText(DWORD value, DWORD base)
{
    return CString::Formatted(base == 16 ? TEXT("%x") : TEXT("%u"), static_cast<unsigned>(value));
}

bool ParseNumber(LPCWSTR text, bool hexadecimal, DWORD limit, DWORD& value)
{
    value = 0;
    if (text == nullptr || text[0] == 0)
        return false;
    const unsigned base = hexadecimal ? 16 : 10;
    unsigned long long number = 0;
    for (LPCWSTR c = text; *c != 0; ++c) {
        const int digit = HexDigitValue(*c);
        if (digit < 0 || static_cast<unsigned>(digit) >= base)
            return false;
        number = number * base + static_cast<unsigned>(digit);
    }
    if (number > 0xFFFFFFFFull || (limit != 0 && number > limit))
        return false;
    value = static_cast<DWORD>(number);
    return true;
}

CString ValueTypeName(DWORD type)
{
    switch (type) {
    case REG_NONE: return TEXT("REG_NONE");
    case REG_SZ: return TEXT("REG_SZ");
    case REG_EXPAND_SZ: return TEXT("REG_EXPAND_SZ");
    case REG_BINARY: return TEXT("REG_BINARY");
    case REG_DWORD: return TEXT("REG_DWORD");
    case REG_MULTI_SZ: return TEXT("REG_MULTI_SZ");
    default: return CString::Formatted(TEXT("Unknown (0x%X)"), static_cast<unsigned>(type));
    }
}
