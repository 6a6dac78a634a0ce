#pragma once

#include <windows.h>

#include "framework/PpcDialogHelper_win.h"

// A dialog made from a dialog template, bound to a C++ object. Messages go
// first to the handheld helper, then to OnMessage, then, when OnMessage
// leaves them (0), to DialogProc, which each concrete dialog overrides.
// Results of a modal dialog: 1 OK, 2 Cancel, 3 could not initialise.
class CShdDialog {
public:
    static constexpr INT_PTR kResultOk = 1;
    static constexpr INT_PTR kResultCancel = 2;
    static constexpr INT_PTR kResultInitFailed = 3;

    CShdDialog() = default;
    // Destroys a live dialog window and the helper's controls.
    virtual ~CShdDialog();
    CShdDialog(const CShdDialog&) = delete;
    CShdDialog& operator=(const CShdDialog&) = delete;

    virtual INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    virtual INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam);

    // Before the dialog is created: the dialog takes the whole screen.
    void SetFullScreen(bool fullScreen) { m_fullScreen = fullScreen; }
    // The EndDialog result, or -1 when the object has a window already or
    // the template cannot be loaded. `param` arrives as WM_INITDIALOG's lParam.
    INT_PTR DoModal(HINSTANCE instance, UINT templateId, HWND parent, LPARAM param);
    // Modeless.
    bool Create(HINSTANCE instance, UINT templateId, HWND parent, LPARAM param = 0);
    CShdPpcDialogHelper& GetHelper() { return m_helper; }
    HWND GetHwnd() const { return m_hwnd; }

protected:
    // The framework's dialog procedure for an object found by the caller
    // (property pages find theirs their own way).
    static INT_PTR Dispatch(CShdDialog* dialog, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static void AttachToWindow(CShdDialog* dialog, HWND window);
    static CShdDialog* FromWindow(HWND window);

private:
    struct SCreateParam {
        CShdDialog* dialog;
        LPARAM param;
    };

    static INT_PTR CALLBACK StaticDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LPCDLGTEMPLATEW LoadTemplate(HINSTANCE instance, UINT templateId);
    void MakeFullScreen();

    HWND m_hwnd = nullptr;
    bool m_fullScreen = false;
    CShdPpcDialogHelper m_helper;
};
