#include "app/SearchController_win.h"

#include "framework/MessageBox_win.h"
#include "framework/WindowHelpers_win.h"
#include "regfile/ProgressDlg_win.h"
#include "search/SearchDlg_win.h"
#include "settings/Settings.h"

namespace {

// A step that ends within a second never shows its wait box.
const UINT kFindNextBoxDelayMs = 1000;

}  // namespace

bool CSearchController::Create(HINSTANCE instance, const RECT& resultsBounds)
{
    return m_results.Create(m_panes.GetOwner(), kFindResultsId, resultsBounds, this, instance) &&
           m_toolBar.Create(m_panes.GetOwner(), instance);
}

void CSearchController::Layout(int width, int panesHeight)
{
    MoveWindow(m_results.GetHwnd(), 0, 0, width, panesHeight, TRUE);
    m_toolBar.Clamp();
}

void CSearchController::StartSearch()
{
    SStartPosition start;
    m_panes.GetSelectedKey(start.root, start.keyPath);
    start.valueSelected = m_panes.GetSelectedValue(start.valueName);
    const std::optional<SSearchRequest> request = RunSearchDlg(m_panes.GetOwner(), Settings().GetSearchParams());
    if (!request)
        return;
    Settings().SetSearchParams(request->params);
    Settings().Flush();
    if (request->findAll) {
        // Find-all always runs through the whole registry.
        m_finder.Reset();
        m_results.StartFindAll(request->params, SStartPosition());
        ShowFindResults(true);
        ShowToolBar(true);
        return;
    }
    ShowFindResults(false);
    m_finder.SetUp(request->params, start);
    FindNext();
}

void CSearchController::FindNext()
{
    // The next match is looked for after whatever the user selected since.
    HKEY root = nullptr;
    CString path;
    CString value;
    const bool keySelected = m_panes.GetSelectedKey(root, path);
    const bool valueSelected = m_panes.GetSelectedValue(value);
    m_finder.SetPosition(root, keySelected ? path.GetString() : nullptr, valueSelected ? value.GetString() : nullptr);
    if (!m_finder.Start())
        return;
    const HWND owner = m_panes.GetOwner();
    if (!RunProgress(owner, TEXT("Search in progress..."), kFindNextBoxDelayMs, m_finder.GetDoneEvent())) {
        m_finder.Cancel();
        return;
    }
    CRegFinder::SSearchPosition match;
    if (m_finder.Collect(match))
        ShowSearchResult(match.root, match.keyPath, match.valueName, match.kind == CRegFinder::kStateAtValue);
    else
        ShowMessage(owner, TEXT("Search finished."), MB_ICONINFORMATION);
}

void CSearchController::PauseOrResume()
{
    if (m_results.IsPaused())
        m_results.Resume();
    else
        m_results.Pause();
}

void CSearchController::Stop()
{
    m_results.Cancel();
}

void CSearchController::ToggleFindResults()
{
    ShowFindResults(!m_results.IsShown() && m_results.HasStarted());
}

void CSearchController::ToggleToolBar()
{
    ShowToolBar(!m_toolBar.IsShown() && (m_results.IsShown() || m_results.HasStarted()));
}

void CSearchController::ShowToolBar(bool show)
{
    m_toolBar.Show(show, Settings().GetShowSearchToolbar() && !IsSmartphone());
}

void CSearchController::ShowFindResults(bool show)
{
    // The results cover the panes; the panes are hidden meanwhile so that
    // neither they nor their keyboard focus show through.
    m_panes.Show(!show);
    m_results.Show(show);
    if (show) {
        m_panes.KeyName().SetText(m_results.GetStatusText());
        SetFocus(m_results.GetHwnd());
        return;
    }
    SetFocus(m_panes.GetTree());
}

void CSearchController::OnSearchStateChanged()
{
    m_toolBar.UpdateButtons(m_results.IsRunning(), m_results.IsPaused());
    if (m_results.IsShown())
        m_panes.KeyName().SetText(m_results.GetStatusText());
}

void CSearchController::ShowSearchResult(HKEY root, LPCWSTR keyPath, LPCWSTR valueName, bool isValue)
{
    if (!m_panes.NavigateToExisting(root, keyPath)) {
        ShowMessage(m_panes.GetOwner(), TEXT("Unable to show found registry key."), MB_ICONEXCLAMATION);
        return;
    }
    if (m_results.IsShown())
        ShowFindResults(false);
    if (!isValue) {
        SetFocus(m_panes.GetTree());
        return;
    }
    if (!m_panes.SelectValueByName(valueName)) {
        ShowMessage(m_panes.GetOwner(), TEXT("Unable to show found registry value."), MB_ICONEXCLAMATION);
        return;
    }
    SetFocus(m_panes.GetList());
}
