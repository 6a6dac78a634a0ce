#include "editors/EditValueDlg_win.h"

#include <utility>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/EditValueLayout.h"
#include "framework/MessageBox_win.h"
#include "framework/ShdWnd_win.h"
#include "resources/resource.h"

namespace {

const UINT kHeaderId = 1099;
// Child, visible, border, tab stop; no scroll bar of its own.
const DWORD kHexEditStyle = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP;
const UINT kHexEditInitialRow = 4;
// The controls that show a value; only the one that fits the value is shown.
const int kValueControls[] = {IDC_VALUE_STRING, IDC_VALUE_DWORD, IDC_BASE_LABEL, IDC_BASE_DECIMAL,
                              IDC_BASE_HEX, IDC_VALUE_MULTI_STRING, IDC_HEX_EDIT, IDC_CUSTOM_TYPE,
                              IDC_CUSTOM_TYPE_LABEL};

void Place(HWND control, const SEditValueRect& rect)
{
    SetWindowPos(control, nullptr, rect.x, rect.y, rect.width, rect.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

CString ControlText(HWND control)
{
    CString text;
    CShdWnd::GetWindowText(control, text);
    return text;
}

}  // namespace

std::optional<SValueToEdit> RunEditValueDlg(HWND owner, const SValueToEdit& in)
{
    CEditValueDlg dialog(in.isNew ? CEditValueModel(in.root, in.path, in.name, in.type, in.custom)
                                  : CEditValueModel(in.root, in.path, in.name, in.asBinary));
    if (!dialog.Run(owner))
        return std::nullopt;
    SValueToEdit out = in;
    out.name = dialog.GetModel().GetName();
    return out;
}

CEditValueDlg::CEditValueDlg(CEditValueModel model) : m_model(std::move(model)) {}

bool CEditValueDlg::Run(HWND owner)
{
    SetFullScreen(true);
    GetHelper().SetHeader(m_model.IsNew() ? TEXT("New Value") : TEXT("Edit Value"), kHeaderId);
    return DoModal(GetModuleHandleW(nullptr), IDD_EDIT_VALUE, owner, 0) == kResultOk;
}

INT_PTR CEditValueDlg::OnCommand(WORD id, WORD code)
{
    switch (id) {
    case IDC_HEX_EDIT:
        if (code == CHexEditCtrl::kNotifyPasteFailed)
            OnHexPasteFailed();
        return TRUE;
    case IDC_BASE_DECIMAL:
    case IDC_BASE_HEX:
        if (code == BN_CLICKED)
            OnBaseClicked();
        return TRUE;
    default:
        return FALSE;
    }
}

INT_PTR CEditValueDlg::OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CLOSE:
        EndDialog(GetHwnd(), kResultCancel);
        return TRUE;
    case WM_ACTIVATE:
        SHHandleWMActivate(GetHwnd(), wParam, lParam, &m_activateInfo, 0);
        return FALSE;
    case WM_SETTINGCHANGE:
        SHHandleWMSettingChange(GetHwnd(), wParam, lParam, &m_activateInfo);
        return FALSE;
    default:
        return FALSE;
    }
}

bool CEditValueDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    SetWindowTextW(window, m_model.IsNew() ? TEXT("New Value") : TEXT("Edit Value"));
    m_activateInfo.cbSize = sizeof(m_activateInfo);
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR) == nullptr ||
        !m_hexEdit.CreateChild(window, IDC_HEX_EDIT, RECT{}, kHexEditStyle) || !m_model.Load())
        return false;
    m_hexEdit.SetBytesPerRow(kHexEditInitialRow);
    SendMessageW(Control(IDC_VALUE_NAME), EM_SETREADONLY, m_model.IsNew() ? FALSE : TRUE, 0);
    SetDlgItemTextW(window, IDC_VALUE_NAME, m_model.GetName());
    ShowEditor();
    SetDlgItemTextW(window, IDC_TYPE_LINE, m_model.GetTypeLine());
    SetDlgItemTextW(window, IDC_CUSTOM_TYPE, m_model.GetCustomTypeText());
    SetFocus(m_model.IsNew() ? Control(IDC_VALUE_NAME) : EditorWindow());
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    return true;
}

void CEditValueDlg::ShowEditor()
{
    const HWND window = GetHwnd();
    for (const int id : kValueControls)
        ShowWindow(Control(id), SW_HIDE);
    ShowWindow(Control(IDC_TYPE_LINE), SW_SHOW);
    const auto show = [this](int id) { ShowWindow(Control(id), SW_SHOW); };
    switch (m_model.GetEditor()) {
    case CEditValueModel::kEditorString:
        SetDlgItemTextW(window, IDC_VALUE_STRING, m_model.GetEditorText());
        show(IDC_VALUE_STRING);
        break;
    case CEditValueModel::kEditorDword:
        CheckRadioButton(window, IDC_BASE_DECIMAL, IDC_BASE_HEX, IDC_BASE_DECIMAL);
        SetDlgItemTextW(window, IDC_VALUE_DWORD, m_model.GetEditorText());
        for (const int id : {IDC_VALUE_DWORD, IDC_BASE_LABEL, IDC_BASE_DECIMAL, IDC_BASE_HEX})
            show(id);
        break;
    case CEditValueModel::kEditorMultiString:
        SetDlgItemTextW(window, IDC_VALUE_MULTI_STRING, m_model.GetEditorText());
        show(IDC_VALUE_MULTI_STRING);
        break;
    case CEditValueModel::kEditorHex:
        m_hexEdit.SetData(m_model.GetData().GetData(), m_model.GetData().GetSize());
        show(IDC_HEX_EDIT);
        if (m_model.IsCustom()) {
            show(IDC_CUSTOM_TYPE);
            show(IDC_CUSTOM_TYPE_LABEL);
            ShowWindow(Control(IDC_TYPE_LINE), SW_HIDE);
        }
        break;
    }
}

HWND CEditValueDlg::EditorWindow() const
{
    switch (m_model.GetEditor()) {
    case CEditValueModel::kEditorString: return Control(IDC_VALUE_STRING);
    case CEditValueModel::kEditorDword: return Control(IDC_VALUE_DWORD);
    case CEditValueModel::kEditorMultiString: return Control(IDC_VALUE_MULTI_STRING);
    default: return Control(IDC_HEX_EDIT);
    }
}

void CEditValueDlg::OnOk()
{
    CEditValueModel::SInput input;
    input.name = ControlText(Control(IDC_VALUE_NAME));
    if (m_model.GetEditor() != CEditValueModel::kEditorHex)
        input.text = ControlText(EditorWindow());
    else if (!m_hexEdit.GetData(input.bytes))
        return;
    input.customType = ControlText(Control(IDC_CUSTOM_TYPE));
    const CEditValueModel::ESaveResult result = m_model.Save(input);
    if (result == CEditValueModel::kSaved) {
        EndDialog(GetHwnd(), kResultOk);
        return;
    }
    // A key that cannot be written stays silent; the dialog stays open.
    const LPCWSTR message = CEditValueModel::SaveFailureMessage(result);
    if (message != nullptr)
        ShowMessage(GetHwnd(), message, MB_OK | MB_ICONEXCLAMATION);
}

void CEditValueDlg::OnBaseClicked()
{
    const HWND window = GetHwnd();
    const DWORD newBase = IsDlgButtonChecked(window, IDC_BASE_HEX) == BST_CHECKED ? 16 : 10;
    if (newBase == m_model.GetBase())
        return;
    CString shown;
    if (m_model.SwitchBase(newBase, ControlText(Control(IDC_VALUE_DWORD)), shown)) {
        SetDlgItemTextW(window, IDC_VALUE_DWORD, shown);
        return;
    }
    ShowMessage(window, CEditValueModel::SaveFailureMessage(CEditValueModel::kInvalidInput),
                MB_OK | MB_ICONEXCLAMATION);
    CheckRadioButton(window, IDC_BASE_DECIMAL, IDC_BASE_HEX, m_model.GetBase() == 16 ? IDC_BASE_HEX : IDC_BASE_DECIMAL);
}

void CEditValueDlg::Layout(int width, int height)
{
    SEditValueShape shape;
    shape.hexEditor = m_model.GetEditor() == CEditValueModel::kEditorHex;
    shape.type = m_model.GetType();
    shape.custom = m_model.IsCustom();
    const SEditValueLayout layout =
        ComputeEditValueLayout(SEditValueMetrics::ForDpi(ScreenDpiX(), ScreenDpiY()), width, height, shape);
    Place(Control(IDC_VALUE_NAME_LABEL), layout.nameLabel);
    Place(Control(IDC_VALUE_NAME), layout.nameField);
    Place(Control(IDC_VALUE_LABEL), layout.valueLabel);
    Place(Control(IDC_CUSTOM_TYPE_LABEL), layout.customTypeLabel);
    Place(Control(IDC_CUSTOM_TYPE), layout.customTypeField);
    Place(Control(IDC_BASE_LABEL), layout.baseLabel);
    Place(Control(IDC_VALUE_STRING), layout.stringField);
    Place(Control(IDC_VALUE_DWORD), layout.dwordField);
    Place(Control(IDC_BASE_DECIMAL), layout.decimalRadio);
    Place(Control(IDC_BASE_HEX), layout.hexadecimalRadio);
    Place(Control(IDC_VALUE_MULTI_STRING), layout.tallEditor);
    Place(Control(IDC_HEX_EDIT), layout.tallEditor);
    Place(Control(IDC_TYPE_LINE), layout.typeLine);
    ShowWindow(Control(IDC_TYPE_LINE), layout.typeLineShown ? SW_SHOW : SW_HIDE);
    FitHexEditor();
}

void CEditValueDlg::FitHexEditor()
{
    const HWND hex = m_hexEdit.GetHwnd();
    if (hex == nullptr)
        return;
    const UINT row = HexBytesPerRow(m_hexEdit.GetFittingBytesPerRow());
    m_hexEdit.SetBytesPerRow(row);
    const int width = m_hexEdit.GetWidthNeeded(row);
    RECT bounds = {};
    GetWindowRect(hex, &bounds);
    if (width != 0)
        SetWindowPos(hex, nullptr, 0, 0, width, bounds.bottom - bounds.top, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CEditValueDlg::OnHexPasteFailed()
{
    ShowMessage(GetHwnd(), TEXT("Invalid data"), MB_OK | MB_ICONEXCLAMATION);
    SetFocus(m_hexEdit.GetHwnd());
}
