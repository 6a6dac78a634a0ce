#include "views/GoToDlg_win.h"

#include <algorithm>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox_win.h"
#include "registry/KeyPath.h"
#include "resources/resource.h"
#include "settings/Settings.h"
#include "views/RegTree_win.h"

namespace {

const int kSideMarginDesign = 8;
const int kBottomMarginDesign = 8;

// Moves a child's right edge to `right` and, unless `bottom` is negative,
// its bottom edge to `bottom`; its top left corner stays where the template
// put it.
void StretchChild(HWND child, int right, int bottom)
{
    RECT bounds = {};
    GetWindowRect(child, &bounds);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&bounds), 2);
    const int height = bottom < 0 ? bounds.bottom - bounds.top : std::max(0, bottom - static_cast<int>(bounds.top));
    SetWindowPos(child, nullptr, 0, 0, std::max(0, right - static_cast<int>(bounds.left)), height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

LRESULT CGoToDlg::CPathEdit::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_KEYDOWN && (wParam == VK_DOWN || wParam == VK_UP)) {
        m_owner.MoveHighlight(wParam == VK_DOWN ? 1 : -1);
        return 0;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}

bool CGoToDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR) == nullptr)
        return false;
    const HWND edit = Item(IDC_GO_TO_PATH);
    if (!m_edit.Subclass(edit))
        return false;
    FillList();
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    SetFocus(edit);
    return true;
}

void CGoToDlg::Layout(int width, int height)
{
    const int right = width - ScaleX(kSideMarginDesign);
    StretchChild(Item(IDC_GO_TO_PATH), right, -1);
    StretchChild(Item(IDC_GO_TO_LIST_LABEL), right, -1);
    StretchChild(Item(IDC_GO_TO_LIST), right, height - ScaleY(kBottomMarginDesign));
}

void CGoToDlg::OnOk()
{
    const HWND edit = Item(IDC_GO_TO_PATH);
    const int highlighted = static_cast<int>(SendMessageW(Item(IDC_GO_TO_LIST), LB_GETCURSEL, 0, 0));
    if (highlighted >= 0) {
        TakeOffer(highlighted);
        return;
    }
    CString text;
    CShdWnd::GetWindowText(edit, text);
    const SGoToTarget target = ResolveGoToPath(text);
    if (!target.error.IsEmpty()) {
        ShowMessage(GetHwnd(), target.error, MB_OK | MB_ICONEXCLAMATION);
        SetFocus(edit);
        return;
    }
    m_request.root = target.root;
    m_request.path = target.path;
    AddRecentPath(m_request.recentPaths, FullKeyName(target.root, target.path));
    EndDialog(GetHwnd(), kResultOk);
}

INT_PTR CGoToDlg::OnCommand(WORD id, WORD code)
{
    if (id == IDC_GO_TO_PATH && code == EN_CHANGE) {
        FillList();
        return TRUE;
    }
    // Only a tap changes the list's selection itself: the keys move it from
    // the edit, which sends no notification.
    if (id == IDC_GO_TO_LIST && code == LBN_SELCHANGE) {
        TakeOffer(static_cast<int>(SendMessageW(Item(IDC_GO_TO_LIST), LB_GETCURSEL, 0, 0)));
        return TRUE;
    }
    return FALSE;
}

void CGoToDlg::FillList()
{
    CString text;
    CShdWnd::GetWindowText(Item(IDC_GO_TO_PATH), text);
    m_listsRecent = text.IsEmpty();
    const std::vector<CString> offers = m_listsRecent ? m_request.recentPaths : m_completer.Offer(text);
    SetWindowTextW(Item(IDC_GO_TO_LIST_LABEL), m_listsRecent ? TEXT("Recent paths:") : TEXT("Matching keys:"));
    const HWND list = Item(IDC_GO_TO_LIST);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (const CString& offer : offers)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(offer.GetString()));
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
}

void CGoToDlg::TakeOffer(int index)
{
    const HWND list = Item(IDC_GO_TO_LIST);
    const int length = static_cast<int>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0));
    if (length == LB_ERR)
        return;
    CString offer;
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(offer.GetBuffer(static_cast<size_t>(length) + 1)));
    offer.ReleaseBuffer(length);
    const HWND edit = Item(IDC_GO_TO_PATH);
    CString text;
    if (!m_listsRecent) {
        // A completion replaces what follows the last "" of the text.
        CShdWnd::GetWindowText(edit, text);
        text.Truncate(static_cast<size_t>(text.ReverseFind('\\') + 1));
        offer += TEXT("\\");
    }
    text += offer;
    // The edit's change notification offers what lies below the text.
    SetWindowTextW(edit, text);
    const int end = static_cast<int>(text.GetLength());
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(end), static_cast<LPARAM>(end));
    SetFocus(edit);
}

void CGoToDlg::MoveHighlight(int step)
{
    const HWND list = Item(IDC_GO_TO_LIST);
    const int count = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0));
    if (count <= 0)
        return;
    const int current = static_cast<int>(SendMessageW(list, LB_GETCURSEL, 0, 0));
    const int next = current < 0 ? (step > 0 ? 0 : count - 1) : std::clamp(current + step, 0, count - 1);
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(next), 0);
}

std::optional<SGoToRequest> GoToDialog(HWND owner, const SGoToRequest& request)
{
    CGoToDlg dialog(request);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Go To"));
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_GO_TO, owner, 0) != CShdDialog::kResultOk)
        return std::nullopt;
    return dialog.GetRequest();
}

void GoToKey(HWND owner, CRegTree& tree, CSettings& settings)
{
    SGoToRequest request;
    request.recentPaths = settings.GetRecentGoToPaths();
    const std::optional<SGoToRequest> result = GoToDialog(owner, request);
    if (!result)
        return;
    settings.SetRecentGoToPaths(result->recentPaths);
    settings.Flush();
    if (!tree.NavigateTo(result->root, result->path))
        ShowMessage(owner, TEXT("Unable to show registry key."), MB_OK | MB_ICONEXCLAMATION);
    SetFocus(tree.GetHwnd());
}
