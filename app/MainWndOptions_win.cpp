// The main window's "Options..." command.
#include "app/MainWnd_win.h"

#include "settings/OptionsDlg_win.h"

void CMainWnd::ShowOptions()
{
    const HWND focus = GetFocus();
    COptionsDlg options;
    options.Run(GetHwnd());
    SetFocus(focus);
}
