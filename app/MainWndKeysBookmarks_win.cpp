// The main window's key dialogs and bookmarks.
#include "app/MainWnd_win.h"

#include "editors/EditKeyDlg_win.h"
#include "editors/KeyPropertiesDlg_win.h"

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
