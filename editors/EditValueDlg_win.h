#pragma once

#include <windows.h>

#include "base/CString.h"
#include "editors/EditValueModel.h"
#include "editors/HexEditCtrl_win.h"
#include "framework/HandheldShell_win.h"
#include "framework/ShdFormDialog_win.h"

// "Edit Value" / "New Value": the one place where value data is typed in.
// Strings, DWORDs and multi-strings get an edit box of their own; binary
// data, unknown types, custom values and "Edit as Binary..." get the hex
// edit control. OK writes the value and closes only when that worked;
// anything typed stays in the dialog when it did not.
class CEditValueDlg : public CShdFormDialog {
public:
    // Edits the value `name` of the key; true when OK wrote it.
    static bool EditValue(HWND owner, HKEY root, LPCWSTR path, LPCWSTR name, bool asBinary);
    // Creates a value of `type`, or of a type the user enters when `custom`.
    // `name` goes in as the proposed name and comes out as the one entered.
    // True when OK wrote it.
    static bool NewValue(HWND owner, HKEY root, LPCWSTR path, DWORD type, bool custom, CString& name);

    explicit CEditValueDlg(CEditValueModel model);

private:
    // The end of DoModal for both kinds of use.
    bool Run(HWND owner);
    bool OnInitDialog() override;
    void ShowEditor();
    void OnOk() override;
    void OnBaseClicked();
    INT_PTR OnCommand(WORD id, WORD code) override;
    INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void Layout(int width, int height) override;
    // Gives the hex control the widest power-of-two row that its width
    // holds, and the width that this row needs.
    void FitHexEditor();
    void OnHexPasteFailed();
    HWND EditorWindow() const;
    HWND Control(int id) const { return GetDlgItem(GetHwnd(), id); }

    CEditValueModel m_model;
    CHexEditCtrl m_hexEdit;
    SHACTIVATEINFO m_activateInfo = {};
};
