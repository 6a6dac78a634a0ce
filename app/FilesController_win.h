#pragma once

#include "app/MainPanes_win.h"

// The main window's import and export of .reg files.
class CFilesController {
public:
    explicit CFilesController(CMainPanes& panes) : m_panes(panes) {}
    CFilesController(const CFilesController&) = delete;
    CFilesController& operator=(const CFilesController&) = delete;

    // Exports the selected key, or the whole registry.
    void Export();
    // The import refreshes the panes itself when it has run.
    void Import();

private:
    CMainPanes& m_panes;
};
