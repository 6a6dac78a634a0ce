#include "settings/EditBookmarkDlg_win.h"

#include <algorithm>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "framework/ShdWnd_win.h"
#include "resources/resource.h"
#include "settings/Bookmarks.h"

namespace {

const int kSideMarginDesign = 8;

}  // namespace

bool CEditBookmarkDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR) == nullptr)
        return false;
    const HWND edit = GetDlgItem(window, IDC_BOOKMARK_LOCATION);
    SetWindowTextW(edit, m_location);
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    return true;
}

void CEditBookmarkDlg::OnOk()
{
    const HWND window = GetHwnd();
    CShdWnd::GetWindowText(GetDlgItem(window, IDC_BOOKMARK_LOCATION), m_location);
    if (IsValidBookmarkLocation(m_location))
        EndDialog(window, kResultOk);
    else
        ShowMessage(window, TEXT("Invalid location."), MB_OK | MB_ICONEXCLAMATION);
}

void CEditBookmarkDlg::Layout(int width, int)
{
    // The location keeps its place from the template and takes the width.
    const HWND edit = GetDlgItem(GetHwnd(), IDC_BOOKMARK_LOCATION);
    RECT bounds = {};
    GetWindowRect(edit, &bounds);
    MapWindowPoints(nullptr, GetHwnd(), reinterpret_cast<POINT*>(&bounds), 2);
    SetWindowPos(edit, nullptr, 0, 0, std::max(0, width - ScaleX(kSideMarginDesign) - static_cast<int>(bounds.left)),
                 bounds.bottom - bounds.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

std::optional<CString> RunEditBookmarkDlg(HWND owner, const CString& in)
{
    CEditBookmarkDlg dialog(in);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Edit Bookmark"));
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_EDIT_BOOKMARK, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    return dialog.GetLocation();
}
