#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdWnd_win.h"

// The bar under the panes that names the selected key in full. A name too
// long for the bar loses characters from its start, shown by "...", so that
// the end of the path, the part that tells keys apart, stays in view.
class CKeyNameWnd : public CShdWnd {
public:
    bool Create(int x, int y, int width, int height, HWND parent, UINT id, HINSTANCE instance);
    // No root and no path: "ROOT".
    void SetKey(HKEY root, LPCWSTR path);
    void SetText(LPCWSTR text);
    const CString& GetText() const { return m_text; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Paint();

    HFONT m_font = nullptr;
    CString m_text;
    // Negative: "..." in front of a shortened text; positive: behind it.
    int m_ellipsis = -1;
};
