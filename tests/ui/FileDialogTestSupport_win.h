#pragma once

#include <vector>

#include <windows.h>

#include "base/CString.h"

// A folder of the test's own in the working folder, made afresh with the
// given subfolders and (empty) files, and removed with them at the end.
class CTestFolder {
public:
    CTestFolder(const char* name, std::vector<const char*> folders, std::vector<const char*> files);
    ~CTestFolder();
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;

    // The folder's full path, and one of an entry in it.
    const CString& Path() const { return m_path; }
    CString PathOf(const char* entry) const;

private:
    CString m_path;
};

// The dialog of the thread with this caption, or null.
HWND FindDialog(LPCWSTR caption);
// The texts of a column of a list view's rows, and the rows' images.
std::vector<CString> ListRows(HWND list, int column = 0);
std::vector<int> ListImages(HWND list);
int SelectedRow(HWND list);
