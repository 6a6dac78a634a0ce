// The tree and the value list of the main window. Until the registry tree
// and the value list have their own classes, the tree shows "Registry" with
// the four roots and the list stays empty; everything that depends on how
// the panes are made is in this file.
#include "app/MainWnd_win.h"

#include "framework/DpiScale.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"

namespace {

const DWORD kTreeStyle = 0x50010008;
const DWORD kListStyle = 0x5001020D;
const DWORD kListExtendedStyle = 0x60;
const WPARAM kCommonControlsVersion = 0x20C;
const COLORREF kTransparent = RGB(0xFF, 0x00, 0xFF);
const HKEY kRoots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS};
// The list's edit box sends this to the list on the handheld; answered 1.
const int kListChildNotification = -50;

HTREEITEM InsertTreeItem(HWND tree, HTREEITEM parent, LPCWSTR text, LPARAM data)
{
    TVINSERTSTRUCTW insert = {};
    insert.hParent = parent;
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT | TVIF_PARAM;
    insert.item.pszText = const_cast<LPWSTR>(text);
    insert.item.lParam = data;
    return reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

void InsertColumn(HWND list, int index, LPCWSTR text, int width)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
    column.fmt = LVCFMT_LEFT;
    column.cx = width;
    column.pszText = const_cast<LPWSTR>(text);
    SendMessageW(list, LVM_INSERTCOLUMNW, index, reinterpret_cast<LPARAM>(&column));
}

}  // namespace

bool CMainWnd::CreateTree(int x, int y, int width, int height)
{
    m_tree = CreateWindowExW(0, WC_TREEVIEWW, L"", kTreeStyle, x, y, width, height, GetHwnd(),
                             reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kTreeId)), m_instance, nullptr);
    if (m_tree == nullptr)
        return false;
    SendMessageW(m_tree, CCM_SETVERSION, kCommonControlsVersion, 0);
    const HTREEITEM top = InsertTreeItem(m_tree, TVI_ROOT, L"Registry", 0);
    for (const HKEY root : kRoots)
        InsertTreeItem(m_tree, top, RootLongName(root), static_cast<LPARAM>(RootValueFromKey(root)));
    SendMessageW(m_tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(top));
    return true;
}

bool CMainWnd::CreateValueList(int x, int y, int width, int height)
{
    m_list = CreateWindowExW(0, WC_LISTVIEWW, L"", kListStyle, x, y, width, height, GetHwnd(),
                             reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kListId)), m_instance, nullptr);
    if (m_list == nullptr)
        return false;
    SendMessageW(m_list, CCM_SETVERSION, kCommonControlsVersion, 0);
    SendMessageW(m_list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kListExtendedStyle);
    InsertColumn(m_list, 0, L"Name", width / 2 - 2 * GetSystemMetrics(SM_CXVSCROLL));
    InsertColumn(m_list, 1, L"Value", width / 2);
    const bool highResolution = ScreenDpiY() >= 192;
    m_listImages = ImageList_LoadImageW(m_instance, MAKEINTRESOURCEW(highResolution ? IDB_VALUES_32 : IDB_VALUES_16),
                                        highResolution ? 32 : 16, 0, kTransparent, IMAGE_BITMAP, 0);
    if (m_listImages != nullptr)
        SendMessageW(m_list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(m_listImages));
    return true;
}

void CMainWnd::ReleasePanes()
{
    // The list would destroy a shared image list only with LVS_SHAREIMAGELISTS;
    // it owns it, so the handle is only forgotten here.
    m_listImages = nullptr;
    m_tree = nullptr;
    m_list = nullptr;
}

bool CMainWnd::GetSelectedKey(HKEY& root, CString& path) const
{
    root = nullptr;
    path.Empty();
    if (m_tree == nullptr)
        return false;
    const HTREEITEM item = reinterpret_cast<HTREEITEM>(SendMessageW(m_tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
    if (item == nullptr)
        return false;
    TVITEMW data = {};
    data.mask = TVIF_PARAM;
    data.hItem = item;
    if (!SendMessageW(m_tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data)) || data.lParam == 0)
        return false;
    root = RootKeyFromValue(static_cast<DWORD>(data.lParam));
    return true;
}

bool CMainWnd::GetSelectedValue(CString& name) const
{
    name.Empty();
    if (m_list == nullptr)
        return false;
    const int index = static_cast<int>(SendMessageW(m_list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    if (index < 0)
        return false;
    const int capacity = 1024;
    LVITEMW item = {};
    item.iSubItem = 0;
    item.cchTextMax = capacity;
    item.pszText = name.GetBuffer(capacity);
    SendMessageW(m_list, LVM_GETITEMTEXTW, index, reinterpret_cast<LPARAM>(&item));
    name.ReleaseBuffer();
    return true;
}

bool CMainWnd::SelectValueByName(LPCWSTR name)
{
    if (m_list == nullptr)
        return false;
    LVFINDINFOW find = {};
    find.flags = LVFI_STRING;
    find.psz = name;
    const int index =
        static_cast<int>(SendMessageW(m_list, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&find)));
    if (index < 0)
        return false;
    LVITEMW state = {};
    state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(m_list, LVM_SETITEMSTATE, index, reinterpret_cast<LPARAM>(&state));
    SendMessageW(m_list, LVM_ENSUREVISIBLE, index, FALSE);
    return true;
}

bool CMainWnd::NavigateTo(HKEY root, LPCWSTR path)
{
    if (m_tree == nullptr || root == nullptr || (path != nullptr && path[0] != 0))
        return false;
    const HTREEITEM top = reinterpret_cast<HTREEITEM>(SendMessageW(m_tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
    HTREEITEM item = reinterpret_cast<HTREEITEM>(
        SendMessageW(m_tree, TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(top)));
    for (; item != nullptr; item = reinterpret_cast<HTREEITEM>(SendMessageW(m_tree, TVM_GETNEXTITEM, TVGN_NEXT,
                                                                              reinterpret_cast<LPARAM>(item)))) {
        TVITEMW data = {};
        data.mask = TVIF_PARAM;
        data.hItem = item;
        SendMessageW(m_tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        if (RootKeyFromValue(static_cast<DWORD>(data.lParam)) == root)
            return SendMessageW(m_tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)) != 0;
    }
    return false;
}

void CMainWnd::FillValueList(HKEY, LPCWSTR)
{
    if (m_list != nullptr)
        SendMessageW(m_list, LVM_DELETEALLITEMS, 0, 0);
}

void CMainWnd::OnTreeSelectionChanged()
{
    HKEY root = nullptr;
    CString path;
    GetSelectedKey(root, path);
    m_keyName.SetKey(root, path);
    FillValueList(root, path);
}

LRESULT CMainWnd::OnNotify(const NMHDR* header)
{
    if (header == nullptr)
        return 0;
    if (header->hwndFrom == m_tree) {
        if (header->code == TVN_SELCHANGEDW)
            OnTreeSelectionChanged();
        return 0;
    }
    if (m_list != nullptr && static_cast<int>(header->code) == kListChildNotification &&
        GetParent(header->hwndFrom) == m_list)
        return 1;
    return 0;
}
