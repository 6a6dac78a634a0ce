#include "views/RegTree_win.h"

#include "base/Text.h"
#include "framework/HandheldShell_win.h"
#include "framework/WaitCursor_win.h"
#include "framework/WindowHelpers_win.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "registry/SortedNames.h"
#include "resources/resource.h"

namespace {

const LPARAM kFilled = 1;
const int kImageTop = 4;
const int kImageKey = 2;
const int kImageKeySelected = 3;
// Key names are at most 255 characters; labels are read with room for that.
const size_t kMinLabelBuffer = 256;

const HKEY kRoots[kRootCount] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS};

}  // namespace

CRegTree::CRegTree() = default;

CRegTree::~CRegTree()
{
    // The control must not outlive its image list.
    if (GetHwnd() != nullptr)
        DestroyWindow(GetHwnd());
    if (m_images != nullptr)
        ImageList_Destroy(m_images);
}

bool CRegTree::Create(DWORD style, const RECT& position, HWND parent, UINT id)
{
    if (GetHwnd() != nullptr)
        return false;
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const HWND tree = CreateWindowExW(0, WC_TREEVIEWW, L"",
                                      style | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                                      position.left, position.top, position.right - position.left,
                                      position.bottom - position.top, parent,
                                      reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance, nullptr);
    if (tree == nullptr)
        return false;
    if (!Subclass(tree)) {
        DestroyWindow(tree);
        return false;
    }
    if (m_images == nullptr)
        m_images = LoadImageStrip(instance, IDB_TREE_16, IDB_TREE_32);
    if (m_images != nullptr)
        SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(m_images));
    Rebuild();
    return true;
}

void CRegTree::Rebuild()
{
    CWaitCursor wait;
    CWndNoRedraw noRedraw;
    noRedraw.Begin(GetHwnd(), true, true, false);
    SendMessageW(GetHwnd(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    m_longestLabel = 0;
    m_topItem = InsertItem(TVI_ROOT, TVI_FIRST, L"Registry", 0);
    FillRoots();
    SendMessageW(GetHwnd(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(m_topItem));
}

HTREEITEM CRegTree::GetSelectedItem() const
{
    return reinterpret_cast<HTREEITEM>(SendMessageW(GetHwnd(), TVM_GETNEXTITEM, TVGN_CARET, 0));
}

HTREEITEM CRegTree::GetParentItem(HTREEITEM item) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(GetHwnd(), TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(item)));
}

void CRegTree::SelectItem(HTREEITEM item)
{
    SendMessageW(GetHwnd(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

HTREEITEM CRegTree::GetChildItem(HTREEITEM item) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(GetHwnd(), TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(item)));
}

HTREEITEM CRegTree::GetNextSibling(HTREEITEM item) const
{
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(GetHwnd(), TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(item)));
}

bool CRegTree::ReadLabel(HTREEITEM item, CString& label) const
{
    label.Empty();
    const size_t capacity = (m_longestLabel > kMinLabelBuffer ? m_longestLabel : kMinLabelBuffer) + 2;
    TVITEMW tvi = {};
    tvi.mask = TVIF_TEXT | TVIF_HANDLE;
    tvi.hItem = item;
    tvi.pszText = label.GetBuffer(capacity);
    tvi.cchTextMax = static_cast<int>(capacity);
    const bool read = SendMessageW(GetHwnd(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tvi)) != FALSE;
    label.ReleaseBuffer(read ? -1 : 0);
    return read;
}

bool CRegTree::IsFilled(HTREEITEM item) const
{
    TVITEMW tvi = {};
    tvi.mask = TVIF_PARAM | TVIF_HANDLE;
    tvi.hItem = item;
    return SendMessageW(GetHwnd(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tvi)) != FALSE &&
           (tvi.lParam & kFilled) != 0;
}

void CRegTree::SetFilled(HTREEITEM item, bool filled)
{
    TVITEMW tvi = {};
    tvi.mask = TVIF_PARAM | TVIF_HANDLE;
    tvi.hItem = item;
    if (SendMessageW(GetHwnd(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tvi)) == FALSE)
        return;
    tvi.lParam = filled ? (tvi.lParam | kFilled) : (tvi.lParam & ~kFilled);
    SendMessageW(GetHwnd(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&tvi));
}

bool CRegTree::IsExpanded(HTREEITEM item) const
{
    return (SendMessageW(GetHwnd(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), TVIS_EXPANDED) &
            TVIS_EXPANDED) != 0;
}

void CRegTree::SetCutState(HTREEITEM item, bool cut)
{
    TVITEMW tvi = {};
    tvi.mask = TVIF_STATE | TVIF_HANDLE;
    tvi.hItem = item;
    tvi.stateMask = TVIS_CUT;
    tvi.state = cut ? TVIS_CUT : 0;
    SendMessageW(GetHwnd(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&tvi));
}

void CRegTree::SetItemLabel(HTREEITEM item, LPCWSTR label)
{
    TVITEMW tvi = {};
    tvi.mask = TVIF_TEXT | TVIF_HANDLE;
    tvi.hItem = item;
    tvi.pszText = const_cast<LPWSTR>(label);
    SendMessageW(GetHwnd(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&tvi));
    const size_t length = StrLen(label);
    if (length > m_longestLabel)
        m_longestLabel = length;
}

void CRegTree::RemoveItem(HTREEITEM item)
{
    if (item == nullptr)
        return;
    HTREEITEM selected = GetSelectedItem();
    while (selected != nullptr && selected != item)
        selected = GetParentItem(selected);
    if (selected == item) {
        HTREEITEM next = GetNextSibling(item);
        if (next == nullptr)
            next = reinterpret_cast<HTREEITEM>(
                SendMessageW(GetHwnd(), TVM_GETNEXTITEM, TVGN_PREVIOUS, reinterpret_cast<LPARAM>(item)));
        if (next == nullptr)
            next = GetParentItem(item);
        // Selected before the deletion, so that the tree view does not pick
        // an item of its own on the way.
        SelectItem(next);
    }
    SendMessageW(GetHwnd(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
}

void CRegTree::EditSelectedLabel()
{
    SetFocus(GetHwnd());
    SendMessageW(GetHwnd(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(GetSelectedItem()));
}

HTREEITEM CRegTree::InsertItem(HTREEITEM parent, HTREEITEM after, LPCWSTR label, LPARAM data)
{
    const bool top = parent == TVI_ROOT;
    TVINSERTSTRUCTW insert = {};
    insert.hParent = parent;
    insert.hInsertAfter = after;
    insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
    insert.item.pszText = const_cast<LPWSTR>(label);
    insert.item.iImage = top ? kImageTop : kImageKey;
    insert.item.iSelectedImage = top ? kImageTop : kImageKeySelected;
    insert.item.lParam = data;
    const HTREEITEM item =
        reinterpret_cast<HTREEITEM>(SendMessageW(GetHwnd(), TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    if (item == nullptr)
        return nullptr;
    const size_t length = StrLen(label);
    if (length > m_longestLabel)
        m_longestLabel = length;
    HKEY root = nullptr;
    CString path;
    if (m_cutSet && GetItemKey(item, root, path) && root == m_cutRoot && CompareNoCase(path, m_cutPath) == 0)
        SetCutState(item, true);
    return item;
}

void CRegTree::DeleteChildren(HTREEITEM item)
{
    for (HTREEITEM child = GetChildItem(item); child != nullptr;) {
        const HTREEITEM next = GetNextSibling(child);
        SendMessageW(GetHwnd(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(child));
        child = next;
    }
}

CRegTree::ESubkeys CRegTree::ProbeSubkeys(HKEY root, LPCWSTR path)
{
    CShdRegKey key;
    if (!key.Open(root, path))
        return kUnknown;
    return key.SubkeyCount() > 0 ? kSomeSubkeys : kNoSubkeys;
}

void CRegTree::AddPlaceholder(HTREEITEM item)
{
    HKEY root = nullptr;
    CString path;
    if (IsFilled(item) || !GetItemKey(item, root, path))
        return;
    const ESubkeys subkeys = ProbeSubkeys(root, path);
    if (subkeys == kSomeSubkeys)
        InsertItem(item, TVI_LAST, L"(not filled yet)", 0);
    else if (subkeys == kNoSubkeys)
        SetFilled(item, true);
}

HTREEITEM CRegTree::InsertKeyItem(HTREEITEM parent, HTREEITEM after, LPCWSTR name, HKEY root, LPCWSTR path)
{
    // Probed before the insertion, so that a key without subkeys is inserted
    // filled at once: changing an item afterwards costs the tree view more
    // than the registry calls.
    const ESubkeys subkeys = ProbeSubkeys(root, path);
    const HTREEITEM item = InsertItem(parent, after, name, subkeys == kNoSubkeys ? kFilled : 0);
    if (item != nullptr && subkeys == kSomeSubkeys)
        InsertItem(item, TVI_LAST, L"(not filled yet)", 0);
    return item;
}

bool CRegTree::OpenItemKey(HTREEITEM item, HKEY& root, CString& path, CShdRegKey& key,
                           std::vector<CString>& names) const
{
    if (!GetItemKey(item, root, path) || !key.Open(root, path))
        return false;
    ReadSortedSubkeyNames(key, names);
    return true;
}

void CRegTree::FillChildren(HTREEITEM item)
{
    DeleteChildren(item);
    HKEY root = nullptr;
    CString path;
    std::vector<CString> names;
    {
        CShdRegKey key;
        if (!OpenItemKey(item, root, path, key, names))
            return;
    }
    for (const CString& name : names)
        InsertKeyItem(item, TVI_LAST, name, root, ChildKeyPath(path, name));
    SetFilled(item, true);
}

void CRegTree::FillRoots()
{
    DeleteChildren(m_topItem);
    for (HKEY root : kRoots)
        InsertKeyItem(m_topItem, TVI_LAST, RootLongName(root), root, TEXT(""));
    SetFilled(m_topItem, true);
}

bool CRegTree::GetItemKey(HTREEITEM item, HKEY& root, CString& path) const
{
    root = nullptr;
    path.Empty();
    if (item == nullptr || item == m_topItem)
        return false;
    CString keyPath;
    CString label;
    for (HTREEITEM current = item;;) {
        const HTREEITEM parent = GetParentItem(current);
        if (parent == nullptr || !ReadLabel(current, label))
            return false;
        if (parent == m_topItem) {
            root = ParseRootLongName(label);
            if (root == nullptr)
                return false;
            path = keyPath;
            return true;
        }
        keyPath = keyPath.IsEmpty() ? label : label + TEXT("\\") + keyPath;
        current = parent;
    }
}

bool CRegTree::GetSelectedKey(HKEY& root, CString& path) const
{
    return GetItemKey(GetSelectedItem(), root, path);
}

CString CRegTree::FullKeyName(HKEY root, LPCWSTR path)
{
    return ::FullKeyName(root, path);
}

HTREEITEM CRegTree::FindChild(HTREEITEM parent, LPCWSTR name) const
{
    CString label;
    for (HTREEITEM child = GetChildItem(parent); child != nullptr; child = GetNextSibling(child)) {
        if (ReadLabel(child, label) && CompareNoCase(label, name) == 0)
            return child;
    }
    return nullptr;
}

HTREEITEM CRegTree::FindItem(HKEY root, LPCWSTR path) const
{
    const LPCWSTR rootName = RootLongName(root);
    if (rootName == nullptr || m_topItem == nullptr)
        return nullptr;
    HTREEITEM item = FindChild(m_topItem, rootName);
    const CString remaining(path);
    for (size_t start = 0; item != nullptr && start < remaining.GetLength();) {
        const int slash = remaining.Find(TEXT('\\'), start);
        const size_t end = slash < 0 ? remaining.GetLength() : static_cast<size_t>(slash);
        item = FindChild(item, remaining.Mid(start, end - start));
        start = end + 1;
    }
    return item;
}

HTREEITEM CRegTree::FindOrInsertChild(HTREEITEM parent, HKEY root, LPCWSTR name, LPCWSTR path)
{
    HTREEITEM after = TVI_FIRST;
    CString label;
    for (HTREEITEM child = GetChildItem(parent); child != nullptr; child = GetNextSibling(child)) {
        if (!ReadLabel(child, label))
            continue;
        const int order = CompareNoCase(name, label);
        if (order == 0)
            return child;
        if (order > 0)
            after = child;
    }
    // A key created after its parent was loaded: shown in its sorted place.
    if (ProbeSubkeys(root, path) == kUnknown)
        return nullptr;
    return InsertKeyItem(parent, after, name, root, path);
}

bool CRegTree::NavigateTo(HKEY root, LPCWSTR path)
{
    const LPCWSTR rootName = RootLongName(root);
    if (rootName == nullptr || m_topItem == nullptr)
        return false;
    CWndNoRedraw noRedraw;
    noRedraw.Begin(GetHwnd(), true, true, false);

    CString name(rootName);
    CString remaining(path);
    CString pathSoFar;
    HTREEITEM current = m_topItem;
    for (;;) {
        // Loaded here rather than by the expanding notification, which reaches
        // the tree only when its parent forwards it.
        if (!IsFilled(current)) {
            if (current == m_topItem)
                FillRoots();
            else
                FillChildren(current);
        }
        SendMessageW(GetHwnd(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(current));
        const HTREEITEM found = FindOrInsertChild(current, root, name, pathSoFar);
        if (found == nullptr)
            return false;
        current = found;
        if (remaining.IsEmpty())
            break;
        const int slash = remaining.Find(TEXT('\\'));
        name = slash < 0 ? remaining : remaining.Left(static_cast<size_t>(slash));
        remaining = slash < 0 ? CString() : remaining.Mid(static_cast<size_t>(slash) + 1);
        pathSoFar = ChildKeyPath(pathSoFar, name);
    }
    SendMessageW(GetHwnd(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(current));
    noRedraw.End();
    SendMessageW(GetHwnd(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(current));
    return true;
}

void CRegTree::RefreshChildren(HTREEITEM item)
{
    if (item == nullptr)
        return;
    CWaitCursor wait;
    CWndNoRedraw noRedraw;
    noRedraw.Begin(GetHwnd(), true, true, false);
    if (item == m_topItem)
        FillRoots();
    else
        FillChildren(item);
}

void CRegTree::RefreshTree(HTREEITEM item)
{
    CWaitCursor wait;
    CWndNoRedraw noRedraw;
    noRedraw.Begin(GetHwnd(), true, true, false);
    if (item != nullptr && item != m_topItem) {
        RefreshItem(item);
        return;
    }
    for (HTREEITEM root = GetChildItem(m_topItem); root != nullptr; root = GetNextSibling(root))
        RefreshItem(root);
}

void CRegTree::RefreshItem(HTREEITEM item)
{
    if (!IsExpanded(item)) {
        // Loaded again when next expanded; a stale placeholder or stale
        // children must not stay behind the new placeholder.
        DeleteChildren(item);
        SetFilled(item, false);
        AddPlaceholder(item);
        return;
    }
    if (!IsFilled(item)) {
        FillChildren(item);
        return;
    }
    HKEY root = nullptr;
    CString path;
    CShdRegKey key;
    std::vector<CString> names;
    if (!OpenItemKey(item, root, path, key, names))
        return;

    // The labels already present, so that a name is never inserted twice even
    // when a renamed item no longer stands in sorted order.
    std::vector<CString> present;
    CString label;
    for (HTREEITEM child = GetChildItem(item); child != nullptr; child = GetNextSibling(child)) {
        if (ReadLabel(child, label))
            present.push_back(label);
    }
    SortNamesNoCase(present);

    HTREEITEM insertAfter = TVI_FIRST;
    size_t next = 0;
    const auto insertMissing = [&](size_t end) {
        for (; next < end; ++next) {
            if (SortedNamesContain(present, names[next]))
                continue;
            const HTREEITEM inserted =
                InsertKeyItem(item, insertAfter, names[next], root, ChildKeyPath(path, names[next]));
            if (inserted != nullptr)
                insertAfter = inserted;
        }
    };
    CShdRegKey childKey;
    for (HTREEITEM child = GetChildItem(item); child != nullptr;) {
        const HTREEITEM following = GetNextSibling(child);
        if (!ReadLabel(child, label) || !childKey.Open(key.GetHandle(), label)) {
            SendMessageW(GetHwnd(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(child));
            child = following;
            continue;
        }
        childKey.Close();
        size_t end = next;
        while (end < names.size() && CompareNoCase(names[end], label) < 0)
            ++end;
        insertMissing(end);
        while (next < names.size() && CompareNoCase(names[next], label) == 0)
            ++next;
        RefreshItem(child);
        insertAfter = child;
        child = following;
    }
    insertMissing(names.size());
}

void CRegTree::SetCut(HKEY root, LPCWSTR path)
{
    ClearCut();
    m_cutRoot = root;
    m_cutPath = path;
    m_cutSet = true;
    const HTREEITEM item = FindItem(root, path);
    if (item != nullptr)
        SetCutState(item, true);
}

void CRegTree::ClearCut()
{
    if (!m_cutSet)
        return;
    const HTREEITEM item = FindItem(m_cutRoot, m_cutPath);
    if (item != nullptr)
        SetCutState(item, false);
    m_cutSet = false;
    m_cutRoot = nullptr;
    m_cutPath.Empty();
}

bool CRegTree::OnBeginLabelEdit(HTREEITEM item)
{
    m_labelEdit = SLabelEdit();
    HKEY root = nullptr;
    CString path;
    // The top item and the roots have no name of their own to change.
    if (!GetItemKey(item, root, path) || path.IsEmpty())
        return false;
    const int slash = path.ReverseFind(TEXT('\\'));
    m_labelEdit.item = item;
    m_labelEdit.root = root;
    m_labelEdit.parentPath = slash < 0 ? CString() : path.Left(static_cast<size_t>(slash));
    m_labelEdit.oldName = slash < 0 ? path : path.Mid(static_cast<size_t>(slash) + 1);
    return true;
}

void CRegTree::ShowContextMenu(POINT screenPoint)
{
    TVHITTESTINFO hit = {};
    hit.pt = screenPoint;
    ScreenToClient(GetHwnd(), &hit.pt);
    const HTREEITEM item =
        reinterpret_cast<HTREEITEM>(SendMessageW(GetHwnd(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (item != nullptr)
        SelectItem(item);
    SetFocus(GetHwnd());
    HKEY root = nullptr;
    CString path;
    if (!GetSelectedKey(root, path))
        return;
    const HMENU menu = LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_KEY_CONTEXT));
    if (menu == nullptr)
        return;
    const HMENU popup = GetSubMenu(menu, 0);
    if (popup != nullptr)
        TrackPopupMenuEx(popup, TPM_LEFTALIGN | TPM_TOPALIGN, screenPoint.x, screenPoint.y, GetParent(GetHwnd()),
                         nullptr);
    DestroyMenu(menu);
}

bool CRegTree::OnNotify(const NMHDR* header, LRESULT& result)
{
    if (header == nullptr || header->hwndFrom != GetHwnd())
        return false;
    switch (header->code) {
    case GN_CONTEXTMENU:
        if (!m_inContextMenu) {
            m_inContextMenu = true;
            ShowContextMenu(reinterpret_cast<const NMRGINFO*>(header)->ptAction);
            m_inContextMenu = false;
        }
        result = 1;
        return true;
    case TVN_ITEMEXPANDINGW: {
        const HTREEITEM item = reinterpret_cast<const NMTREEVIEWW*>(header)->itemNew.hItem;
        if (!IsFilled(item))
            RefreshChildren(item);
        result = FALSE;
        return true;
    }
    case TVN_BEGINLABELEDITW:
        result = OnBeginLabelEdit(reinterpret_cast<const NMTVDISPINFOW*>(header)->item.hItem) ? FALSE : TRUE;
        return true;
    case TVN_ENDLABELEDITW: {
        const TVITEMW& item = reinterpret_cast<const NMTVDISPINFOW*>(header)->item;
        if (m_labelEdit.item != nullptr && item.hItem == m_labelEdit.item && item.pszText != nullptr) {
            m_labelEdit.newName = item.pszText;
            m_labelEdit.renameRequested = true;
        }
        // The label changes only when the rename has succeeded.
        result = FALSE;
        return true;
    }
    default:
        return false;
    }
}

LRESULT CRegTree::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    // The tree view beeps at Enter, which it has no use for.
    if (message == WM_CHAR && wParam == VK_RETURN)
        return 0;
    return CShdWnd::WindowProc(message, wParam, lParam);
}
