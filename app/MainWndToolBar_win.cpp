// The main window's floating search toolbar: one tap to pause or resume,
// stop, switch views or hide it while a find-all runs.
#include "app/MainWnd_win.h"

#include "framework/DpiScale.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"
#include "settings/Settings.h"

namespace {

// The button that pauses and resumes, and its images in both states.
const int kPauseButton = 0;
const int kStopButton = 1;
struct SButtonImages {
    int normal;
    int pressed;
    int disabled;
};
const SButtonImages kPauseImages = {4, 4, 5};
const SButtonImages kResumeImages = {0, 0, 1};

// From the panes' lower right corner, clear of the key name bar.
const int kMarginDesign = 10;

}  // namespace

bool CMainWnd::CreateToolBar()
{
    if (!m_toolBar.Create(WS_CHILD | WS_CLIPSIBLINGS, 10, 10, 50, 50, GetHwnd(), kToolBarId, m_instance))
        return false;
    SetWindowPos(m_toolBar.GetHwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    // The windows it floats over would otherwise paint over it whenever they
    // repaint themselves.
    for (HWND child = GetWindow(GetHwnd(), GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (child != m_toolBar.GetHwnd())
            SetWindowLongW(child, GWL_STYLE, GetWindowLongW(child, GWL_STYLE) | WS_CLIPSIBLINGS);
    }
    m_toolBar.SetImageList(LoadImageStrip(m_instance, IDB_TOOLBAR_16, IDB_TOOLBAR_32));
    const struct {
        WORD command;
        SButtonImages images;
        LPCWSTR text;
    } buttons[] = {
        {IDM_SEARCH_PAUSE, kPauseImages, TEXT("Pause Search")},
        {IDM_SEARCH_STOP, {2, 2, 3}, TEXT("Stop Search")},
        {IDM_SEARCH_SHOW_RESULTS, {8, 8, 9}, TEXT("Show Search Results")},
        {IDM_SEARCH_TOOLBAR, {6, 6, 7}, TEXT("Hide Search Toolbar")},
    };
    for (const auto& button : buttons) {
        if (!m_toolBar.AddButton(button.command, button.images.normal, button.images.pressed, button.images.disabled,
                                 button.text))
            return false;
    }
    m_toolBar.EnableButton(kPauseButton, false);
    m_toolBar.EnableButton(kStopButton, false);
    const int keyNameHeight = SPaneMetrics::ForDpi(ScreenDpiY()).keyNameHeight;
    m_toolBar.MoveTo(-ScaleX(kMarginDesign), -(ScaleY(kMarginDesign) + keyNameHeight));
    return true;
}

void CMainWnd::ShowToolBar(bool show)
{
    const bool allowed = Settings().GetShowSearchToolbar() && !IsSmartphone();
    ShowWindow(m_toolBar.GetHwnd(), show && allowed ? SW_SHOWNA : SW_HIDE);
}

void CMainWnd::ToggleToolBar()
{
    ShowToolBar(!IsToolBarShown() && (m_findResults.IsShown() || m_findResults.HasStarted()));
}

bool CMainWnd::IsToolBarShown() const
{
    return IsWindowVisible(m_toolBar.GetHwnd()) != FALSE;
}

void CMainWnd::UpdateToolBarButtons()
{
    const bool running = m_findResults.IsRunning();
    const SButtonImages& images = running && m_findResults.IsPaused() ? kResumeImages : kPauseImages;
    m_toolBar.SetButtonImages(kPauseButton, images.normal, images.pressed, images.disabled);
    m_toolBar.EnableButton(kPauseButton, running);
    // Stop stays enabled once a search has run: a tap on it after the end
    // finds nothing to stop and does nothing.
    if (running)
        m_toolBar.EnableButton(kStopButton, true);
}
