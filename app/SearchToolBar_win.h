#pragma once

#include <windows.h>

#include "search/FloatingToolBar_win.h"

// The floating search toolbar of the main window: one tap to pause or
// resume, stop, switch between results and registry, or hide it while a
// find-all runs.
class CSearchToolBar {
public:
    static const UINT kToolBarId = 106;

    // Hidden, at its first place, above the parent's other children.
    bool Create(HWND parent, HINSTANCE instance);
    HWND GetHwnd() const { return m_toolBar.GetHwnd(); }
    // Shows it only when `allowed` (the setting, and not on a Smartphone);
    // hides it otherwise.
    void Show(bool show, bool allowed);
    bool IsShown() const;
    // Its buttons follow the find-all search's state.
    void UpdateButtons(bool running, bool paused);
    // Keeps it within the parent after a change of size.
    void Clamp() { m_toolBar.Clamp(); }

private:
    CFloatingToolBar m_toolBar;
};
