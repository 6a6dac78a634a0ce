#include "regfile/RegFileWriter.h"

#include <climits>

#include "base/ValueData.h"
#include "platform/Platform.h"
#include "registry/RegistryRoots.h"

namespace {

const WCHAR kHexDigits[] = TEXT("0123456789abcdef");
const size_t kBytesPerLine = 25;
const LPCWSTR kLineEnd = TEXT("\r\n");
const LPCWSTR kIndent = TEXT("      ");

// Exactly one NUL-terminated string, with no NUL inside: only such data can
// be written between quotes and read back the same.
bool IsWellFormedString(const CShdBinaryBuffer& data)
{
    const size_t units = data.GetSize() / 2;
    if (data.IsEmpty() || data.GetSize() % 2 != 0 || UnitAt(data.GetData(), units - 1) != 0)
        return false;
    for (size_t i = 0; i + 1 < units; ++i) {
        if (UnitAt(data.GetData(), i) == 0)
            return false;
    }
    return true;
}

}  // namespace

CRegFileWriter::CRegFileWriter(CShdFileWriteCache& cache, bool unicode) : m_cache(cache), m_unicode(unicode) {}

bool CRegFileWriter::WriteHeader()
{
    static const BYTE kByteOrderMark[] = {0xFF, 0xFE};
    if (m_unicode && !m_cache.Write(kByteOrderMark, sizeof(kByteOrderMark)))
        return false;
    m_line = m_unicode ? TEXT("Windows Registry Editor Version 5.00") : TEXT("QUENDA4");
    m_line += kLineEnd;
    m_line += kLineEnd;
    return WriteLine();
}

bool CRegFileWriter::WriteKeyLine(HKEY root, LPCWSTR path)
{
    const LPCWSTR rootName = RootLongName(root);
    if (rootName == nullptr)
        return false;
    m_line = TEXT("[");
    m_line += rootName;
    if (path != nullptr && *path != 0) {
        m_line += '\\';
        m_line += path;
    }
    m_line += ']';
    m_line += kLineEnd;
    return WriteLine();
}

bool CRegFileWriter::WriteValueLine(const CString& name, DWORD type, const CShdBinaryBuffer& data)
{
    m_line = TEXT("\"");
    // The default value is written "@", as is a value named "@": the
    // program's own form, which cannot tell the two apart.
    if (name.IsEmpty())
        m_line += '@';
    else
        AppendEscaped(name.GetString(), name.GetLength());
    m_line += TEXT("\"=");
    if (!AppendData(type, data))
        return false;
    m_line += kLineEnd;
    return WriteLine();
}

bool CRegFileWriter::WriteEmptyLine()
{
    m_line = kLineEnd;
    return WriteLine();
}

bool CRegFileWriter::WriteCancelledLine()
{
    m_line = TEXT("*** cancelled ***");
    m_line += kLineEnd;
    return WriteLine();
}

bool CRegFileWriter::AppendData(DWORD type, const CShdBinaryBuffer& data)
{
    const BYTE* bytes = data.GetData();
    if (type == REG_DWORD && data.GetSize() == 4) {
        m_line += TEXT("dword:");
        for (int i = 3; i >= 0; --i) {
            m_line += kHexDigits[bytes[i] >> 4];
            m_line += kHexDigits[bytes[i] & 0xF];
        }
        return true;
    }
    if (type == REG_SZ && IsWellFormedString(data)) {
        const size_t length = data.GetSize() / 2 - 1;
        m_units.resize(length);
        for (size_t i = 0; i < length; ++i)
            m_units[i] = UnitAt(bytes, i);
        m_line += '"';
        AppendEscaped(m_units.data(), length);
        m_line += '"';
        return true;
    }
    if (type == REG_BINARY) {
        m_line += TEXT("hex:");
        AppendHexBlock(bytes, data.GetSize());
        return true;
    }
    m_line.AppendFormat(TEXT("hex(%x):"), type);
    // An ANSI file shows text as ANSI bytes, one per character.
    if (!m_unicode && IsStringType(type))
        return AppendAnsiHexBlock(data);
    AppendHexBlock(bytes, data.GetSize());
    return true;
}

void CRegFileWriter::AppendEscaped(const WCHAR* text, size_t length)
{
    for (size_t i = 0; i < length; ++i) {
        if (text[i] == '\\' || text[i] == '"')
            m_line += '\\';
        m_line += text[i];
    }
}

void CRegFileWriter::AppendHexBlock(const BYTE* bytes, size_t count)
{
    if (count == 0)
        return;
    // The bytes always start on a line of their own.
    m_line += TEXT("\\");
    m_line += kLineEnd;
    for (size_t i = 0; i < count; ++i) {
        if (i > 0)
            m_line += ',';
        if (i % kBytesPerLine == 0) {
            if (i > 0) {
                m_line += '\\';
                m_line += kLineEnd;
            }
            m_line += kIndent;
        }
        m_line += kHexDigits[bytes[i] >> 4];
        m_line += kHexDigits[bytes[i] & 0xF];
    }
}

bool CRegFileWriter::AppendAnsiHexBlock(const CShdBinaryBuffer& data)
{
    // An odd last byte is no character and is dropped.
    const size_t length = data.GetSize() / 2;
    m_units.resize(length);
    for (size_t i = 0; i < length; ++i)
        m_units[i] = UnitAt(data.GetData(), i);
    if (!ToAnsi(m_units.data(), length))
        return false;
    AppendHexBlock(reinterpret_cast<const BYTE*>(m_ansi.data()), length);
    return true;
}

bool CRegFileWriter::WriteLine()
{
    const size_t length = m_line.GetLength();
    if (length > INT_MAX / sizeof(WCHAR))
        return false;
    // WCHAR text in memory is UTF-16LE on every build the program has.
    if (m_unicode)
        return m_cache.Write(m_line.GetString(), static_cast<DWORD>(length * sizeof(WCHAR)));
    return ToAnsi(m_line.GetString(), length) && m_cache.Write(m_ansi.data(), static_cast<DWORD>(length));
}

bool CRegFileWriter::ToAnsi(const WCHAR* text, size_t length)
{
    if (length > INT_MAX)
        return false;
    m_ansi.resize(length);
    if (length == 0)
        return true;
    const int count = static_cast<int>(length);
    return Platform().WideCharToMultiByte(CP_ACP, WC_COMPOSITECHECK, text, count, m_ansi.data(), count) == count;
}
