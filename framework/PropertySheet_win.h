#pragma once

#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include "framework/ObjectKey.h"
#include "framework/ShdDialog_win.h"
#include "framework/ShdWnd_win.h"

class CShdPropertySheetPage;

// A modal property sheet whose pages are CShdPropertySheetPage objects. The
// sheet finds its object again through a key in its caption (see
// ObjectKey.h), subclasses its window with it and then shows the real title.
class CShdPropertySheet : public CShdWnd {
public:
    CShdPropertySheet();
    ~CShdPropertySheet() override;

    // Only while the sheet has no window. The title may be null.
    bool Init(HINSTANCE instance, LPCWSTR title, UINT startPage);
    // The new page's index, or -1. A page added while the sheet is shown
    // appears at once.
    int AddPage(CShdPropertySheetPage* page);
    // True when the sheet ended with OK; false when it could not be shown.
    bool DoModal(HWND parent);

private:
    static int CALLBACK SheetCallback(HWND window, UINT message, LPARAM lParam);
    static CShdObjectTokens& Tokens();
    void DestroyPageHandles(int count);

    // One entry a page each, allocated with LocalAlloc.
    CShdPropertySheetPage** m_pages = nullptr;
    HPROPSHEETPAGE* m_handles = nullptr;
    int m_count = 0;
    bool m_initialised = false;
    PROPSHEETHEADERW m_header = {};
    WCHAR m_key[kObjectKeyLength] = {};
    // Allocated with LocalAlloc; null for none.
    LPWSTR m_title = nullptr;
};

// One page of a CShdPropertySheet. The sheet's notifications arrive as the
// virtual operations below; each answers for the whole sheet.
class CShdPropertySheetPage : public CShdDialog {
public:
    CShdPropertySheetPage() = default;
    ~CShdPropertySheetPage() override;

    // Only while the page has no window.
    bool Init(HINSTANCE instance, UINT templateId, LPCWSTR title);
    const PROPSHEETPAGEW& GetPage() const { return m_page; }

    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // False keeps the page from being shown.
    virtual bool OnSetActive() { return true; }
    // False keeps the user on the page.
    virtual bool OnKillActive() { return true; }
    // False refuses the changes and keeps the sheet open on this page.
    virtual bool OnApply() { return true; }
    virtual void OnReset() {}
    // False keeps the sheet open.
    virtual bool OnQueryCancel() { return true; }

private:
    static INT_PTR CALLBACK PageDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    PROPSHEETPAGEW m_page = {};
    // Allocated with LocalAlloc; null for none.
    LPWSTR m_title = nullptr;
};
