#pragma once

#include "base/CString.h"
#include "platform/Platform.h"

// A key of the tests' own under HKEY_CURRENT_USER\Software\QuendaTests,
// deleted with its subtree and created afresh by the constructor, and deleted
// again by the destructor. On the Windows build it lives in the real registry
// of the test prefix; natively in the in-memory one.
class CScratchKey {
public:
    explicit CScratchKey(LPCWSTR name);
    ~CScratchKey();
    CScratchKey(const CScratchKey&) = delete;
    CScratchKey& operator=(const CScratchKey&) = delete;

    HKEY Handle() const { return m_key; }
    // The path below HKEY_CURRENT_USER.
    const CString& Path() const { return m_path; }

private:
    CString m_path;
    HKEY m_key = nullptr;
};

// Deletes a key and everything below it with plain platform calls; true if
// the key is gone.
bool DeleteTreeForTests(HKEY parent, LPCWSTR path);
