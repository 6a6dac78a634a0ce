// The main window's commands, menu states, focus cycle and last position.
#include "app/MainWnd_win.h"

#include "app/AboutDlg_win.h"
#include "framework/WindowHelpers_win.h"
#include "regfile/FileJobs_win.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "settings/Settings.h"

void CMainWnd::OnCommand(UINT command)
{
    HKEY root = nullptr;
    CString path;
    switch (command) {
    case IDM_ABOUT:
        ShowAbout();
        break;
    case IDM_EXIT:
    case IDM_EXIT_KEY:
        DestroyWindow(GetHwnd());
        break;
    case IDM_KEY_COPY_NAME:
        CopyKeyName();
        break;
    case IDM_KEY_NEW:
        NewKey();
        break;
    case IDM_KEY_PROPERTIES:
        ShowKeyProperties();
        break;
    case IDM_KEY_ADD_BOOKMARK:
        AddToBookmarks();
        break;
    case IDM_BOOKMARKS:
        ShowBookmarks();
        break;
    case IDM_EXPORT: {
        const HWND focus = GetFocus() == m_tree ? m_tree : m_list;
        GetSelectedKey(root, path);
        ExportCommand(GetHwnd(), root, path);
        SetFocus(focus);
        break;
    }
    case IDM_IMPORT: {
        // The import refreshes the views itself when it has run.
        const HWND focus = GetFocus() == m_tree ? m_tree : m_list;
        ImportCommand(GetHwnd());
        SetFocus(focus);
        break;
    }
    case IDM_VALUE_EDIT:
    case IDM_VALUE_EDIT_BINARY:
        EditSelectedValue(command == IDM_VALUE_EDIT_BINARY);
        break;
    case IDM_NEW_STRING:
        NewValue(REG_SZ, false);
        break;
    case IDM_NEW_EXPAND_STRING:
        NewValue(REG_EXPAND_SZ, false);
        break;
    case IDM_NEW_DWORD:
        NewValue(REG_DWORD, false);
        break;
    case IDM_NEW_BINARY:
        NewValue(REG_BINARY, false);
        break;
    case IDM_NEW_MULTI_STRING:
        NewValue(REG_MULTI_SZ, false);
        break;
    case IDM_NEW_CUSTOM:
        NewValue(REG_NONE, true);
        break;
    case IDM_VALUE_REFRESH:
        FillValueList(true, nullptr);
        break;
    case IDM_KEY_REFRESH:
        RefreshTree(true);
        break;
    case IDM_REGISTRY_REFRESH:
    case IDM_REFRESH_KEY:
        RefreshTree(false);
        break;
    case IDM_TAB:
    case IDM_TAB_KEY:
        MoveFocus(true);
        break;
    case IDM_BACK_TAB_KEY:
        MoveFocus(false);
        break;
    case IDM_VALUE_DELETE:
        DeleteValue();
        break;
    case IDM_KEY_DELETE:
        DeleteKey();
        break;
    case IDM_VALUE_RENAME:
        m_values.EditSelectedLabel();
        break;
    case IDM_KEY_RENAME:
        m_regTree.EditSelectedLabel();
        break;
    case IDM_VALUE_CUT:
        PutOnClipboard(CRegClipboard::kCutValue);
        break;
    case IDM_VALUE_COPY:
        PutOnClipboard(CRegClipboard::kCopiedValue);
        break;
    case IDM_KEY_CUT:
        PutOnClipboard(CRegClipboard::kCutKey);
        break;
    case IDM_KEY_COPY:
        PutOnClipboard(CRegClipboard::kCopiedKey);
        break;
    case IDM_VALUE_PASTE:
        Paste(true);
        break;
    case IDM_KEY_PASTE:
    case IDM_KEY_PASTE_CONTEXT:
        Paste(false);
        break;
    case IDM_DELETE_KEY:
        if (GetFocus() == m_tree)
            OnCommand(IDM_KEY_DELETE);
        else if (GetFocus() == m_list)
            OnCommand(IDM_VALUE_DELETE);
        break;
    case IDM_SEARCH_START:
        StartSearch();
        break;
    case IDM_SEARCH_FIND_NEXT:
        FindNext();
        break;
    case IDM_SEARCH_PAUSE:
        PauseOrResumeSearch();
        break;
    case IDM_SEARCH_STOP:
        m_findResults.Cancel();
        break;
    case IDM_OPTIONS:
        ShowOptions();
        break;
    case IDM_SEARCH_SHOW_RESULTS:
    case IDM_SEARCH_SHOW_RESULTS_KEY:
        ToggleFindResults();
        break;
    case IDM_SEARCH_TOOLBAR:
        ToggleToolBar();
        break;
    default:
        // The editors, key operations, search, bookmarks and options take
        // their commands here as they arrive.
        break;
    }
}

SMenuContext CMainWnd::GetMenuContext() const
{
    SMenuContext context;
    HKEY root = nullptr;
    CString path;
    context.keySelected = GetSelectedKey(root, path);
    context.rootKey = context.keySelected && path.IsEmpty();
    CString value;
    context.valueSelected = GetSelectedValue(value);
    context.clipboardKind = m_clipboard.GetKind();
    context.resultsVisible = m_findResults.IsShown();
    context.searching = m_findResults.IsRunning();
    context.searchPaused = m_findResults.IsPaused();
    context.resultsExist = m_findResults.HasStarted();
    context.searchUnfinished = !m_finder.IsFinished();
    context.toolbarVisible = IsToolBarShown();
    context.toolbarAllowed = Settings().GetShowSearchToolbar();
    return context;
}

void CMainWnd::OnInitMenuPopup(HMENU menu)
{
    if (IsSmartphone())
        DeleteMenu(menu, IDM_SEARCH_TOOLBAR, MF_BYCOMMAND);
    const SMenuContext context = GetMenuContext();
    // The handheld has no GetMenuItemCount or GetMenuItemID: the items are
    // read by position until there is none.
    MENUITEMINFOW item = {};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_ID | MIIM_SUBMENU;
    for (int index = 0; GetMenuItemInfoW(menu, index, TRUE, &item); ++index) {
        SMenuItemState state;
        if (item.hSubMenu != nullptr || !GetMenuItemState(item.wID, context, state))
            continue;
        EnableMenuItem(menu, index, MF_BYPOSITION | (state.enabled ? MF_ENABLED : MF_GRAYED));
        if (state.label != nullptr) {
            MENUITEMINFOW info = {};
            info.cbSize = sizeof(info);
            info.fMask = MIIM_TYPE;
            info.fType = MFT_STRING;
            info.dwTypeData = const_cast<LPWSTR>(state.label);
            SetMenuItemInfoW(menu, index, TRUE, &info);
        }
    }
}

void CMainWnd::MoveFocus(bool forward)
{
    const HWND focus = GetFocus();
    const HWND splitter = m_splitter.GetHwnd();
    HWND next = m_tree;
    if (focus == m_tree)
        next = forward ? splitter : m_list;
    else if (focus == splitter)
        next = forward ? m_list : m_tree;
    else if (focus == m_list)
        next = forward ? m_tree : splitter;
    SetFocus(next);
}

void CMainWnd::CopyKeyName()
{
    const HWND focus = GetFocus() == m_list ? m_list : m_tree;
    HKEY root = nullptr;
    CString path;
    if (GetSelectedKey(root, path))
        PutClipboardText(GetHwnd(), FullKeyName(root, path));
    SetFocus(focus);
}

void CMainWnd::ShowAbout()
{
    CAboutDlg about;
    about.DoModal(m_instance, IDD_ABOUT, GetHwnd(), 0);
}

void CMainWnd::RestorePosition()
{
    if (!Settings().GetSavePosition())
        return;
    DWORD root = 0;
    CString keyName;
    CString valueName;
    bool valueSelected = false;
    Settings().GetLastPosition(root, keyName, valueName, valueSelected);
    if (root == 0 || !NavigateTo(RootKeyFromValue(root), keyName))
        return;
    if (valueSelected)
        SelectValueByName(valueName);
}

void CMainWnd::SavePosition()
{
    HKEY root = nullptr;
    CString path;
    CString value;
    const bool keySelected = GetSelectedKey(root, path);
    const bool valueSelected = GetSelectedValue(value);
    if (!Settings().GetSavePosition()) {
        root = nullptr;
        path.Empty();
        value.Empty();
    }
    Settings().SetLastPosition(root != nullptr ? RootValueFromKey(root) : 0, path, value,
                               keySelected && valueSelected && root != nullptr);
    Settings().Flush();
}
