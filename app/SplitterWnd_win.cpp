#include "app/SplitterWnd_win.h"

#include "framework/DpiScale.h"
#include "framework/WinHandles_win.h"

namespace {

const COLORREF kDragColor = RGB(0x80, 0x80, 0x80);

LPARAM PackDelta(POINT delta)
{
    return MAKELPARAM(static_cast<WORD>(static_cast<SHORT>(delta.x)), static_cast<WORD>(static_cast<SHORT>(delta.y)));
}

}  // namespace

bool CSplitterWnd::Create(bool horizontal, DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                          HINSTANCE instance)
{
    m_horizontal = horizontal;
    return CShdWnd::Create(0, nullptr, L"", style, x, y, width, height, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance);
}

void CSplitterWnd::SetNotify(HWND target, UINT message)
{
    m_target = target;
    m_message = message;
}

void CSplitterWnd::MoveBy(int dx, int dy)
{
    RECT rect = RectInParent();
    if (m_horizontal)
        OffsetRect(&rect, 0, dy);
    else
        OffsetRect(&rect, dx, 0);
    MoveWindow(GetHwnd(), rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

RECT CSplitterWnd::RectInParent() const
{
    RECT rect = {};
    GetWindowRect(GetHwnd(), &rect);
    MapWindowPoints(nullptr, GetParent(GetHwnd()), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

POINT CSplitterWnd::AxisDelta() const
{
    POINT delta = {};
    if (m_horizontal)
        delta.y = m_current.y - m_start.y;
    else
        delta.x = m_current.x - m_start.x;
    return delta;
}

void CSplitterWnd::Notify(WPARAM code, POINT delta)
{
    if (m_target != nullptr)
        SendMessageW(m_target, m_message, code, PackDelta(delta));
}

void CSplitterWnd::FinishDrag()
{
    m_dragging = false;
    ShowWindow(m_drag.GetHwnd(), SW_HIDE);
    const POINT delta = AxisDelta();
    m_start = {};
    m_current = {};
    Notify(kMoveEnd, delta);
}

void CSplitterWnd::OnKeyDown(WPARAM key)
{
    POINT step = {};
    if (m_horizontal && (key == VK_UP || key == VK_DOWN))
        step.y = key == VK_UP ? -ScaleY(5) : ScaleY(5);
    else if (!m_horizontal && (key == VK_LEFT || key == VK_RIGHT))
        step.x = key == VK_LEFT ? -ScaleX(5) : ScaleX(5);
    else
        return;
    Notify(kMoveBegin, {});
    Notify(kMoveEnd, step);
}

void CSplitterWnd::Paint()
{
    CShdPaintDC dc(GetHwnd());
    RECT client;
    GetClientRect(GetHwnd(), &client);
    const bool focused = GetFocus() == GetHwnd();
    const COLORREF fill = GetSysColor(focused ? COLOR_BTNTEXT : COLOR_BTNFACE);
    const COLORREF line = GetSysColor(focused ? COLOR_BTNFACE : COLOR_BTNTEXT);
    CShdUniqueBrush fillBrush(CreateSolidBrush(fill));
    FillRect(dc.Get(), &client, fillBrush.Get());
    // Two lines along the long edges, each lying wholly inside the bar.
    const int width = m_horizontal ? ScaleY(1) : ScaleX(1);
    CShdUniqueBrush lineBrush(CreateSolidBrush(line));
    RECT first = client;
    RECT second = client;
    if (m_horizontal) {
        first.bottom = first.top + width;
        second.top = second.bottom - width;
    } else {
        first.right = first.left + width;
        second.left = second.right - width;
    }
    FillRect(dc.Get(), &first, lineBrush.Get());
    FillRect(dc.Get(), &second, lineBrush.Get());
}

LRESULT CSplitterWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE: {
        const RECT rect = RectInParent();
        m_drag.Create(WS_EX_NOACTIVATE, nullptr, L"", WS_CHILD, rect.left, rect.top, rect.right - rect.left,
                      rect.bottom - rect.top, GetParent(GetHwnd()), nullptr,
                      reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(GetHwnd(), GWLP_HINSTANCE)));
        return 0;
    }
    case WM_LBUTTONDOWN: {
        SetCapture(GetHwnd());
        m_dragging = true;
        m_start = MAKEPOINTS(lParam);
        m_current = m_start;
        const RECT rect = RectInParent();
        SetWindowPos(m_drag.GetHwnd(), HWND_TOP, rect.left, rect.top, rect.right - rect.left,
                     rect.bottom - rect.top, SWP_SHOWWINDOW | SWP_NOACTIVATE);
        Notify(kMoveBegin, {});
        return 0;
    }
    case WM_MOUSEMOVE:
        if (m_dragging) {
            m_current = MAKEPOINTS(lParam);
            const POINT delta = AxisDelta();
            RECT rect = RectInParent();
            OffsetRect(&rect, delta.x, delta.y);
            SetWindowPos(m_drag.GetHwnd(), HWND_TOP, rect.left, rect.top, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
            Notify(kMoving, delta);
            UpdateWindow(GetParent(GetHwnd()));
        }
        return 0;
    case WM_LBUTTONUP:
        if (m_dragging) {
            m_current = MAKEPOINTS(lParam);
            // Finished first, so that the capture's release finds no drag.
            FinishDrag();
            ReleaseCapture();
        }
        return 0;
    case WM_CAPTURECHANGED:
        if (m_dragging)
            FinishDrag();
        return 0;
    case WM_KEYDOWN:
        OnKeyDown(wParam);
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(GetHwnd(), nullptr, FALSE);
        UpdateWindow(GetHwnd());
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_DESTROY:
        DestroyWindow(m_drag.GetHwnd());
        break;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}

LRESULT CSplitterWnd::CDragWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_PAINT) {
        CShdPaintDC dc(GetHwnd());
        RECT client;
        GetClientRect(GetHwnd(), &client);
        CShdUniqueBrush brush(CreateSolidBrush(kDragColor));
        FillRect(dc.Get(), &client, brush.Get());
        return 0;
    }
    if (message == WM_ERASEBKGND)
        return 1;
    return CShdWnd::WindowProc(message, wParam, lParam);
}
