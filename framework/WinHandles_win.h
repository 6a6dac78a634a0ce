#pragma once

#include <windows.h>

#include "base/UniqueHandle.h"

// Owners of Win32 handles, one alias per kind, and guards for calls that
// come in pairs.

using CShdUniqueMenu = CShdUniqueHandle<HMENU, DestroyMenu>;
using CShdUniqueFont = CShdUniqueHandle<HFONT, DeleteObject>;
using CShdUniqueBrush = CShdUniqueHandle<HBRUSH, DeleteObject>;
using CShdUniqueBitmap = CShdUniqueHandle<HBITMAP, DeleteObject>;
using CShdUniquePen = CShdUniqueHandle<HPEN, DeleteObject>;
// A kernel object made directly by the system (not through the platform).
using CShdUniqueKernelObject = CShdUniqueHandle<HANDLE, CloseHandle>;
// A memory device context of CreateCompatibleDC.
using CShdUniqueDC = CShdUniqueHandle<HDC, DeleteDC>;

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
