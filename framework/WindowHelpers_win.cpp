#include "framework/WindowHelpers_win.h"

#include <cwchar>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/SystemInfo.h"

namespace {

const WCHAR kTransparentClassName[] = L"Transparent_{5B8C6868-67C5-444A-9282-2E4154B78AE3}";
const int kDefaultFontPoints = 8;
const UINT kPlatformTypeCapacity = 128;

}  // namespace

CShdFontsManager& CShdFontsManager::Instance()
{
    static CShdFontsManager instance;
    return instance;
}

HFONT CShdFontsManager::GetDefaultFont()
{
    if (m_defaultFont)
        return m_defaultFont.Get();
    LOGFONTW description = {};
    if (GetObjectW(Handheld::SystemFont(), sizeof(description), &description) == 0) {
        description = {};
        wcsncpy(description.lfFaceName, L"Tahoma", LF_FACESIZE - 1);
    }
    description.lfHeight = FontHeightForPoints(kDefaultFontPoints, ScreenDpiY());
    description.lfWeight = FW_NORMAL;
    description.lfQuality = DEFAULT_QUALITY;
    m_defaultFont.Reset(CreateFontIndirectW(&description));
    return m_defaultFont.Get();
}

void SetUpDialogList(HWND list)
{
    const DWORD style = LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE;
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, style, style);
    const HFONT font = CShdFontsManager::Instance().GetDefaultFont();
    SendMessageW(list, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageW(ListView_GetHeader(list), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

bool CTransparentWindow::Create(DWORD exStyle, DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                                HINSTANCE instance)
{
    static CShdWnd::CClass transparentClass;
    if (!transparentClass.IsRegistered())
        transparentClass.Register(kTransparentClassName, 0, nullptr);
    return CShdWnd::Create(exStyle, &transparentClass, L"", style, x, y, width, height, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance);
}

LRESULT CTransparentWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
    case WM_DESTROY:
        return 0;
    case WM_PAINT: {
        CShdPaintDC paint(GetHwnd());
        return 0;
    }
    case WM_ERASEBKGND:
        return 1;
    default:
        return CShdWnd::WindowProc(message, wParam, lParam);
    }
}

void CResizeNoFlickering::Begin(HWND parent, HINSTANCE instance)
{
    if (m_cover.GetHwnd() != nullptr)
        DestroyWindow(m_cover.GetHwnd());
    RECT client = {};
    GetClientRect(parent, &client);
    if (m_cover.Create(0, WS_CHILD | WS_VISIBLE, 0, 0, client.right, client.bottom, parent, 0, instance))
        SetWindowPos(m_cover.GetHwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CWndNoRedraw::Begin(HWND window, bool invalidateAfter, bool eraseBackground, bool updateAfter)
{
    End();
    m_hwnd = window;
    m_invalidateAfter = invalidateAfter;
    m_eraseBackground = eraseBackground;
    m_updateAfter = updateAfter;
    SendMessageW(m_hwnd, WM_SETREDRAW, FALSE, 0);
}

void CWndNoRedraw::End()
{
    if (m_hwnd != nullptr) {
        SendMessageW(m_hwnd, WM_SETREDRAW, TRUE, 0);
        if (m_invalidateAfter)
            InvalidateRect(m_hwnd, nullptr, m_eraseBackground);
        if (m_updateAfter)
            UpdateWindow(m_hwnd);
    }
    m_hwnd = nullptr;
    m_invalidateAfter = true;
    m_eraseBackground = false;
    m_updateAfter = false;
}

HWND CreateMenuBar(HWND parent, HINSTANCE instance, UINT resourceId, bool isMenuBarResource)
{
    SHMENUBARINFO info = {};
    info.cbSize = sizeof(info);
    info.hwndParent = parent;
    info.dwFlags = isMenuBarResource ? 0 : SHCMBF_HMENU;
    info.nToolBarId = resourceId;
    info.hInstRes = instance;
    return SHCreateMenuBar(&info) ? info.hwndMB : nullptr;
}

HWND FindChildOfClass(HWND parent, LPCWSTR className)
{
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        WCHAR name[64] = {};
        if (GetClassNameW(child, name, 64) > 0 && lstrcmpiW(name, className) == 0)
            return child;
    }
    return nullptr;
}

bool IsSmartphone()
{
    static const bool smartphone = [] {
        WCHAR type[kPlatformTypeCapacity] = {};
        if (!Handheld::GetPlatformType(type, kPlatformTypeCapacity))
            return false;
        type[kPlatformTypeCapacity - 1] = 0;
        return IsSmartphonePlatformType(type);
    }();
    return smartphone;
}

DWORD GetOsVersion()
{
    static const DWORD version = [] {
        OSVERSIONINFOW info = {};
        info.dwOSVersionInfoSize = sizeof(info);
        const BOOL known = GetVersionExW(&info);
        return known ? PackOsVersion(info.dwMajorVersion, info.dwMinorVersion) : kFallbackOsVersion;
    }();
    return version;
}

HIMAGELIST LoadImageStrip(HINSTANCE instance, UINT bitmap16, UINT bitmap32, int largeFromDpi)
{
    const bool highResolution = ScreenDpiY() >= largeFromDpi;
    return ImageList_LoadImageW(instance, MAKEINTRESOURCEW(highResolution ? bitmap32 : bitmap16),
                                highResolution ? 32 : 16, 0, RGB(0xFF, 0x00, 0xFF), IMAGE_BITMAP, 0);
}

bool PutClipboardText(HWND owner, const CString& text)
{
    const size_t bytes = (text.GetLength() + 1) * sizeof(WCHAR);
    HLOCAL block = LocalAlloc(LMEM_FIXED, bytes);
    if (block == nullptr)
        return false;
    CopyMemory(block, text.GetString(), bytes);
    bool put = false;
    if (OpenClipboard(owner)) {
        EmptyClipboard();
        put = SetClipboardData(CF_UNICODETEXT, block) != nullptr;
        CloseClipboard();
    }
    // The clipboard owns the block once it took it.
    if (!put)
        LocalFree(block);
    return put;
}

bool ReadClipboardText(HWND owner, CString& text)
{
    text.Empty();
    if (!OpenClipboard(owner))
        return false;
    const HLOCAL block = GetClipboardDataAlloc(CF_UNICODETEXT);
    CloseClipboard();
    if (block == nullptr)
        return false;
    const LPCWSTR units = static_cast<LPCWSTR>(block);
    const size_t capacity = LocalSize(block) / sizeof(WCHAR);
    size_t length = 0;
    while (length < capacity && units[length] != 0)
        ++length;
    text = CString(units, length);
    LocalFree(block);
    return true;
}
