#pragma once

#include <optional>
#include <vector>

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"
#include "framework/ShdWnd_win.h"
#include "views/GoToPath.h"

class CRegTree;
class CSettings;

// What "Go To" starts from and ends with.
struct SGoToRequest {
    // In: the paths offered before anything is typed. Out: with the path
    // gone to in front (AddRecentPath).
    std::vector<CString> recentPaths;
    // Out: the key to show, which existed when OK was pressed.
    HKEY root = nullptr;
    CString path;
};

// "Go To": one edit for a key path, above a list that offers the recent
// paths while the edit is empty and, once something is typed, the names of
// the keys that complete its last component (names alone, since whole paths
// would not fit the handheld's narrow screen). A tap on an offer takes it; so does OK (or
// Enter) while an offer is highlighted by the Up and Down keys in the edit.
// A completed key gets a "\" behind it, so that its own subkeys are offered
// next. OK with nothing highlighted goes to the typed key; when the key does
// not exist, a message names the longest part of the path that does, and the
// dialog stays open with the text as typed.
class CGoToDlg : public CShdFormDialog {
public:
    explicit CGoToDlg(SGoToRequest request) : m_request(std::move(request)) {}

    const SGoToRequest& GetRequest() const { return m_request; }

private:
    // The path edit, subclassed for the Up and Down keys.
    class CPathEdit : public CShdWnd {
    public:
        explicit CPathEdit(CGoToDlg& owner) : m_owner(owner) {}
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    private:
        CGoToDlg& m_owner;
    };

    bool OnInitDialog() override;
    void Layout(int width, int height) override;
    void OnOk() override;
    INT_PTR OnCommand(WORD id, WORD code) override;

    // The offers for the edit's text.
    void FillList();
    void TakeOffer(int index);
    void MoveHighlight(int step);
    HWND Item(int id) const { return GetDlgItem(GetHwnd(), id); }

    SGoToRequest m_request;
    CGoToCompleter m_completer;
    CPathEdit m_edit{*this};
    // The list holds the recent paths, not completions.
    bool m_listsRecent = true;
};

// Runs the dialog; on OK the edited request, on cancel nothing.
std::optional<SGoToRequest> GoToDialog(HWND owner, const SGoToRequest& request);

// The Key menu's "Go To...": the dialog with the settings' recent paths; on
// OK the recent paths are stored and the tree shows the key.
void GoToKey(HWND owner, CRegTree& tree, CSettings& settings);
