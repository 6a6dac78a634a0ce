#include "search/SearchDlg_win.h"

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "framework/ShdWnd_win.h"
#include "framework/SystemInfo.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"

namespace {

const int kMarginDesign = 10;
const UINT kHeaderId = 1099;

// Each check box and the flag it stands for.
const struct {
    int id;
    bool SSearchParams::*flag;
} kCheckBoxes[] = {
    {IDC_SEARCH_KEY_NAMES, &SSearchParams::keyNames},
    {IDC_SEARCH_VALUE_NAMES, &SSearchParams::valueNames},
    {IDC_SEARCH_VALUE_DATA, &SSearchParams::valueData},
    {IDC_SEARCH_WHOLE_STRING, &SSearchParams::wholeStringOnly},
    {IDC_SEARCH_CASE_SENSITIVE, &SSearchParams::caseSensitive},
    {IDC_SEARCH_STRINGS, &SSearchParams::typeStrings},
    {IDC_SEARCH_MULTI_STRINGS, &SSearchParams::typeMultiStrings},
    {IDC_SEARCH_DWORDS, &SSearchParams::typeDwords},
    {IDC_SEARCH_BINARY, &SSearchParams::typeBinary},
};

const int kTypeBoxes[] = {IDC_SEARCH_STRINGS, IDC_SEARCH_MULTI_STRINGS, IDC_SEARCH_DWORDS, IDC_SEARCH_BINARY};

}  // namespace

CSearchDlg::CSearchDlg(const SSearchParams& params) : CShdFormDialog(true), m_params(params)
{
    m_activateInfo.cbSize = sizeof(m_activateInfo);
}

void CSearchDlg::OnOk()
{
    OnStart(false);
}

INT_PTR CSearchDlg::OnCommand(WORD id, WORD)
{
    switch (id) {
    case IDM_SEARCH_DIALOG_START:
        OnStart(false);
        return TRUE;
    case IDM_SEARCH_DIALOG_FIND_ALL:
        OnStart(true);
        return TRUE;
    case IDC_SEARCH_VALUE_DATA:
        EnableTypeBoxes();
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CSearchDlg::OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_ACTIVATE)
        SHHandleWMActivate(GetHwnd(), wParam, lParam, &m_activateInfo, 0);
    else if (message == WM_SETTINGCHANGE)
        SHHandleWMSettingChange(GetHwnd(), wParam, lParam, &m_activateInfo);
    return FALSE;
}

bool CSearchDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    const UINT menu = GetOsVersion() < kMenuBarsFromMenusVersion ? IDR_SEARCH_MENU_OLD : IDR_SEARCH_MENU;
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), menu, IDR_SEARCH_MENUBAR) == nullptr)
        return false;
    SetDlgItemTextW(window, IDC_SEARCH_TEXT, m_params.searchString);
    for (const auto& box : kCheckBoxes)
        CheckDlgButton(window, box.id, m_params.*box.flag ? BST_CHECKED : BST_UNCHECKED);
    EnableTypeBoxes();
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    return true;
}

void CSearchDlg::EnableTypeBoxes()
{
    // Disabled boxes keep their checks, and are saved with them.
    const bool valueData = IsDlgButtonChecked(GetHwnd(), IDC_SEARCH_VALUE_DATA) == BST_CHECKED;
    for (const int id : kTypeBoxes)
        EnableWindow(GetDlgItem(GetHwnd(), id), valueData);
}

void CSearchDlg::OnStart(bool findAll)
{
    const HWND window = GetHwnd();
    m_params.searchString = CShdWnd::GetWindowTextOr(GetDlgItem(window, IDC_SEARCH_TEXT), TEXT(""));
    for (const auto& box : kCheckBoxes)
        m_params.*box.flag = IsDlgButtonChecked(window, box.id) == BST_CHECKED;
    const LPCWSTR problem = CheckSearchParams(m_params);
    if (problem != nullptr) {
        ShowMessage(window, problem, MB_ICONEXCLAMATION);
        SetFocus(GetDlgItem(window, IDC_SEARCH_TEXT));
        return;
    }
    m_findAll = findAll;
    EndDialog(window, kResultOk);
}

void CSearchDlg::Layout(int width, int)
{
    // The edit runs between the margins; the type boxes keep their left edge
    // and reach the right margin.
    const HWND window = GetHwnd();
    const int margin = ScaleX(kMarginDesign);
    const auto stretch = [&](int id, bool moveToMargin) {
        const HWND control = GetDlgItem(window, id);
        RECT bounds = {};
        GetWindowRect(control, &bounds);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&bounds), 2);
        const int left = moveToMargin ? margin : bounds.left;
        MoveWindow(control, left, bounds.top, width - margin - left, bounds.bottom - bounds.top, TRUE);
    };
    stretch(IDC_SEARCH_TEXT, true);
    for (const int id : kTypeBoxes)
        stretch(id, false);
}

std::optional<SSearchRequest> RunSearchDlg(HWND owner, const SSearchParams& in)
{
    CSearchDlg dialog(in);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Search"), kHeaderId);
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_SEARCH, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    SSearchRequest request;
    request.params = dialog.Params();
    request.findAll = dialog.FindAll();
    return request;
}
