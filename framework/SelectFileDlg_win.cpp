#include "framework/SelectFileDlg_win.h"

#include <algorithm>

#include <shlobj.h>

#include "base/Text.h"
#include "framework/DialogSoftKeys_win.h"
#include "framework/DpiScale.h"
#include "framework/FilePaths.h"
#include "framework/HandheldShell_win.h"
#include "framework/MessageBox_win.h"
#include "framework/WaitCursor_win.h"
#include "framework/WindowHelpers_win.h"
#include "framework/WinHandles_win.h"
#include "platform/Platform.h"
#include "resources/resource.h"

namespace {

const UINT kHeaderId = 1099;

bool IsDots(LPCWSTR name)
{
    return CompareNoCase(name, TEXT(".")) == 0 || CompareNoCase(name, TEXT("..")) == 0;
}

bool IsFolder(LPCWSTR path)
{
    const DWORD attributes = Platform().GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

CString ShellFolder(int csidl)
{
    WCHAR buffer[MAX_PATH] = {};
    return SHGetSpecialFolderPathW(nullptr, buffer, csidl, FALSE) ? CString(buffer) : CString();
}

// The handheld's folder when it exists here, else the desktop's own.
CString FolderOr(LPCWSTR handheldFolder, const CString& desktopFolder)
{
    return IsFolder(handheldFolder) || desktopFolder.IsEmpty() ? CString(handheldFolder) : desktopFolder;
}

}  // namespace

// --- CFilesFinder ---------------------------------------------------------------

bool CFilesFinder::FindFirst(LPCWSTR pattern)
{
    Close();
    m_find = FindFirstFileW(pattern, &m_data);
    return m_find != INVALID_HANDLE_VALUE && SkipDots();
}

bool CFilesFinder::FindNext()
{
    if (m_find == INVALID_HANDLE_VALUE)
        return false;
    if (!FindNextFileW(m_find, &m_data)) {
        Close();
        return false;
    }
    return SkipDots();
}

bool CFilesFinder::SkipDots()
{
    while (IsDots(m_data.cFileName)) {
        if (!FindNextFileW(m_find, &m_data)) {
            Close();
            return false;
        }
    }
    return true;
}

void CFilesFinder::Close()
{
    if (m_find != INVALID_HANDLE_VALUE)
        FindClose(m_find);
    m_find = INVALID_HANDLE_VALUE;
}

LPCWSTR CFilesFinder::GetName() const
{
    return m_find == INVALID_HANDLE_VALUE ? TEXT("") : m_data.cFileName;
}

DWORD CFilesFinder::GetAttributes() const
{
    return m_find == INVALID_HANDLE_VALUE ? static_cast<DWORD>(-1) : m_data.dwFileAttributes;
}

// --- The list ---------------------------------------------------------------------

LRESULT CSelectFileDlg::CFilesListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_GETDLGCODE)
        return DLGC_WANTALLKEYS;
    if (message != WM_KEYDOWN)
        return CShdWnd::WindowProc(message, wParam, lParam);
    const HWND dialog = GetParent(GetHwnd());
    const int focused = static_cast<int>(SendMessageW(GetHwnd(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    const int count = static_cast<int>(SendMessageW(GetHwnd(), LVM_GETITEMCOUNT, 0, 0));
    int leave = -1;  // -1 stays, 0 forwards, 1 backwards
    switch (wParam) {
    case VK_TAB:
        leave = GetKeyState(VK_SHIFT) < 0 ? 1 : 0;
        break;
    case VK_LEFT:
        leave = 1;
        break;
    case VK_RIGHT:
        leave = 0;
        break;
    case VK_UP:
        leave = focused <= 0 ? 1 : -1;
        break;
    case VK_DOWN:
        leave = focused >= count - 1 ? 0 : -1;
        break;
    case VK_ESCAPE:
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        return 0;
    case VK_RETURN:
        // Not every list reports an activation by key, nor alike.
        if (focused >= 0)
            PostMessageW(dialog, kActivateByKeyMessage, static_cast<WPARAM>(focused), 0);
        return 0;
    default:
        break;
    }
    if (leave < 0)
        return CShdWnd::WindowProc(message, wParam, lParam);
    PostMessageW(dialog, kMoveFocusMessage, static_cast<WPARAM>(leave), reinterpret_cast<LPARAM>(GetHwnd()));
    return 0;
}

// --- The dialog -------------------------------------------------------------------

bool CSelectFileDlg::DoModal(HWND owner, CString& path)
{
    m_path = ExpandSpecialFolder(path, [this](int index) {
        const bool programFiles = CString(SpecialFolderToken(index)) == TEXT("%ProgramFiles%") && m_programFiles;
        return ResolveSpecialFolder(index, programFiles ? m_programFiles() : CString());
    });
    SetFullScreen(true);
    GetHelper().SetHeader(TEXT("Select File"), kHeaderId);
    if (CShdDialog::DoModal(GetModuleHandleW(nullptr), IDD_SELECT_FILE, owner, 0) != kResultOk)
        return false;
    path = m_path;
    return true;
}

INT_PTR CSelectFileDlg::OnCommand(WORD id, WORD)
{
    if (id != IDM_SELECT)
        return FALSE;
    OnOk();
    return TRUE;
}

INT_PTR CSelectFileDlg::OnOtherMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case kMoveFocusMessage:
        MoveFocus(wParam != 0);
        return TRUE;
    case kActivateByKeyMessage:
        OnActivate(static_cast<int>(wParam), true);
        return TRUE;
    case WM_DESTROY:
        m_list.Unsubclass();
        return FALSE;
    default:
        return FALSE;
    }
}

bool CSelectFileDlg::OnInitDialog()
{
    const HWND window = GetHwnd();
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    if (CreateDialogSoftKeys(window, instance, IDR_SELECT_CANCEL, IDR_SELECT_CANCEL_MENUBAR) == nullptr ||
        !m_list.Subclass(Control(IDC_FILE_LIST)))
        return false;
    const HWND list = m_list.GetHwnd();
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    LVCOLUMNW column = {};
    column.mask = LVCF_WIDTH;
    if (SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column)) < 0)
        return false;
    const HIMAGELIST images = LoadImageStrip(instance, IDB_FILES_16, IDB_FILES_32);
    if (images != nullptr)
        SendMessageW(list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(images));

    const DWORD attributes = m_path.IsEmpty() ? INVALID_FILE_ATTRIBUTES : Platform().GetFileAttributesW(m_path);
    CString name;
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        m_folder = TEXT("\\");
    } else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        SplitPath(m_path, m_folder, name);
    } else {
        m_folder = m_path;
        RemoveTrailingBackslash(m_folder);
    }
    if (m_folder.IsEmpty())
        m_folder = TEXT("\\");

    RECT client = {};
    GetClientRect(window, &client);
    Layout(client.right, client.bottom);
    FillList(nullptr);
    SetDlgItemTextW(window, IDC_FILE_NAME, name);
    SetFocus(Control(IDC_FILE_NAME));
    SendMessageW(Control(IDC_FILE_NAME), EM_SETSEL, 0, -1);
    return true;
}

INT_PTR CSelectFileDlg::OnNotify(const NMHDR& header)
{
    if (header.idFrom != IDC_FILE_LIST)
        return FALSE;
    switch (header.code) {
    case LVN_ITEMCHANGED: {
        const NMLISTVIEW& change = reinterpret_cast<const NMLISTVIEW&>(header);
        const bool becameSelected = (change.uNewState & LVIS_SELECTED) != 0 && (change.uOldState & LVIS_SELECTED) == 0;
        if (becameSelected && change.iItem >= 0 && static_cast<size_t>(change.iItem) < m_items.GetCount())
            SetDlgItemTextW(GetHwnd(), IDC_FILE_NAME, m_items[static_cast<size_t>(change.iItem)]->name);
        return TRUE;
    }
    case NM_SETFOCUS: {
        const HWND list = m_list.GetHwnd();
        if (SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0) == 0 && SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) > 0) {
            LVITEMW item = {};
            item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
            item.state = item.stateMask;
            SendMessageW(list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
        }
        return TRUE;
    }
    case LVN_ITEMACTIVATE: {
        const NMITEMACTIVATE& activation = reinterpret_cast<const NMITEMACTIVATE&>(header);
        OnActivate(activation.iItem, activation.ptAction.x == -1 && activation.ptAction.y == -1);
        return TRUE;
    }
    default:
        return FALSE;
    }
}

void CSelectFileDlg::OnActivate(int row, bool byKey)
{
    if (row < 0 || static_cast<size_t>(row) >= m_items.GetCount())
        return;
    const SItem& item = *m_items[static_cast<size_t>(row)];
    if (item.kind != kRowFile) {
        EnterRow(row);
        return;
    }
    SetDlgItemTextW(GetHwnd(), IDC_FILE_NAME, item.name);
    if (byKey)
        OnOk();
}

void CSelectFileDlg::EnterRow(int row)
{
    const SItem& item = *m_items[static_cast<size_t>(row)];
    if (item.kind == kRowParent) {
        CString left;
        CString leftName;
        SplitPath(m_folder, left, leftName);
        m_folder = ParentFolder(m_folder);
        FillList(leftName);
        return;
    }
    CString folder = m_folder;
    EnsureTrailingBackslash(folder);
    m_folder = folder + item.name;
    FillList(TEXT(".."));
}

void CSelectFileDlg::OnOk()
{
    const HWND edit = Control(IDC_FILE_NAME);
    const CString typed = CShdWnd::GetWindowTextOr(edit, TEXT(""));
    const int row = FindRow(typed);
    if (row >= 0 && m_items[static_cast<size_t>(row)]->kind != kRowFile) {
        EnterRow(row);
        return;
    }
    const EFileNameCheck check = CheckTypedFileName(typed);
    if (check != EFileNameCheck::kValid) {
        ShowMessage(GetHwnd(), FileNameCheckMessage(check), MB_ICONEXCLAMATION);
        SetFocus(edit);
        return;
    }
    CString path = m_folder;
    EnsureTrailingBackslash(path);
    m_path = path + WithDefaultExtension(typed);
    EndDialog(GetHwnd(), kResultOk);
}

void CSelectFileDlg::MoveFocus(bool backwards)
{
    const HWND next = GetNextDlgTabItem(GetHwnd(), m_list.GetHwnd(), backwards ? TRUE : FALSE);
    if (next != nullptr)
        SetFocus(next);
}

int CSelectFileDlg::FindRow(LPCWSTR name) const
{
    for (size_t i = 0; i < m_items.GetCount(); ++i) {
        if (m_items[i]->name.CompareNoCase(name) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

void CSelectFileDlg::FillList(LPCWSTR nameToSelect)
{
    CWaitCursor wait;
    const HWND list = m_list.GetHwnd();
    CWndNoRedraw noRedraw;
    noRedraw.Begin(list, true, true, true);
    UpdateLocation();
    SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
    m_items.RemoveAll();
    if (!IsTopFolder(m_folder))
        AddRow(TEXT(".."), kRowParent, 0);

    struct SFound {
        CString name;
        DWORD attributes;
    };
    CShdObjArray<SFound> folders;
    CShdObjArray<SFound> files;
    CString pattern = m_folder;
    EnsureTrailingBackslash(pattern);
    pattern += TEXT("*");
    CFilesFinder finder;
    for (bool found = finder.FindFirst(pattern); found; found = finder.FindNext()) {
        const DWORD attributes = finder.GetAttributes();
        CShdObjArray<SFound>& target = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? folders : files;
        target.Add(new SFound{finder.GetName(), attributes});
    }
    const auto byName = [](const SFound& a, const SFound& b) { return CompareNoCase(a.name, b.name); };
    folders.Sort(byName);
    files.Sort(byName);
    for (size_t i = 0; i < folders.GetCount(); ++i)
        AddRow(folders[i]->name, kRowFolder, folders[i]->attributes);
    for (size_t i = 0; i < files.GetCount(); ++i)
        AddRow(files[i]->name, kRowFile, files[i]->attributes);

    const int row = nameToSelect != nullptr ? FindRow(nameToSelect) : -1;
    if (row >= 0) {
        LVITEMW item = {};
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        item.state = item.stateMask;
        SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        SendMessageW(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    }
    SetDlgItemTextW(GetHwnd(), IDC_FILE_NAME, nameToSelect != nullptr ? nameToSelect : TEXT(""));
    FitColumn();
}

void CSelectFileDlg::AddRow(const CString& name, DWORD kind, DWORD attributes)
{
    if (m_items.Add(new SItem{name, kind}) < 0)
        return;
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iItem = static_cast<int>(m_items.GetCount() - 1);
    item.pszText = const_cast<LPWSTR>(name.GetString());
    item.iImage = FileRowImage(static_cast<EFileRowKind>(kind), attributes, name);
    if (SendMessageW(m_list.GetHwnd(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)) < 0)
        m_items.RemoveAt(m_items.GetCount() - 1);
}

void CSelectFileDlg::UpdateLocation()
{
    const HWND location = Control(IDC_FILE_LOCATION);
    RECT bounds = {};
    GetClientRect(location, &bounds);
    CShdClientDC dc(location);
    CShdSelectObject font(dc.Get(), reinterpret_cast<HGDIOBJ>(SendMessageW(location, WM_GETFONT, 0, 0)));
    const auto fits = [&](const CString& text) {
        SIZE size = {};
        GetTextExtentExPointW(dc.Get(), text, static_cast<int>(text.GetLength()), 0, nullptr, nullptr, &size);
        return size.cx <= bounds.right;
    };
    SetWindowTextW(location, ShortenedLocation(m_folder, fits));
}

void CSelectFileDlg::Layout(int width, int height)
{
    const bool compact = height < ScaleY(160);
    const int margin = ScaleX(8);
    const int labelHeight = ScaleY(13);
    const int editHeight = ScaleY(19);
    const int inner = std::max(0, width - 2 * margin);
    int y = ScaleY(compact ? 28 : 31);
    const auto place = [&](int id, int controlHeight) {
        SetWindowPos(Control(id), nullptr, margin, y, inner, controlHeight, SWP_NOZORDER | SWP_NOACTIVATE);
    };
    // The "Select file:" label is the only static without an id of its own.
    for (HWND child = GetWindow(GetHwnd(), GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if ((GetDlgCtrlID(child) & 0xFFFF) == 0xFFFF) {
            SetWindowPos(child, nullptr, margin, y, inner, labelHeight, SWP_NOZORDER | SWP_NOACTIVATE);
            break;
        }
    }
    y += labelHeight + ScaleY(3);
    place(IDC_FILE_NAME, editHeight);
    y += editHeight + ScaleY(4);
    ShowWindow(Control(IDC_FILE_LOCATION), compact ? SW_HIDE : SW_SHOW);
    if (!compact) {
        place(IDC_FILE_LOCATION, labelHeight);
        y += labelHeight + ScaleY(3);
    }
    place(IDC_FILE_LIST, std::max(0, height - ScaleY(compact ? 4 : 8) - y));
    if (!m_folder.IsEmpty())
        UpdateLocation();
    FitColumn();
}

void CSelectFileDlg::FitColumn()
{
    const HWND list = m_list.GetHwnd();
    if (list == nullptr)
        return;
    RECT client = {};
    GetClientRect(list, &client);
    int width = client.right;
    if ((GetWindowLongW(list, GWL_STYLE) & WS_VSCROLL) == 0)
        width -= GetSystemMetrics(SM_CXVSCROLL);
    SendMessageW(list, LVM_SETCOLUMNWIDTH, 0, std::max(0, width));
}

std::optional<SFileChoice> RunSelectFileDlg(HWND owner, const SFileChoice& in)
{
    CSelectFileDlg dialog(in.programFiles);
    SFileChoice out = in;
    if (!dialog.DoModal(owner, out.path))
        return std::nullopt;
    return out;
}

CString ResolveSpecialFolder(int index, const CString& programFiles)
{
    const CString token = SpecialFolderToken(index);
    if (token == TEXT("%StartUp%"))
        return ShellFolder(CSIDL_STARTUP);
    if (token == TEXT("%ProgramFiles%")) {
        if (!programFiles.IsEmpty())
            return programFiles;
        return FolderOr(TEXT("\\Program Files"), ShellFolder(CSIDL_PROGRAM_FILES));
    }
    if (token == TEXT("%Windows%")) {
        WCHAR buffer[MAX_PATH] = {};
        const UINT length = Handheld::GetWindowsFolder(buffer, MAX_PATH);
        return FolderOr(TEXT("\\Windows"), length > 0 && length < MAX_PATH ? CString(buffer) : CString());
    }
    if (token == TEXT("%Temp%")) {
        WCHAR buffer[MAX_PATH] = {};
        const DWORD length = GetTempPathW(MAX_PATH, buffer);
        if (length == 0)
            return CString();
        return CString(buffer, std::min<DWORD>(length, MAX_PATH - 1));
    }
    if (token == TEXT("%Programs%"))
        return ShellFolder(CSIDL_PROGRAMS);
    return CString();
}
