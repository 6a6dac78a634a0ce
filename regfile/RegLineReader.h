#pragma once

#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"

// Reads a .reg file line by line through one read buffer. A file that starts
// with the UTF-16LE byte-order mark is read in 16-bit units; any other is
// ANSI, widened byte by byte through the ANSI code page (double-byte
// characters are not joined). A line ends at CR, LF, CR LF or LF CR; lines
// may be longer than the buffer.
class CRegLineReader {
public:
    enum class EResult { Line, End, ReadError, OutOfMemory };

    static const DWORD kBufferSize = 0x80000;

    // `file` stays owned by the caller. `bufferSize` is for tests.
    explicit CRegLineReader(HANDLE file, DWORD bufferSize = kBufferSize);

    // Allocates the buffer and detects the encoding; ReadError when the
    // first bytes cannot be read or the file position not restored.
    EResult Open(DWORD fileSize);
    bool IsUnicode() const { return m_unicode; }

    EResult ReadLine(CString& line);

private:
    // Makes at least one more character available unless the file is done.
    EResult Refill();

    HANDLE m_file;
    DWORD m_bufferSize;
    DWORD m_fileSize = 0;
    DWORD m_position = 0;
    bool m_unicode = false;
    std::vector<char> m_bytes;
    DWORD m_byteCount = 0;
    std::vector<WCHAR> m_chars;
    size_t m_charStart = 0;
    size_t m_charEnd = 0;
    // The line end that ended the previous line (CR or LF), so that its
    // partner (LF or CR) can be skipped even across a refill.
    WCHAR m_lastEnd = 0;
};
