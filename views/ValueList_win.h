#pragma once

#include <windows.h>
#include <commctrl.h>

#include "base/CString.h"
#include "views/ValueRows.h"

class CRegTree;

// The report-view list of the selected key's values: one row per value with
// its type's image, its name and a line of its data. The main window creates
// the control (columns, image list) and forwards the list's notifications;
// what they ask of the editors it carries out itself.
class CValueList {
public:
    // What a notification asks of the main window.
    enum EAction {
        kNotHandled,
        kHandled,
        // A row was activated: edit its value.
        kEditValue,
        // An in-place rename ended with a new name (GetRename).
        kRenameValue,
    };

    // The key and names of the in-place rename in progress or just ended.
    struct SRename {
        HKEY root = nullptr;
        CString path;
        CString oldName;
        CString newName;
    };

    CValueList() = default;
    virtual ~CValueList() = default;
    CValueList(const CValueList&) = delete;
    CValueList& operator=(const CValueList&) = delete;

    // The list control and the tree whose selected key it shows; `owner`
    // owns the context menus.
    void Attach(HWND list, CRegTree* tree, HWND owner);
    HWND GetHwnd() const { return m_list; }

    // The value shown with its cut image while the program's clipboard holds
    // a cut value (null: none); its row changes at once when it is shown.
    void SetCutValue(const SCutValue* cut);
    // Starts the in-place rename of the selected value.
    void EditSelectedLabel();

    // Fills the list with the values of the item's key (null: the tree's
    // selection). keepSelection selects the row selected before by its name;
    // otherwise nameToSelect (may be null) is selected when present.
    void Fill(HTREEITEM treeItem, bool keepSelection, LPCWSTR nameToSelect);
    // Selects the first row with this very name; false when there is none.
    bool SelectValueByName(LPCWSTR name);
    // The selected row's value name; false when no row is selected.
    bool GetSelectedValue(CString& name) const;
    bool ReadRowName(int row, CString& name) const;
    int GetRowCount() const;

    EAction OnNotify(const NMHDR* header, LRESULT& result);
    const SRename& GetRename() const { return m_rename; }

private:
    int GetSelectedRow() const;
    void SelectRow(int row);
    // Gives the cut value's row, if this list shows it, its cut or normal image.
    void ShowCutImage(bool cut);
    void ShowContextMenu(POINT screenPoint);
    bool OnBeginLabelEdit(int row);

    HWND m_list = nullptr;
    HWND m_owner = nullptr;
    CRegTree* m_tree = nullptr;
    bool m_hasCut = false;
    SCutValue m_cut;
    size_t m_longestName = 0;
    bool m_inContextMenu = false;
    bool m_renaming = false;
    SRename m_rename;
};
