#pragma once

#include <memory>

#include "base/WinTypes.h"

// A write-behind buffer in front of a file handle, so that a file written in
// many small pieces costs few WriteFile calls. It never closes the handle.
// A write that the file takes only in part is a failure; after any failure
// the cache forgets the handle and its buffered bytes, so that nothing is
// written after a gap.
class CShdFileWriteCache {
public:
    CShdFileWriteCache() = default;
    virtual ~CShdFileWriteCache();
    CShdFileWriteCache(const CShdFileWriteCache&) = delete;
    CShdFileWriteCache& operator=(const CShdFileWriteCache&) = delete;

    // Replaces the buffer; 0 writes straight through. Fails above
    // 0x7FFFFFFF bytes, when memory runs out, or while bytes are buffered.
    bool SetBufferSize(size_t size);
    // Flushes to the old handle, then writes to the new one.
    bool Attach(HANDLE file);
    bool Write(const void* data, DWORD count);
    // Writes what is buffered and forgets the handle.
    bool Flush();
    // Flushes and frees the buffer.
    bool Close();

private:
    bool WriteOut(const BYTE* data, DWORD count);

    std::unique_ptr<BYTE[]> m_buffer;
    size_t m_capacity = 0;
    size_t m_used = 0;
    HANDLE m_file = INVALID_HANDLE_VALUE;
};
