#include "regfile/RegLineReader.h"

#include <cstring>
#include <new>

#include "base/ValueData.h"
#include "platform/Platform.h"

CRegLineReader::CRegLineReader(HANDLE file, DWORD bufferSize) : m_file(file), m_bufferSize(bufferSize) {}

CRegLineReader::EResult CRegLineReader::Open(DWORD fileSize)
{
    m_fileSize = fileSize;
    try {
        m_bytes.resize(m_bufferSize);
        m_chars.resize(m_bufferSize);
    } catch (const std::bad_alloc&) {
        return EResult::OutOfMemory;
    }
    if (fileSize < 2)
        return EResult::Line;
    unsigned char mark[2] = {};
    DWORD read = 0;
    if (!Platform().ReadFile(m_file, mark, 2, &read) || read != 2)
        return EResult::ReadError;
    m_unicode = mark[0] == 0xFF && mark[1] == 0xFE;
    if (m_unicode) {
        m_position = 2;
    } else if (Platform().SetFilePointer(m_file, 0, FILE_BEGIN) != 0) {
        return EResult::ReadError;
    }
    return EResult::Line;
}

CRegLineReader::EResult CRegLineReader::Refill()
{
    if (m_position >= m_fileSize)
        return EResult::End;
    // Bytes of an incomplete UTF-16 unit stay at the front of the buffer.
    const DWORD room = m_bufferSize - m_byteCount;
    const DWORD wanted = room < m_fileSize - m_position ? room : m_fileSize - m_position;
    DWORD read = 0;
    if (!Platform().ReadFile(m_file, m_bytes.data() + m_byteCount, wanted, &read) || read != wanted)
        return EResult::ReadError;
    m_position += read;
    m_byteCount += read;

    const DWORD unitSize = m_unicode ? 2 : 1;
    const DWORD units = m_byteCount / unitSize;
    if (m_unicode) {
        for (DWORD i = 0; i < units; ++i) {
            m_chars[i] = UnitAt(reinterpret_cast<const BYTE*>(m_bytes.data()), i);
        }
    } else if (units > 0 &&
               Platform().MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, m_bytes.data(), static_cast<int>(units),
                                              m_chars.data(), static_cast<int>(units)) != static_cast<int>(units)) {
        return EResult::ReadError;
    }
    m_charStart = 0;
    m_charEnd = units;
    const DWORD used = units * unitSize;
    std::memmove(m_bytes.data(), m_bytes.data() + used, m_byteCount - used);
    m_byteCount -= used;
    return EResult::Line;
}

CRegLineReader::EResult CRegLineReader::ReadLine(CString& line)
{
    line.Empty();
    bool any = false;
    for (;;) {
        if (m_charStart == m_charEnd) {
            const EResult refilled = Refill();
            if (refilled == EResult::End)
                return any ? EResult::Line : EResult::End;
            if (refilled != EResult::Line)
                return refilled;
            if (m_charStart == m_charEnd)
                continue;
        }
        const WCHAR* chars = m_chars.data();
        if (m_lastEnd != 0) {
            // CR LF and LF CR end one line, not two.
            const WCHAR partner = m_lastEnd == '\r' ? '\n' : '\r';
            m_lastEnd = 0;
            if (chars[m_charStart] == partner) {
                ++m_charStart;
                continue;
            }
        }
        any = true;
        size_t end = m_charStart;
        while (end < m_charEnd && chars[end] != '\r' && chars[end] != '\n')
            ++end;
        line.Append(chars + m_charStart, end - m_charStart);
        if (end < m_charEnd) {
            m_lastEnd = chars[end];
            m_charStart = end + 1;
            return EResult::Line;
        }
        m_charStart = end;
    }
}
