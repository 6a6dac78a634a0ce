#include "regfile/ProgressDlg_win.h"

#include "resources/resource.h"

INT_PTR CProgressDlg::DialogProc(UINT message, WPARAM wParam, LPARAM)
{
    const HWND window = GetHwnd();
    switch (message) {
    case WM_INITDIALOG:
        CenterOnScreen();
        ShowWindow(window, SW_HIDE);
        SetDlgItemTextW(window, IDC_PROGRESS_TEXT, m_text);
        SetTimer(window, kShowTimer, m_showDelay, nullptr);
        return TRUE;
    case WM_TIMER:
        if (wParam != kShowTimer)
            return FALSE;
        KillTimer(window, kShowTimer);
        ShowWindow(window, SW_SHOW);
        SetForegroundWindow(window);
        UpdateWindow(window);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDCANCEL)
            return FALSE;
        m_cancelled = true;
        DestroyWindow(window);
        return TRUE;
    case WM_CLOSE:
        DestroyWindow(window);
        return TRUE;
    default:
        return FALSE;
    }
}

void CProgressDlg::CenterOnScreen()
{
    RECT bounds = {};
    GetWindowRect(GetHwnd(), &bounds);
    const int width = bounds.right - bounds.left;
    const int height = bounds.bottom - bounds.top;
    SetWindowPos(GetHwnd(), nullptr, (GetSystemMetrics(SM_CXSCREEN) - width) / 2,
                 (GetSystemMetrics(SM_CYSCREEN) - height) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool RunProgress(HWND owner, LPCWSTR text, UINT delayMilliseconds, HANDLE done)
{
    CProgressDlg dialog;
    dialog.SetText(text);
    dialog.SetShowDelay(delayMilliseconds);
    dialog.ClearCancelled();
    if (!dialog.Create(GetModuleHandleW(nullptr), IDD_PROGRESS, owner))
        return false;
    if (owner != nullptr)
        UpdateWindow(owner);
    const bool reenableOwner = owner != nullptr && IsWindowEnabled(owner);
    if (reenableOwner)
        EnableWindow(owner, FALSE);

    bool quitSeen = false;
    while (dialog.GetHwnd() != nullptr) {
        const DWORD wait = MsgWaitForMultipleObjectsEx(1, &done, INFINITE, QS_ALLINPUT, 0);
        if (wait == WAIT_OBJECT_0) {
            DestroyWindow(dialog.GetHwnd());
            break;
        }
        MSG message;
        while (dialog.GetHwnd() != nullptr && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                DestroyWindow(dialog.GetHwnd());
                PostQuitMessage(static_cast<int>(message.wParam));
                quitSeen = true;
                break;
            }
            if (!IsDialogMessageW(dialog.GetHwnd(), &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }
    if (reenableOwner)
        EnableWindow(owner, TRUE);
    return !(quitSeen || dialog.IsCancelled());
}
