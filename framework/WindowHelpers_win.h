#pragma once

#include <windows.h>

#include <commctrl.h>

#include "framework/ShdWnd_win.h"
#include "framework/WinHandles_win.h"

// The one default font of the program's lists and bars: 8 points, normal
// weight, on the system's user-interface face. Made on first use, deleted at
// exit.
class CShdFontsManager {
public:
    static CShdFontsManager& Instance();
    virtual ~CShdFontsManager() = default;
    HFONT GetDefaultFont();

private:
    CShdFontsManager() = default;
    CShdUniqueFont m_defaultFont;
};

// A dialog's list view as the program's lists look: full-row selection, one
// tap to activate, and the default font on its rows and its header.
void SetUpDialogList(HWND list);

// A child window that paints nothing and claims its background erased, so
// that the screen keeps what lay under it.
class CTransparentWindow : public CShdWnd {
public:
    bool Create(DWORD exStyle, DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                HINSTANCE instance);
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// Covers a window's client area with a transparent window while the window
// rearranges its children; ending (the object's destruction) uncovers it and
// the area is repainted once.
class CResizeNoFlickering {
public:
    virtual ~CResizeNoFlickering() = default;
    void Begin(HWND parent, HINSTANCE instance);

private:
    CTransparentWindow m_cover;
};

// Suspends a window's redrawing until End (or the destruction).
class CWndNoRedraw {
public:
    CWndNoRedraw() = default;
    virtual ~CWndNoRedraw() { End(); }
    CWndNoRedraw(const CWndNoRedraw&) = delete;
    CWndNoRedraw& operator=(const CWndNoRedraw&) = delete;

    // Ends a suppression in progress first.
    void Begin(HWND window, bool invalidateAfter, bool eraseBackground, bool updateAfter);
    void End();

private:
    HWND m_hwnd = nullptr;
    bool m_invalidateAfter = true;
    bool m_eraseBackground = false;
    bool m_updateAfter = false;
};

// Puts text on the clipboard as CF_UNICODETEXT; false when the clipboard
// cannot be opened or the block made.
bool PutClipboardText(HWND owner, const CString& text);
// The clipboard's CF_UNICODETEXT; false (text empty) when there is none or it
// cannot be read.
bool ReadClipboardText(HWND owner, CString& text);

// The soft-key bar of a window from a menu or a menu-bar resource; null when
// it cannot be made.
HWND CreateMenuBar(HWND parent, HINSTANCE instance, UINT resourceId, bool isMenuBarResource);
// The first child of a window with the class, compared without case as
// window classes are; null when there is none. (The handheld has no
// FindWindowExW.)
HWND FindChildOfClass(HWND parent, LPCWSTR className);
// Whether the handheld is a Smartphone; asked once.
bool IsSmartphone();
// The system version packed as PackOsVersion does; asked once.
DWORD GetOsVersion();

// A strip of images at 16 pixels, or at 32 on a high-resolution screen
// (`largeFromDpi` or more), magenta transparent; null if it cannot be loaded.
HIMAGELIST LoadImageStrip(HINSTANCE instance, UINT bitmap16, UINT bitmap32, int largeFromDpi = 192);

using CShdUniqueImageList = CShdUniqueHandle<HIMAGELIST, ImageList_Destroy>;
