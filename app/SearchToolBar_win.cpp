#include "app/SearchToolBar_win.h"

#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"

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

// Where it first appears, and its size until its buttons are added.
const int kFirstPlace = 10;
const int kFirstSize = 50;

}  // namespace

bool CSearchToolBar::Create(HWND parent, HINSTANCE instance)
{
    if (!m_toolBar.Create(WS_CHILD | WS_CLIPSIBLINGS, kFirstPlace, kFirstPlace, kFirstSize, kFirstSize, parent,
                          kToolBarId, instance))
        return false;
    SetWindowPos(m_toolBar.GetHwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    // The windows it floats over would otherwise paint over it whenever they
    // repaint themselves.
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (child != m_toolBar.GetHwnd())
            SetWindowLongW(child, GWL_STYLE, GetWindowLongW(child, GWL_STYLE) | WS_CLIPSIBLINGS);
    }
    m_toolBar.SetImageList(LoadImageStrip(instance, IDB_TOOLBAR_16, IDB_TOOLBAR_32));
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
    return true;
}

void CSearchToolBar::Show(bool show, bool allowed)
{
    ShowWindow(m_toolBar.GetHwnd(), show && allowed ? SW_SHOWNA : SW_HIDE);
}

bool CSearchToolBar::IsShown() const
{
    return IsWindowVisible(m_toolBar.GetHwnd()) != FALSE;
}

void CSearchToolBar::UpdateButtons(bool running, bool paused)
{
    const SButtonImages& images = running && paused ? kResumeImages : kPauseImages;
    m_toolBar.SetButtonImages(kPauseButton, images.normal, images.pressed, images.disabled);
    m_toolBar.EnableButton(kPauseButton, running);
    // Stop stays enabled once a search has run: a tap on it after the end
    // finds nothing to stop and does nothing.
    if (running)
        m_toolBar.EnableButton(kStopButton, true);
}
