#include "editors/KeyPropertiesDlg_win.h"

#include <algorithm>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "resources/resource.h"

namespace {

const int kSideMarginDesign = 10;
const int kBottomMarginDesign = 10;
const int kClassMinHeightDesign = 24;

RECT ClientRectOf(HWND dialog, UINT id)
{
    RECT bounds = {};
    GetWindowRect(GetDlgItem(dialog, id), &bounds);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&bounds), 2);
    return bounds;
}

}  // namespace

CKeyPropertiesDlg::CKeyPropertiesDlg(HKEY root, LPCWSTR path) : m_root(root), m_path(path)
{
}

void CKeyPropertiesDlg::OnOk()
{
    EndDialog(GetHwnd(), kResultOk);
}

INT_PTR CKeyPropertiesDlg::OnCommand(WORD id, WORD)
{
    if (id != IDM_CLOSE)
        return FALSE;
    OnOk();
    return TRUE;
}

bool CKeyPropertiesDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    CShdRegKey key;
    CString className;
    if (!key.Open(m_root, m_path)) {
        ShowMessage(window, TEXT("Unable to open registry key."), MB_OK | MB_ICONEXCLAMATION);
        return false;
    }
    key.GetClass(className);
    key.Close(true);
    // Nothing here is typed, so the Back key keeps its usual meaning.
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_CLOSE, IDR_CLOSE_MENUBAR,
                             EBackKey::kShellDefault) == nullptr)
        return false;
    SetDlgItemTextW(window, IDC_KEY_NAME, FullKeyName(m_root, m_path));
    SetDlgItemTextW(window, IDC_KEY_CLASS, className);
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    const HWND name = GetDlgItem(window, IDC_KEY_NAME);
    SetFocus(name);
    SendMessageW(name, EM_SETSEL, static_cast<WPARAM>(-1), -1);
    return true;
}

void CKeyPropertiesDlg::Layout(int width, int height)
{
    // Both fields keep their tops from the template and stretch to the side
    // margins; the class field may grow down to its template bottom, never
    // past the bottom margin, and never below a readable minimum.
    const HWND window = GetHwnd();
    const int left = ScaleX(kSideMarginDesign);
    const int fieldWidth = std::max(0, width - 2 * left);
    const RECT name = ClientRectOf(window, IDC_KEY_NAME);
    const RECT keyClass = ClientRectOf(window, IDC_KEY_CLASS);
    if (m_classTemplateBottom < 0)
        m_classTemplateBottom = keyClass.bottom;
    const int bottom = std::min(m_classTemplateBottom, height - ScaleY(kBottomMarginDesign));
    const int classHeight = std::max(ScaleY(kClassMinHeightDesign), bottom - static_cast<int>(keyClass.top));
    MoveWindow(GetDlgItem(window, IDC_KEY_NAME), left, name.top, fieldWidth, name.bottom - name.top, TRUE);
    MoveWindow(GetDlgItem(window, IDC_KEY_CLASS), left, keyClass.top, fieldWidth, classHeight, TRUE);
}

bool KeyPropertiesDialog(HWND owner, HKEY root, LPCWSTR path)
{
    CKeyPropertiesDlg dialog(root, path);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Key Properties"));
    return dialog.DoModal(GetModuleHandleW(nullptr), IDD_KEY_PROPERTIES, owner, 0) == CShdDialog::kResultOk;
}
