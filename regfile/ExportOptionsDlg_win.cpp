#include "regfile/ExportOptionsDlg_win.h"

#include <algorithm>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "resources/resource.h"

namespace {

const int kSideMargin = 10;
const int kFileLabelMinHeight = 24;
const UINT kHeaderId = 1099;

}  // namespace

bool CExportOptionsDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR) == nullptr)
        return false;
    SetDlgItemTextW(window, IDC_EXPORT_FILE, m_options.file);
    CheckRadioButton(window, IDC_EXPORT_ENTIRE, IDC_EXPORT_BRANCH,
                     m_options.selectedBranchOnly ? IDC_EXPORT_BRANCH : IDC_EXPORT_ENTIRE);
    CheckDlgButton(window, IDC_EXPORT_UNICODE, m_options.unicode ? BST_CHECKED : BST_UNCHECKED);
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    return true;
}

void CExportOptionsDlg::OnOk()
{
    m_options.selectedBranchOnly = IsDlgButtonChecked(GetHwnd(), IDC_EXPORT_BRANCH) == BST_CHECKED;
    m_options.unicode = IsDlgButtonChecked(GetHwnd(), IDC_EXPORT_UNICODE) == BST_CHECKED;
    EndDialog(GetHwnd(), kResultOk);
}

void CExportOptionsDlg::Layout(int width, int height)
{
    // Every control keeps its place from the template and stretches to the
    // side margin; the file name takes what is left below it, so that a long
    // path wraps instead of being cut.
    const HWND window = GetHwnd();
    const int right = width - ScaleX(kSideMargin);
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const int id = GetDlgCtrlID(child);
        if ((id & 0xFFFF) == 0xFFFF || (id >= IDC_EXPORT_ENTIRE && id <= IDC_EXPORT_FILE)) {
            RECT bounds = {};
            GetWindowRect(child, &bounds);
            MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&bounds), 2);
            int controlHeight = bounds.bottom - bounds.top;
            if (id == IDC_EXPORT_FILE)
                controlHeight = std::max(ScaleY(kFileLabelMinHeight), height - ScaleY(kSideMargin) - static_cast<int>(bounds.top));
            SetWindowPos(child, nullptr, 0, 0, std::max(0, right - static_cast<int>(bounds.left)), controlHeight,
                         SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
}

std::optional<SExportOptions> RunExportOptionsDlg(HWND owner, const SExportOptions& in)
{
    CExportOptionsDlg dialog(in);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Export Options"), kHeaderId);
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_EXPORT_OPTIONS, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    return dialog.GetOptions();
}
