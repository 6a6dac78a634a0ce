#pragma once

#include <windows.h>

// The soft-key bar of a dialog by the program's one rule: the menu
// `menuId` everywhere but on a Smartphone before system version 5.00, which
// takes the equivalent menu-bar resource `menuBarId`. The Back key is
// redirected to the dialog (kBackToDialog; a dialog without fields to erase
// in keeps the shell's own Back key) and the title bar's OK button shown.
// Null when the bar cannot be made.
enum class EBackKey { kBackToDialog, kShellDefault };
HWND CreateDialogSoftKeys(HWND dialog, HINSTANCE instance, UINT menuId, UINT menuBarId,
                          EBackKey back = EBackKey::kBackToDialog);
