#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"
#include "settings/Bookmarks.h"

// "Bookmarks": the stored locations in their order, to open, add, edit and
// delete. Every change is saved at once. Opening a location with a known
// root ends the dialog with OK and the key to go to.
class CBookmarksDlg : public CShdFormDialog {
public:
    HKEY GetRoot() const { return m_root; }
    const CString& GetPath() const { return m_path; }

private:
    bool OnInitDialog() override;
    // Closing opens nothing, whichever way it is done.
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;
    INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    INT_PTR OnNotify(const NMHDR& header);
    void Layout(int width, int height) override;
    // The selected row, else the focused one; -1 with neither.
    int GetCurrentRow() const;
    void SelectRow(int row);
    void InsertRow(int row, LPCWSTR location);
    void UpdateSoftKeys();
    void Open();
    void Add();
    void Edit();
    void Delete();
    HWND List() const;

    CBookmarkList m_bookmarks;
    HWND m_softKeys = nullptr;
    bool m_olderBar = false;
    HKEY m_root = nullptr;
    CString m_path;
};

// Runs the dialog; true when a bookmark was opened, with its root and path.
bool BookmarksDialog(HWND owner, HKEY& root, CString& path);
