#include "regfile/FileWriteCache.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/Platform.h"

namespace {

const size_t kLargestBuffer = 0x7FFFFFFF;

}  // namespace

CShdFileWriteCache::~CShdFileWriteCache()
{
    Close();
}

bool CShdFileWriteCache::SetBufferSize(size_t size)
{
    if (size > kLargestBuffer || m_used != 0)
        return false;
    m_buffer.reset();
    m_capacity = 0;
    if (size == 0)
        return true;
    m_buffer.reset(new (std::nothrow) BYTE[size]);
    if (!m_buffer)
        return false;
    m_capacity = size;
    return true;
}

bool CShdFileWriteCache::Attach(HANDLE file)
{
    const bool flushed = Flush();
    m_file = file;
    return flushed;
}

bool CShdFileWriteCache::Write(const void* data, DWORD count)
{
    if (count == 0)
        return true;
    if (data == nullptr || m_file == INVALID_HANDLE_VALUE)
        return false;
    if (m_capacity == 0)
        return WriteOut(static_cast<const BYTE*>(data), count);
    const BYTE* next = static_cast<const BYTE*>(data);
    size_t left = count;
    while (left > 0) {
        const size_t part = std::min(left, m_capacity - m_used);
        std::memcpy(m_buffer.get() + m_used, next, part);
        m_used += part;
        next += part;
        left -= part;
        if (m_used == m_capacity) {
            if (!WriteOut(m_buffer.get(), static_cast<DWORD>(m_used)))
                return false;
            m_used = 0;
        }
    }
    return true;
}

bool CShdFileWriteCache::Flush()
{
    const bool written = m_used == 0 || WriteOut(m_buffer.get(), static_cast<DWORD>(m_used));
    m_used = 0;
    m_file = INVALID_HANDLE_VALUE;
    return written;
}

bool CShdFileWriteCache::Close()
{
    const bool flushed = Flush();
    m_buffer.reset();
    m_capacity = 0;
    return flushed;
}

bool CShdFileWriteCache::WriteOut(const BYTE* data, DWORD count)
{
    DWORD written = 0;
    if (m_file != INVALID_HANDLE_VALUE && Platform().WriteFile(m_file, data, count, &written) && written == count)
        return true;
    m_used = 0;
    m_file = INVALID_HANDLE_VALUE;
    return false;
}
