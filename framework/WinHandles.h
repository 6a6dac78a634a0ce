#pragma once

#include <windows.h>

// Move-only owners of Win32 handles, one alias per kind, and guards for
// calls that come in pairs.

template <typename T, BOOL(WINAPI* Close)(T)>
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
    explicit operator bool() const { return m_handle != nullptr; }
    T Release()
    {
        const T handle = m_handle;
        m_handle = nullptr;
        return handle;
    }
    void Reset(T handle = nullptr)
    {
        if (m_handle != nullptr)
            Close(m_handle);
        m_handle = handle;
    }

private:
    T m_handle = nullptr;
};

using CShdUniqueGdiObject = CShdUniqueHandle<HGDIOBJ, DeleteObject>;
using CShdUniqueMenu = CShdUniqueHandle<HMENU, DestroyMenu>;
// A memory device context of CreateCompatibleDC.
using CShdUniqueDC = CShdUniqueHandle<HDC, DeleteDC>;

// A GDI object of a known kind, deleted with DeleteObject.
template <typename T>
class CShdUniqueGdi {
public:
    CShdUniqueGdi() = default;
    explicit CShdUniqueGdi(T handle) : m_owner(handle) {}
    T Get() const { return static_cast<T>(m_owner.Get()); }
    explicit operator bool() const { return static_cast<bool>(m_owner); }
    void Reset(T handle = nullptr) { m_owner.Reset(handle); }

private:
    CShdUniqueGdiObject m_owner;
};

using CShdUniqueFont = CShdUniqueGdi<HFONT>;
using CShdUniqueBrush = CShdUniqueGdi<HBRUSH>;
using CShdUniqueBitmap = CShdUniqueGdi<HBITMAP>;

// GetDC / ReleaseDC.
class CShdClientDC {
public:
    explicit CShdClientDC(HWND window) : m_window(window), m_dc(GetDC(window)) {}
    ~CShdClientDC()
    {
        if (m_dc != nullptr)
            ReleaseDC(m_window, m_dc);
    }
    CShdClientDC(const CShdClientDC&) = delete;
    CShdClientDC& operator=(const CShdClientDC&) = delete;
    HDC Get() const { return m_dc; }

private:
    HWND m_window;
    HDC m_dc;
};

// BeginPaint / EndPaint.
class CShdPaintDC {
public:
    explicit CShdPaintDC(HWND window) : m_window(window), m_dc(BeginPaint(window, &m_paint)) {}
    ~CShdPaintDC() { EndPaint(m_window, &m_paint); }
    CShdPaintDC(const CShdPaintDC&) = delete;
    CShdPaintDC& operator=(const CShdPaintDC&) = delete;
    HDC Get() const { return m_dc; }
    const RECT& PaintRect() const { return m_paint.rcPaint; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint = {};
    HDC m_dc;
};

// SelectObject, undone by the destructor.
class CShdSelectObject {
public:
    CShdSelectObject(HDC dc, HGDIOBJ object) : m_dc(dc), m_previous(SelectObject(dc, object)) {}
    ~CShdSelectObject()
    {
        if (m_previous != nullptr)
            SelectObject(m_dc, m_previous);
    }
    CShdSelectObject(const CShdSelectObject&) = delete;
    CShdSelectObject& operator=(const CShdSelectObject&) = delete;

private:
    HDC m_dc;
    HGDIOBJ m_previous;
};
