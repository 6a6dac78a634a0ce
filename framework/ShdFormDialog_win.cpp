#include "framework/ShdFormDialog_win.h"

#include "framework/HandheldShell_win.h"

INT_PTR CShdFormDialog::DialogProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        if (!OnInitDialog())
            EndDialog(GetHwnd(), kResultInitFailed);
        return m_systemFocus ? TRUE : FALSE;
    case WM_SIZE:
        Layout(LOWORD(lParam), HIWORD(lParam));
        return FALSE;
    case WM_HOTKEY:
        if (HIWORD(lParam) != VK_TBACK)
            return FALSE;
        SHSendBackToFocusWindow(message, wParam, lParam);
        return TRUE;
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDOK:
            OnOk();
            return TRUE;
        case IDCANCEL:
            EndDialog(GetHwnd(), kResultCancel);
            return TRUE;
        default:
            return OnCommand(LOWORD(wParam), HIWORD(wParam));
        }
    default:
        return OnOtherMessage(message, wParam, lParam);
    }
}

INT_PTR CShdFormDialog::OnCommand(WORD, WORD)
{
    return FALSE;
}

INT_PTR CShdFormDialog::OnOtherMessage(UINT, WPARAM, LPARAM)
{
    return FALSE;
}
