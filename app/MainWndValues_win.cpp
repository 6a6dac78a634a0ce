// The main window's value editor commands: edit the selected value, or
// create one in the selected key, then show the list with it selected.
#include "app/MainWnd_win.h"

#include "editors/EditValueDlg_win.h"

void CMainWnd::EditSelectedValue(bool asBinary)
{
    HKEY root = nullptr;
    CString path;
    CString name;
    if (!GetSelectedKey(root, path) || !GetSelectedValue(name))
        return;
    if (CEditValueDlg::EditValue(GetHwnd(), root, path, name, asBinary))
        FillValueList(false, name);
}

void CMainWnd::NewValue(DWORD type, bool custom)
{
    HKEY root = nullptr;
    CString path;
    if (!GetSelectedKey(root, path))
        return;
    CString name;
    if (CEditValueDlg::NewValue(GetHwnd(), root, path, type, custom, name))
        FillValueList(false, name);
}
