#pragma once

#include <windows.h>

#include "framework/CString.h"
#include "framework/ShdDialog.h"

// "Edit Bookmark": one location, typed. OK takes only a valid location
// (IsValidBookmarkLocation); anything else is refused and stays typed.
class CEditBookmarkDlg : public CShdDialog {
public:
    explicit CEditBookmarkDlg(LPCWSTR location) : m_location(location) {}

    const CString& GetLocation() const { return m_location; }

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool OnInitDialog();
    void OnOk();
    void Layout(int width);

    CString m_location;
};

// Runs the dialog with `location` shown; on OK (true) it holds the text typed.
bool EditBookmarkDialog(HWND owner, CString& location);
