#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/WinHandles_win.h"

// Gives a dialog the handheld look: a bold header line with a separator
// under it, an input-panel preference control, and no vertical scroll bar.
// Embedded in every CShdDialog, which feeds it the dialog's messages.
class CShdPpcDialogHelper {
public:
    static const UINT kDefaultHeaderId = 0xFFFF;

    CShdPpcDialogHelper() = default;
    virtual ~CShdPpcDialogHelper();
    CShdPpcDialogHelper(const CShdPpcDialogHelper&) = delete;
    CShdPpcDialogHelper& operator=(const CShdPpcDialogHelper&) = delete;

    // Before the dialog is created.
    void SetHeader(LPCWSTR text, UINT controlId = kDefaultHeaderId);
    // Also changes the header on the screen when it is there.
    void SetHeaderText(LPCWSTR text);
    void EnableSipPref();
    void RemoveVScroll();
    // The room the header takes at the top, in pixels; dialogs lay their
    // controls out below it.
    int GetHeaderHeight() const;

    // The dialog's messages, from CShdDialog. Non-zero answers the message.
    void Attach(HWND dialog) { m_dialog = dialog; }
    INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void DestroyControls();

private:
    void CreateHeader();
    void CreateSipPref();
    void PaintSeparator();

    HWND m_dialog = nullptr;
    bool m_hasHeader = false;
    CString m_headerText;
    UINT m_headerId = kDefaultHeaderId;
    HWND m_header = nullptr;
    CShdUniqueFont m_headerFont;
    bool m_wantsSipPref = false;
    HWND m_sipPref = nullptr;
    bool m_removeVScroll = false;
};
