#include "app/AboutDlg_win.h"

#include "app/VersionInfo.h"
#include "base/CString.h"
#include "framework/SystemInfo.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"

namespace {

// The version numbers from the module's own version resource; zeros when
// it has none.
SFileVersion ModuleVersion(HINSTANCE instance)
{
    SFileVersion version;
    const HRSRC resource = FindResourceW(instance, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
    const HGLOBAL loaded = resource != nullptr ? LoadResource(instance, resource) : nullptr;
    const void* data = loaded != nullptr ? LockResource(loaded) : nullptr;
    if (data != nullptr)
        ReadFixedFileVersion(static_cast<const BYTE*>(data), SizeofResource(instance, resource), version);
    return version;
}

}  // namespace

CAboutDlg::CAboutDlg()
{
    SetFullScreen(true);
    GetHelper().SetHeader(L"About");
}

INT_PTR CAboutDlg::DialogProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG: {
        const HINSTANCE instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(GetHwnd(), GWLP_HINSTANCE));
        const bool menuBar = UsesMenuBarResource(IsSmartphone(), GetOsVersion());
        CreateMenuBar(GetHwnd(), instance, menuBar ? IDR_CLOSE_MENUBAR : IDR_CLOSE, menuBar);
        const SFileVersion version = ModuleVersion(instance);
        const CString text = CString::Formatted(L"Version %i.%i.%i, Build %i", version.major, version.minor,
                                                version.patch, version.build);
        SetDlgItemTextW(GetHwnd(), IDC_ABOUT_VERSION, text);
        return TRUE;
    }
    case WM_COMMAND:
        if (LOWORD(wParam) == IDM_CLOSE || LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
            EndDialog(GetHwnd(), kResultOk);
            return TRUE;
        }
        break;
    default:
        break;
    }
    return CShdDialog::DialogProc(message, wParam, lParam);
}

void RunAboutDlg(HWND owner, HINSTANCE instance)
{
    CAboutDlg about;
    about.DoModal(instance, IDD_ABOUT, owner, 0);
}
