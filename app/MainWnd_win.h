#pragma once

#include <windows.h>

#include <commctrl.h>

#include "app/KeyNameWnd_win.h"
#include "app/MenuStates.h"
#include "app/SplitterWnd_win.h"
#include "base/CString.h"
#include "framework/HandheldShell_win.h"
#include "framework/PaneLayout.h"
#include "framework/ShdWnd_win.h"
#include "registry/EditOperations.h"
#include "regfile/ImportPreviewDlg_win.h"
#include "registry/RegClipboard.h"
#include "search/FindResultsWnd_win.h"
#include "search/FloatingToolBar_win.h"
#include "search/RegFinder.h"
#include "views/RegTree_win.h"
#include "views/ValueList_win.h"

// The process's module, stored once at start-up.
HINSTANCE AppInstance();
void SetAppInstance(HINSTANCE instance);

// The program's one top-level window: the registry tree and the value list
// with a splitter between them, the key name bar under them and the soft-key
// bar. It routes every command, keeps the menus' states current, moves the
// focus between the panes, and restores and saves the last position. In
// command-line mode it runs the command line's verbs once it exists, then
// closes itself, saving nothing.
class CMainWnd : public CShdWnd,
                 public CFindResultsWnd::ICallback,
                 private CRegClipboard::IObserver,
                 private IImportPreviewHost {
public:
    static const UINT kStartupMessage = WM_APP + 100;
    static const UINT kSplitterMessage = WM_USER + 1;
    // Posted when an in-place rename ends, so that the rename runs after the
    // control has finished with its edit: wParam kRenameKey or kRenameValue.
    static const UINT kRenameMessage = WM_APP + 101;
    enum ERename { kRenameKey, kRenameValue };
    static const UINT kTreeId = 101;
    static const UINT kListId = 102;
    static const UINT kSplitterId = 103;
    static const UINT kKeyNameId = 104;
    static const UINT kFindResultsId = 105;
    static const UINT kToolBarId = 106;

    static const wchar_t kInteractiveClassName[];
    static const wchar_t kCommandLineClassName[];

    // Registers both window classes.
    CMainWnd();
    ~CMainWnd() override;

    // Before Create.
    void SetCommandLineMode(bool commandLine) { m_commandLine = commandLine; }
    bool IsCommandLineMode() const { return m_commandLine; }
    // The visible window, captioned "Quenda", of the mode's class.
    bool Create(HINSTANCE instance);

    // The selected key; false for the top item or no selection.
    bool GetSelectedKey(HKEY& root, CString& path) const;
    // The selected value's name; false when no value is selected.
    bool GetSelectedValue(CString& name) const;
    bool SelectValueByName(LPCWSTR name);
    void Layout(bool afterDrag);
    void ShowFindResults(bool show);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // The results window's callback, in MainWndSearch_win.cpp.
    void OnSearchStateChanged() override;
    void ShowSearchResult(HKEY root, LPCWSTR keyPath, LPCWSTR valueName, bool isValue) override;

private:
    int OnCreate();
    void OnStartup();
    void OnDestroy();
    bool CreateSoftKeyBar();
    void OnSplitterNotify(WPARAM code, LPARAM delta);

    // The tree and the value list: every call that depends on how they are
    // made lies here, in MainWndPanes_win.cpp.
    bool CreateTree(int x, int y, int width, int height);
    bool CreateValueList(int x, int y, int width, int height);
    LRESULT OnNotify(const NMHDR* header);
    void OnTreeSelectionChanged();
    void FillValueList(bool keepSelection, LPCWSTR nameToSelect);
    // The whole tree, or the selected key's branch, merged with the registry.
    void RefreshTree(bool selectedBranchOnly);
    bool NavigateTo(HKEY root, LPCWSTR path);
    void ReleasePanes();
    // The import preview's host, in MainWndKeysBookmarks_win.cpp.
    bool ShowRegistryItem(HKEY root, LPCWSTR path, LPCWSTR valueName) override;

    // Commands, menu states and focus, in MainWndCommands_win.cpp.
    void OnCommand(UINT command);
    void OnInitMenuPopup(HMENU menu);
    SMenuContext GetMenuContext() const;
    void MoveFocus(bool forward);
    void CopyKeyName();
    void ShowAbout();
    // The options sheet, in MainWndOptions_win.cpp.
    void ShowOptions();
    void RestorePosition();
    void SavePosition();

    // Delete, rename, cut, copy and paste of keys and values, in
    // MainWndEdit_win.cpp.
    void DeleteValue();
    void DeleteKey();
    void RenameValue();
    void RenameKey();
    void PutOnClipboard(CRegClipboard::EKind kind);
    void Paste(bool valuesOnly);
    void PasteValue();
    void PasteKey();
    void OnClipboardClearing(const CRegClipboard& clipboard) override;
    int ShowEditMessage(EEditMessage message);

    // The value editor's commands, in MainWndValues_win.cpp.
    void EditSelectedValue(bool asBinary);
    void NewValue(DWORD type, bool custom);

    // Key dialogs and bookmarks, in MainWndKeysBookmarks_win.cpp.
    void NewKey();
    void ShowKeyProperties();
    void AddToBookmarks();
    void ShowBookmarks();

    // Search commands, in MainWndSearch_win.cpp.
    bool CreateFindResults(const RECT& bounds);
    void StartSearch();
    void FindNext();
    void PauseOrResumeSearch();
    void ToggleFindResults();

    // The floating search toolbar, in MainWndToolBar_win.cpp.
    bool CreateToolBar();
    // Shows it only when the setting allows it; hides it otherwise.
    void ShowToolBar(bool show);
    void ToggleToolBar();
    bool IsToolBarShown() const;
    // Its buttons follow the find-all search's state.
    void UpdateToolBarButtons();

    CClass m_interactiveClass;
    CClass m_commandLineClass;
    bool m_commandLine = false;
    HINSTANCE m_instance = nullptr;
    HWND m_softKeyBar = nullptr;
    SHACTIVATEINFO m_activateInfo = {};
    CRegTree m_regTree;
    CValueList m_values;
    HWND m_tree = nullptr;
    HWND m_list = nullptr;
    HIMAGELIST m_listImages = nullptr;
    CSplitterWnd m_splitter;
    CKeyNameWnd m_keyName;
    CPaneSplit m_split;
    // The program's own clipboard of one key or value.
    CRegClipboard m_clipboard;
    CFindResultsWnd m_findResults;
    CFloatingToolBar m_toolBar;
    // The search that "Find Next" continues.
    CRegFinder m_finder;
};
