#include "regfile/RegSyntax.h"

#include <vector>

#include "base/Text.h"
#include "base/ValueData.h"
#include "registry/RegistryRoots.h"

namespace regsyntax {

namespace {

size_t SkipSpace(const CString& line, size_t position)
{
    while (position < line.GetLength() && IsSpace(line.GetAt(position)))
        ++position;
    return position;
}

bool StartsWithNoCase(const CString& line, size_t position, LPCWSTR prefix)
{
    const size_t length = StrLen(prefix);
    return line.GetLength() - position >= length && CompareNoCaseN(line.GetString() + position, prefix, length) == 0;
}

// Reads a quoted text starting after its opening quote; a backslash takes
// the next character as it is. `position` ends after the closing quote.
bool ReadQuoted(const CString& line, size_t& position, CString& text)
{
    text.Empty();
    while (position < line.GetLength()) {
        WCHAR c = line.GetAt(position++);
        if (c == '"')
            return true;
        if (c == '\\') {
            if (position >= line.GetLength())
                return false;
            c = line.GetAt(position++);
        }
        text += c;
    }
    return false;
}

}  // namespace

void StripComment(CString& line)
{
    bool quoted = false;
    for (size_t i = 0; i < line.GetLength(); ++i) {
        const WCHAR c = line.GetAt(i);
        if (c == '"') {
            quoted = true;
        } else if (quoted && c == '\\') {
            ++i;
        } else if (!quoted && c == ';') {
            line.Truncate(i);
            return;
        }
    }
}

EKeyLine ParseKeyLine(const CString& line, bool& deletion, HKEY& root, CString& path)
{
    deletion = false;
    root = nullptr;
    path.Empty();
    if (line.IsEmpty() || line.GetAt(0) != '[')
        return EKeyLine::NotKeyLine;
    const int close = line.ReverseFind(']');
    if (close < 1)
        return EKeyLine::NotKeyLine;
    CString text = line.Mid(1, static_cast<size_t>(close) - 1);
    if (text.IsEmpty())
        return EKeyLine::SyntaxError;
    if (text.GetAt(0) == '-') {
        deletion = true;
        text.Delete(0);
    }
    const int separator = text.Find('\\');
    root = ParseRootLongName(separator < 0 ? text : text.Left(static_cast<size_t>(separator)));
    if (root == nullptr)
        return EKeyLine::SyntaxError;
    if (separator >= 0)
        path = text.Mid(static_cast<size_t>(separator) + 1);
    return EKeyLine::Key;
}

bool ParseValueName(const CString& line, size_t& position, CString& name)
{
    name.Empty();
    position = SkipSpace(line, 0);
    if (position >= line.GetLength())
        return false;
    const WCHAR first = line.GetAt(position++);
    if (first == '"') {
        if (!ReadQuoted(line, position, name))
            return false;
    } else if (first != '@') {
        return false;
    }
    position = SkipSpace(line, position);
    if (position >= line.GetLength() || line.GetAt(position) != '=')
        return false;
    ++position;
    return true;
}

bool IsDeletion(const CString& line, size_t position)
{
    position = SkipSpace(line, position);
    return position < line.GetLength() && line.GetAt(position) == '-' &&
           SkipSpace(line, position + 1) == line.GetLength();
}

EData ParseHexBytes(const CString& line, size_t position, CShdBinaryBuffer& data)
{
    // The line's bytes are gathered first and appended at once: values of
    // thousands of bytes are common, and growing the buffer byte by byte is
    // what would cost.
    const size_t length = line.GetLength();
    const LPCWSTR text = line.GetString();
    std::vector<BYTE> bytes;
    bytes.reserve(length / 3 + 1);
    EData result = EData::Complete;
    for (;;) {
        position = SkipSpace(line, position);
        if (position >= length)
            break;
        if (text[position] == '\\') {
            result = SkipSpace(line, position + 1) == length ? EData::Continues : EData::SyntaxError;
            break;
        }
        int value = HexDigitValue(text[position]);
        if (value < 0)
            return EData::SyntaxError;
        ++position;
        if (position < length && HexDigitValue(text[position]) >= 0) {
            value = value * 16 + HexDigitValue(text[position++]);
            if (position < length && HexDigitValue(text[position]) >= 0)
                return EData::SyntaxError;
        }
        bytes.push_back(static_cast<BYTE>(value));
        position = SkipSpace(line, position);
        if (position >= length)
            break;
        if (text[position] == ',')
            ++position;
        else if (text[position] != '\\')
            return EData::SyntaxError;
    }
    if (result == EData::SyntaxError)
        return result;
    return data.Append(bytes.data(), bytes.size()) ? result : EData::OutOfMemory;
}

EData ParseValueData(const CString& line, size_t position, DWORD& type, CShdBinaryBuffer& data, bool& hexForm)
{
    type = REG_NONE;
    data.Clear();
    hexForm = false;
    position = SkipSpace(line, position);
    if (position >= line.GetLength())
        return EData::SyntaxError;

    if (line.GetAt(position) == '"') {
        CString text;
        ++position;
        if (!ReadQuoted(line, position, text) || SkipSpace(line, position) != line.GetLength())
            return EData::SyntaxError;
        type = REG_SZ;
        return data.Assign(text.GetString(), (text.GetLength() + 1) * sizeof(WCHAR)) ? EData::Complete
                                                                                     : EData::OutOfMemory;
    }
    if (StartsWithNoCase(line, position, TEXT("dword:"))) {
        position = SkipSpace(line, position + 6);
        const size_t digits = line.GetLength() - position;
        if (digits < 1 || digits > 8)
            return EData::SyntaxError;
        DWORD value = 0;
        for (; position < line.GetLength(); ++position) {
            const int digit = HexDigitValue(line.GetAt(position));
            if (digit < 0)
                return EData::SyntaxError;
            value = value * 16 + static_cast<DWORD>(digit);
        }
        type = REG_DWORD;
        const auto bytes = DwordBytes(value);
        return data.Assign(bytes.data(), bytes.size()) ? EData::Complete : EData::OutOfMemory;
    }
    if (StartsWithNoCase(line, position, TEXT("hex:"))) {
        hexForm = true;
        type = REG_BINARY;
        return ParseHexBytes(line, position + 4, data);
    }
    if (StartsWithNoCase(line, position, TEXT("hex("))) {
        position += 4;
        DWORD value = 0;
        size_t digits = 0;
        for (; position < line.GetLength() && HexDigitValue(line.GetAt(position)) >= 0; ++position, ++digits)
            value = value * 16 + static_cast<DWORD>(HexDigitValue(line.GetAt(position)));
        if (digits < 1 || digits > 8 || !StartsWithNoCase(line, position, TEXT("):")))
            return EData::SyntaxError;
        hexForm = true;
        type = value;
        return ParseHexBytes(line, position + 2, data);
    }
    return EData::SyntaxError;
}

}  // namespace regsyntax
