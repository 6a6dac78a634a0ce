// The main window's search: the search dialog, "Find Next" with its wait
// box, and the find-all results window it shows over the panes.
#include "app/MainWnd_win.h"

#include "framework/MessageBox_win.h"
#include "regfile/ProgressDlg_win.h"
#include "search/SearchDlg_win.h"

namespace {

// A step that ends within a second never shows its wait box.
const UINT kFindNextBoxDelayMs = 1000;

}  // namespace

bool CMainWnd::CreateFindResults(const RECT& bounds)
{
    return m_findResults.Create(GetHwnd(), kFindResultsId, bounds, this, m_instance);
}

void CMainWnd::StartSearch()
{
    SStartPosition start;
    GetSelectedKey(start.root, start.keyPath);
    start.valueSelected = GetSelectedValue(start.valueName);
    SSearchParams params;
    bool findAll = false;
    if (!RunSearchDialog(GetHwnd(), params, findAll))
        return;
    if (findAll) {
        // Find-all always runs through the whole registry.
        m_finder.Reset();
        m_findResults.StartFindAll(params, SStartPosition());
        ShowFindResults(true);
        ShowToolBar(true);
        return;
    }
    ShowFindResults(false);
    m_finder.SetUp(params, start);
    FindNext();
}

void CMainWnd::FindNext()
{
    // The next match is looked for after whatever the user selected since.
    HKEY root = nullptr;
    CString path;
    CString value;
    const bool keySelected = GetSelectedKey(root, path);
    const bool valueSelected = GetSelectedValue(value);
    m_finder.SetPosition(root, keySelected ? path.GetString() : nullptr, valueSelected ? value.GetString() : nullptr);
    if (!m_finder.Start())
        return;
    if (!RunProgress(GetHwnd(), TEXT("Search in progress..."), kFindNextBoxDelayMs, m_finder.GetDoneEvent())) {
        m_finder.Cancel();
        return;
    }
    CRegFinder::SSearchPosition match;
    if (m_finder.Collect(match))
        ShowSearchResult(match.root, match.keyPath, match.valueName, match.kind == CRegFinder::kStateAtValue);
    else
        ShowMessage(GetHwnd(), TEXT("Search finished."), MB_ICONINFORMATION);
}

void CMainWnd::PauseOrResumeSearch()
{
    if (m_findResults.IsPaused())
        m_findResults.Resume();
    else
        m_findResults.Pause();
}

void CMainWnd::ToggleFindResults()
{
    ShowFindResults(!m_findResults.IsShown() && m_findResults.HasStarted());
}

void CMainWnd::ShowFindResults(bool show)
{
    // The results cover the panes; the panes are hidden meanwhile so that
    // neither they nor their keyboard focus show through.
    for (const HWND pane : {m_tree, m_splitter.GetHwnd(), m_list})
        ShowWindow(pane, show ? SW_HIDE : SW_SHOW);
    m_findResults.Show(show);
    if (show) {
        m_keyName.SetText(m_findResults.GetStatusText());
        SetFocus(m_findResults.GetHwnd());
        return;
    }
    HKEY root = nullptr;
    CString path;
    GetSelectedKey(root, path);
    m_keyName.SetKey(root, path);
    SetFocus(m_tree);
}

void CMainWnd::OnSearchStateChanged()
{
    UpdateToolBarButtons();
    if (m_findResults.IsShown())
        m_keyName.SetText(m_findResults.GetStatusText());
}

void CMainWnd::ShowSearchResult(HKEY root, LPCWSTR keyPath, LPCWSTR valueName, bool isValue)
{
    if (!NavigateTo(root, keyPath)) {
        ShowMessage(GetHwnd(), TEXT("Unable to show found registry key."), MB_ICONEXCLAMATION);
        return;
    }
    if (m_findResults.IsShown())
        ShowFindResults(false);
    if (!isValue) {
        SetFocus(m_tree);
        return;
    }
    if (!SelectValueByName(valueName)) {
        ShowMessage(GetHwnd(), TEXT("Unable to show found registry value."), MB_ICONEXCLAMATION);
        return;
    }
    SetFocus(m_list);
}
