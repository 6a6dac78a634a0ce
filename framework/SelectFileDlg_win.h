#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <optional>

#include "base/CString.h"
#include "base/ObjArray.h"
#include "framework/ShdFormDialog_win.h"
#include "framework/ShdWnd_win.h"

// The entries of one folder, one at a time, without "." and "..".
class CFilesFinder {
public:
    CFilesFinder() = default;
    ~CFilesFinder() { Close(); }
    CFilesFinder(const CFilesFinder&) = delete;
    CFilesFinder& operator=(const CFilesFinder&) = delete;

    // `pattern` is a folder and a wildcard, such as "\Windows\*". False when
    // nothing (but "." and "..") matches.
    bool FindFirst(LPCWSTR pattern);
    bool FindNext();
    void Close();
    // "" when closed.
    LPCWSTR GetName() const;
    // (DWORD)-1 when closed.
    DWORD GetAttributes() const;

private:
    bool SkipDots();

    HANDLE m_find = INVALID_HANDLE_VALUE;
    WIN32_FIND_DATAW m_data = {};
};

// "Select File": the program's own file chooser. It walks the file system
// from a folder, lists the folder's subfolders and files, and returns the
// full path of a typed or chosen name ("backup" becomes "backup.reg").
// Whether the file exists or may be overwritten is the caller's question.
class CSelectFileDlg : public CShdFormDialog {
public:
    struct SItem {
        CString name;
        DWORD kind;
    };

    // Sent by the list to the dialog to move the focus on; wParam is the
    // backwards flag, lParam the list.
    static const UINT kMoveFocusMessage = WM_APP + 1;
    // Sent by the list when Enter activates its focused row (wParam).
    static const UINT kActivateByKeyMessage = WM_APP + 2;

    // The list: takes every key, and hands the keys that leave it (Tab,
    // Left, Right, Up on the first row, Down on the last) to the dialog, and
    // Enter as the activation of the focused row by key.
    class CFilesListCtrl : public CShdWnd {
    public:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    };

    // `programFiles` gives the folder that "%ProgramFiles%" names when the
    // device's settings name one (empty: the usual one); asked only when the
    // initial path begins with that name.
    explicit CSelectFileDlg(std::function<CString()> programFiles = nullptr) : m_programFiles(std::move(programFiles))
    {
    }

    // `path` is the initial file or folder (special folder names such as
    // "%Temp%" at its start are expanded); on true it holds the chosen full
    // path. False on Cancel.
    bool DoModal(HWND owner, CString& path);

private:
    bool OnInitDialog() override;
    INT_PTR OnNotify(const NMHDR& header);
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;
    INT_PTR OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnActivate(int row, bool byKey);
    void MoveFocus(bool backwards);
    // Navigates to the row `row` (".." or a folder).
    void EnterRow(int row);
    void FillList(LPCWSTR nameToSelect);
    void AddRow(const CString& name, DWORD kind, DWORD attributes);
    void UpdateLocation();
    void Layout(int width, int height) override;
    void FitColumn();
    int FindRow(LPCWSTR name) const;
    HWND Control(int id) const { return GetDlgItem(GetHwnd(), id); }

    std::function<CString()> m_programFiles;
    CString m_path;
    CString m_folder;
    CString m_initialName;
    CShdObjArray<SItem> m_items;
    CFilesListCtrl m_list;
};

// What the file dialog starts from: the initial file or folder, then the
// chosen full path; and what gives the folder that "%ProgramFiles%" names
// when the device's settings name one (as for CSelectFileDlg).
struct SFileChoice {
    CString path;
    std::function<CString()> programFiles;
};

// Shows the dialog; the choice with the chosen path, nothing on Cancel.
std::optional<SFileChoice> RunSelectFileDlg(HWND owner, const SFileChoice& in);

// The folder that a special folder name stands for, as the dialog expands
// them: `programFiles` when it is not empty, for "%ProgramFiles%"; else the
// handheld's folder, or the desktop's equivalent where the handheld's does
// not exist. Empty for an index out of the table.
CString ResolveSpecialFolder(int index, const CString& programFiles);
