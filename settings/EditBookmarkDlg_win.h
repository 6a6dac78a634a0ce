#pragma once

#include <windows.h>

#include <optional>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// "Edit Bookmark": one location, typed. OK takes only a valid location
// (IsValidBookmarkLocation); anything else is refused and stays typed.
class CEditBookmarkDlg : public CShdFormDialog {
public:
    explicit CEditBookmarkDlg(LPCWSTR location) : m_location(location) {}

    const CString& GetLocation() const { return m_location; }

private:
    bool OnInitDialog() override;
    void OnOk() override;
    void Layout(int width, int height) override;

    CString m_location;
};

// Shows the dialog with the location `in`; the location typed on OK, nothing
// on Cancel.
std::optional<CString> RunEditBookmarkDlg(HWND owner, const CString& in);
