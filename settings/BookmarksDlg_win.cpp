#include "settings/BookmarksDlg_win.h"

#include <algorithm>

#include <commctrl.h>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/MessageBox_win.h"
#include "framework/SystemInfo.h"
#include "framework/WindowHelpers_win.h"
#include "registry/KeyPath.h"
#include "resources/resource.h"
#include "settings/EditBookmarkDlg_win.h"

namespace {

const int kSideMarginDesign = 8;
const LPCWSTR kAlreadyExists = TEXT("This bookmark already exists.");

}  // namespace

void CBookmarksDlg::OnOk()
{
    EndDialog(GetHwnd(), kResultCancel);
}

INT_PTR CBookmarksDlg::OnOtherMessage(UINT message, WPARAM, LPARAM lParam)
{
    return message == WM_NOTIFY ? OnNotify(*reinterpret_cast<const NMHDR*>(lParam)) : FALSE;
}

bool CBookmarksDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    // The older Pocket PC bar has a key for every command.
    m_olderBar = !IsSmartphone() && GetOsVersion() < kMenuBarsFromMenusVersion;
    m_softKeys = CreateDialogSoftKeys(window, GetModuleHandleW(nullptr),
                                      m_olderBar ? IDR_BOOKMARKS_MENU_OLD : IDR_BOOKMARKS_MENU, IDR_BOOKMARKS_MENUBAR);
    if (m_softKeys == nullptr)
        return false;
    const HWND list = List();
    SetUpDialogList(list);
    RECT client = {};
    GetClientRect(window, &client);
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.pszText = const_cast<LPWSTR>(TEXT("Location"));
    column.cx = client.right - 2 * GetSystemMetrics(SM_CXVSCROLL);
    if (SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column)) < 0)
        return false;
    Layout(client.right, client.bottom);
    for (size_t i = 0; i < m_bookmarks.GetCount(); ++i)
        InsertRow(static_cast<int>(i), m_bookmarks.GetAt(i));
    SelectRow(m_bookmarks.GetCount() > 0 ? 0 : -1);
    SetFocus(list);
    return true;
}

INT_PTR CBookmarksDlg::OnCommand(WORD id, WORD)
{
    switch (id) {
    case IDM_BOOKMARK_OPEN:
        Open();
        break;
    case IDM_BOOKMARK_ADD:
        Add();
        break;
    case IDM_BOOKMARK_EDIT:
        Edit();
        break;
    case IDM_BOOKMARK_DELETE:
        Delete();
        break;
    case IDM_CLOSE:
        OnOk();
        break;
    default:
        return FALSE;
    }
    return TRUE;
}

INT_PTR CBookmarksDlg::OnNotify(const NMHDR& header)
{
    if (header.idFrom != IDC_BOOKMARK_LIST)
        return FALSE;
    switch (header.code) {
    case LVN_ITEMACTIVATE:
        Open();
        return TRUE;
    case LVN_ITEMCHANGED:
        UpdateSoftKeys();
        return TRUE;
    case GN_CONTEXTMENU: {
        const HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_BOOKMARKS_CONTEXT));
        if (menu == nullptr)
            return TRUE;
        const POINT point = reinterpret_cast<const NMRGINFO&>(header).ptAction;
        TrackPopupMenuEx(GetSubMenu(menu, 0), TPM_LEFTALIGN | TPM_TOPALIGN, point.x, point.y, GetHwnd(), nullptr);
        DestroyMenu(menu);
        SetWindowLongPtrW(GetHwnd(), DWLP_MSGRESULT, 1);
        return TRUE;
    }
    default:
        return FALSE;
    }
}

void CBookmarksDlg::Layout(int width, int height)
{
    // The list keeps its top from the template and takes the rest.
    const HWND list = List();
    RECT bounds = {};
    GetWindowRect(list, &bounds);
    MapWindowPoints(nullptr, GetHwnd(), reinterpret_cast<POINT*>(&bounds), 2);
    const int margin = ScaleX(kSideMarginDesign);
    MoveWindow(list, margin, bounds.top, std::max(0, width - 2 * margin),
               std::max(0, height - margin - static_cast<int>(bounds.top)), TRUE);
}

HWND CBookmarksDlg::List() const
{
    return GetDlgItem(GetHwnd(), IDC_BOOKMARK_LIST);
}

int CBookmarksDlg::GetCurrentRow() const
{
    const int selected = ListView_GetNextItem(List(), -1, LVNI_SELECTED);
    return selected >= 0 ? selected : ListView_GetNextItem(List(), -1, LVNI_FOCUSED);
}

void CBookmarksDlg::SelectRow(int row)
{
    if (row >= 0) {
        ListView_SetItemState(List(), row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        ListView_EnsureVisible(List(), row, FALSE);
    }
    UpdateSoftKeys();
}

void CBookmarksDlg::InsertRow(int row, LPCWSTR location)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<LPWSTR>(location);
    SendMessageW(List(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

void CBookmarksDlg::UpdateSoftKeys()
{
    const BOOL selected = ListView_GetSelectedCount(List()) > 0;
    SendMessageW(m_softKeys, TB_ENABLEBUTTON, IDM_BOOKMARK_OPEN, MAKELPARAM(selected, 0));
    if (m_olderBar) {
        SendMessageW(m_softKeys, TB_ENABLEBUTTON, IDM_BOOKMARK_EDIT, MAKELPARAM(selected, 0));
        SendMessageW(m_softKeys, TB_ENABLEBUTTON, IDM_BOOKMARK_DELETE, MAKELPARAM(selected, 0));
    }
}

void CBookmarksDlg::Open()
{
    const int row = GetCurrentRow();
    if (row < 0)
        return;
    // An unknown root leaves the dialog open: there is nowhere to go.
    if (ParseFullKeyPath(m_bookmarks.GetAt(static_cast<size_t>(row)), m_target.root, m_target.path))
        EndDialog(GetHwnd(), kResultOk);
}

void CBookmarksDlg::Add()
{
    const std::optional<CString> typed = RunEditBookmarkDlg(GetHwnd(), CString());
    if (!typed)
        return;
    const CString& location = *typed;
    if (m_bookmarks.Add(location) == CBookmarkList::EChange::AlreadyExists) {
        ShowMessage(GetHwnd(), kAlreadyExists, MB_OK | MB_ICONEXCLAMATION);
        return;
    }
    // A refused save is not reported: the rows follow the list, which holds
    // the new item unless it could not grow.
    const int row = ListView_GetItemCount(List());
    if (m_bookmarks.GetCount() > static_cast<size_t>(row)) {
        InsertRow(row, location);
        SelectRow(row);
    }
}

void CBookmarksDlg::Edit()
{
    const int row = GetCurrentRow();
    if (row < 0)
        return;
    const std::optional<CString> typed = RunEditBookmarkDlg(GetHwnd(), m_bookmarks.GetAt(static_cast<size_t>(row)));
    if (!typed)
        return;
    const CString& location = *typed;
    switch (m_bookmarks.Replace(static_cast<size_t>(row), location)) {
    case CBookmarkList::EChange::AlreadyExists:
        ShowMessage(GetHwnd(), kAlreadyExists, MB_OK | MB_ICONEXCLAMATION);
        break;
    case CBookmarkList::EChange::Unchanged:
        break;
    default:
        ListView_SetItemText(List(), row, 0, const_cast<LPWSTR>(location.GetString()));
        break;
    }
}

void CBookmarksDlg::Delete()
{
    const int row = GetCurrentRow();
    if (row < 0)
        return;
    ListView_DeleteItem(List(), row);
    const int next = m_bookmarks.Remove(static_cast<size_t>(row));
    SelectRow(next);
    SetFocus(List());
}

std::optional<SBookmarkTarget> RunBookmarksDlg(HWND owner, CBookmarkList& bookmarks)
{
    CBookmarksDlg dialog(bookmarks);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Bookmarks"));
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_BOOKMARKS, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    return dialog.GetTarget();
}
