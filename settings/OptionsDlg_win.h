#pragma once

#include <windows.h>

#include "framework/PropertySheet_win.h"

// "General": remember the last position, show the search toolbar.
class COptionsGeneralPage : public CShdPropertySheetPage {
public:
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool OnApply() override;
};

// "Import": skip the file header check, and install or remove the
// association of .reg files with the program. The association changes at
// once, whatever the sheet's outcome.
class COptionsImportPage : public CShdPropertySheetPage {
public:
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool OnApply() override;

private:
    void Install();
    void Remove();
    // "Install" while .reg files are not ours, "Remove" while they are.
    void EnableButtons();
};

// The "Options" sheet. The pages change the settings in memory when the sheet
// ends with OK; only then are they written to the registry.
class COptionsDlg : public CShdPropertySheet {
public:
    // Once per object. True when the sheet ended with OK.
    bool Run(HWND parent);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    // "Done" and "Cancel", made when the sheet is first shown.
    HWND m_softKeys = nullptr;
    COptionsGeneralPage m_general;
    COptionsImportPage m_import;
};
