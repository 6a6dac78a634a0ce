#include "base/Utf8.h"

#include <ostream>

std::string ToUtf8(LPCWSTR text, size_t length)
{
    std::string out;
    out.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        uint32_t code = static_cast<uint16_t>(text[i]);
        if (code >= 0xD800 && code <= 0xDBFF && i + 1 < length && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<uint16_t>(text[++i]) - 0xDC00);
        } else if (code >= 0xD800 && code <= 0xDFFF) {
            code = 0xFFFD;
        }
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (code >> 18));
            out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return out;
}

std::string ToUtf8(const CString& text)
{
    return ToUtf8(text.GetString(), text.GetLength());
}

CString FromUtf8(const std::string& text)
{
    CString out;
    for (size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const size_t extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        uint32_t code = extra == 0 ? lead : (lead & (0x3F >> extra));
        bool valid = (lead < 0x80) || (lead >= 0xC0 && i + extra < text.size());
        for (size_t k = 1; valid && k <= extra; ++k) {
            const unsigned char next = static_cast<unsigned char>(text[i + k]);
            valid = (next & 0xC0) == 0x80;
            code = (code << 6) | (next & 0x3F);
        }
        if (!valid) {
            out += static_cast<WCHAR>(0xFFFD);
            ++i;
            continue;
        }
        i += extra + 1;
        if (code >= 0x10000) {
            code -= 0x10000;
            out += static_cast<WCHAR>(0xD800 + (code >> 10));
            out += static_cast<WCHAR>(0xDC00 + (code & 0x3FF));
        } else {
            out += static_cast<WCHAR>(code);
        }
    }
    return out;
}

void PrintTo(const CString& text, std::ostream* out)
{
    *out << '"' << ToUtf8(text) << '"';
}
