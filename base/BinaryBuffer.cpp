#include "base/BinaryBuffer.h"

#include <cstring>
#include <new>
#include <stdexcept>

bool CShdBinaryBuffer::SetSize(size_t size)
{
    try {
        m_bytes.resize(size);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

bool CShdBinaryBuffer::Append(const void* data, size_t size)
{
    const size_t old = m_bytes.size();
    if (!SetSize(old + size))
        return false;
    if (size != 0)
        std::memcpy(m_bytes.data() + old, data, size);
    return true;
}

bool CShdBinaryBuffer::Assign(const void* data, size_t size)
{
    m_bytes.clear();
    return Append(data, size);
}

bool CShdBinaryBuffer::Insert(size_t at, const void* data, size_t size)
{
    const size_t old = m_bytes.size();
    if (at > old || size > m_bytes.max_size() - old)
        return false;
    const BYTE* bytes = static_cast<const BYTE*>(data);
    try {
        m_bytes.insert(m_bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes, bytes + size);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

void CShdBinaryBuffer::Erase(size_t at, size_t count)
{
    if (at >= m_bytes.size())
        return;
    const size_t end = count < m_bytes.size() - at ? at + count : m_bytes.size();
    m_bytes.erase(m_bytes.begin() + static_cast<std::ptrdiff_t>(at), m_bytes.begin() + static_cast<std::ptrdiff_t>(end));
}

CShdCopyableBinaryBuffer::CShdCopyableBinaryBuffer(const CShdCopyableBinaryBuffer& other) : CShdBinaryBuffer()
{
    m_bytes = other.m_bytes;
}

CShdCopyableBinaryBuffer& CShdCopyableBinaryBuffer::operator=(const CShdCopyableBinaryBuffer& other)
{
    m_bytes = other.m_bytes;
    return *this;
}
