#pragma once

#include <windows.h>

#include "app/MainPanes_win.h"
#include "editors/EditValueDlg_win.h"
#include "registry/EditOperations.h"
#include "registry/RegClipboard.h"

// The main window's edits of keys and values: the value editor, new keys and
// key properties, delete, in-place rename, cut, copy and paste. It owns the
// program's clipboard. The registry work and the choice of message are the
// edit rules' (registry/EditOperations); this class asks, shows, keeps the
// panes current and gives the focus back.
class CEditController : private IOverwriteQuestion, private CRegClipboard::IObserver {
public:
    explicit CEditController(CMainPanes& panes);
    CEditController(const CEditController&) = delete;
    CEditController& operator=(const CEditController&) = delete;

    CRegClipboard::EKind GetClipboardKind() const { return m_clipboard.GetKind(); }

    void EditSelectedValue(bool asBinary);
    void NewValue(DWORD type, bool custom);
    void NewKey();
    void ShowKeyProperties();
    // The value or the key, after whichever pane has the focus.
    void DeleteInFocusedPane();
    void DeleteValue();
    void DeleteKey();
    // Runs the rename that an in-place edit asked for.
    void Rename(CMainPanes::ERename what);
    void PutOnClipboard(CRegClipboard::EKind kind);
    void Paste(bool valuesOnly);

private:
    bool ConfirmOverwrite(LPCWSTR question) override;
    void OnClipboardClearing(CRegClipboard::EKind kind) override;
    int ShowEditMessage(EEditMessage message);
    // Shows the list with the value selected once the editor wrote it.
    void RunValueEditor(const SValueToEdit& value);
    void RenameValue();
    void RenameKey();
    // Into the selected key (root, path).
    void PasteValue(HKEY root, const CString& path);
    void PasteKey(HKEY root, const CString& path);

    CMainPanes& m_panes;
    // The program's own clipboard of one key or value.
    CRegClipboard m_clipboard;
};
