#pragma once

#include "framework/ShdDialog_win.h"

// The About box: the program's name and its version as the build stamped it
// into the version resource.
class CAboutDlg : public CShdDialog {
public:
    CAboutDlg();
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// Shows the About box of the module `instance` until it is closed.
void RunAboutDlg(HWND owner, HINSTANCE instance);
