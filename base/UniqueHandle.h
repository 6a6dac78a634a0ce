#pragma once

#include <cstdint>

// The one move-only owner of a handle, for every kind: `Close` is the call
// that gives the handle back (DeleteObject, DestroyMenu, the platform's
// CloseHandle...). Each kind has a one-line alias beside the calls that make
// it. Null and the all-ones value (INVALID_HANDLE_VALUE) both mean "none".
template <typename T, auto Close>
class CShdUniqueHandle {
public:
    CShdUniqueHandle() = default;
    explicit CShdUniqueHandle(T handle) : m_handle(handle) {}
    ~CShdUniqueHandle() { Reset(); }
    CShdUniqueHandle(CShdUniqueHandle&& other) noexcept : m_handle(other.Release()) {}
    CShdUniqueHandle& operator=(CShdUniqueHandle&& other) noexcept
    {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }
    CShdUniqueHandle(const CShdUniqueHandle&) = delete;
    CShdUniqueHandle& operator=(const CShdUniqueHandle&) = delete;

    T Get() const { return m_handle; }
    bool IsValid() const { return m_handle != nullptr && reinterpret_cast<std::intptr_t>(m_handle) != -1; }
    explicit operator bool() const { return IsValid(); }
    // Gives the handle up without closing it.
    T Release()
    {
        const T handle = m_handle;
        m_handle = nullptr;
        return handle;
    }
    // Closes the handle held before, if any, and takes the new one.
    void Reset(T handle = nullptr)
    {
        if (IsValid())
            Close(m_handle);
        m_handle = handle;
    }

private:
    T m_handle = nullptr;
};
