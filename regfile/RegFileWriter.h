#pragma once

#include <vector>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"
#include "regfile/FileWriteCache.h"

// Writes the pieces of a .reg file in one of its two versions: 5 (UTF-16LE
// with a byte-order mark) or 4 (ANSI). Every write fails when the cache
// fails, and in version 4 when a character does not become exactly one ANSI
// byte.
class CRegFileWriter {
public:
    CRegFileWriter(CShdFileWriteCache& cache, bool unicode);
    CRegFileWriter(const CRegFileWriter&) = delete;
    CRegFileWriter& operator=(const CRegFileWriter&) = delete;

    // The byte-order mark (version 5), the header line and an empty line.
    bool WriteHeader();
    // "[HKEY_...\path]"; fails for a root with no long name.
    bool WriteKeyLine(HKEY root, LPCWSTR path);
    bool WriteValueLine(const CString& name, DWORD type, const CShdBinaryBuffer& data);
    bool WriteEmptyLine();
    bool WriteCancelledLine();

private:
    bool AppendData(DWORD type, const CShdBinaryBuffer& data);
    void AppendEscaped(const WCHAR* text, size_t length);
    void AppendHexBlock(const BYTE* bytes, size_t count);
    bool AppendAnsiHexBlock(const CShdBinaryBuffer& data);
    bool WriteLine();
    // The text as ANSI bytes in m_ansi; false unless one byte per character.
    bool ToAnsi(const WCHAR* text, size_t length);

    CShdFileWriteCache& m_cache;
    const bool m_unicode;
    CString m_line;
    std::vector<WCHAR> m_units;
    std::vector<char> m_ansi;
};
