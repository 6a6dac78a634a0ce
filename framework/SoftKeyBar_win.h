#pragma once

#include <vector>

#include <windows.h>

#include "base/CString.h"
#include "framework/HandheldShell_win.h"
#include "framework/WinHandles_win.h"

// The desktop's soft-key bar, made by SHCreateMenuBar (see there). It is
// drawn in a strip that it takes from the bottom of its window's client area
// (the strip becomes non-client area, so the window lays itself out above it
// as it would above the handheld's bar), and it is reached through a hidden
// child window that takes the bar's messages and owns the object.
class CSoftKeyBar {
public:
    // The bar's window, or null.
    static HWND Create(const SHMENUBARINFO& info);
    // The bar of a window, or null.
    static CSoftKeyBar* OfWindow(HWND window);

    HWND GetWindow() const { return m_window; }
    int GetKeyCount() const { return static_cast<int>(m_keys.size()); }
    // The strip's height in pixels.
    int GetHeight() const { return m_height; }
    // Does what a tap on the key does.
    void PressKey(int index);

    // Posted to the bar's window: press key wParam (F1 and F2).
    static const UINT kPressKeyMessage = WM_APP + 0x3F01;

private:
    struct SKey {
        CString label;
        UINT command;
        // A drop-down key's menu, owned by the bar's menu; else null.
        HMENU popup;
        bool enabled;
    };

    explicit CSoftKeyBar(HWND parent);
    ~CSoftKeyBar();
    CSoftKeyBar(const CSoftKeyBar&) = delete;
    CSoftKeyBar& operator=(const CSoftKeyBar&) = delete;

    bool LoadFromMenu(HINSTANCE instance, UINT menuId);
    bool LoadFromMenuBarResource(HINSTANCE instance, UINT resourceId);
    bool Attach(HWND window);
    void Detach();

    static LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK BarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT ParentMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT BarMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT GetButtonInfo(WPARAM wParam, TBBUTTONINFOW* info) const;

    void ReserveStrip(RECT& proposedClient, const RECT& window);
    int KeyAt(POINT screenPoint) const;
    RECT KeyRect(int index) const;
    int FindCommand(UINT command) const;
    void BeginPress(int index);
    void EndPress(POINT screenPoint);
    void Paint();
    void PaintKey(HDC dc, int index, const RECT& rect) const;

    HWND m_parent;
    HWND m_window = nullptr;
    WNDPROC m_previous = nullptr;
    CShdUniqueMenu m_menu;
    std::vector<SKey> m_keys;
    CShdUniqueFont m_font;
    int m_height;
    // The strip, relative to the window's top-left corner.
    RECT m_strip = {};
    int m_pressed = -1;
    bool m_pressedLook = false;
    bool m_tracking = false;
    bool m_parentDying = false;
};

// Provided by HandheldShell_win.cpp: the thread's services for its bars (the
// keyboard and right-click hook), alive while the thread has a bar.
void AddThreadSoftKeyBar();
void RemoveThreadSoftKeyBar();
