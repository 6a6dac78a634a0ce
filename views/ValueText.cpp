#include "views/ValueText.h"

#include "base/ValueData.h"

namespace {

// More bytes than this would only make a row wider than any screen.
const size_t kMaxShownBytes = 128;

// Normal images; the cut forms lie kCutImageOffset below.
const int kImageString = 7;
const int kImageBinary = 8;
const int kImageDword = 9;
const int kImageMultiString = 10;
const int kImageExpandString = 11;
const int kImageNone = 12;
const int kImageOther = 13;

CString HexBytes(const BYTE* data, size_t size)
{
    CString text = HexPairsText(data, size < kMaxShownBytes ? size : kMaxShownBytes);
    if (size > kMaxShownBytes)
        text += TEXT("...");
    return text;
}

}  // namespace

CString HexPairsText(const BYTE* data, size_t size)
{
    static const WCHAR kDigits[] = TEXT("0123456789ABCDEF");
    CString text;
    for (size_t i = 0; i < size; ++i) {
        if (i != 0)
            text += TEXT(' ');
        text += kDigits[data[i] >> 4];
        text += kDigits[data[i] & 15];
    }
    return text;
}

CString StringDataText(const BYTE* data, size_t size)
{
    CString text;
    const size_t units = size / sizeof(WCHAR);
    for (size_t i = 0; i < units; ++i) {
        const WCHAR c = UnitAt(data, i);
        if (c == 0)
            break;
        text += c;
    }
    return text;
}

int ValueImage(DWORD type, bool cut)
{
    int image = kImageOther;
    switch (type) {
    case REG_SZ: image = kImageString; break;
    case REG_EXPAND_SZ: image = kImageExpandString; break;
    case REG_MULTI_SZ: image = kImageMultiString; break;
    case REG_DWORD: image = kImageDword; break;
    case REG_BINARY: image = kImageBinary; break;
    case REG_NONE: image = kImageNone; break;
    default: break;
    }
    return cut ? image - kCutImageOffset : image;
}

CString ValueDataText(DWORD type, const BYTE* data, size_t size)
{
    switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return StringDataText(data, size);
    case REG_MULTI_SZ:
        return StringDataText(data, size) + TEXT("...");
    case REG_DWORD: {
        if (size != sizeof(DWORD))
            return CString();
        const DWORD value = DwordAt(data);
        return CString::Formatted(TEXT("%u (0x%08X)"), static_cast<unsigned>(value), static_cast<unsigned>(value));
    }
    default:
        return HexBytes(data, size);
    }
}
