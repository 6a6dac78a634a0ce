// The tree and the value list of the main window: everything that depends
// on how the panes are made is in this file.
#include "app/MainWnd_win.h"

#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"

namespace {

const DWORD kTreeStyle = 0x50010008;
const DWORD kListStyle = 0x5001020D;
const DWORD kListExtendedStyle = 0x60;
const WPARAM kCommonControlsVersion = 0x20C;
// The list's edit box sends this to the list on the handheld; answered 1.
const int kListChildNotification = -50;

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
    if (!m_regTree.Create(kTreeStyle, RECT{x, y, x + width, y + height}, GetHwnd(), kTreeId))
        return false;
    m_tree = m_regTree.GetHwnd();
    SendMessageW(m_tree, CCM_SETVERSION, kCommonControlsVersion, 0);
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
    m_listImages = LoadImageStrip(m_instance, IDB_VALUES_16, IDB_VALUES_32);
    if (m_listImages != nullptr)
        SendMessageW(m_list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(m_listImages));
    m_values.Attach(m_list, &m_regTree, GetHwnd());
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
    return m_regTree.GetSelectedKey(root, path);
}

bool CMainWnd::GetSelectedValue(CString& name) const
{
    return m_values.GetSelectedValue(name);
}

bool CMainWnd::SelectValueByName(LPCWSTR name)
{
    return m_values.SelectValueByName(name);
}

bool CMainWnd::NavigateTo(HKEY root, LPCWSTR path)
{
    return m_regTree.NavigateTo(root, path);
}

void CMainWnd::FillValueList(bool keepSelection, LPCWSTR nameToSelect)
{
    m_values.Fill(nullptr, keepSelection, nameToSelect);
}

void CMainWnd::RefreshTree(bool selectedBranchOnly)
{
    m_regTree.RefreshTree(selectedBranchOnly ? m_regTree.GetSelectedItem() : nullptr);
    FillValueList(true, nullptr);
}

void CMainWnd::OnTreeSelectionChanged()
{
    HKEY root = nullptr;
    CString path;
    GetSelectedKey(root, path);
    m_keyName.SetKey(root, path);
    FillValueList(false, nullptr);
}

LRESULT CMainWnd::OnNotify(const NMHDR* header)
{
    if (header == nullptr)
        return 0;
    LRESULT result = 0;
    if (header->hwndFrom == m_tree) {
        if (header->code == TVN_SELCHANGEDW)
            OnTreeSelectionChanged();
        m_regTree.OnNotify(header, result);
        if (header->code == TVN_ENDLABELEDITW && m_regTree.GetLabelEdit().renameRequested)
            PostMessageW(GetHwnd(), kRenameMessage, kRenameKey, 0);
        return result;
    }
    if (m_list != nullptr && static_cast<int>(header->code) == kListChildNotification &&
        GetParent(header->hwndFrom) == m_list)
        return 1;
    switch (m_values.OnNotify(header, result)) {
    case CValueList::kEditValue:
        EditSelectedValue(false);
        break;
    case CValueList::kRenameValue:
        PostMessageW(GetHwnd(), kRenameMessage, kRenameValue, 0);
        break;
    default:
        break;
    }
    return result;
}
