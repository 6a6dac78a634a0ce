#include "tests/support/ScratchKey.h"

#include <vector>

bool DeleteTreeForTests(HKEY parent, LPCWSTR path)
{
    IPlatform& platform = Platform();
    HKEY key = nullptr;
    if (platform.RegOpenKeyExW(parent, path, 0, 0, &key) == ERROR_SUCCESS) {
        std::vector<CString> names;
        WCHAR name[512];
        for (DWORD index = 0;; ++index) {
            DWORD length = 512;
            if (platform.RegEnumKeyExW(key, index, name, &length) != ERROR_SUCCESS)
                break;
            names.push_back(CString(name, length));
        }
        for (const CString& child : names)
            DeleteTreeForTests(key, child);
        platform.RegCloseKey(key);
    }
    platform.RegDeleteKeyW(parent, path);
    if (platform.RegOpenKeyExW(parent, path, 0, 0, &key) != ERROR_SUCCESS)
        return true;
    platform.RegCloseKey(key);
    return false;
}

CScratchKey::CScratchKey(LPCWSTR name) : m_path(CString(TEXT("Software\\QuendaTests\\")) + name)
{
    DeleteTreeForTests(HKEY_CURRENT_USER, m_path);
    Platform().RegCreateKeyExW(HKEY_CURRENT_USER, m_path, nullptr, 0, 0, &m_key, nullptr);
}

CScratchKey::~CScratchKey()
{
    if (m_key != nullptr)
        Platform().RegCloseKey(m_key);
    DeleteTreeForTests(HKEY_CURRENT_USER, m_path);
    Platform().RegDeleteKeyW(HKEY_CURRENT_USER, TEXT("Software\\QuendaTests"));
}
