#include "editors/EditKeyDlg_win.h"

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "framework/ShdWnd_win.h"
#include "registry/KeyCreation.h"
#include "registry/KeyPath.h"
#include "resources/resource.h"

namespace {

const int kTopDesign = 31;
const int kLabelHeightDesign = 13;
const int kEditHeightDesign = 19;
const int kMarginDesign = 8;
const int kGapDesign = 4;
// Below this client height name and class share their rows.
const int kStackedMinHeightDesign = 180;

void Place(HWND dialog, UINT id, int x, int y, int width, int height)
{
    MoveWindow(GetDlgItem(dialog, id), x, y, width, height, FALSE);
}

}  // namespace

bool CEditKeyDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR) == nullptr)
        return false;
    SetDlgItemTextW(window, IDC_PARENT_KEY, FullKeyName(m_key.root, m_key.parentPath));
    SetDlgItemTextW(window, IDC_KEY_NAME, m_key.name);
    SetDlgItemTextW(window, IDC_KEY_CLASS, m_key.className);
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    SetFocus(GetDlgItem(window, IDC_KEY_NAME));
    return true;
}

void CEditKeyDlg::OnOk()
{
    const HWND window = GetHwnd();
    CShdWnd::GetWindowText(GetDlgItem(window, IDC_KEY_NAME), m_key.name);
    CShdWnd::GetWindowText(GetDlgItem(window, IDC_KEY_CLASS), m_key.className);
    const ECreateKeyResult result = CreateSubkey(m_key.root, m_key.parentPath, m_key.name, m_key.className);
    if (result == ECreateKeyResult::Created) {
        EndDialog(window, kResultOk);
        return;
    }
    ShowMessage(window, CreateKeyRefusal(result), MB_OK | MB_ICONEXCLAMATION);
    if (result == ECreateKeyResult::AlreadyExists || result == ECreateKeyResult::CreateFailed)
        SetFocus(GetDlgItem(window, IDC_KEY_NAME));
}

void CEditKeyDlg::Layout(int width, int height)
{
    const HWND window = GetHwnd();
    const int labelHeight = ScaleY(kLabelHeightDesign);
    const int editHeight = ScaleY(kEditHeightDesign);
    const int margin = ScaleX(kMarginDesign);
    const int gap = ScaleY(kGapDesign);
    const int fullWidth = width - 2 * margin;
    int y = ScaleY(kTopDesign);
    Place(window, IDC_PARENT_KEY_LABEL, margin, y, fullWidth, labelHeight);
    y += labelHeight + gap;
    Place(window, IDC_PARENT_KEY, margin, y, fullWidth, editHeight);
    y += editHeight + gap;
    if (height >= ScaleY(kStackedMinHeightDesign)) {
        Place(window, IDC_KEY_NAME_LABEL, margin, y, fullWidth, labelHeight);
        y += labelHeight + gap;
        Place(window, IDC_KEY_NAME, margin, y, fullWidth, editHeight);
        y += editHeight + gap;
        Place(window, IDC_KEY_CLASS_LABEL, margin, y, fullWidth, labelHeight);
        y += labelHeight + gap;
        Place(window, IDC_KEY_CLASS, margin, y, fullWidth, editHeight);
    } else {
        // Too short to stack: name and class side by side.
        const int columnWidth = (fullWidth - margin) / 2;
        const int secondColumn = (width + margin) / 2;
        Place(window, IDC_KEY_NAME_LABEL, margin, y, columnWidth, labelHeight);
        Place(window, IDC_KEY_CLASS_LABEL, secondColumn, y, columnWidth, labelHeight);
        y += labelHeight + gap;
        Place(window, IDC_KEY_NAME, margin, y, columnWidth, editHeight);
        Place(window, IDC_KEY_CLASS, secondColumn, y, columnWidth, editHeight);
    }
    // Controls are moved without painting and repainted together: the
    // dialog does not clip its children, so repainting the area a control
    // left could paint over one already moved there.
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

std::optional<SNewKey> RunEditKeyDlg(HWND owner, const SNewKey& in)
{
    CEditKeyDlg dialog(in);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Edit Key"));
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_EDIT_KEY, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    return dialog.GetKey();
}
