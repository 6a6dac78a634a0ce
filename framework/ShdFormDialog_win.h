#pragma once

#include <windows.h>

#include "framework/ShdDialog_win.h"

// A dialog of fields and buttons that lays itself out on every size change
// and ends with OK or Cancel: the shape every editing dialog shares.
// WM_INITDIALOG calls OnInitDialog; when that fails the dialog ends at once
// with kResultInitFailed and says nothing (its caller reports). WM_SIZE calls
// Layout. IDOK calls OnOk, which ends the dialog or leaves it open with what
// was typed; IDCANCEL ends it with kResultCancel. The soft-key bar hands the
// Back key to the dialog, which passes it to the focused control so that it
// erases in an edit box instead of closing the dialog. Other commands go to
// OnCommand, other messages to OnOtherMessage.
class CShdFormDialog : public CShdDialog {
public:
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) final;

protected:
    // `systemFocus`: after OnInitDialog the system gives the focus to the
    // first control; otherwise OnInitDialog sets it.
    explicit CShdFormDialog(bool systemFocus = false) : m_systemFocus(systemFocus) {}

    virtual bool OnInitDialog() = 0;
    virtual void Layout(int width, int height) = 0;
    virtual void OnOk() = 0;
    // TRUE when the command was handled.
    virtual INT_PTR OnCommand(WORD id, WORD code);
    virtual INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam);

private:
    const bool m_systemFocus;
};
