#include "app/KeyNameWnd_win.h"

#include "framework/DpiScale.h"
#include "framework/WindowHelpers_win.h"
#include "framework/WinHandles_win.h"
#include "registry/KeyPath.h"

bool CKeyNameWnd::Create(int x, int y, int width, int height, HWND parent, UINT id, HINSTANCE instance)
{
    m_font = CShdFontsManager::Instance().GetDefaultFont();
    return CShdWnd::Create(0, nullptr, L"", WS_CHILD | WS_VISIBLE, x, y, width, height, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance);
}

void CKeyNameWnd::SetKey(HKEY root, LPCWSTR path)
{
    if (root == nullptr && (path == nullptr || path[0] == 0))
        SetText(L"ROOT");
    else
        SetText(FullKeyName(root, path));
}

void CKeyNameWnd::SetText(LPCWSTR text)
{
    m_text = text;
    if (GetHwnd() == nullptr)
        return;
    // Also the window's text, so that the bar can be read like any other
    // window (by tests, by screen readers).
    SetWindowTextW(GetHwnd(), text);
    InvalidateRect(GetHwnd(), nullptr, FALSE);
}

void CKeyNameWnd::Paint()
{
    CShdPaintDC dc(GetHwnd());
    RECT client;
    GetClientRect(GetHwnd(), &client);
    CShdUniqueBrush face(CreateSolidBrush(GetSysColor(COLOR_BTNFACE)));
    FillRect(dc.Get(), &client, face.Get());

    CShdSelectObject font(dc.Get(), m_font);
    RECT area = client;
    area.left += ScaleX(3);
    area.right -= ScaleX(3);
    area.top += ScaleY(1);
    const int room = area.right - area.left;
    CString shown = m_text;
    CString rest = m_text;
    SIZE size = {};
    while (!rest.IsEmpty() && GetTextExtentPoint32W(dc.Get(), shown, static_cast<int>(shown.GetLength()), &size) &&
           size.cx > room) {
        rest.Delete(0);
        shown = m_ellipsis < 0 ? L"..." + rest : rest + L"...";
    }
    SetBkMode(dc.Get(), TRANSPARENT);
    SetTextColor(dc.Get(), GetSysColor(COLOR_BTNTEXT));
    DrawTextW(dc.Get(), shown, static_cast<int>(shown.GetLength()), &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_LEFT);

    RECT line = client;
    line.bottom = line.top + ScaleY(1);
    CShdUniqueBrush text(CreateSolidBrush(GetSysColor(COLOR_BTNTEXT)));
    FillRect(dc.Get(), &line, text.Get());
}

LRESULT CKeyNameWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_ERASEBKGND:
        return 0;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_SIZE:
        InvalidateRect(GetHwnd(), nullptr, FALSE);
        break;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}
