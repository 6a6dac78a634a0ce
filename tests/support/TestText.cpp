#include "tests/support/TestText.h"

#include "base/Utf8.h"

CString W(const char* utf8)
{
    return FromUtf8(utf8);
}

std::vector<BYTE> Bytes(std::initializer_list<int> values)
{
    std::vector<BYTE> bytes;
    for (int value : values)
        bytes.push_back(static_cast<BYTE>(value));
    return bytes;
}

std::vector<BYTE> Utf16Bytes(const CString& text, bool withNul)
{
    std::vector<BYTE> bytes;
    const size_t length = text.GetLength() + (withNul ? 1 : 0);
    for (size_t i = 0; i < length; ++i) {
        const uint16_t unit = static_cast<uint16_t>(text.GetString()[i]);
        bytes.push_back(static_cast<BYTE>(unit & 0xFF));
        bytes.push_back(static_cast<BYTE>(unit >> 8));
    }
    return bytes;
}

std::vector<BYTE> operator+(std::vector<BYTE> a, const std::vector<BYTE>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::vector<BYTE> Sequence(size_t count, int step)
{
    std::vector<BYTE> bytes(count);
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<BYTE>(i * step);
    return bytes;
}

std::vector<BYTE> BufferBytes(const CShdBinaryBuffer& buffer)
{
    return std::vector<BYTE>(buffer.GetData(), buffer.GetData() + buffer.GetSize());
}
