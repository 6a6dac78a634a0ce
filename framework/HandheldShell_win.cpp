#include "framework/HandheldShell_win.h"

#include <windowsx.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "framework/DpiScale.h"
#include "framework/SoftKeyBar_win.h"

namespace {

// A portrait handheld screen, in design units.
const int kHandheldWidthDesign = 480;
const int kHandheldHeightDesign = 640;
// How long the pen must rest for a tap to become a hold.
const DWORD kHoldMilliseconds = 500;
const DWORD kLongHoldMilliseconds = 1000;
const DWORD kHoldPollMilliseconds = 20;

const WCHAR kMessageWindowClass[] = L"HandheldShell_{9B1E4C07-2F6A-4D83-A1C5-67E0F3B28D14}";
// Posted to the thread's message window: a right click on window wParam at
// the screen point in lParam.
const UINT kRightClickMessage = WM_APP + 0x3F02;

// What a thread with soft-key bars needs: a hook that turns the soft keys
// and right clicks into what the handheld does with them, and a window that
// takes what the hook posts.
struct SThreadShell {
    int bars = 0;
    HHOOK hook = nullptr;
    HWND messageWindow = nullptr;
};
thread_local SThreadShell t_shell;

void RaiseContextGesture(HWND window, POINT screenPoint, bool notifyParent, bool contextMenuFallback)
{
    const HWND target = notifyParent ? GetParent(window) : window;
    NMRGINFO info = {};
    info.hdr.hwndFrom = window;
    info.hdr.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(window));
    info.hdr.code = GN_CONTEXTMENU;
    info.ptAction = screenPoint;
    const LRESULT answer =
        target != nullptr ? SendMessageW(target, WM_NOTIFY, info.hdr.idFrom, reinterpret_cast<LPARAM>(&info)) : 0;
    if (answer == 0 && contextMenuFallback && IsWindow(window))
        SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window),
                     MAKELPARAM(screenPoint.x, screenPoint.y));
}

LRESULT CALLBACK MessageWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == kRightClickMessage) {
        const HWND clicked = reinterpret_cast<HWND>(wParam);
        // The system already sends WM_CONTEXTMENU for a right click.
        if (IsWindow(clicked))
            RaiseContextGesture(clicked, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}, true, false);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK GetMessageHook(int code, WPARAM wParam, LPARAM lParam)
{
    MSG* message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE) {
        const bool firstPress = (message->lParam & (1 << 30)) == 0;
        if (message->message == WM_KEYDOWN && (message->wParam == VK_TSOFT1 || message->wParam == VK_TSOFT2) &&
            firstPress) {
            CSoftKeyBar* bar = CSoftKeyBar::OfWindow(GetActiveWindow());
            if (bar != nullptr && bar->GetKeyCount() > 0) {
                const int key = message->wParam == VK_TSOFT1 ? 0 : bar->GetKeyCount() - 1;
                // Pressed once the hook has returned: a key may open a menu.
                PostMessageW(bar->GetWindow(), CSoftKeyBar::kPressKeyMessage, static_cast<WPARAM>(key), 0);
                message->message = WM_NULL;
            }
        } else if (message->message == WM_RBUTTONUP && message->hwnd != nullptr &&
                   (GetWindowLongW(message->hwnd, GWL_STYLE) & WS_CHILD) != 0) {
            POINT point = {GET_X_LPARAM(message->lParam), GET_Y_LPARAM(message->lParam)};
            ClientToScreen(message->hwnd, &point);
            PostMessageW(t_shell.messageWindow, kRightClickMessage, reinterpret_cast<WPARAM>(message->hwnd),
                         MAKELPARAM(point.x, point.y));
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

bool RegisterMessageWindowClass()
{
    static bool registered = false;
    if (!registered) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = MessageWindowProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kMessageWindowClass;
        registered = RegisterClassW(&windowClass) != 0;
    }
    return registered;
}

// The handheld's screen on the desktop: the area below the caption of the
// top-level window that owns `window`, down to the bottom of its soft-key
// bar. False when no one owns the window.
bool MainWindowArea(HWND window, RECT& area)
{
    HWND main = GetWindow(window, GW_OWNER);
    if (main == nullptr)
        return false;
    while (GetWindow(main, GW_OWNER) != nullptr)
        main = GetWindow(main, GW_OWNER);
    if (!GetClientRect(main, &area))
        return false;
    MapWindowPoints(main, nullptr, reinterpret_cast<POINT*>(&area), 2);
    if (const CSoftKeyBar* bar = CSoftKeyBar::OfWindow(main))
        area.bottom += bar->GetHeight();
    return true;
}

RECT HandheldWindowRect(HWND window)
{
    RECT current = {};
    GetWindowRect(window, &current);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const int width = std::min(ScaleX(kHandheldWidthDesign), static_cast<int>(work.right - work.left));
    const int height = std::min(ScaleY(kHandheldHeightDesign), static_cast<int>(work.bottom - work.top));
    const int left = std::max(work.left, std::min(current.left, work.right - width));
    const int top = std::max(work.top, std::min(current.top, work.bottom - height));
    return {left, top, left + width, top + height};
}

bool WaitForHold(const SHRGINFO& info)
{
    POINT start = {};
    GetCursorPos(&start);
    const int slopX = GetSystemMetrics(SM_CXDRAG);
    const int slopY = GetSystemMetrics(SM_CYDRAG);
    const DWORD hold = (info.dwFlags & SHRG_LONGDELAY) != 0 ? kLongHoldMilliseconds : kHoldMilliseconds;
    const DWORD begin = GetTickCount();
    // Polled, not pumped: the button-up stays in the queue for the window.
    while (GetTickCount() - begin < hold) {
        Sleep(kHoldPollMilliseconds);
        POINT now = {};
        GetCursorPos(&now);
        if ((GetAsyncKeyState(VK_LBUTTON) & 0x8000) == 0 || std::abs(now.x - start.x) > slopX ||
            std::abs(now.y - start.y) > slopY)
            return false;
    }
    return true;
}

}  // namespace

void AddThreadSoftKeyBar()
{
    if (t_shell.bars++ > 0)
        return;
    if (RegisterMessageWindowClass())
        t_shell.messageWindow = CreateWindowExW(0, kMessageWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                                GetModuleHandleW(nullptr), nullptr);
    t_shell.hook = SetWindowsHookExW(WH_GETMESSAGE, GetMessageHook, nullptr, GetCurrentThreadId());
}

void RemoveThreadSoftKeyBar()
{
    if (--t_shell.bars > 0)
        return;
    if (t_shell.hook != nullptr)
        UnhookWindowsHookEx(t_shell.hook);
    if (t_shell.messageWindow != nullptr)
        DestroyWindow(t_shell.messageWindow);
    t_shell = SThreadShell();
}

BOOL SHCreateMenuBar(SHMENUBARINFO* info)
{
    if (info == nullptr || info->cbSize < sizeof(SHMENUBARINFO))
        return FALSE;
    info->hwndMB = CSoftKeyBar::Create(*info);
    return info->hwndMB != nullptr;
}

BOOL SHInitDialog(SHINITDLGINFO* info)
{
    if (info == nullptr || (info->dwMask & SHIDIM_FLAGS) == 0 || !IsWindow(info->hDlg))
        return FALSE;
    if ((info->dwFlags & (SHIDIF_SIZEDLG | SHIDIF_SIZEDLGFULLSCREEN)) == 0)
        return TRUE;
    RECT area;
    if (MainWindowArea(info->hDlg, area)) {
        // Over the main window the dialog is the screen: no frame or caption
        // of its own (the main window's caption stays in view above it).
        const HWND dialog = info->hDlg;
        SetWindowLongW(dialog, GWL_STYLE, GetWindowLongW(dialog, GWL_STYLE) & ~(WS_CAPTION | WS_THICKFRAME));
        SetWindowLongW(dialog, GWL_EXSTYLE,
                       GetWindowLongW(dialog, GWL_EXSTYLE) & ~(WS_EX_DLGMODALFRAME | WS_EX_WINDOWEDGE));
    } else {
        area = HandheldWindowRect(info->hDlg);
    }
    return SetWindowPos(info->hDlg, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                        SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

BOOL SHDoneButton(HWND window, DWORD)
{
    return IsWindow(window);
}

BOOL SHHandleWMActivate(HWND, WPARAM, LPARAM, SHACTIVATEINFO*, DWORD)
{
    return TRUE;
}

BOOL SHHandleWMSettingChange(HWND, WPARAM, LPARAM, SHACTIVATEINFO*)
{
    return TRUE;
}

BOOL SHSipPreference(HWND, SIPSTATE)
{
    return TRUE;
}

BOOL SHInitExtraControls()
{
    static bool registered = false;
    if (!registered) {
        // A control that only has to exist: the input panel it speaks for is
        // not there.
        WNDCLASSW windowClass = {};
        windowClass.style = CS_GLOBALCLASS;
        windowClass.lpfnWndProc = DefWindowProcW;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = WC_SIPPREF;
        registered = RegisterClassW(&windowClass) != 0;
    }
    return registered;
}

DWORD SHRecognizeGesture(SHRGINFO* info)
{
    if (info == nullptr || info->cbSize < sizeof(SHRGINFO) || !IsWindow(info->hwndClient))
        return 0;
    const bool returnOnly = (info->dwFlags & SHRG_RETURNCMD) != 0;
    const bool penDown = (GetAsyncKeyState(VK_LBUTTON) & 0x8000) != 0;
    if (!(penDown ? WaitForHold(*info) : !returnOnly))
        return 0;
    if (!returnOnly) {
        POINT point = info->ptDown;
        ClientToScreen(info->hwndClient, &point);
        RaiseContextGesture(info->hwndClient, point, (info->dwFlags & SHRG_NOTIFYPARENT) != 0, true);
    }
    return GN_CONTEXTMENU;
}

void SHSendBackToFocusWindow(UINT, WPARAM, LPARAM)
{
    const HWND focus = GetFocus();
    if (focus == nullptr)
        return;
    // Repeat count 1 and the Backspace key's scan code, as the keyboard sends it.
    const LPARAM press = 0x000E0001;
    SendMessageW(focus, WM_KEYDOWN, VK_BACK, press);
    SendMessageW(focus, WM_CHAR, VK_BACK, press);
    SendMessageW(focus, WM_KEYUP, VK_BACK, press | 0xC0000000);
}

HANDLE GetClipboardDataAlloc(UINT format)
{
    const HANDLE data = GetClipboardData(format);
    const void* source = data != nullptr ? GlobalLock(data) : nullptr;
    if (source == nullptr)
        return nullptr;
    const SIZE_T size = GlobalSize(data);
    const HLOCAL copy = LocalAlloc(LMEM_FIXED, size);
    if (copy != nullptr)
        std::memcpy(copy, source, size);
    GlobalUnlock(data);
    return copy;
}

namespace Handheld {

BOOL GetPlatformType(LPWSTR buffer, UINT capacity)
{
    const WCHAR type[] = L"PocketPC";
    if (buffer == nullptr || capacity < std::size(type))
        return FALSE;
    std::copy(type, type + std::size(type), buffer);
    return TRUE;
}

BOOL SetForegroundWindow(HWND window)
{
    const HWND popup = GetLastActivePopup(window);
    return ::SetForegroundWindow(popup != nullptr ? popup : window);
}

LPCWSTR GetCommandLineW()
{
    LPCWSTR text = ::GetCommandLineW();
    if (text == nullptr)
        return L"";
    bool quoted = false;
    for (; *text != 0 && (quoted || (*text != L' ' && *text != L'\t')); ++text) {
        if (*text == L'"')
            quoted = !quoted;
    }
    while (*text == L' ' || *text == L'\t')
        ++text;
    return text;
}

INT_PTR PropertySheetW(const PROPSHEETHEADERW* header)
{
    if (header == nullptr)
        return -1;
    PROPSHEETHEADERW desktop = *header;
    desktop.dwFlags &= ~static_cast<DWORD>(PSH_MAXIMIZE);
    return ::PropertySheetW(&desktop);
}

HFONT SystemFont()
{
    return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

UINT GetWindowsFolder(LPWSTR buffer, UINT capacity)
{
    return GetWindowsDirectoryW(buffer, capacity);
}

}  // namespace Handheld
