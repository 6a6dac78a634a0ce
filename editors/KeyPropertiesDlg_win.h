#pragma once

#include <windows.h>

#include "framework/CString.h"
#include "framework/ShdDialog.h"

// "Key Properties": a key's full name and its class, read-only. Ends with
// 3 when the key cannot be opened.
class CKeyPropertiesDlg : public CShdDialog {
public:
    CKeyPropertiesDlg(HKEY root, LPCWSTR path);

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool OnInitDialog();
    void Layout(int width, int height);

    HKEY m_root;
    CString m_path;
    // Where the template puts the class field's bottom, in client
    // coordinates; -1 until the first layout reads it.
    int m_classTemplateBottom = -1;
};

// Runs the dialog for (root, path); true when it ended with OK.
bool KeyPropertiesDialog(HWND owner, HKEY root, LPCWSTR path);
