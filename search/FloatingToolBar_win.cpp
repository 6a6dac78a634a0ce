#include "search/FloatingToolBar_win.h"

#include <new>

#include "framework/DpiScale.h"
#include "framework/WinHandles_win.h"

namespace {

RECT ToRect(const SToolBarRect& rect)
{
    return {rect.left, rect.top, rect.right, rect.bottom};
}

POINT PointFromLParam(LPARAM lParam)
{
    // Signed: with the capture the pen may lie left of or above the toolbar.
    return {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
}

// A frame of lines one scaled pixel wide: raised has the light edge at the
// top and left, sunken at the bottom and right.
void DrawFrame(HDC dc, const RECT& rect, bool raised)
{
    const int line = ScaleX(1);
    const HBRUSH topLeft = GetSysColorBrush(raised ? COLOR_BTNHIGHLIGHT : COLOR_BTNSHADOW);
    const HBRUSH bottomRight = GetSysColorBrush(raised ? COLOR_BTNSHADOW : COLOR_BTNHIGHLIGHT);
    const RECT top = {rect.left, rect.top, rect.right, rect.top + line};
    const RECT left = {rect.left, rect.top, rect.left + line, rect.bottom};
    const RECT bottom = {rect.left, rect.bottom - line, rect.right, rect.bottom};
    const RECT right = {rect.right - line, rect.top, rect.right, rect.bottom};
    FillRect(dc, &top, topLeft);
    FillRect(dc, &left, topLeft);
    FillRect(dc, &bottom, bottomRight);
    FillRect(dc, &right, bottomRight);
}

}  // namespace

bool CFloatingToolBar::Create(DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                              HINSTANCE instance)
{
    return CShdWnd::Create(0, nullptr, L"", style, x, y, width, height, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance);
}

void CFloatingToolBar::SetImageList(HIMAGELIST images)
{
    m_images.Reset(images);
    m_iconWidth = 0;
    m_iconHeight = 0;
    if (images != nullptr)
        ImageList_GetIconSize(images, &m_iconWidth, &m_iconHeight);
    Refit();
}

bool CFloatingToolBar::AddButton(WORD command, int normalImage, int pressedImage, int disabledImage, LPCWSTR text)
{
    SButtonInfo* button = new (std::nothrow) SButtonInfo;
    if (button == nullptr)
        return false;
    button->command = command;
    button->normalImage = normalImage;
    button->pressedImage = pressedImage;
    button->disabledImage = disabledImage;
    button->text = text;
    if (m_buttons.Add(button) < 0)
        return false;
    Refit();
    return true;
}

void CFloatingToolBar::SetButtonImages(int index, int normalImage, int pressedImage, int disabledImage)
{
    if (index < 0 || index >= GetButtonCount())
        return;
    SButtonInfo* button = m_buttons[static_cast<size_t>(index)];
    if (normalImage >= 0)
        button->normalImage = normalImage;
    if (pressedImage >= 0)
        button->pressedImage = pressedImage;
    if (disabledImage >= 0)
        button->disabledImage = disabledImage;
    Repaint();
}

void CFloatingToolBar::EnableButton(int index, bool enable)
{
    if (index < 0 || index >= GetButtonCount())
        return;
    m_buttons[static_cast<size_t>(index)]->disabled = !enable;
    Repaint();
}

const CFloatingToolBar::SButtonInfo* CFloatingToolBar::GetButton(int index) const
{
    return index >= 0 && index < GetButtonCount() ? m_buttons[static_cast<size_t>(index)] : nullptr;
}

void CFloatingToolBar::MoveTo(int x, int y)
{
    if (GetHwnd() != nullptr)
        SetPosition(FitInParent({x, y}, true));
}

void CFloatingToolBar::Clamp()
{
    if (GetHwnd() != nullptr)
        SetPosition(FitInParent(PositionInParent(), false));
}

SToolBarPoint CFloatingToolBar::FitInParent(SToolBarPoint wanted, bool fromFarEdges) const
{
    RECT parent = {};
    GetClientRect(GetParent(GetHwnd()), &parent);
    const CToolBarGeometry geometry = Geometry();
    const int width = geometry.GetWidth();
    const int height = geometry.GetHeight();
    return fromFarEdges ? PlaceInParent(wanted, width, height, parent.right, parent.bottom)
                        : ClampToParent(wanted, width, height, parent.right, parent.bottom);
}

CToolBarGeometry CFloatingToolBar::Geometry() const
{
    return CToolBarGeometry(SToolBarMetrics::Scaled(ScaleX, ScaleY), m_gripCount, m_iconWidth, m_iconHeight,
                            GetButtonCount());
}

void CFloatingToolBar::Refit()
{
    if (GetHwnd() == nullptr)
        return;
    const CToolBarGeometry geometry = Geometry();
    SetWindowPos(GetHwnd(), nullptr, 0, 0, geometry.GetWidth(), geometry.GetHeight(),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    Clamp();
    Repaint();
}

SToolBarPoint CFloatingToolBar::PositionInParent() const
{
    RECT rect = {};
    GetWindowRect(GetHwnd(), &rect);
    MapWindowPoints(nullptr, GetParent(GetHwnd()), reinterpret_cast<POINT*>(&rect), 2);
    return {rect.left, rect.top};
}

void CFloatingToolBar::SetPosition(SToolBarPoint position)
{
    SetWindowPos(GetHwnd(), nullptr, position.x, position.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CFloatingToolBar::OnPenDown(POINT point)
{
    if (GetCapture() == GetHwnd())
        ReleaseCapture();
    const int hit = Geometry().HitTest(point.x, point.y);
    if (hit == CToolBarGeometry::kHitGrip) {
        m_dragging = true;
    } else if (hit >= 0 && !m_buttons[static_cast<size_t>(hit)]->disabled) {
        m_pressed = hit;
        m_pressedLook = true;
        Repaint();
    } else {
        return;
    }
    SetCapture(GetHwnd());
    m_penDownPosition = PositionInParent();
    m_penDownScreen = point;
    ClientToScreen(GetHwnd(), &m_penDownScreen);
}

void CFloatingToolBar::OnPenMove(POINT point)
{
    if (m_dragging) {
        POINT screen = point;
        ClientToScreen(GetHwnd(), &screen);
        SetPosition(FitInParent({m_penDownPosition.x + screen.x - m_penDownScreen.x,
                                 m_penDownPosition.y + screen.y - m_penDownScreen.y},
                                false));
        UpdateWindow(GetParent(GetHwnd()));
    } else if (m_pressed >= 0) {
        const bool over = Geometry().HitTest(point.x, point.y) == m_pressed;
        if (over != m_pressedLook) {
            m_pressedLook = over;
            Repaint();
        }
    }
}

void CFloatingToolBar::OnPenUp(POINT point)
{
    if (m_dragging)
        OnPenMove(point);
    const int pressed = m_pressed;
    const bool over = pressed >= 0 && Geometry().HitTest(point.x, point.y) == pressed;
    // Cleared first, so that the release of the capture finds nothing to cancel.
    m_dragging = false;
    m_pressed = -1;
    m_pressedLook = false;
    if (GetCapture() == GetHwnd())
        ReleaseCapture();
    if (pressed < 0)
        return;
    Repaint();
    if (over) {
        const WORD command = m_buttons[static_cast<size_t>(pressed)]->command;
        SendMessageW(GetParent(GetHwnd()), WM_COMMAND, MAKEWPARAM(command, 0), reinterpret_cast<LPARAM>(GetHwnd()));
    }
}

void CFloatingToolBar::CancelPen()
{
    m_dragging = false;
    m_pressed = -1;
    m_pressedLook = false;
    Repaint();
}

void CFloatingToolBar::Repaint()
{
    if (GetHwnd() != nullptr)
        InvalidateRect(GetHwnd(), nullptr, FALSE);
}

void CFloatingToolBar::Paint()
{
    CShdPaintDC paint(GetHwnd());
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    // Drawn off-screen and copied at once, so that a drag does not flicker.
    CShdUniqueDC memory(CreateCompatibleDC(paint.Get()));
    CShdUniqueBitmap bitmap(CreateCompatibleBitmap(paint.Get(), client.right, client.bottom));
    if (!memory || !bitmap)
        return;
    CShdSelectObject select(memory.Get(), bitmap.Get());
    FillRect(memory.Get(), &client, GetSysColorBrush(COLOR_BTNFACE));
    DrawFrame(memory.Get(), client, true);
    RECT inner = client;
    InflateRect(&inner, -ScaleX(1), -ScaleY(1));
    DrawFrame(memory.Get(), inner, true);
    const CToolBarGeometry geometry = Geometry();
    for (int grip = 0; grip < m_gripCount; ++grip)
        DrawFrame(memory.Get(), ToRect(geometry.GetGripRect(grip)), true);
    for (int index = 0; index < GetButtonCount(); ++index)
        PaintButton(memory.Get(), geometry, index);
    BitBlt(paint.Get(), 0, 0, client.right, client.bottom, memory.Get(), 0, 0, SRCCOPY);
}

void CFloatingToolBar::PaintButton(HDC dc, const CToolBarGeometry& geometry, int index) const
{
    const SButtonInfo& button = *m_buttons[static_cast<size_t>(index)];
    const bool pressed = index == m_pressed && m_pressedLook;
    const RECT rect = ToRect(geometry.GetButtonRect(index));
    DrawFrame(dc, rect, !pressed);
    int image = button.normalImage;
    if (button.disabled && button.disabledImage >= 0)
        image = button.disabledImage;
    else if (!button.disabled && pressed && button.pressedImage >= 0)
        image = button.pressedImage;
    const SToolBarPoint offset = geometry.GetImageOffset();
    ImageList_Draw(m_images.Get(), image, dc, rect.left + offset.x, rect.top + offset.y, ILD_TRANSPARENT);
}

LRESULT CFloatingToolBar::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_LBUTTONDOWN:
        OnPenDown(PointFromLParam(lParam));
        return 0;
    case WM_MOUSEMOVE:
        OnPenMove(PointFromLParam(lParam));
        return 0;
    case WM_LBUTTONUP:
        OnPenUp(PointFromLParam(lParam));
        return 0;
    case WM_CAPTURECHANGED:
        CancelPen();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        Paint();
        return 0;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}
