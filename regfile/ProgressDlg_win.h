#pragma once

#include <windows.h>

#include "base/CString.h"
#include "framework/ShdDialog_win.h"

// The small "Quenda" box with one line of text and "Cancel" that keeps the
// user interface alive while a worker runs. It starts hidden and shows
// itself only after its delay, so that short jobs never flash it.
//
// Cancel sets the cancelled flag and destroys the box; WM_CLOSE destroys it
// without the flag, so that the wait reports the job as finished and the
// caller then waits for the worker's real result.
class CProgressDlg : public CShdDialog {
public:
    static const UINT_PTR kShowTimer = 100;

    void SetText(LPCWSTR text) { m_text = text; }
    void SetShowDelay(UINT milliseconds) { m_showDelay = milliseconds; }
    bool IsCancelled() const { return m_cancelled; }
    void ClearCancelled() { m_cancelled = false; }

    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void CenterOnScreen();

    CString m_text;
    UINT m_showDelay = 0;
    bool m_cancelled = false;
};

// Runs the progress box over `owner` (disabled meanwhile) until `done` is
// signalled or the box goes away, dispatching the thread's messages as they
// come. True when the job finished (or the box was closed), false when the
// user cancelled, a WM_QUIT arrived (it is posted again) or the box could
// not be made.
bool RunProgress(HWND owner, LPCWSTR text, UINT delayMilliseconds, HANDLE done);
