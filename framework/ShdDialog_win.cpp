#include "framework/ShdDialog_win.h"

#include "framework/HandheldShell_win.h"

namespace {

const WCHAR kDialogProperty[] = L"{B4496A2D-AC24-4D59-B172-43F927C79E02}";

}  // namespace

CShdDialog::~CShdDialog()
{
    if (m_hwnd != nullptr && IsWindow(m_hwnd)) {
        DestroyWindow(m_hwnd);
        if (m_hwnd != nullptr)
            RemovePropW(m_hwnd, kDialogProperty);
    }
    m_hwnd = nullptr;
    m_helper.DestroyControls();
}

INT_PTR CShdDialog::OnMessage(UINT, WPARAM, LPARAM)
{
    return 0;
}

INT_PTR CShdDialog::DialogProc(UINT, WPARAM, LPARAM)
{
    return 0;
}

LPCDLGTEMPLATEW CShdDialog::LoadTemplate(HINSTANCE instance, UINT templateId)
{
    const HRSRC found = FindResourceW(instance, MAKEINTRESOURCEW(templateId), RT_DIALOG);
    const HGLOBAL loaded = found != nullptr ? LoadResource(instance, found) : nullptr;
    return loaded != nullptr ? static_cast<LPCDLGTEMPLATEW>(LockResource(loaded)) : nullptr;
}

INT_PTR CShdDialog::DoModal(HINSTANCE instance, UINT templateId, HWND parent, LPARAM param)
{
    const LPCDLGTEMPLATEW dialogTemplate = m_hwnd == nullptr ? LoadTemplate(instance, templateId) : nullptr;
    if (dialogTemplate == nullptr)
        return -1;
    SCreateParam createParam = {this, param};
    return DialogBoxIndirectParamW(instance, dialogTemplate, parent, StaticDialogProc,
                                   reinterpret_cast<LPARAM>(&createParam));
}

bool CShdDialog::Create(HINSTANCE instance, UINT templateId, HWND parent, LPARAM param)
{
    const LPCDLGTEMPLATEW dialogTemplate = m_hwnd == nullptr ? LoadTemplate(instance, templateId) : nullptr;
    if (dialogTemplate == nullptr)
        return false;
    SCreateParam createParam = {this, param};
    return CreateDialogIndirectParamW(instance, dialogTemplate, parent, StaticDialogProc,
                                      reinterpret_cast<LPARAM>(&createParam)) != nullptr;
}

void CShdDialog::AttachToWindow(CShdDialog* dialog, HWND window)
{
    SetPropW(window, kDialogProperty, dialog);
    dialog->m_hwnd = window;
}

CShdDialog* CShdDialog::FromWindow(HWND window)
{
    return static_cast<CShdDialog*>(GetPropW(window, kDialogProperty));
}

INT_PTR CALLBACK CShdDialog::StaticDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        const SCreateParam* createParam = reinterpret_cast<const SCreateParam*>(lParam);
        AttachToWindow(createParam->dialog, window);
        return Dispatch(createParam->dialog, window, message, wParam, createParam->param);
    }
    return Dispatch(FromWindow(window), window, message, wParam, lParam);
}

INT_PTR CShdDialog::Dispatch(CShdDialog* dialog, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (dialog == nullptr)
        return FALSE;
    if (message == WM_INITDIALOG) {
        dialog->m_helper.Attach(window);
        if (dialog->m_fullScreen)
            dialog->MakeFullScreen();
    }
    INT_PTR result = dialog->m_helper.OnMessage(message, wParam, lParam);
    if (result == 0)
        result = dialog->OnMessage(message, wParam, lParam);
    if (result == 0)
        result = dialog->DialogProc(message, wParam, lParam);
    if (message == WM_DESTROY) {
        RemovePropW(window, kDialogProperty);
        dialog->m_hwnd = nullptr;
    }
    return result;
}

void CShdDialog::MakeFullScreen()
{
    SHINITDLGINFO info = {};
    info.dwMask = SHIDIM_FLAGS;
    info.hDlg = m_hwnd;
    info.dwFlags = SHIDIF_SIZEDLGFULLSCREEN;
    SHInitDialog(&info);
    SetWindowLongW(m_hwnd, GWL_STYLE, GetWindowLongW(m_hwnd, GWL_STYLE) & ~WS_BORDER);
    SetWindowLongW(m_hwnd, GWL_EXSTYLE, GetWindowLongW(m_hwnd, GWL_EXSTYLE) & ~WS_EX_DLGMODALFRAME);
    // A changed frame takes effect when the window works it out again.
    SetWindowPos(m_hwnd, nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
