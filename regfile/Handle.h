#pragma once

#include "platform/Platform.h"

// Owns one handle of the platform (a file, an event, a thread) and closes it
// with CloseHandle. Null and INVALID_HANDLE_VALUE both mean "none".
class CShdHandle {
public:
    CShdHandle() = default;
    explicit CShdHandle(HANDLE handle) : m_handle(handle) {}
    ~CShdHandle() { Close(); }
    CShdHandle(const CShdHandle&) = delete;
    CShdHandle& operator=(const CShdHandle&) = delete;

    HANDLE Get() const { return m_handle; }
    bool IsValid() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }

    // Closes the handle held before, if any.
    void Reset(HANDLE handle)
    {
        Close();
        m_handle = handle;
    }
    void Close()
    {
        if (IsValid())
            Platform().CloseHandle(m_handle);
        m_handle = nullptr;
    }

private:
    HANDLE m_handle = nullptr;
};
