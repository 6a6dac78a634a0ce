#pragma once

#include "app/MainPanes_win.h"
#include "regfile/ImportPreviewDlg_win.h"

// The main window's import and export of .reg files, and the preview of an
// import, whose rows it shows in the panes when tapped.
class CFilesController : private IImportPreviewHost {
public:
    explicit CFilesController(CMainPanes& panes) : m_panes(panes) {}
    CFilesController(const CFilesController&) = delete;
    CFilesController& operator=(const CFilesController&) = delete;

    // Exports the selected key, or the whole registry.
    void Export();
    // The import refreshes the panes itself when it has run.
    void Import();
    void PreviewImport();

private:
    bool ShowRegistryItem(HKEY root, LPCWSTR path, LPCWSTR valueName) override;

    CMainPanes& m_panes;
};
