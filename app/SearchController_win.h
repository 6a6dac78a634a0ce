#pragma once

#include <windows.h>

#include "app/MainPanes_win.h"
#include "app/SearchToolBar_win.h"
#include "search/FindResultsWnd_win.h"
#include "search/RegFinder.h"

// The main window's search: the search dialog, "Find Next" with its wait
// box, the find-all results window that covers the panes when shown, and the
// floating toolbar that drives it. It owns all three, and answers the
// results window's calls.
class CSearchController : private CFindResultsWnd::ICallback {
public:
    static const UINT kFindResultsId = 105;

    explicit CSearchController(CMainPanes& panes) : m_panes(panes) {}
    CSearchController(const CSearchController&) = delete;
    CSearchController& operator=(const CSearchController&) = delete;

    // The hidden results window over the panes and the hidden toolbar.
    bool Create(HINSTANCE instance, const RECT& resultsBounds);
    // The results window over the panes' area, the toolbar kept within it.
    void Layout(int width, int panesHeight);

    void StartSearch();
    void FindNext();
    void PauseOrResume();
    void Stop();
    void ToggleFindResults();
    void ToggleToolBar();

    bool IsResultsShown() const { return m_results.IsShown(); }
    bool IsRunning() const { return m_results.IsRunning(); }
    bool IsPaused() const { return m_results.IsPaused(); }
    bool HasResults() const { return m_results.HasStarted(); }
    bool IsFindNextUnfinished() const { return !m_finder.IsFinished(); }
    bool IsToolBarShown() const { return m_toolBar.IsShown(); }

    // Shows a match in the tree and the value list.
    void ShowSearchResult(HKEY root, LPCWSTR keyPath, LPCWSTR valueName, bool isValue) override;

private:
    void OnSearchStateChanged() override;
    void ShowFindResults(bool show);
    void ShowToolBar(bool show);

    CMainPanes& m_panes;
    CFindResultsWnd m_results;
    CSearchToolBar m_toolBar;
    // The search that "Find Next" continues.
    CRegFinder m_finder;
};
