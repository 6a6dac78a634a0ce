#pragma once

#include <windows.h>

#include <optional>

#include "base/CString.h"
#include "framework/ShdFormDialog_win.h"

// A new subkey: where it goes, and its name and class as typed.
struct SNewKey {
    HKEY root = nullptr;
    CString parentPath;
    CString name;
    CString className;
};

// "Edit Key": creates a subkey, with an optional class, under a parent key.
// The dialog stays open, with what was typed, until a key is created
// (CreateSubkey's rules) or the user cancels.
class CEditKeyDlg : public CShdFormDialog {
public:
    explicit CEditKeyDlg(const SNewKey& key) : m_key(key) {}

    const SNewKey& GetKey() const { return m_key; }

private:
    bool OnInitDialog() override;
    void OnOk() override;
    void Layout(int width, int height) override;

    SNewKey m_key;
};

// Shows the dialog for the key `in`; the key created, nothing on Cancel.
std::optional<SNewKey> RunEditKeyDlg(HWND owner, const SNewKey& in);
