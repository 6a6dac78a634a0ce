#pragma once

#include "app/MainPanes_win.h"

// The main window's bookmarks and options: "Add to Bookmarks", the bookmarks
// dialog that opens one, and the options sheet, whose choices it stores.
class CSettingsController {
public:
    explicit CSettingsController(CMainPanes& panes) : m_panes(panes) {}
    CSettingsController(const CSettingsController&) = delete;
    CSettingsController& operator=(const CSettingsController&) = delete;

    void AddToBookmarks();
    void ShowBookmarks();
    void ShowOptions();

private:
    CMainPanes& m_panes;
};
