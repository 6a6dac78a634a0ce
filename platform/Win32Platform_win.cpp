#include "platform/Win32Platform_win.h"

#include <cstring>
#include <vector>

#include "base/ValueData.h"

namespace {

// The handheld ignores access masks; the desktop refuses a query on a key
// opened with mask 0 (ERROR_ACCESS_DENIED). Mask 0 therefore asks for read
// and write rights, and for read rights alone where write is refused.
LONG OpenWithRights(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result)
{
    if (sam != 0)
        return ::RegOpenKeyExW(parent, subKey, options, sam, result);
    const LONG status = ::RegOpenKeyExW(parent, subKey, options, KEY_READ | KEY_WRITE, result);
    if (status != ERROR_ACCESS_DENIED)
        return status;
    return ::RegOpenKeyExW(parent, subKey, options, KEY_READ, result);
}

}  // namespace

LONG CWin32Platform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result)
{
    return OpenWithRights(parent, subKey, options, sam, result);
}

LONG CWin32Platform::RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options, REGSAM sam,
                                     HKEY* result, DWORD* disposition)
{
    // Wine's create erases the class of a key that exists already; the
    // handheld and the desktop keep it. Opening first keeps it everywhere.
    const REGSAM rights = sam != 0 ? sam : KEY_READ | KEY_WRITE;
    const LONG status = ::RegOpenKeyExW(parent, subKey, 0, rights, result);
    if (status != ERROR_FILE_NOT_FOUND) {
        if (status == ERROR_SUCCESS && disposition != nullptr)
            *disposition = REG_OPENED_EXISTING_KEY;
        return status;
    }
    return ::RegCreateKeyExW(parent, subKey, 0, const_cast<LPWSTR>(className), options, rights, nullptr, result,
                             disposition);
}

LONG CWin32Platform::RegCreateAbsentKeyW(HKEY parent, LPCWSTR subKey, LPCWSTR className, HKEY* result,
                                         DWORD* disposition)
{
    // No class to keep: one call instead of two for a new key.
    return ::RegCreateKeyExW(parent, subKey, 0, const_cast<LPWSTR>(className), 0, KEY_READ | KEY_WRITE, nullptr,
                             result, disposition);
}

LONG CWin32Platform::RegCloseKey(HKEY key)
{
    return ::RegCloseKey(key);
}

LONG CWin32Platform::RegFlushKey(HKEY key)
{
    return ::RegFlushKey(key);
}

LONG CWin32Platform::RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size)
{
    return ::RegQueryValueExW(key, name, nullptr, type, data, size);
}

LONG CWin32Platform::RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    if (!IsStringType(type) || size == 0 || data == nullptr)
        return ::RegSetValueExW(key, name, 0, type, data, size);
    // For string types the desktop adds a NUL of its own when the data's last
    // 16-bit unit is not NUL and the unit just past the data (in memory) is:
    // "61 00 00" would be stored as five bytes. The handheld stores what it is
    // given. Copying the data between guard units that are never NUL keeps
    // that test from ever passing, so exactly `size` bytes are stored. (The
    // test also reads the unit before odd one-byte data, hence the leading
    // guard.)
    const size_t guard = sizeof(WCHAR);
    std::vector<BYTE> padded(guard + size + 2 * guard, 0xFF);
    std::memcpy(padded.data() + guard, data, size);
    return ::RegSetValueExW(key, name, 0, type, padded.data() + guard, size);
}

LONG CWin32Platform::RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength)
{
    return ::RegEnumKeyExW(key, index, name, nameLength, nullptr, nullptr, nullptr, nullptr);
}

LONG CWin32Platform::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                                   DWORD* size)
{
    return ::RegEnumValueW(key, index, name, nameLength, nullptr, type, data, size);
}

LONG CWin32Platform::RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                      DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                      DWORD* maxValueLength)
{
    return ::RegQueryInfoKeyW(key, className, classLength, nullptr, subKeys, maxSubKeyLength, nullptr, values,
                              maxValueNameLength, maxValueLength, nullptr, nullptr);
}

LONG CWin32Platform::RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime)
{
    return ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, subKeys, nullptr, nullptr, values, nullptr, nullptr,
                              nullptr, lastWriteTime);
}

LONG CWin32Platform::RegDeleteKeyW(HKEY parent, LPCWSTR subKey)
{
    return ::RegDeleteKeyW(parent, subKey);
}

LONG CWin32Platform::RegDeleteValueW(HKEY key, LPCWSTR name)
{
    return ::RegDeleteValueW(key, name);
}

HANDLE CWin32Platform::CreateFileW(LPCWSTR path, DWORD access, DWORD share, DWORD disposition, DWORD attributes)
{
    return ::CreateFileW(path, access, share, nullptr, disposition, attributes, nullptr);
}

BOOL CWin32Platform::ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read)
{
    return ::ReadFile(file, buffer, count, read, nullptr);
}

BOOL CWin32Platform::WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written)
{
    return ::WriteFile(file, buffer, count, written, nullptr);
}

DWORD CWin32Platform::SetFilePointer(HANDLE file, LONG distance, DWORD method)
{
    return ::SetFilePointer(file, distance, nullptr, method);
}

DWORD CWin32Platform::GetFileSize(HANDLE file)
{
    return ::GetFileSize(file, nullptr);
}

BOOL CWin32Platform::FlushFileBuffers(HANDLE file)
{
    return ::FlushFileBuffers(file);
}

BOOL CWin32Platform::DeleteFileW(LPCWSTR path)
{
    return ::DeleteFileW(path);
}

DWORD CWin32Platform::GetFileAttributesW(LPCWSTR path)
{
    return ::GetFileAttributesW(path);
}

int CWin32Platform::WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out,
                                        int capacity)
{
    return ::WideCharToMultiByte(codePage, flags, text, length, out, capacity, nullptr, nullptr);
}

int CWin32Platform::MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, LPWSTR out,
                                        int capacity)
{
    return ::MultiByteToWideChar(codePage, flags, text, length, out, capacity);
}

HANDLE CWin32Platform::CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument)
{
    return ::CreateThread(nullptr, stackSize, start, argument, 0, nullptr);
}

HANDLE CWin32Platform::GetCurrentThread()
{
    return ::GetCurrentThread();
}

BOOL CWin32Platform::SetThreadPriority(HANDLE thread, int priority)
{
    return ::SetThreadPriority(thread, priority);
}

HANDLE CWin32Platform::CreateEventW(BOOL manualReset, BOOL initialState)
{
    return ::CreateEventW(nullptr, manualReset, initialState, nullptr);
}

BOOL CWin32Platform::SetEvent(HANDLE event)
{
    return ::SetEvent(event);
}

BOOL CWin32Platform::ResetEvent(HANDLE event)
{
    return ::ResetEvent(event);
}

DWORD CWin32Platform::WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    return ::WaitForSingleObject(handle, milliseconds);
}

DWORD CWin32Platform::WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds)
{
    return ::WaitForMultipleObjects(count, handles, waitAll, milliseconds);
}

void CWin32Platform::Sleep(DWORD milliseconds)
{
    ::Sleep(milliseconds);
}

BOOL CWin32Platform::CloseHandle(HANDLE handle)
{
    return ::CloseHandle(handle);
}

DWORD CWin32Platform::GetLastError()
{
    return ::GetLastError();
}

IPlatform& SystemPlatform()
{
    static CWin32Platform platform;
    return platform;
}
