#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// "Key Properties": a key's full name and its class, read-only. Ends with
// 3 when the key cannot be opened.
class CKeyPropertiesDlg : public CShdFormDialog {
public:
    CKeyPropertiesDlg(HKEY root, LPCWSTR path);

private:
    bool OnInitDialog() override;
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;
    void Layout(int width, int height) override;

    HKEY m_root;
    CString m_path;
    // Where the template puts the class field's bottom, in client
    // coordinates; -1 until the first layout reads it.
    int m_classTemplateBottom = -1;
};

// Runs the dialog for (root, path); true when it ended with OK.
bool KeyPropertiesDialog(HWND owner, HKEY root, LPCWSTR path);
