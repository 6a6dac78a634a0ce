#pragma once

#include <vector>

#include <windows.h>
#include <commctrl.h>

#include "base/CString.h"
#include "framework/ShdWnd_win.h"
#include "registry/RegKey.h"

// The registry as a tree of keys below one top item, "Registry". Items are
// loaded one level at a time when they are first expanded; until then an item
// whose key has subkeys carries a placeholder child so that the tree view
// draws its expand button. The tree keeps no registry state: an item's key is
// worked out from the labels on the way up.
class CRegTree : public CShdWnd {
public:
    // What an in-place rename of a key is about; filled as the edit begins
    // (item, root, parent path, old name) and ends (new name).
    struct SLabelEdit {
        HTREEITEM item = nullptr;
        HKEY root = nullptr;
        CString parentPath;
        CString oldName;
        CString newName;
        // Set when the edit ended with a new text for the rename to carry out.
        bool renameRequested = false;
    };

    CRegTree();
    ~CRegTree() override;

    // The tree view with buttons, lines and an always-shown selection, its
    // images and the four roots below "Registry".
    bool Create(DWORD style, const RECT& position, HWND parent, UINT id);
    void Rebuild();

    HTREEITEM GetTopItem() const { return m_topItem; }
    HTREEITEM GetSelectedItem() const;
    HTREEITEM GetParentItem(HTREEITEM item) const;
    void SelectItem(HTREEITEM item);
    // False for the top item, an item without parent, and when a label
    // cannot be read.
    bool GetItemKey(HTREEITEM item, HKEY& root, CString& path) const;
    // The selected item's key; false when no key is selected.
    bool GetSelectedKey(HKEY& root, CString& path) const;
    static CString FullKeyName(HKEY root, LPCWSTR path);
    // The first child whose label equals the name without regard to case.
    HTREEITEM FindChild(HTREEITEM parent, LPCWSTR name) const;
    // The item of a key among the items already loaded, or null.
    HTREEITEM FindItem(HKEY root, LPCWSTR path) const;
    // Expands, loads and selects the key's item, inserting items for keys
    // created after their parent was loaded; false if the key does not exist.
    bool NavigateTo(HKEY root, LPCWSTR path);
    // Reloads an item's children from scratch.
    void RefreshChildren(HTREEITEM item);
    // Merges the registry's current state into the branch under the item (the
    // whole tree for none or the top item), keeping expanded items expanded.
    void RefreshTree(HTREEITEM item);
    void SetCut(HKEY root, LPCWSTR path);
    void ClearCut();
    // Gives an item a new label (after its key was renamed).
    void SetItemLabel(HTREEITEM item, LPCWSTR label);
    // Removes a deleted key's item. When the selection lies on it or below
    // it, the next sibling is selected first, else the previous one, else the
    // parent.
    void RemoveItem(HTREEITEM item);
    // Starts the in-place rename of the selected key.
    void EditSelectedLabel();
    // The longest label inserted since the last rebuild, in characters.
    size_t GetLongestLabel() const { return m_longestLabel; }

    // The tree view's notifications, forwarded by the parent; true when
    // handled, with the result to return.
    bool OnNotify(const NMHDR* header, LRESULT& result);
    const SLabelEdit& GetLabelEdit() const { return m_labelEdit; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool ReadLabel(HTREEITEM item, CString& label) const;
    HTREEITEM GetChildItem(HTREEITEM item) const;
    HTREEITEM GetNextSibling(HTREEITEM item) const;
    bool IsFilled(HTREEITEM item) const;
    void SetFilled(HTREEITEM item, bool filled);
    bool IsExpanded(HTREEITEM item) const;
    void SetCutState(HTREEITEM item, bool cut);
    HTREEITEM InsertItem(HTREEITEM parent, HTREEITEM after, LPCWSTR label, LPARAM data);
    void DeleteChildren(HTREEITEM item);
    enum ESubkeys { kUnknown, kNoSubkeys, kSomeSubkeys };
    // Whether a key has subkeys; kUnknown when it cannot be opened.
    static ESubkeys ProbeSubkeys(HKEY root, LPCWSTR path);
    // Gives an unfilled item the placeholder child if its key has subkeys,
    // or marks it filled if it has none.
    void AddPlaceholder(HTREEITEM item);
    // Inserts a key's item as AddPlaceholder would leave it.
    HTREEITEM InsertKeyItem(HTREEITEM parent, HTREEITEM after, LPCWSTR name, HKEY root, LPCWSTR path);
    // Opens the item's key and reads its subkey names, sorted.
    bool OpenItemKey(HTREEITEM item, HKEY& root, CString& path, CShdRegKey& key, std::vector<CString>& names) const;
    void FillChildren(HTREEITEM item);
    void FillRoots();
    void RefreshItem(HTREEITEM item);
    HTREEITEM FindOrInsertChild(HTREEITEM parent, HKEY root, LPCWSTR name, LPCWSTR path);
    bool OnBeginLabelEdit(HTREEITEM item);
    // Tap and hold: selects the item under the point and opens the key menu.
    void ShowContextMenu(POINT screenPoint);

    HIMAGELIST m_images = nullptr;
    HTREEITEM m_topItem = nullptr;
    size_t m_longestLabel = 0;
    SLabelEdit m_labelEdit;
    bool m_inContextMenu = false;
    bool m_cutSet = false;
    HKEY m_cutRoot = nullptr;
    CString m_cutPath;
};
