#pragma once

#include <windows.h>

#include <commctrl.h>

#include "app/KeyNameWnd_win.h"
#include "app/SplitterWnd_win.h"
#include "base/CString.h"
#include "views/RegTree_win.h"
#include "views/ValueList_win.h"

// The main window's panes: the registry tree, the value list, the splitter
// between them and the key name bar under them. Everything that depends on
// how the panes are made lies here; the window lays them out and the
// controllers work on the selection through this class.
class CMainPanes {
public:
    static const UINT kTreeId = 101;
    static const UINT kListId = 102;
    static const UINT kSplitterId = 103;
    static const UINT kKeyNameId = 104;
    // Posted to the owner when an in-place rename ends, so that the rename
    // runs after the control has finished with its edit: wParam kRenameKey or
    // kRenameValue.
    static const UINT kRenameMessage = WM_APP + 101;
    enum ERename { kRenameKey, kRenameValue };

    CMainPanes() = default;
    CMainPanes(const CMainPanes&) = delete;
    CMainPanes& operator=(const CMainPanes&) = delete;

    // The four panes in the owner's client area, the splitter telling the
    // owner its moves with `splitterMessage`.
    bool Create(HWND owner, HINSTANCE instance, UINT splitterMessage);
    void Release();

    HWND GetOwner() const { return m_owner; }
    HWND GetTree() const { return m_tree; }
    HWND GetList() const { return m_list; }
    CRegTree& Tree() { return m_regTree; }
    CValueList& Values() { return m_values; }
    CSplitterWnd& Splitter() { return m_splitter; }
    CKeyNameWnd& KeyName() { return m_keyName; }

    // The selected key; false for the top item or no selection.
    bool GetSelectedKey(HKEY& root, CString& path) const;
    // The selected value's name; false when no value is selected.
    bool GetSelectedValue(CString& name) const;
    bool SelectValueByName(LPCWSTR name);
    bool NavigateTo(HKEY root, LPCWSTR path);
    // The same, for a key that the tree may still show though it was deleted
    // since it was loaded: false unless the registry opens it.
    bool NavigateToExisting(HKEY root, LPCWSTR path);
    void FillValueList(bool keepSelection, LPCWSTR nameToSelect);
    // The whole tree, or the selected key's branch, merged with the registry.
    void RefreshTree(bool selectedBranchOnly);
    // Hides the panes under the find-results window, or shows them again with
    // the selected key's name in the bar.
    void Show(bool show);
    // Whether the tree or the list (or its edit box) has the focus.
    bool TreeHasFocus() const;
    bool ListHasFocus() const;

    // Shows the selected key's name and values.
    void OnTreeSelectionChanged();

    // What a tree or list notification asks of the owner.
    enum ERequest { kNoRequest, kEditValue };
    LRESULT OnNotify(const NMHDR* header, ERequest& request);

private:
    HWND m_owner = nullptr;
    CRegTree m_regTree;
    CValueList m_values;
    HWND m_tree = nullptr;
    HWND m_list = nullptr;
    HIMAGELIST m_listImages = nullptr;
    CSplitterWnd m_splitter;
    CKeyNameWnd m_keyName;
};

// Gives the focus back, when a command ends, to whichever of the tree and the
// list had it when it began (`otherwise` when neither had it): a message box
// or a dialog takes the focus away with it.
class CPaneFocus {
public:
    enum EOtherwise { kTree, kList };
    explicit CPaneFocus(const CMainPanes& panes, EOtherwise otherwise = kTree);
    ~CPaneFocus();
    CPaneFocus(const CPaneFocus&) = delete;
    CPaneFocus& operator=(const CPaneFocus&) = delete;

private:
    HWND m_pane;
};
