#pragma once

#include <windows.h>

#include "framework/CString.h"
#include "framework/ShdDialog.h"
#include "settings/Bookmarks.h"

// "Bookmarks": the stored locations in their order, to open, add, edit and
// delete. Every change is saved at once. Opening a location with a known
// root ends the dialog with OK and the key to go to.
class CBookmarksDlg : public CShdDialog {
public:
    HKEY GetRoot() const { return m_root; }
    const CString& GetPath() const { return m_path; }

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool OnInitDialog();
    void OnCommand(UINT command);
    INT_PTR OnNotify(const NMHDR& header);
    void Layout(int width, int height);
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
