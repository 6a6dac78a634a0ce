#include "framework/SoftKeyBar_win.h"

#include <windowsx.h>

#include <algorithm>
#include <iterator>
#include <new>

#include "framework/DpiScale.h"

namespace {

const WCHAR kBarClass[] = L"SoftKeyBar_{3F7C2A91-6D1E-4B8A-9C55-0E2D7B41A6F3}";
// The parent's property that holds the bar object.
const WCHAR kBarProperty[] = L"SoftKeyBar_{3F7C2A91-6D1E-4B8A-9C55-0E2D7B41A6F3}";

const int kHeightDesign = 26;
const int kLabelPoints = 9;
const int kArrowWidthDesign = 7;
const int kArrowHeightDesign = 4;
const int kArrowGapDesign = 5;
const int kDividerInsetDesign = 5;
const int kLabelPaddingDesign = 4;

// A dark bar with light labels, as handhelds draw theirs.
const COLORREF kBackground = RGB(36, 46, 62);
const COLORREF kTopEdge = RGB(96, 114, 144);
const COLORREF kDivider = RGB(74, 88, 112);
const COLORREF kPressed = RGB(52, 101, 164);
const COLORREF kLabel = RGB(255, 255, 255);
const COLORREF kDisabledLabel = RGB(120, 130, 146);

// A menu-bar resource: menu id and key count, then six words a key.
const size_t kResourceHeaderWords = 2;
const size_t kResourceKeyWords = 6;
const WORD kNoSubmenu = 0xFFFF;

bool RegisterBarClass()
{
    static bool registered = false;
    if (registered)
        return true;
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kBarClass;
    registered = RegisterClassW(&windowClass) != 0;
    return registered;
}

// "&File" is "File" and "&&" one ampersand, as menus show them.
CString WithoutMnemonics(LPCWSTR text)
{
    CString label;
    for (LPCWSTR c = text; *c != 0; ++c) {
        if (*c == '&' && c[1] != 0)
            ++c;
        label += *c;
    }
    return label;
}

CString LoadResourceString(HINSTANCE instance, UINT id)
{
    LPCWSTR text = nullptr;
    // With no buffer, LoadStringW gives the resource's own unterminated text.
    const int length = LoadStringW(instance, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? CString(text, static_cast<size_t>(length)) : CString();
}

void FillSolid(HDC dc, const RECT& rect, COLORREF color)
{
    SetBkColor(dc, color);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
}

}  // namespace

CSoftKeyBar::CSoftKeyBar(HWND parent) : m_parent(parent), m_height(ScaleY(kHeightDesign))
{
    m_font.Reset(CreateFontW(FontHeightForPoints(kLabelPoints, ScreenDpiY()), 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE,
                             DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                             DEFAULT_PITCH | FF_SWISS, L"Tahoma"));
}

CSoftKeyBar::~CSoftKeyBar() = default;

HWND CSoftKeyBar::Create(const SHMENUBARINFO& info)
{
    if (!IsWindow(info.hwndParent) || !RegisterBarClass())
        return nullptr;
    if (CSoftKeyBar* old = OfWindow(info.hwndParent))
        DestroyWindow(old->m_window);
    CSoftKeyBar* bar = new (std::nothrow) CSoftKeyBar(info.hwndParent);
    if (bar == nullptr)
        return nullptr;
    const bool loaded = (info.dwFlags & SHCMBF_EMPTYBAR) != 0 ||
                        ((info.dwFlags & SHCMBF_HMENU) != 0
                             ? bar->LoadFromMenu(info.hInstRes, info.nToolBarId)
                             : bar->LoadFromMenuBarResource(info.hInstRes, info.nToolBarId));
    if (!loaded) {
        delete bar;
        return nullptr;
    }
    const HWND window = CreateWindowExW(0, kBarClass, L"", WS_CHILD, 0, 0, 0, 0, info.hwndParent, nullptr,
                                        GetModuleHandleW(nullptr), nullptr);
    if (window == nullptr) {
        delete bar;
        return nullptr;
    }
    // From here on the hidden child owns the object: its end deletes it.
    bar->m_window = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(bar));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(BarProc));
    if (!bar->Attach(info.hwndParent)) {
        DestroyWindow(window);
        return nullptr;
    }
    return window;
}

CSoftKeyBar* CSoftKeyBar::OfWindow(HWND window)
{
    CSoftKeyBar* bar = window != nullptr ? static_cast<CSoftKeyBar*>(GetPropW(window, kBarProperty)) : nullptr;
    // A bar whose window has gone may still pass its parent's messages on.
    return bar != nullptr && bar->m_window != nullptr ? bar : nullptr;
}

bool CSoftKeyBar::LoadFromMenu(HINSTANCE instance, UINT menuId)
{
    m_menu.Reset(LoadMenuW(instance, MAKEINTRESOURCEW(menuId)));
    if (!m_menu)
        return false;
    const int count = GetMenuItemCount(m_menu.Get());
    for (int i = 0; i < count; ++i) {
        WCHAR text[128] = {};
        MENUITEMINFOW item = {};
        item.cbSize = sizeof(item);
        item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE | MIIM_SUBMENU | MIIM_STRING;
        item.dwTypeData = text;
        item.cch = static_cast<UINT>(std::size(text));
        if (!GetMenuItemInfoW(m_menu.Get(), static_cast<UINT>(i), TRUE, &item) || (item.fType & MFT_SEPARATOR) != 0)
            continue;
        m_keys.push_back({WithoutMnemonics(text), item.hSubMenu != nullptr ? 0 : item.wID, item.hSubMenu,
                          (item.fState & MFS_DISABLED) == 0});
    }
    return true;
}

bool CSoftKeyBar::LoadFromMenuBarResource(HINSTANCE instance, UINT resourceId)
{
    const HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(resourceId), RT_RCDATA);
    const HGLOBAL loaded = found != nullptr ? LoadResource(instance, found) : nullptr;
    const WORD* words = loaded != nullptr ? static_cast<const WORD*>(LockResource(loaded)) : nullptr;
    if (words == nullptr)
        return false;
    const size_t wordCount = SizeofResource(instance, found) / sizeof(WORD);
    if (wordCount < kResourceHeaderWords || wordCount < kResourceHeaderWords + words[1] * kResourceKeyWords)
        return false;
    if (words[0] != 0) {
        m_menu.Reset(LoadMenuW(instance, MAKEINTRESOURCEW(words[0])));
        if (!m_menu)
            return false;
    }
    for (size_t i = 0; i < words[1]; ++i) {
        // Image, command, state, style, label string, submenu index.
        const WORD* key = words + kResourceHeaderWords + i * kResourceKeyWords;
        const HMENU popup = (key[3] & BTNS_DROPDOWN) != 0 && key[5] != kNoSubmenu && m_menu
                                ? GetSubMenu(m_menu.Get(), key[5])
                                : nullptr;
        m_keys.push_back({LoadResourceString(instance, key[4]), key[1], popup, (key[2] & TBSTATE_ENABLED) != 0});
    }
    return true;
}

bool CSoftKeyBar::Attach(HWND window)
{
    if (!SetPropW(window, kBarProperty, this))
        return false;
    m_previous = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ParentProc)));
    if (m_previous == nullptr) {
        RemovePropW(window, kBarProperty);
        return false;
    }
    AddThreadSoftKeyBar();
    // The window works its client area out again, without the strip.
    SetWindowPos(window, nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    return true;
}

void CSoftKeyBar::Detach()
{
    m_keys.clear();
    if (m_previous == nullptr) {
        delete this;
        return;
    }
    RemoveThreadSoftKeyBar();
    if (!m_parentDying)
        SetWindowPos(m_parent, nullptr, 0, 0, 0, 0,
                     SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    // Only a procedure that is still the window's own can be taken out. Under
    // a later subclass this one stays, passing everything on until the
    // window ends (see ParentProc).
    if (GetWindowLongPtrW(m_parent, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(ParentProc))
        return;
    SetWindowLongPtrW(m_parent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_previous));
    RemovePropW(m_parent, kBarProperty);
    delete this;
}

LRESULT CALLBACK CSoftKeyBar::ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CSoftKeyBar* bar = static_cast<CSoftKeyBar*>(GetPropW(window, kBarProperty));
    if (bar == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    if (bar->m_window != nullptr)
        return bar->ParentMessage(message, wParam, lParam);
    const LRESULT result = CallWindowProcW(bar->m_previous, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        RemovePropW(window, kBarProperty);
        delete bar;
    }
    return result;
}

LRESULT CALLBACK CSoftKeyBar::BarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CSoftKeyBar* bar = reinterpret_cast<CSoftKeyBar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (bar == nullptr)
        return DefWindowProcW(window, message, wParam, lParam);
    return bar->BarMessage(message, wParam, lParam);
}

LRESULT CSoftKeyBar::ParentMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    const POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    switch (message) {
    case WM_NCCALCSIZE: {
        RECT& rect = wParam ? reinterpret_cast<NCCALCSIZE_PARAMS*>(lParam)->rgrc[0] : *reinterpret_cast<RECT*>(lParam);
        const RECT window = rect;
        const LRESULT result = CallWindowProcW(m_previous, m_parent, message, wParam, lParam);
        ReserveStrip(rect, window);
        return result;
    }
    case WM_NCPAINT:
    case WM_NCACTIVATE: {
        const LRESULT result = CallWindowProcW(m_previous, m_parent, message, wParam, lParam);
        Paint();
        return result;
    }
    case WM_NCHITTEST:
        if (KeyAt(point) >= 0)
            return HTBORDER;
        break;
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
        if (wParam == HTBORDER && KeyAt(point) >= 0) {
            BeginPress(KeyAt(point));
            return 0;
        }
        break;
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP:
        if (m_tracking) {
            POINT screen = point;
            ClientToScreen(m_parent, &screen);
            if (message == WM_LBUTTONUP) {
                EndPress(screen);
            } else if ((KeyAt(screen) == m_pressed) != m_pressedLook) {
                m_pressedLook = !m_pressedLook;
                Paint();
            }
            return 0;
        }
        break;
    case WM_CAPTURECHANGED:
        if (m_tracking) {
            m_tracking = false;
            m_pressed = -1;
            Paint();
        }
        break;
    case WM_DESTROY:
        m_parentDying = true;
        break;
    default:
        break;
    }
    return CallWindowProcW(m_previous, m_parent, message, wParam, lParam);
}

LRESULT CSoftKeyBar::BarMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case kPressKeyMessage:
        PressKey(static_cast<int>(wParam));
        return 0;
    case SHCMBM_OVERRIDEKEY:
        // On the desktop Escape already cancels and Backspace erases in the
        // focused edit, which is what the handheld's Back key is redirected
        // for; nothing needs to change.
        return TRUE;
    case SHCMBM_GETMENU:
        return reinterpret_cast<LRESULT>(m_menu.Get());
    case TB_BUTTONCOUNT:
        return static_cast<LRESULT>(m_keys.size());
    case TB_GETBUTTONINFOW:
        return GetButtonInfo(wParam, reinterpret_cast<TBBUTTONINFOW*>(lParam));
    case TB_ENABLEBUTTON:
    case TB_ISBUTTONENABLED: {
        const int index = FindCommand(static_cast<UINT>(wParam));
        if (index < 0)
            return FALSE;
        SKey& key = m_keys[static_cast<size_t>(index)];
        if (message == TB_ISBUTTONENABLED)
            return key.enabled;
        key.enabled = LOWORD(lParam) != 0;
        Paint();
        return TRUE;
    }
    case WM_NCDESTROY: {
        const HWND window = m_window;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        m_window = nullptr;
        Detach();
        return DefWindowProcW(window, message, wParam, lParam);
    }
    default:
        return DefWindowProcW(m_window, message, wParam, lParam);
    }
}

LRESULT CSoftKeyBar::GetButtonInfo(WPARAM wParam, TBBUTTONINFOW* info) const
{
    if (info == nullptr || info->cbSize < sizeof(TBBUTTONINFOW))
        return -1;
    const int index = (info->dwMask & TBIF_BYINDEX) != 0 ? static_cast<int>(wParam)
                                                         : FindCommand(static_cast<UINT>(wParam));
    if (index < 0 || index >= GetKeyCount())
        return -1;
    const SKey& key = m_keys[static_cast<size_t>(index)];
    if ((info->dwMask & TBIF_COMMAND) != 0)
        info->idCommand = static_cast<int>(key.command);
    if ((info->dwMask & TBIF_STATE) != 0)
        info->fsState = key.enabled ? TBSTATE_ENABLED : 0;
    if ((info->dwMask & TBIF_STYLE) != 0)
        info->fsStyle = key.popup != nullptr ? BTNS_DROPDOWN : BTNS_BUTTON;
    if ((info->dwMask & TBIF_TEXT) != 0 && info->pszText != nullptr && info->cchText > 0) {
        const size_t length = std::min(key.label.GetLength(), static_cast<size_t>(info->cchText - 1));
        std::copy(key.label.GetString(), key.label.GetString() + length, info->pszText);
        info->pszText[length] = 0;
    }
    return index;
}

void CSoftKeyBar::ReserveStrip(RECT& proposedClient, const RECT& window)
{
    const int height = std::min(m_height, std::max(0, static_cast<int>(proposedClient.bottom - proposedClient.top)));
    proposedClient.bottom -= height;
    m_strip = {proposedClient.left - window.left, proposedClient.bottom - window.top,
               proposedClient.right - window.left, proposedClient.bottom + height - window.top};
}

int CSoftKeyBar::KeyAt(POINT screenPoint) const
{
    RECT window;
    const int width = m_strip.right - m_strip.left;
    if (m_keys.empty() || width <= 0 || !GetWindowRect(m_parent, &window))
        return -1;
    const POINT inWindow = {screenPoint.x - window.left, screenPoint.y - window.top};
    if (!PtInRect(&m_strip, inWindow))
        return -1;
    return std::min(GetKeyCount() - 1, static_cast<int>(inWindow.x - m_strip.left) * GetKeyCount() / width);
}

RECT CSoftKeyBar::KeyRect(int index) const
{
    const int width = m_strip.right - m_strip.left;
    return {index * width / GetKeyCount(), 0, (index + 1) * width / GetKeyCount(), m_strip.bottom - m_strip.top};
}

int CSoftKeyBar::FindCommand(UINT command) const
{
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (m_keys[i].popup == nullptr && m_keys[i].command == command)
            return static_cast<int>(i);
    }
    return -1;
}

void CSoftKeyBar::BeginPress(int index)
{
    if (!m_keys[static_cast<size_t>(index)].enabled)
        return;
    m_pressed = index;
    m_pressedLook = true;
    m_tracking = true;
    SetCapture(m_parent);
    Paint();
}

void CSoftKeyBar::EndPress(POINT screenPoint)
{
    const int key = m_pressed;
    const bool released = KeyAt(screenPoint) == key;
    m_tracking = false;
    m_pressed = -1;
    ReleaseCapture();
    Paint();
    if (released)
        PressKey(key);
}

void CSoftKeyBar::PressKey(int index)
{
    if (index < 0 || index >= GetKeyCount() || !m_keys[static_cast<size_t>(index)].enabled)
        return;
    const SKey key = m_keys[static_cast<size_t>(index)];
    const HWND self = m_window;
    const HWND parent = m_parent;
    if (key.popup == nullptr) {
        // The command may end the window and with it this object.
        SendMessageW(parent, WM_COMMAND, MAKEWPARAM(key.command, 0), reinterpret_cast<LPARAM>(self));
        return;
    }
    m_pressed = index;
    m_pressedLook = true;
    Paint();
    RECT window = {};
    GetWindowRect(parent, &window);
    const RECT rect = KeyRect(index);
    // Keys in the right half open their menus leftwards, as on the handheld.
    const bool right = 2 * index > GetKeyCount() - 1;
    TrackPopupMenuEx(key.popup, TPM_BOTTOMALIGN | (right ? TPM_RIGHTALIGN : TPM_LEFTALIGN),
                     window.left + m_strip.left + (right ? rect.right : rect.left), window.top + m_strip.top, parent,
                     nullptr);
    if (IsWindow(self) && OfWindow(parent) == this) {
        m_pressed = -1;
        Paint();
    }
}

void CSoftKeyBar::Paint()
{
    const int width = m_strip.right - m_strip.left;
    const int height = m_strip.bottom - m_strip.top;
    if (m_window == nullptr || width <= 0 || height <= 0 || !IsWindowVisible(m_parent))
        return;
    const HDC windowDc = GetWindowDC(m_parent);
    if (windowDc == nullptr)
        return;
    // Drawn off-screen and copied at once, so that a repaint does not flicker.
    CShdUniqueDC memory(CreateCompatibleDC(windowDc));
    CShdUniqueBitmap bitmap(CreateCompatibleBitmap(windowDc, width, height));
    if (memory && bitmap) {
        CShdSelectObject selectBitmap(memory.Get(), bitmap.Get());
        CShdSelectObject selectFont(memory.Get(), m_font.Get());
        FillSolid(memory.Get(), {0, 0, width, height}, kBackground);
        FillSolid(memory.Get(), {0, 0, width, ScaleY(1)}, kTopEdge);
        for (int i = 0; i < GetKeyCount(); ++i)
            PaintKey(memory.Get(), i, KeyRect(i));
        BitBlt(windowDc, m_strip.left, m_strip.top, width, height, memory.Get(), 0, 0, SRCCOPY);
    }
    ReleaseDC(m_parent, windowDc);
}

void CSoftKeyBar::PaintKey(HDC dc, int index, const RECT& rect) const
{
    const SKey& key = m_keys[static_cast<size_t>(index)];
    const int edge = ScaleY(1);
    if (index == m_pressed && m_pressedLook) {
        FillSolid(dc, {rect.left, rect.top + edge, rect.right, rect.bottom}, kPressed);
    } else if (index > 0) {
        const int inset = ScaleY(kDividerInsetDesign);
        FillSolid(dc, {rect.left, rect.top + inset, rect.left + ScaleX(1), rect.bottom - inset}, kDivider);
    }

    const COLORREF color = key.enabled ? kLabel : kDisabledLabel;
    SIZE text = {};
    GetTextExtentPoint32W(dc, key.label, static_cast<int>(key.label.GetLength()), &text);
    const int arrowWidth = key.popup != nullptr ? ScaleX(kArrowWidthDesign) : 0;
    const int arrowGap = key.popup != nullptr ? ScaleX(kArrowGapDesign) : 0;
    const int room = std::max(0, static_cast<int>(rect.right - rect.left) - 2 * ScaleX(kLabelPaddingDesign) -
                                     arrowGap - arrowWidth);
    const int textWidth = std::min(static_cast<int>(text.cx), room);
    const int left = rect.left + (rect.right - rect.left - textWidth - arrowGap - arrowWidth) / 2;
    RECT textRect = {left, rect.top + edge, left + textWidth, rect.bottom};
    SetTextColor(dc, color);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, key.label, static_cast<int>(key.label.GetLength()), &textRect,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (key.popup == nullptr)
        return;
    // An upward triangle: the key opens a menu above the bar.
    const int arrowHeight = ScaleY(kArrowHeightDesign);
    const int x = textRect.right + arrowGap;
    const int y = (rect.top + rect.bottom + edge - arrowHeight) / 2;
    const POINT arrow[] = {{x, y + arrowHeight}, {x + arrowWidth, y + arrowHeight}, {x + arrowWidth / 2, y}};
    CShdUniqueBrush brush(CreateSolidBrush(color));
    CShdSelectObject selectBrush(dc, brush.Get());
    CShdSelectObject selectPen(dc, GetStockObject(NULL_PEN));
    Polygon(dc, arrow, 3);
}
