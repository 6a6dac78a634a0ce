#pragma once

#include "platform/Platform.h"

// The platform of the Windows build: the system's own calls, with two
// corrections that make the desktop behave as the handheld does (see the
// registry calls in the source).
class CWin32Platform : public IPlatform {
public:
    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override;
    LONG RegCreateAbsentKeyW(HKEY parent, LPCWSTR subKey, LPCWSTR className, HKEY* result,
                             DWORD* disposition) override;
    LONG RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options, REGSAM sam, HKEY* result,
                         DWORD* disposition) override;
    LONG RegCloseKey(HKEY key) override;
    LONG RegFlushKey(HKEY key) override;
    LONG RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) override;
    LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size) override;
    LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength) override;
    LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                       DWORD* size) override;
    LONG RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys, DWORD* maxSubKeyLength,
                          DWORD* values, DWORD* maxValueNameLength, DWORD* maxValueLength) override;
    LONG RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime) override;
    LONG RegDeleteKeyW(HKEY parent, LPCWSTR subKey) override;
    LONG RegDeleteValueW(HKEY key, LPCWSTR name) override;

    HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, DWORD disposition, DWORD attributes) override;
    BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read) override;
    BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written) override;
    DWORD SetFilePointer(HANDLE file, LONG distance, DWORD method) override;
    DWORD GetFileSize(HANDLE file) override;
    BOOL FlushFileBuffers(HANDLE file) override;
    BOOL DeleteFileW(LPCWSTR path) override;
    DWORD GetFileAttributesW(LPCWSTR path) override;

    int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out, int capacity) override;
    int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, LPWSTR out,
                            int capacity) override;

    HANDLE CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument) override;
    HANDLE GetCurrentThread() override;
    BOOL SetThreadPriority(HANDLE thread, int priority) override;
    HANDLE CreateEventW(BOOL manualReset, BOOL initialState) override;
    BOOL SetEvent(HANDLE event) override;
    BOOL ResetEvent(HANDLE event) override;
    DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) override;
    DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds) override;
    void Sleep(DWORD milliseconds) override;

    BOOL CloseHandle(HANDLE handle) override;
    DWORD GetLastError() override;
};
