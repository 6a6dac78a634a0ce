#include "regfile/ImportPreviewDlg_win.h"

#include <algorithm>

#include <commctrl.h>

#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/WindowHelpers_win.h"
#include "regfile/FileJobs_win.h"
#include "regfile/ProgressDlg_win.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "views/ValueText.h"

namespace {

using EChange = COverlayPlatform::EChange;

const int kSideMarginDesign = 8;
const UINT kProgressDelay = 500;

const struct {
    LPCWSTR title;
    int widthDesign;
} kColumns[] = {{TEXT("Change"), 92}, {TEXT("Key"), 80}, {TEXT("Value"), 70}, {TEXT("Data"), 160}};

LPCWSTR ChangeName(EChange kind)
{
    switch (kind) {
    case EChange::KeyCreated:
        return TEXT("Key created");
    case EChange::KeyDeleted:
        return TEXT("Key deleted");
    case EChange::ValueAdded:
        return TEXT("Value added");
    case EChange::ValueChanged:
        return TEXT("Value changed");
    default:
        return TEXT("Value deleted");
    }
}

CString DataText(const COverlayPlatform::SData& data)
{
    return ValueDataText(data.type, data.bytes.data(), data.bytes.size());
}

bool IsValueChange(EChange kind)
{
    return kind != EChange::KeyCreated && kind != EChange::KeyDeleted;
}

// The longer path's part below `base`, or the whole path when it is not
// below it.
CString PathBelow(const CString& path, const CString& base)
{
    if (base.IsEmpty())
        return path;
    const bool below = path.GetLength() > base.GetLength() && path.GetAt(base.GetLength()) == '\\' &&
                       base.CompareNoCase(path.Left(base.GetLength())) == 0;
    return below ? path.Mid(base.GetLength() + 1) : path;
}

CString ParentPath(const CString& path)
{
    return path.Left(static_cast<size_t>(std::max(path.ReverseFind('\\'), 0)));
}

// The deepest key above every change: the changes' common path, less one
// name when a change lies on it (every row then names a key below it).
void FindBase(const std::vector<CImportPreview::SChange>& changes, HKEY& root, CString& path)
{
    root = changes.empty() ? nullptr : changes.front().root;
    path = changes.empty() ? CString() : changes.front().path;
    for (const auto& change : changes) {
        if (change.root != root) {
            root = nullptr;
            path.Empty();
            return;
        }
        while (!path.IsEmpty() && PathBelow(change.path, path) == change.path &&
               path.CompareNoCase(change.path) != 0)
            path = ParentPath(path);
    }
    for (const auto& change : changes) {
        if (!path.IsEmpty() && path.CompareNoCase(change.path) == 0) {
            path = ParentPath(path);
            return;
        }
    }
}

}  // namespace

bool CImportPreviewDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    if (CreateDialogSoftKeys(window, GetModuleHandleW(nullptr), IDR_IMPORT_PREVIEW_MENU,
                             IDR_IMPORT_PREVIEW_MENUBAR) == nullptr)
        return false;
    const HWND list = List();
    SetUpDialogList(list);
    for (int i = 0; i < static_cast<int>(std::size(kColumns)); ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = const_cast<LPWSTR>(kColumns[i].title);
        column.cx = ScaleX(kColumns[i].widthDesign);
        if (SendMessageW(list, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column)) < 0)
            return false;
    }
    FindBase(m_preview.Changes(), m_baseRoot, m_basePath);
    if (m_baseRoot != nullptr) {
        const CString base = CString(RootLongName(m_baseRoot)) + (m_basePath.IsEmpty() ? TEXT("") : TEXT("\\"));
        SetDlgItemTextW(window, IDC_PREVIEW_BASE, base + m_basePath);
    }
    const size_t rows = m_preview.Changes().size() + (m_preview.ErrorText().IsEmpty() ? 0 : 1);
    SendMessageW(list, LVM_SETITEMCOUNT, rows, LVSICF_NOINVALIDATEALL);
    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    SetFocus(list);
    return true;
}

void CImportPreviewDlg::OnOk()
{
    EndDialog(GetHwnd(), kResultCancel);
}

INT_PTR CImportPreviewDlg::OnCommand(WORD id, WORD)
{
    if (id == IDM_PREVIEW_IMPORT)
        EndDialog(GetHwnd(), kResultOk);
    else if (id == IDM_CLOSE)
        OnOk();
    else
        return FALSE;
    return TRUE;
}

INT_PTR CImportPreviewDlg::OnOtherMessage(UINT message, WPARAM, LPARAM lParam)
{
    if (message != WM_NOTIFY)
        return FALSE;
    const NMHDR& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.idFrom != IDC_PREVIEW_LIST)
        return FALSE;
    if (header.code == LVN_GETDISPINFOW) {
        LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(lParam)->item;
        if ((item.mask & LVIF_TEXT) != 0) {
            m_cellText = CellText(item.iItem, item.iSubItem);
            item.pszText = const_cast<LPWSTR>(m_cellText.GetString());
        }
        return TRUE;
    }
    if (header.code == LVN_ITEMACTIVATE) {
        ShowRow(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
        return TRUE;
    }
    return FALSE;
}

void CImportPreviewDlg::Layout(int width, int height)
{
    // The base key's line and the list keep their tops from the template;
    // the list takes the rest.
    const int margin = ScaleX(kSideMarginDesign);
    for (const int id : {IDC_PREVIEW_BASE, IDC_PREVIEW_LIST}) {
        const HWND control = GetDlgItem(GetHwnd(), id);
        RECT bounds = {};
        GetWindowRect(control, &bounds);
        MapWindowPoints(nullptr, GetHwnd(), reinterpret_cast<POINT*>(&bounds), 2);
        const int bottom = id == IDC_PREVIEW_LIST ? height - margin : static_cast<int>(bounds.bottom);
        MoveWindow(control, margin, bounds.top, std::max(0, width - 2 * margin),
                   std::max(0, bottom - static_cast<int>(bounds.top)), TRUE);
    }
}

CString CImportPreviewDlg::CellText(int row, int column) const
{
    const CString& error = m_preview.ErrorText();
    if (!error.IsEmpty()) {
        if (row == 0)
            return column == 0 ? CString(TEXT("Error")) : column == 3 ? error : CString();
        --row;
    }
    const auto& changes = m_preview.Changes();
    if (row < 0 || static_cast<size_t>(row) >= changes.size())
        return CString();
    const CImportPreview::SChange& change = changes[static_cast<size_t>(row)];
    switch (column) {
    case 0:
        return ChangeName(change.kind);
    case 1:
        if (m_baseRoot != nullptr)
            return PathBelow(change.path, m_basePath);
        return CString(RootLongName(change.root)) + (change.path.IsEmpty() ? TEXT("") : TEXT("\\")) + change.path;
    case 2:
        return change.valueName;
    default:
        if (change.kind == EChange::ValueChanged)
            return DataText(change.before) + TEXT(" -> ") + DataText(change.after);
        if (change.kind == EChange::ValueAdded)
            return DataText(change.after);
        return change.kind == EChange::ValueDeleted ? DataText(change.before) : CString();
    }
}

void CImportPreviewDlg::ShowRow(int row)
{
    if (!m_preview.ErrorText().IsEmpty())
        --row;
    const auto& changes = m_preview.Changes();
    if (row < 0 || static_cast<size_t>(row) >= changes.size())
        return;
    const CImportPreview::SChange& change = changes[static_cast<size_t>(row)];
    // Keys the file would create do not exist yet: there is nothing to show.
    CShdRegKey key;
    const bool exists = key.Open(change.root, change.path);
    key.Close(false);
    if (exists &&
        m_host.ShowRegistryItem(change.root, change.path, IsValueChange(change.kind) ? change.valueName.GetString()
                                                                                    : nullptr))
        EndDialog(GetHwnd(), kResultShow);
}

HWND CImportPreviewDlg::List() const
{
    return GetDlgItem(GetHwnd(), IDC_PREVIEW_LIST);
}

void ImportPreviewCommand(HWND owner, IImportPreviewHost& host)
{
    CString file;
    if (!ChooseImportFile(owner, file))
        return;
    CImportPreview preview;
    if (!preview.Start(file))
        return;
    if (!RunProgress(owner, TEXT("Preview in progress..."), kProgressDelay, preview.DoneEvent())) {
        preview.Cancel();
        return;
    }
    preview.Wait();
    CImportPreviewDlg dialog(preview, host);
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(TEXT("Preview Import"));
    if (dialog.DoModal(GetModuleHandleW(nullptr), IDD_IMPORT_PREVIEW, owner, 0) == CShdDialog::kResultOk)
        RunImportJob(owner, file);
}
