#include "settings/OptionsDlg_win.h"

#include <algorithm>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "resources/resource.h"
#include "settings/FileAssociation.h"

namespace {

const int kSideMarginDesign = 10;

const LPCWSTR kNoProgramPath = TEXT("Internal error. Required registry settings not found.");
const LPCWSTR kOtherProgram =
    TEXT("This file type is already associated with another program. Do you want to proceed anyway?");
const LPCWSTR kNotOurs = TEXT("Quenda is not associated with reg files.");

// Stretches a control between the side margins of a page `width` wide,
// keeping its top and height.
void StretchToMargins(HWND page, int controlId, int width)
{
    const HWND control = GetDlgItem(page, controlId);
    RECT bounds = {};
    GetWindowRect(control, &bounds);
    MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&bounds), 2);
    const int margin = ScaleX(kSideMarginDesign);
    SetWindowPos(control, nullptr, margin, bounds.top, std::max(0, width - 2 * margin), bounds.bottom - bounds.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void SetCheck(HWND page, int controlId, bool checked)
{
    CheckDlgButton(page, controlId, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool IsChecked(HWND page, int controlId)
{
    return IsDlgButtonChecked(page, controlId) == BST_CHECKED;
}

}  // namespace

INT_PTR COptionsGeneralPage::DialogProc(UINT message, WPARAM, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        SetCheck(GetHwnd(), IDC_SAVE_POSITION, m_options.savePosition);
        SetCheck(GetHwnd(), IDC_SHOW_SEARCH_TOOLBAR, m_options.showSearchToolbar);
        return TRUE;
    case WM_SIZE:
        StretchToMargins(GetHwnd(), IDC_SAVE_POSITION, LOWORD(lParam));
        StretchToMargins(GetHwnd(), IDC_SHOW_SEARCH_TOOLBAR, LOWORD(lParam));
        return FALSE;
    default:
        return FALSE;
    }
}

bool COptionsGeneralPage::OnApply()
{
    m_options.savePosition = IsChecked(GetHwnd(), IDC_SAVE_POSITION);
    m_options.showSearchToolbar = IsChecked(GetHwnd(), IDC_SHOW_SEARCH_TOOLBAR);
    return true;
}

INT_PTR COptionsImportPage::DialogProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        SetCheck(GetHwnd(), IDC_IMPORT_NO_HEADER_CHECK, m_options.doNotCheckImportHeader);
        EnableButtons();
        return TRUE;
    case WM_SIZE:
        StretchToMargins(GetHwnd(), IDC_IMPORT_NO_HEADER_CHECK, LOWORD(lParam));
        return FALSE;
    case WM_COMMAND:
        if (HIWORD(wParam) != BN_CLICKED)
            return FALSE;
        if (LOWORD(wParam) == IDC_ASSOCIATION_INSTALL)
            Install();
        else if (LOWORD(wParam) == IDC_ASSOCIATION_REMOVE)
            Remove();
        else
            return FALSE;
        return TRUE;
    default:
        return FALSE;
    }
}

bool COptionsImportPage::OnApply()
{
    m_options.doNotCheckImportHeader = IsChecked(GetHwnd(), IDC_IMPORT_NO_HEADER_CHECK);
    return true;
}

void COptionsImportPage::Install()
{
    switch (CheckRegFileAssociation()) {
    case ERegFileAssociation::NoProgramPath:
        ShowMessage(GetHwnd(), kNoProgramPath, MB_ICONHAND);
        return;
    case ERegFileAssociation::OtherProgram:
        if (ShowMessage(GetHwnd(), kOtherProgram, MB_YESNO | MB_ICONQUESTION) != IDYES)
            return;
        break;
    case ERegFileAssociation::Free:
        break;
    }
    InstallRegFileAssociation();
    EnableButtons();
}

void COptionsImportPage::Remove()
{
    switch (CheckRegFileAssociation()) {
    case ERegFileAssociation::NoProgramPath:
        ShowMessage(GetHwnd(), kNoProgramPath, MB_ICONHAND);
        return;
    case ERegFileAssociation::OtherProgram:
        ShowMessage(GetHwnd(), kNotOurs, MB_ICONEXCLAMATION);
        return;
    case ERegFileAssociation::Free:
        break;
    }
    RemoveRegFileAssociation();
    EnableButtons();
}

void COptionsImportPage::EnableButtons()
{
    const bool associated = IsAssociated();
    const HWND install = GetDlgItem(GetHwnd(), IDC_ASSOCIATION_INSTALL);
    const HWND remove = GetDlgItem(GetHwnd(), IDC_ASSOCIATION_REMOVE);
    // The button just pressed is usually the one that goes grey: the focus
    // moves to the other, or the keyboard would be left on a disabled control.
    const HWND focus = GetFocus();
    EnableWindow(install, !associated);
    EnableWindow(remove, associated);
    if (focus == install && associated)
        SetFocus(remove);
    else if (focus == remove && !associated)
        SetFocus(install);
}

bool COptionsDlg::Run(HWND parent)
{
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    if (!m_general.Init(instance, IDD_OPTIONS_GENERAL, TEXT("General")) ||
        !m_import.Init(instance, IDD_OPTIONS_IMPORT, TEXT("Import")) || !Init(instance, TEXT("Options"), 0) ||
        AddPage(&m_general) < 0 || AddPage(&m_import) < 0)
        return false;
    return DoModal(parent);
}

LRESULT COptionsDlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    // The sheet is first shown once it holds its pages; its soft keys come
    // then. They are its OK and Cancel: a sheet that has buttons of its own
    // (the desktop's) hides them, and the strip takes their place.
    if (message == WM_SHOWWINDOW && wParam && m_softKeys == nullptr) {
        m_softKeys = CreateDialogSoftKeys(GetHwnd(), GetModuleHandleW(nullptr), IDR_DONE_CANCEL,
                                          IDR_DONE_CANCEL_MENUBAR);
        if (m_softKeys != nullptr) {
            for (const int button : {IDOK, IDCANCEL})
                ShowWindow(GetDlgItem(GetHwnd(), button), SW_HIDE);
        }
    }
    return CShdPropertySheet::WindowProc(message, wParam, lParam);
}

std::optional<SOptions> RunOptionsDlg(HWND owner, const SOptions& in)
{
    COptionsDlg sheet(in);
    if (!sheet.Run(owner))
        return std::nullopt;
    return sheet.GetOptions();
}
