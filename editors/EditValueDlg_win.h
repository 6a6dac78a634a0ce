#pragma once

#include <windows.h>

#include <optional>

#include "base/CString.h"
#include "editors/EditValueModel.h"
#include "editors/HexEditCtrl_win.h"
#include "framework/HandheldShell_win.h"
#include "framework/ShdFormDialog_win.h"

// The value a value editor opens: an existing one of the key, or a new one
// of `type` (of a type the user enters when `custom`) under a proposed name.
// Back from the editor, `name` is the one the value was written under.
struct SValueToEdit {
    HKEY root = nullptr;
    CString path;
    CString name;
    bool isNew = false;
    // For an existing value: the hex editor whatever its type.
    bool asBinary = false;
    // For a new value.
    DWORD type = 0;
    bool custom = false;
};

// "Edit Value" / "New Value": the one place where value data is typed in.
// Strings, DWORDs and multi-strings get an edit box of their own; binary
// data, unknown types, custom values and "Edit as Binary..." get the hex
// edit control. OK writes the value and closes only when that worked;
// anything typed stays in the dialog when it did not.
class CEditValueDlg : public CShdFormDialog {
public:
    explicit CEditValueDlg(CEditValueModel model);

    // True when OK wrote the value.
    bool Run(HWND owner);
    const CEditValueModel& GetModel() const { return m_model; }

private:
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

// Shows the editor for the value `in`; the value as written on OK, nothing
// on Cancel.
std::optional<SValueToEdit> RunEditValueDlg(HWND owner, const SValueToEdit& in);
