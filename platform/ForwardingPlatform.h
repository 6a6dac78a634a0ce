#pragma once

#include "platform/Platform.h"

// Passes every call to another platform; decorators override what they change.
class CForwardingPlatform : public IPlatform {
public:
    explicit CForwardingPlatform(IPlatform& inner) : m_inner(inner) {}

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override
    {
        return m_inner.RegOpenKeyExW(parent, subKey, options, sam, result);
    }
    LONG RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options, REGSAM sam, HKEY* result,
                         DWORD* disposition) override
    {
        return m_inner.RegCreateKeyExW(parent, subKey, className, options, sam, result, disposition);
    }
    LONG RegCloseKey(HKEY key) override { return m_inner.RegCloseKey(key); }
    LONG RegFlushKey(HKEY key) override { return m_inner.RegFlushKey(key); }
    LONG RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) override
    {
        return m_inner.RegQueryValueExW(key, name, type, data, size);
    }
    LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size) override
    {
        return m_inner.RegSetValueExW(key, name, type, data, size);
    }
    LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength) override
    {
        return m_inner.RegEnumKeyExW(key, index, name, nameLength);
    }
    LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                       DWORD* size) override
    {
        return m_inner.RegEnumValueW(key, index, name, nameLength, type, data, size);
    }
    LONG RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys, DWORD* maxSubKeyLength,
                          DWORD* values, DWORD* maxValueNameLength, DWORD* maxValueLength) override
    {
        return m_inner.RegQueryInfoKeyW(key, className, classLength, subKeys, maxSubKeyLength, values,
                                        maxValueNameLength, maxValueLength);
    }
    LONG RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime) override
    {
        return m_inner.RegQueryKeyStampW(key, subKeys, values, lastWriteTime);
    }
    LONG RegDeleteKeyW(HKEY parent, LPCWSTR subKey) override { return m_inner.RegDeleteKeyW(parent, subKey); }
    LONG RegDeleteValueW(HKEY key, LPCWSTR name) override { return m_inner.RegDeleteValueW(key, name); }

    HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, DWORD disposition, DWORD attributes) override
    {
        return m_inner.CreateFileW(path, access, share, disposition, attributes);
    }
    BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read) override
    {
        return m_inner.ReadFile(file, buffer, count, read);
    }
    BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written) override
    {
        return m_inner.WriteFile(file, buffer, count, written);
    }
    DWORD SetFilePointer(HANDLE file, LONG distance, DWORD method) override
    {
        return m_inner.SetFilePointer(file, distance, method);
    }
    DWORD GetFileSize(HANDLE file) override { return m_inner.GetFileSize(file); }
    BOOL FlushFileBuffers(HANDLE file) override { return m_inner.FlushFileBuffers(file); }
    BOOL DeleteFileW(LPCWSTR path) override { return m_inner.DeleteFileW(path); }
    DWORD GetFileAttributesW(LPCWSTR path) override { return m_inner.GetFileAttributesW(path); }

    int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out, int capacity) override
    {
        return m_inner.WideCharToMultiByte(codePage, flags, text, length, out, capacity);
    }
    int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, LPWSTR out,
                            int capacity) override
    {
        return m_inner.MultiByteToWideChar(codePage, flags, text, length, out, capacity);
    }

    HANDLE CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument) override
    {
        return m_inner.CreateThread(stackSize, start, argument);
    }
    HANDLE GetCurrentThread() override { return m_inner.GetCurrentThread(); }
    BOOL SetThreadPriority(HANDLE thread, int priority) override
    {
        return m_inner.SetThreadPriority(thread, priority);
    }
    HANDLE CreateEventW(BOOL manualReset, BOOL initialState) override
    {
        return m_inner.CreateEventW(manualReset, initialState);
    }
    BOOL SetEvent(HANDLE event) override { return m_inner.SetEvent(event); }
    BOOL ResetEvent(HANDLE event) override { return m_inner.ResetEvent(event); }
    DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) override
    {
        return m_inner.WaitForSingleObject(handle, milliseconds);
    }
    DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds) override
    {
        return m_inner.WaitForMultipleObjects(count, handles, waitAll, milliseconds);
    }
    void Sleep(DWORD milliseconds) override { m_inner.Sleep(milliseconds); }

    BOOL CloseHandle(HANDLE handle) override { return m_inner.CloseHandle(handle); }
    DWORD GetLastError() override { return m_inner.GetLastError(); }

protected:
    IPlatform& m_inner;
};
