#pragma once

#include <cstddef>
#include <vector>

#include "base/WinTypes.h"

// A growable byte buffer for value data and file contents. Growth reports
// failure instead of throwing.
class CShdBinaryBuffer {
public:
    CShdBinaryBuffer() = default;
    CShdBinaryBuffer(const CShdBinaryBuffer&) = delete;
    CShdBinaryBuffer& operator=(const CShdBinaryBuffer&) = delete;
    CShdBinaryBuffer(CShdBinaryBuffer&&) = default;
    CShdBinaryBuffer& operator=(CShdBinaryBuffer&&) = default;
    virtual ~CShdBinaryBuffer() = default;

    BYTE* GetData() { return m_bytes.data(); }
    const BYTE* GetData() const { return m_bytes.data(); }
    size_t GetSize() const { return m_bytes.size(); }
    bool IsEmpty() const { return m_bytes.empty(); }

    // New bytes are zero.
    bool SetSize(size_t size);
    bool Append(const void* data, size_t size);
    bool Assign(const void* data, size_t size);
    // Inserts before `at` (at most the size); false and unchanged when
    // memory runs out.
    bool Insert(size_t at, const void* data, size_t size);
    // Removes up to `count` bytes from `at` on.
    void Erase(size_t at, size_t count);
    void Clear() { m_bytes.clear(); }

    bool operator==(const CShdBinaryBuffer& other) const { return m_bytes == other.m_bytes; }

protected:
    std::vector<BYTE> m_bytes;
};

// The same buffer, copyable, for records that are copied whole.
class CShdCopyableBinaryBuffer : public CShdBinaryBuffer {
public:
    CShdCopyableBinaryBuffer() = default;
    CShdCopyableBinaryBuffer(const CShdCopyableBinaryBuffer& other);
    CShdCopyableBinaryBuffer& operator=(const CShdCopyableBinaryBuffer& other);
    CShdCopyableBinaryBuffer(CShdCopyableBinaryBuffer&&) = default;
    CShdCopyableBinaryBuffer& operator=(CShdCopyableBinaryBuffer&&) = default;
};
