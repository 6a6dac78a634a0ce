#pragma once

#include <windows.h>

#include "app/EditController_win.h"
#include "app/FilesController_win.h"
#include "app/MainPanes_win.h"
#include "app/MenuStates.h"
#include "app/SearchController_win.h"
#include "app/SettingsController_win.h"
#include "framework/HandheldShell_win.h"
#include "framework/PaneLayout.h"
#include "framework/ShdWnd_win.h"

// The process's module, stored once at start-up.
HINSTANCE AppInstance();
void SetAppInstance(HINSTANCE instance);

// The program's one top-level window. It keeps the panes (the registry tree
// and the value list with a splitter between them, the key name bar under
// them), lays them out, moves the focus between them, keeps the menus'
// states current and restores and saves the last position. Its command
// table routes every command to the one controller that owns the action:
// edits, search, files, bookmarks and options. In command-line mode it runs
// the command line's verbs once it exists, then closes itself, saving
// nothing.
class CMainWnd : public CShdWnd {
public:
    static const UINT kStartupMessage = WM_APP + 100;
    static const UINT kSplitterMessage = WM_USER + 1;

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
    bool GetSelectedKey(HKEY& root, CString& path) const { return m_panes.GetSelectedKey(root, path); }
    // The selected value's name; false when no value is selected.
    bool GetSelectedValue(CString& name) const { return m_panes.GetSelectedValue(name); }
    bool SelectValueByName(LPCWSTR name) { return m_panes.SelectValueByName(name); }
    CSearchController& Search() { return m_search; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    int OnCreate();
    void OnStartup();
    void OnDestroy();
    bool CreateSoftKeyBar();
    void Layout(bool afterDrag);
    void OnSplitterNotify(WPARAM code, LPARAM delta);

    // Commands, menu states, focus and the last position, in
    // MainWndCommands_win.cpp.
    void OnCommand(UINT command);
    void OnInitMenuPopup(HMENU menu);
    SMenuContext GetMenuContext() const;
    void MoveFocus(bool forward);
    void CopyKeyName();
    void RestorePosition();
    void SavePosition();

    CClass m_interactiveClass;
    CClass m_commandLineClass;
    bool m_commandLine = false;
    HINSTANCE m_instance = nullptr;
    HWND m_softKeyBar = nullptr;
    SHACTIVATEINFO m_activateInfo = {};
    CMainPanes m_panes;
    CPaneSplit m_split;
    CEditController m_edit{m_panes};
    CSearchController m_search{m_panes};
    CFilesController m_files{m_panes};
    CSettingsController m_settings{m_panes};
};
