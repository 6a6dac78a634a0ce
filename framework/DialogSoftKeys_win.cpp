#include "framework/DialogSoftKeys_win.h"

#include "framework/HandheldShell_win.h"
#include "framework/SystemInfo.h"
#include "framework/WindowHelpers_win.h"

HWND CreateDialogSoftKeys(HWND dialog, HINSTANCE instance, UINT menuId, UINT menuBarId, EBackKey back)
{
    const bool useMenuBar = IsSmartphone() && GetOsVersion() < kMenuBarsFromMenusVersion;
    const HWND bar = CreateMenuBar(dialog, instance, useMenuBar ? menuBarId : menuId, useMenuBar);
    if (bar == nullptr)
        return nullptr;
    if (back == EBackKey::kBackToDialog) {
        const WORD flags = SHMBOF_NODEFAULT | SHMBOF_NOTIFY;
        SendMessageW(bar, SHCMBM_OVERRIDEKEY, VK_TBACK, MAKELPARAM(flags, flags));
    }
    SHDoneButton(dialog, SHDB_SHOW);
    return bar;
}
