#pragma once

#include <windows.h>

#include "framework/HandheldShell_win.h"
#include "framework/ShdDialog.h"
#include "search/SearchParams.h"

// "Search": the search text and what to search, full-screen, with "Start"
// (find the next match) and "Find All" on its soft-key bar.
class CSearchDlg : public CShdDialog {
public:
    explicit CSearchDlg(const SSearchParams& params);

    const SSearchParams& Params() const { return m_params; }
    bool FindAll() const { return m_findAll; }

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool OnInitDialog();
    // Reads the controls; on valid criteria ends the dialog with OK.
    void OnStart(bool findAll);
    void EnableTypeBoxes();
    void Layout(int width);

    SSearchParams m_params;
    bool m_findAll = false;
    SHACTIVATEINFO m_activateInfo = {};
};

// Shows the dialog with the saved criteria. On "Start" or "Find All" the
// criteria are saved and handed out with the choice; false on Cancel,
// leaving everything as it was.
bool RunSearchDialog(HWND parent, SSearchParams& params, bool& findAll);
