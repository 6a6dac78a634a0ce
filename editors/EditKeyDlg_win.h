#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// "Edit Key": creates a subkey, with an optional class, under a parent key.
// The dialog stays open, with what was typed, until a key is created or the
// user cancels.
class CEditKeyDlg : public CShdFormDialog {
public:
    CEditKeyDlg(HKEY root, LPCWSTR parentPath, LPCWSTR name, LPCWSTR className);

    const CString& GetName() const { return m_name; }
    const CString& GetClass() const { return m_class; }

private:
    bool OnInitDialog() override;
    void OnOk() override;
    void Layout(int width, int height) override;

    HKEY m_root;
    CString m_parentPath;
    CString m_name;
    CString m_class;
};

// Runs the dialog for a new subkey of (root, parentPath). `name` and
// `className` go in as the texts shown and come out as typed. True when the
// key was created.
bool CreateKeyDialog(HWND owner, HKEY root, LPCWSTR parentPath, CString& name, CString& className);
