#pragma once

#include <windows.h>

#include <optional>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"
#include "settings/Bookmarks.h"

// The key that an opened bookmark names.
struct SBookmarkTarget {
    HKEY root = nullptr;
    CString path;
};

// "Bookmarks": the stored locations in their order, to open, add, edit and
// delete. Every change is saved at once. Opening a location with a known
// root ends the dialog with OK and the key to go to.
class CBookmarksDlg : public CShdFormDialog {
public:
    explicit CBookmarksDlg(CBookmarkList& bookmarks) : m_bookmarks(bookmarks) {}
    const SBookmarkTarget& GetTarget() const { return m_target; }

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

    CBookmarkList& m_bookmarks;
    HWND m_softKeys = nullptr;
    bool m_olderBar = false;
    SBookmarkTarget m_target;
};

// Shows the dialog over the loaded `bookmarks`, whose every change it saves
// at once; the key of the bookmark opened, nothing when none was.
std::optional<SBookmarkTarget> RunBookmarksDlg(HWND owner, CBookmarkList& bookmarks);
