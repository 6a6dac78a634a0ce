#pragma once

#include <windows.h>

// The soft-key bar of a dialog by the program's one rule: the menu
// `menuId` everywhere but on a Smartphone before system version 5.00, which
// takes the equivalent menu-bar resource `menuBarId`. The Back key is
// redirected to the dialog and the title bar's OK button shown. Null when
// the bar cannot be made.
HWND CreateDialogSoftKeys(HWND dialog, HINSTANCE instance, UINT menuId, UINT menuBarId);
