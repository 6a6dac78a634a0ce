#include "tests/ui/FileDialogTestSupport_win.h"

#include <commctrl.h>

#include "tests/support/TestText.h"

namespace {

void RemoveTree(const CString& path)
{
    WIN32_FIND_DATAW data = {};
    const HANDLE find = FindFirstFileW(path + L"\\*", &data);
    if (find != INVALID_HANDLE_VALUE) {
        do {
            const CString name = data.cFileName;
            if (name == L"." || name == L"..")
                continue;
            const CString child = path + L"\\" + name;
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                RemoveTree(child);
            else
                DeleteFileW(child);
        } while (FindNextFileW(find, &data));
        FindClose(find);
    }
    RemoveDirectoryW(path);
}

}  // namespace

CTestFolder::CTestFolder(const char* name, std::vector<const char*> folders, std::vector<const char*> files)
{
    WCHAR current[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, current);
    m_path = CString(current) + L"\\" + W(name);
    RemoveTree(m_path);
    CreateDirectoryW(m_path, nullptr);
    for (const char* folder : folders)
        CreateDirectoryW(PathOf(folder), nullptr);
    for (const char* file : files) {
        const HANDLE handle = CreateFileW(PathOf(file), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        CloseHandle(handle);
    }
}

CTestFolder::~CTestFolder()
{
    RemoveTree(m_path);
}

CString CTestFolder::PathOf(const char* entry) const
{
    return m_path + L"\\" + W(entry);
}

HWND FindDialog(LPCWSTR caption)
{
    return FindWindowW(L"#32770", caption);
}

std::vector<CString> ListRows(HWND list, int column)
{
    std::vector<CString> rows;
    const int count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        WCHAR text[600] = {};
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = 600;
        SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        rows.push_back(text);
    }
    return rows;
}

std::vector<int> ListImages(HWND list)
{
    std::vector<int> images;
    const int count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = row;
        SendMessageW(list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        images.push_back(item.iImage);
    }
    return images;
}

int SelectedRow(HWND list)
{
    return static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}
