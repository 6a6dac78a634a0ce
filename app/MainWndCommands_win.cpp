// The main window's commands, menu states, focus cycle and last position.
#include "app/MainWnd_win.h"

#include "app/AboutDlg_win.h"
#include "framework/WindowHelpers_win.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "settings/Settings.h"
#include "views/GoToDlg_win.h"

void CMainWnd::OnCommand(UINT command)
{
    switch (command) {
    case IDM_ABOUT:
        RunAboutDlg(GetHwnd(), m_instance);
        break;
    case IDM_EXIT:
    case IDM_EXIT_KEY:
        DestroyWindow(GetHwnd());
        break;
    case IDM_KEY_COPY_NAME:
        CopyKeyName();
        break;
    case IDM_KEY_NEW:
        m_edit.NewKey();
        break;
    case IDM_KEY_PROPERTIES:
        m_edit.ShowKeyProperties();
        break;
    case IDM_KEY_ADD_BOOKMARK:
        m_settings.AddToBookmarks();
        break;
    case IDM_BOOKMARKS:
        m_settings.ShowBookmarks();
        break;
    case IDM_GO_TO:
        GoToKey(GetHwnd(), m_panes.Tree(), Settings());
        break;
    case IDM_EXPORT:
        m_files.Export();
        break;
    case IDM_IMPORT:
        m_files.Import();
        break;
    case IDM_IMPORT_PREVIEW:
        m_files.PreviewImport();
        break;
    case IDM_VALUE_EDIT:
    case IDM_VALUE_EDIT_BINARY:
        m_edit.EditSelectedValue(command == IDM_VALUE_EDIT_BINARY);
        break;
    case IDM_NEW_STRING:
        m_edit.NewValue(REG_SZ, false);
        break;
    case IDM_NEW_EXPAND_STRING:
        m_edit.NewValue(REG_EXPAND_SZ, false);
        break;
    case IDM_NEW_DWORD:
        m_edit.NewValue(REG_DWORD, false);
        break;
    case IDM_NEW_BINARY:
        m_edit.NewValue(REG_BINARY, false);
        break;
    case IDM_NEW_MULTI_STRING:
        m_edit.NewValue(REG_MULTI_SZ, false);
        break;
    case IDM_NEW_CUSTOM:
        m_edit.NewValue(REG_NONE, true);
        break;
    case IDM_VALUE_REFRESH:
        m_panes.FillValueList(true, nullptr);
        break;
    case IDM_KEY_REFRESH:
        m_panes.RefreshTree(true);
        break;
    case IDM_REGISTRY_REFRESH:
    case IDM_REFRESH_KEY:
        m_panes.RefreshTree(false);
        break;
    case IDM_TAB:
    case IDM_TAB_KEY:
        MoveFocus(true);
        break;
    case IDM_BACK_TAB_KEY:
        MoveFocus(false);
        break;
    case IDM_VALUE_DELETE:
        m_edit.DeleteValue();
        break;
    case IDM_KEY_DELETE:
        m_edit.DeleteKey();
        break;
    case IDM_DELETE_KEY:
        m_edit.DeleteInFocusedPane();
        break;
    case IDM_VALUE_RENAME:
        m_panes.Values().EditSelectedLabel();
        break;
    case IDM_KEY_RENAME:
        m_panes.Tree().EditSelectedLabel();
        break;
    case IDM_VALUE_CUT:
        m_edit.PutOnClipboard(CRegClipboard::kCutValue);
        break;
    case IDM_VALUE_COPY:
        m_edit.PutOnClipboard(CRegClipboard::kCopiedValue);
        break;
    case IDM_KEY_CUT:
        m_edit.PutOnClipboard(CRegClipboard::kCutKey);
        break;
    case IDM_KEY_COPY:
        m_edit.PutOnClipboard(CRegClipboard::kCopiedKey);
        break;
    case IDM_VALUE_PASTE:
        m_edit.Paste(true);
        break;
    case IDM_KEY_PASTE:
    case IDM_KEY_PASTE_CONTEXT:
        m_edit.Paste(false);
        break;
    case IDM_SEARCH_START:
        m_search.StartSearch();
        break;
    case IDM_SEARCH_FIND_NEXT:
        m_search.FindNext();
        break;
    case IDM_SEARCH_PAUSE:
        m_search.PauseOrResume();
        break;
    case IDM_SEARCH_STOP:
        m_search.Stop();
        break;
    case IDM_SEARCH_SHOW_RESULTS:
    case IDM_SEARCH_SHOW_RESULTS_KEY:
        m_search.ToggleFindResults();
        break;
    case IDM_SEARCH_TOOLBAR:
        m_search.ToggleToolBar();
        break;
    case IDM_OPTIONS:
        m_settings.ShowOptions();
        break;
    default:
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
    context.clipboardKind = m_edit.GetClipboardKind();
    context.resultsVisible = m_search.IsResultsShown();
    context.searching = m_search.IsRunning();
    context.searchPaused = m_search.IsPaused();
    context.resultsExist = m_search.HasResults();
    context.searchUnfinished = m_search.IsFindNextUnfinished();
    context.toolbarVisible = m_search.IsToolBarShown();
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
    const HWND tree = m_panes.GetTree();
    const HWND splitter = m_panes.Splitter().GetHwnd();
    const HWND list = m_panes.GetList();
    HWND next = tree;
    if (focus == tree)
        next = forward ? splitter : list;
    else if (focus == splitter)
        next = forward ? list : tree;
    else if (focus == list)
        next = forward ? tree : splitter;
    SetFocus(next);
}

void CMainWnd::CopyKeyName()
{
    CPaneFocus focus(m_panes);
    HKEY root = nullptr;
    CString path;
    if (GetSelectedKey(root, path))
        PutClipboardText(GetHwnd(), FullKeyName(root, path));
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
    if (root == 0 || !m_panes.NavigateTo(RootKeyFromValue(root), keyName))
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
