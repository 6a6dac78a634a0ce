#include "app/SettingsController_win.h"

#include "framework/MessageBox_win.h"
#include "settings/Bookmarks.h"
#include "settings/BookmarksDlg_win.h"
#include "settings/OptionsDlg_win.h"
#include "settings/Settings.h"

void CSettingsController::AddToBookmarks()
{
    CPaneFocus focus(m_panes);
    HKEY root = nullptr;
    CString path;
    if (!m_panes.GetSelectedKey(root, path))
        return;
    const HWND owner = m_panes.GetOwner();
    switch (AddBookmark(root, path)) {
    case EAddBookmarkResult::Added:
        ShowMessage(owner, L"Bookmark was successfully added.", MB_OK | MB_ICONINFORMATION);
        break;
    case EAddBookmarkResult::AlreadyExists:
        ShowMessage(owner, L"This bookmark already exists.", MB_OK | MB_ICONEXCLAMATION);
        break;
    default:
        ShowMessage(owner, L"Unknown internal error.", MB_OK | MB_ICONEXCLAMATION);
        break;
    }
}

void CSettingsController::ShowBookmarks()
{
    // The find-results window may cover the tree: the focus then goes back
    // to it.
    const HWND before = GetFocus();
    CBookmarkList bookmarks;
    bookmarks.Load();
    const std::optional<SBookmarkTarget> target = RunBookmarksDlg(m_panes.GetOwner(), bookmarks);
    if (!target)
        return;
    if (!m_panes.NavigateToExisting(target->root, target->path))
        ShowMessage(m_panes.GetOwner(), L"Unable to show registry key.", MB_OK | MB_ICONEXCLAMATION);
    SetFocus(IsWindowVisible(m_panes.GetTree()) ? m_panes.GetTree() : before);
}

void CSettingsController::ShowOptions()
{
    const HWND focus = GetFocus();
    if (const std::optional<SOptions> options = RunOptionsDlg(m_panes.GetOwner(), Settings().GetOptions())) {
        Settings().SetOptions(*options);
        Settings().SaveOptions();
        Settings().Flush();
    }
    SetFocus(focus);
}
