#include "views/ValueList_win.h"

#include <vector>

#include "base/Text.h"
#include "framework/HandheldShell_win.h"
#include "framework/WaitCursor_win.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"
#include "views/RegTree_win.h"
#include "views/ValueText.h"

void CValueList::Attach(HWND list, CRegTree* tree, HWND owner)
{
    m_list = list;
    m_tree = tree;
    m_owner = owner;
}

void CValueList::SetCutValue(const SCutValue* cut)
{
    ShowCutImage(false);
    m_hasCut = cut != nullptr;
    m_cut = cut != nullptr ? *cut : SCutValue();
    ShowCutImage(true);
}

void CValueList::ShowCutImage(bool cut)
{
    HKEY root = nullptr;
    CString path;
    if (!m_hasCut || m_tree == nullptr || !m_tree->GetSelectedKey(root, path) || root != m_cut.root ||
        CompareNoCase(path, m_cut.path) != 0)
        return;
    CString name;
    const int count = GetRowCount();
    for (int row = 0; row < count; ++row) {
        if (!ReadRowName(row, name) || CompareNoCase(name, m_cut.valueName) != 0)
            continue;
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = row;
        if (!SendMessageW(m_list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)))
            return;
        const bool isCut = item.iImage < kCutImageOffset;
        if (isCut != cut) {
            item.iImage += cut ? -kCutImageOffset : kCutImageOffset;
            SendMessageW(m_list, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
        return;
    }
}

void CValueList::EditSelectedLabel()
{
    const int row = GetSelectedRow();
    if (row < 0)
        return;
    SetFocus(m_list);
    SendMessageW(m_list, LVM_EDITLABELW, static_cast<WPARAM>(row), 0);
}

int CValueList::GetRowCount() const
{
    return static_cast<int>(SendMessageW(m_list, LVM_GETITEMCOUNT, 0, 0));
}

int CValueList::GetSelectedRow() const
{
    return static_cast<int>(SendMessageW(m_list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

bool CValueList::ReadRowName(int row, CString& name) const
{
    name.Empty();
    if (row < 0)
        return false;
    // Every name shown fits this buffer with room to spare; a text that
    // fills it is not a whole name, and a read that fails is no name at all
    // (not the default value's empty one).
    const size_t capacity = m_longestName + 2;
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = name.GetBuffer(capacity);
    item.cchTextMax = static_cast<int>(capacity);
    const bool read = SendMessageW(m_list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != FALSE;
    name.ReleaseBuffer(read ? -1 : 0);
    if (read && static_cast<size_t>(name.GetLength()) <= m_longestName)
        return true;
    name.Empty();
    return false;
}

bool CValueList::GetSelectedValue(CString& name) const
{
    return ReadRowName(GetSelectedRow(), name);
}

void CValueList::SelectRow(int row)
{
    LVITEMW item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(m_list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    SendMessageW(m_list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void CValueList::Fill(HTREEITEM treeItem, bool keepSelection, LPCWSTR nameToSelect)
{
    CWaitCursor wait;
    CWndNoRedraw noRedraw;
    noRedraw.Begin(m_list, true, false, false);

    CString keptName;
    const bool kept = keepSelection && GetSelectedValue(keptName);
    SendMessageW(m_list, LVM_DELETEALLITEMS, 0, 0);
    m_longestName = 0;

    if (treeItem == nullptr && m_tree != nullptr)
        treeItem = m_tree->GetSelectedItem();
    HKEY root = nullptr;
    CString path;
    if (treeItem == nullptr || m_tree == nullptr || !m_tree->GetItemKey(treeItem, root, path))
        return;
    std::vector<SValueRow> rows;
    if (!LoadValueRows(root, path, m_hasCut ? &m_cut : nullptr, rows))
        return;

    const LPCWSTR select = kept ? keptName.GetString() : nameToSelect;
    int selectRow = -1;
    int index = 0;
    for (const SValueRow& row : rows) {
        if (row.name.GetLength() > m_longestName)
            m_longestName = row.name.GetLength();
        LVITEMW item = {};
        item.mask = LVIF_TEXT | LVIF_IMAGE;
        item.iItem = index;
        item.pszText = const_cast<LPWSTR>(row.name.GetString());
        item.iImage = row.image;
        const int inserted =
            static_cast<int>(SendMessageW(m_list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
        if (inserted < 0)
            continue;
        LVITEMW data = {};
        data.mask = LVIF_TEXT;
        data.iItem = inserted;
        data.iSubItem = 1;
        data.pszText = const_cast<LPWSTR>(row.dataText.GetString());
        SendMessageW(m_list, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        // Names are unique without regard to case, as the registry compares
        // them; the default value's empty name is found as well.
        if (selectRow < 0 && select != nullptr && CompareNoCase(row.name, select) == 0)
            selectRow = inserted;
        ++index;
    }
    if (selectRow >= 0)
        SelectRow(selectRow);
}

bool CValueList::SelectValueByName(LPCWSTR name)
{
    CString rowName;
    const int count = GetRowCount();
    for (int row = 0; row < count; ++row) {
        if (ReadRowName(row, rowName) && rowName == name) {
            SelectRow(row);
            return true;
        }
    }
    return false;
}

void CValueList::ShowContextMenu(POINT screenPoint)
{
    HKEY root = nullptr;
    CString path;
    if (m_tree == nullptr || !m_tree->GetSelectedKey(root, path))
        return;
    const UINT menuId = GetSelectedRow() >= 0 ? IDR_VALUE_CONTEXT : IDR_VALUES_CONTEXT;
    const HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(menuId));
    if (menu == nullptr)
        return;
    const HMENU popup = GetSubMenu(menu, 0);
    if (popup != nullptr)
        TrackPopupMenuEx(popup, TPM_LEFTALIGN | TPM_TOPALIGN, screenPoint.x, screenPoint.y, m_owner, nullptr);
    DestroyMenu(menu);
}

bool CValueList::OnBeginLabelEdit(int row)
{
    m_renaming = false;
    m_rename = SRename();
    if (m_tree == nullptr || !m_tree->GetSelectedKey(m_rename.root, m_rename.path) ||
        !ReadRowName(row, m_rename.oldName))
        return false;
    // Names are typed: bring up the input panel for the edit.
    SHSipPreference(m_list, SIP_UP);
    m_renaming = true;
    return true;
}

CValueList::EAction CValueList::OnNotify(const NMHDR* header, LRESULT& result)
{
    if (header == nullptr || header->hwndFrom != m_list)
        return kNotHandled;
    result = 0;
    switch (header->code) {
    case GN_CONTEXTMENU: {
        if (m_inContextMenu)
            return kHandled;
        m_inContextMenu = true;
        SetFocus(m_list);
        ShowContextMenu(reinterpret_cast<const NMRGINFO*>(header)->ptAction);
        m_inContextMenu = false;
        result = 1;
        return kHandled;
    }
    case LVN_KEYDOWN:
        if (reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey == VK_RETURN && GetSelectedRow() < 0) {
            // The empty-area menu, as a tap and hold in the middle would open it.
            RECT client = {};
            GetClientRect(m_list, &client);
            SHRGINFO gesture = {};
            gesture.cbSize = sizeof(gesture);
            gesture.hwndClient = m_list;
            gesture.ptDown.x = (client.left + client.right) / 2;
            gesture.ptDown.y = (client.top + client.bottom) / 2;
            gesture.dwFlags = SHRG_NOTIFYPARENT;
            SHRecognizeGesture(&gesture);
        }
        return kHandled;
    case LVN_ITEMACTIVATE:
        return kEditValue;
    case NM_SETFOCUS: {
        int row = GetSelectedRow();
        if (row < 0 && GetRowCount() > 0) {
            row = 0;
            SelectRow(row);
        }
        if (row >= 0)
            SendMessageW(m_list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        return kHandled;
    }
    case LVN_BEGINLABELEDITW:
        result = OnBeginLabelEdit(reinterpret_cast<const NMLVDISPINFOW*>(header)->item.iItem) ? FALSE : TRUE;
        return kHandled;
    case LVN_ENDLABELEDITW: {
        SHSipPreference(m_list, SIP_DOWN);
        if (!m_renaming)
            return kHandled;
        m_renaming = false;
        const LVITEMW& item = reinterpret_cast<const NMLVDISPINFOW*>(header)->item;
        if (item.pszText == nullptr)
            return kHandled;
        m_rename.newName = item.pszText;
        // The row's text changes with the refill after the rename.
        result = FALSE;
        return kRenameValue;
    }
    default:
        return kNotHandled;
    }
}
