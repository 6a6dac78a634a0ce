#pragma once

#include <windows.h>

#include <optional>

#include "framework/PropertySheet_win.h"
#include "settings/Settings.h"

// "General": remember the last position, show the search toolbar.
class COptionsGeneralPage : public CShdPropertySheetPage {
public:
    explicit COptionsGeneralPage(SOptions& options) : m_options(options) {}
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool OnApply() override;

private:
    SOptions& m_options;
};

// "Import": skip the file header check, and install or remove the
// association of .reg files with the program. The association changes at
// once, whatever the sheet's outcome.
class COptionsImportPage : public CShdPropertySheetPage {
public:
    explicit COptionsImportPage(SOptions& options) : m_options(options) {}
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool OnApply() override;

private:
    void Install();
    void Remove();
    // "Install" while .reg files are not ours, "Remove" while they are.
    void EnableButtons();

    SOptions& m_options;
};

// The "Options" sheet over a copy of the options, which the pages change
// when the sheet ends with OK.
class COptionsDlg : public CShdPropertySheet {
public:
    explicit COptionsDlg(const SOptions& options) : m_options(options), m_general(m_options), m_import(m_options) {}

    // Once per object. True when the sheet ended with OK.
    bool Run(HWND parent);
    const SOptions& GetOptions() const { return m_options; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    SOptions m_options;
    // "Done" and "Cancel", made when the sheet is first shown.
    HWND m_softKeys = nullptr;
    COptionsGeneralPage m_general;
    COptionsImportPage m_import;
};

// Shows the sheet with the options `in`; the options chosen on OK, nothing on
// Cancel. The association of .reg files changes at once either way.
std::optional<SOptions> RunOptionsDlg(HWND owner, const SOptions& in);
