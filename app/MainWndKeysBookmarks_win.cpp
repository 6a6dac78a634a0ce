// The main window's key dialogs and bookmarks.
#include "app/MainWnd_win.h"

#include "editors/EditKeyDlg_win.h"
#include "editors/KeyPropertiesDlg_win.h"
#include "framework/MessageBox_win.h"
#include "registry/RegKey.h"
#include "settings/Bookmarks.h"
#include "settings/BookmarksDlg_win.h"

void CMainWnd::NewKey()
{
    HKEY root = nullptr;
    CString path;
    const HTREEITEM parent = m_regTree.GetSelectedItem();
    if (!GetSelectedKey(root, path))
        return;
    CString name;
    CString className;
    if (!CreateKeyDialog(GetHwnd(), root, path, name, className))
        return;
    // The parent may have been loaded before the key existed: merge the
    // registry into it, then show the new child.
    m_regTree.RefreshTree(parent);
    TreeView_Expand(m_tree, parent, TVE_EXPAND);
    const HTREEITEM child = m_regTree.FindChild(parent, name);
    if (child != nullptr)
        TreeView_SelectItem(m_tree, child);
}

void CMainWnd::ShowKeyProperties()
{
    HKEY root = nullptr;
    CString path;
    if (GetSelectedKey(root, path))
        KeyPropertiesDialog(GetHwnd(), root, path);
}

void CMainWnd::AddToBookmarks()
{
    const HWND focus = GetFocus() == m_list ? m_list : m_tree;
    HKEY root = nullptr;
    CString path;
    if (GetSelectedKey(root, path)) {
        switch (AddBookmark(root, path)) {
        case EAddBookmarkResult::Added:
            ShowMessage(GetHwnd(), L"Bookmark was successfully added.", MB_OK | MB_ICONINFORMATION);
            break;
        case EAddBookmarkResult::AlreadyExists:
            ShowMessage(GetHwnd(), L"This bookmark already exists.", MB_OK | MB_ICONEXCLAMATION);
            break;
        default:
            ShowMessage(GetHwnd(), L"Unknown internal error.", MB_OK | MB_ICONEXCLAMATION);
            break;
        }
    }
    SetFocus(focus);
}

void CMainWnd::ShowBookmarks()
{
    HKEY root = nullptr;
    CString path;
    if (!BookmarksDialog(GetHwnd(), root, path))
        return;
    // The tree may still show a key deleted since it was loaded: ask the
    // registry first.
    CShdRegKey key;
    const bool exists = key.Open(root, path);
    key.Close(false);
    if (!exists || !NavigateTo(root, path))
        ShowMessage(GetHwnd(), L"Unable to show registry key.", MB_OK | MB_ICONEXCLAMATION);
    SetFocus(m_tree);
}

bool CMainWnd::ShowRegistryItem(HKEY root, LPCWSTR path, LPCWSTR valueName)
{
    if (!NavigateTo(root, path))
        return false;
    const bool onValue = valueName != nullptr && SelectValueByName(valueName);
    SetFocus(onValue ? m_list : m_tree);
    return true;
}
