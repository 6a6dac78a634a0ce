#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// "Export Options": the whole registry or the selected branch, the format,
// and the file the export goes to. Full-screen, with "Done" and "Cancel".
class CExportOptionsDlg : public CShdFormDialog {
public:
    CExportOptionsDlg(LPCWSTR file, bool selectedBranchOnly, bool unicode);

    bool SelectedBranchOnly() const { return m_selectedBranchOnly; }
    bool Unicode() const { return m_unicode; }

private:
    bool OnInitDialog() override;
    void OnOk() override;
    void Layout(int width, int height) override;

    CString m_file;
    bool m_selectedBranchOnly;
    bool m_unicode;
};

// Asks the options of an export to `file`; both flags go in as the preset and
// come out as chosen. True on OK.
bool ExportOptions(HWND owner, LPCWSTR file, bool& selectedBranchOnly, bool& unicode);
