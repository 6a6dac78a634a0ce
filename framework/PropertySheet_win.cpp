#include "framework/PropertySheet_win.h"

#include <algorithm>

#include "base/Text.h"
#include "framework/HandheldShell_win.h"

namespace {

const DWORD kSheetFlags = PSH_MAXIMIZE | PSH_USECALLBACK | PSH_NOAPPLYNOW;
const LRESULT kCommonControlsVersion = 0x20C;
// PSCB_GETTITLE's buffer: this many characters and a terminating zero.
const size_t kMaxTitleLength = 255;

// A LocalAlloc copy of a text, or null (no text, or no memory).
LPWSTR CopyText(LPCWSTR text)
{
    if (text == nullptr)
        return nullptr;
    const size_t length = StrLen(text);
    LPWSTR copy = static_cast<LPWSTR>(LocalAlloc(LMEM_FIXED, (length + 1) * sizeof(WCHAR)));
    if (copy != nullptr)
        std::copy(text, text + length + 1, copy);
    return copy;
}

void FreeText(LPWSTR& text)
{
    if (text != nullptr)
        LocalFree(text);
    text = nullptr;
}

}  // namespace

CShdPropertySheet::CShdPropertySheet() = default;

CShdPropertySheet::~CShdPropertySheet()
{
    if (m_pages != nullptr)
        LocalFree(m_pages);
    if (m_handles != nullptr)
        LocalFree(m_handles);
    FreeText(m_title);
}

CShdObjectTokens& CShdPropertySheet::Tokens()
{
    static CShdObjectTokens tokens;
    return tokens;
}

bool CShdPropertySheet::Init(HINSTANCE instance, LPCWSTR title, UINT startPage)
{
    if (GetHwnd() != nullptr)
        return false;
    FreeText(m_title);
    m_title = CopyText(title);
    m_header = {};
    m_header.dwSize = sizeof(m_header);
    m_header.dwFlags = kSheetFlags;
    m_header.hInstance = instance;
    m_header.nStartPage = startPage;
    m_header.pfnCallback = SheetCallback;
    m_initialised = true;
    return true;
}

int CShdPropertySheet::AddPage(CShdPropertySheetPage* page)
{
    if (page == nullptr)
        return -1;
    const size_t count = static_cast<size_t>(m_count) + 1;
    auto* pages = static_cast<CShdPropertySheetPage**>(LocalAlloc(LPTR, count * sizeof(*m_pages)));
    auto* handles = static_cast<HPROPSHEETPAGE*>(LocalAlloc(LPTR, count * sizeof(*m_handles)));
    HPROPSHEETPAGE handle = nullptr;
    if (pages != nullptr && handles != nullptr && GetHwnd() != nullptr) {
        handle = CreatePropertySheetPageW(&page->GetPage());
        if (handle != nullptr && !SendMessageW(GetHwnd(), PSM_ADDPAGE, 0, reinterpret_cast<LPARAM>(handle))) {
            DestroyPropertySheetPage(handle);
            handle = nullptr;
        }
    }
    if (pages == nullptr || handles == nullptr || (GetHwnd() != nullptr && handle == nullptr)) {
        if (pages != nullptr)
            LocalFree(pages);
        if (handles != nullptr)
            LocalFree(handles);
        return -1;
    }
    std::copy(m_pages, m_pages + m_count, pages);
    std::copy(m_handles, m_handles + m_count, handles);
    pages[m_count] = page;
    handles[m_count] = handle;
    if (m_pages != nullptr)
        LocalFree(m_pages);
    if (m_handles != nullptr)
        LocalFree(m_handles);
    m_pages = pages;
    m_handles = handles;
    return m_count++;
}

void CShdPropertySheet::DestroyPageHandles(int count)
{
    for (int i = count - 1; i >= 0; --i) {
        if (m_handles[i] != nullptr)
            DestroyPropertySheetPage(m_handles[i]);
        m_handles[i] = nullptr;
    }
}

bool CShdPropertySheet::DoModal(HWND parent)
{
    if (GetHwnd() != nullptr || !m_initialised)
        return false;
    for (int i = 0; i < m_count; ++i) {
        if (m_handles[i] == nullptr)
            m_handles[i] = CreatePropertySheetPageW(&m_pages[i]->GetPage());
        if (m_handles[i] == nullptr) {
            DestroyPageHandles(i);
            return false;
        }
    }
    // The key stands for this object until the sheet has ended.
    const DWORD token = Tokens().Add(this);
    EncodeObjectKey(token, m_key);
    m_header.pszCaption = m_key;
    m_header.nPages = static_cast<UINT>(m_count);
    m_header.phpage = m_handles;
    m_header.hwndParent = parent;
    const INT_PTR result = token != 0 ? Handheld::PropertySheetW(&m_header) : -1;
    Tokens().Remove(token);
    // The sheet destroys the pages it was given.
    std::fill(m_handles, m_handles + m_count, nullptr);
    return result > 0;
}

int CALLBACK CShdPropertySheet::SheetCallback(HWND window, UINT message, LPARAM lParam)
{
    switch (message) {
    case PSCB_INITIALIZED: {
        WCHAR caption[kObjectKeyLength + 1] = {};
        ::GetWindowTextW(window, caption, static_cast<int>(kObjectKeyLength + 1));
        auto* sheet = static_cast<CShdPropertySheet*>(Tokens().Find(DecodeObjectKey(caption)));
        if (sheet == nullptr || !sheet->Subclass(window)) {
            DestroyWindow(window);
            return 0;
        }
        SendMessageW(window, PSM_SETTITLEW, 0, reinterpret_cast<LPARAM>(sheet->m_title != nullptr ? sheet->m_title
                                                                                                  : L""));
        return 0;
    }
    case PSCB_GETVERSION:
        return kCommonControlsVersion;
    case PSCB_GETTITLE: {
        auto* sheet = dynamic_cast<CShdPropertySheet*>(FromHandle(window));
        LPWSTR buffer = reinterpret_cast<LPWSTR>(lParam);
        if (sheet == nullptr || buffer == nullptr)
            return 0;
        const LPCWSTR title = sheet->m_title != nullptr ? sheet->m_title : L"";
        const size_t length = std::min(StrLen(title), kMaxTitleLength);
        std::copy(title, title + length, buffer);
        buffer[length] = 0;
        return 0;
    }
    default:
        return 0;
    }
}

CShdPropertySheetPage::~CShdPropertySheetPage()
{
    FreeText(m_title);
}

bool CShdPropertySheetPage::Init(HINSTANCE instance, UINT templateId, LPCWSTR title)
{
    if (GetHwnd() != nullptr)
        return false;
    FreeText(m_title);
    m_title = CopyText(title);
    m_page = {};
    m_page.dwSize = sizeof(m_page);
    m_page.dwFlags = title != nullptr ? PSP_USETITLE : 0;
    m_page.hInstance = instance;
    m_page.pszTemplate = MAKEINTRESOURCEW(templateId);
    m_page.pfnDlgProc = PageDialogProc;
    m_page.pszTitle = m_title != nullptr ? m_title : L"";
    m_page.lParam = reinterpret_cast<LPARAM>(this);
    return true;
}

INT_PTR CALLBACK CShdPropertySheetPage::PageDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto* page = reinterpret_cast<CShdPropertySheetPage*>(reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam);
        AttachToWindow(page, window);
        return Dispatch(page, window, message, wParam, lParam);
    }
    return Dispatch(FromWindow(window), window, message, wParam, lParam);
}

INT_PTR CShdPropertySheetPage::OnMessage(UINT message, WPARAM, LPARAM lParam)
{
    if (message != WM_NOTIFY)
        return 0;
    LONG_PTR result = 0;
    switch (reinterpret_cast<const NMHDR*>(lParam)->code) {
    case PSN_SETACTIVE:
        result = OnSetActive() ? 0 : -1;
        break;
    case PSN_KILLACTIVE:
        result = OnKillActive() ? 0 : 1;
        break;
    case PSN_APPLY:
        result = OnApply() ? PSNRET_NOERROR : PSNRET_INVALID_NOCHANGEPAGE;
        break;
    case PSN_RESET:
        OnReset();
        break;
    case PSN_QUERYCANCEL:
        result = OnQueryCancel() ? 0 : 1;
        break;
    default:
        return 0;
    }
    SetWindowLongPtrW(GetHwnd(), DWLP_MSGRESULT, result);
    return TRUE;
}
