#pragma once

#include <windows.h>

#include <optional>

#include "framework/HandheldShell_win.h"
#include "framework/ShdFormDialog_win.h"
#include "search/SearchParams.h"

// "Search": the search text and what to search, full-screen, with "Start"
// (find the next match) and "Find All" on its soft-key bar.
class CSearchDlg : public CShdFormDialog {
public:
    explicit CSearchDlg(const SSearchParams& params);

    const SSearchParams& Params() const { return m_params; }
    bool FindAll() const { return m_findAll; }

private:
    bool OnInitDialog() override;
    // Reads the controls; on valid criteria ends the dialog with OK.
    void OnStart(bool findAll);
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;
    INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void EnableTypeBoxes();
    void Layout(int width, int height) override;

    SSearchParams m_params;
    bool m_findAll = false;
    SHACTIVATEINFO m_activateInfo = {};
};

// What the user chose: the criteria, and "Find All" rather than "Start".
struct SSearchRequest {
    SSearchParams params;
    bool findAll = false;
};

// Shows the dialog with the criteria `in`; the criteria typed, with the
// choice, on "Start" or "Find All", nothing on Cancel.
std::optional<SSearchRequest> RunSearchDlg(HWND owner, const SSearchParams& in);
