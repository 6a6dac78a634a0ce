#include "app/MainPanes_win.h"

#include "framework/DpiScale.h"
#include "framework/PaneLayout.h"
#include "framework/WindowHelpers_win.h"
#include "registry/RegKey.h"
#include "resources/resource.h"

namespace {

const DWORD kTreeStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_EDITLABELS;
const DWORD kListStyle =
    WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_EDITLABELS;
const DWORD kListExtendedStyle = LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE;
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

bool HasFocus(HWND pane)
{
    const HWND focus = GetFocus();
    return pane != nullptr && (focus == pane || IsChild(pane, focus));
}

}  // namespace

bool CMainPanes::Create(HWND owner, HINSTANCE instance, UINT splitterMessage)
{
    m_owner = owner;
    RECT client;
    GetClientRect(owner, &client);
    const int width = client.right;
    const int height = client.bottom;
    // The first layout moves them all; until then the halves of the window.
    if (!m_regTree.Create(kTreeStyle, RECT{0, 0, width, height / 2}, owner, kTreeId))
        return false;
    m_tree = m_regTree.GetHwnd();
    SendMessageW(m_tree, CCM_SETVERSION, kCommonControlsVersion, 0);

    m_list = CreateWindowExW(0, WC_LISTVIEWW, L"", kListStyle, 0, height / 2, width, height - height / 2, owner,
                             reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kListId)), instance, nullptr);
    if (m_list == nullptr)
        return false;
    SendMessageW(m_list, CCM_SETVERSION, kCommonControlsVersion, 0);
    SendMessageW(m_list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kListExtendedStyle);
    InsertColumn(m_list, 0, L"Name", width / 2 - 2 * GetSystemMetrics(SM_CXVSCROLL));
    InsertColumn(m_list, 1, L"Value", width / 2);
    m_listImages = LoadImageStrip(instance, IDB_VALUES_16, IDB_VALUES_32);
    if (m_listImages != nullptr)
        SendMessageW(m_list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(m_listImages));
    m_values.Attach(m_list, &m_regTree, owner);

    const SPaneMetrics metrics = SPaneMetrics::ForDpi(ScreenDpiY());
    if (!m_splitter.Create(true, WS_CHILD | WS_VISIBLE, 0, height / 2, width, metrics.splitterThickness, owner,
                           kSplitterId, instance))
        return false;
    m_splitter.SetNotify(owner, splitterMessage);
    if (!m_keyName.Create(0, height - metrics.keyNameHeight, width, metrics.keyNameHeight, owner, kKeyNameId,
                          instance))
        return false;
    m_keyName.SetKey(nullptr, L"");
    return true;
}

void CMainPanes::Release()
{
    // The list would destroy a shared image list only with LVS_SHAREIMAGELISTS;
    // it owns it, so the handle is only forgotten here.
    m_listImages = nullptr;
    m_tree = nullptr;
    m_list = nullptr;
}

bool CMainPanes::GetSelectedKey(HKEY& root, CString& path) const
{
    return m_regTree.GetSelectedKey(root, path);
}

bool CMainPanes::GetSelectedValue(CString& name) const
{
    return m_values.GetSelectedValue(name);
}

bool CMainPanes::SelectValueByName(LPCWSTR name)
{
    return m_values.SelectValueByName(name);
}

bool CMainPanes::NavigateTo(HKEY root, LPCWSTR path)
{
    return m_regTree.NavigateTo(root, path);
}

bool CMainPanes::NavigateToExisting(HKEY root, LPCWSTR path)
{
    CShdRegKey key;
    const bool exists = key.Open(root, path);
    key.Close(false);
    return exists && NavigateTo(root, path);
}

void CMainPanes::FillValueList(bool keepSelection, LPCWSTR nameToSelect)
{
    m_values.Fill(nullptr, keepSelection, nameToSelect);
}

void CMainPanes::RefreshTree(bool selectedBranchOnly)
{
    m_regTree.RefreshTree(selectedBranchOnly ? m_regTree.GetSelectedItem() : nullptr);
    FillValueList(true, nullptr);
}

void CMainPanes::Show(bool show)
{
    for (const HWND pane : {m_tree, m_splitter.GetHwnd(), m_list})
        ShowWindow(pane, show ? SW_SHOW : SW_HIDE);
    if (!show)
        return;
    HKEY root = nullptr;
    CString path;
    GetSelectedKey(root, path);
    m_keyName.SetKey(root, path);
}

bool CMainPanes::TreeHasFocus() const
{
    return GetFocus() == m_tree;
}

bool CMainPanes::ListHasFocus() const
{
    return HasFocus(m_list);
}

void CMainPanes::OnTreeSelectionChanged()
{
    HKEY root = nullptr;
    CString path;
    GetSelectedKey(root, path);
    m_keyName.SetKey(root, path);
    FillValueList(false, nullptr);
}

LRESULT CMainPanes::OnNotify(const NMHDR* header, ERequest& request)
{
    request = kNoRequest;
    if (header == nullptr)
        return 0;
    LRESULT result = 0;
    if (header->hwndFrom == m_tree) {
        if (header->code == TVN_SELCHANGEDW)
            OnTreeSelectionChanged();
        m_regTree.OnNotify(header, result);
        if (header->code == TVN_ENDLABELEDITW && m_regTree.GetLabelEdit().renameRequested)
            PostMessageW(m_owner, kRenameMessage, kRenameKey, 0);
        return result;
    }
    if (m_list != nullptr && static_cast<int>(header->code) == kListChildNotification &&
        GetParent(header->hwndFrom) == m_list)
        return 1;
    switch (m_values.OnNotify(header, result)) {
    case CValueList::kEditValue:
        request = kEditValue;
        break;
    case CValueList::kRenameValue:
        PostMessageW(m_owner, kRenameMessage, kRenameValue, 0);
        break;
    default:
        break;
    }
    return result;
}

CPaneFocus::CPaneFocus(const CMainPanes& panes, EOtherwise otherwise)
    : m_pane(panes.ListHasFocus()   ? panes.GetList()
             : panes.TreeHasFocus() ? panes.GetTree()
             : otherwise == kList   ? panes.GetList()
                                    : panes.GetTree())
{
}

CPaneFocus::~CPaneFocus()
{
    SetFocus(m_pane);
}
