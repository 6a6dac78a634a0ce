#pragma once

#include <windows.h>

#include <optional>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// What an export is asked to do: the file it goes to (shown only), the
// selected branch or the whole registry, and the format.
struct SExportOptions {
    CString file;
    bool selectedBranchOnly = true;
    bool unicode = true;
};

// "Export Options": the whole registry or the selected branch, the format,
// and the file the export goes to. Full-screen, with "Done" and "Cancel".
class CExportOptionsDlg : public CShdFormDialog {
public:
    explicit CExportOptionsDlg(const SExportOptions& options) : CShdFormDialog(true), m_options(options) {}

    const SExportOptions& GetOptions() const { return m_options; }

private:
    bool OnInitDialog() override;
    void OnOk() override;
    void Layout(int width, int height) override;

    SExportOptions m_options;
};

// Shows the options `in`; the options chosen on OK, nothing on Cancel.
std::optional<SExportOptions> RunExportOptionsDlg(HWND owner, const SExportOptions& in);
