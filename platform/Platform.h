#pragma once

#include "base/WinTypes.h"

// The one seam between the program's logic and the operating system: the
// registry, files, ANSI text conversion, threads and events. Every call has
// the meaning, arguments and error codes of the Win32 call of the same name
// (reserved and security arguments dropped). Registry calls return the error
// code; file, handle and thread calls return the Win32 result and leave the
// reason in GetLastError().
//
// The Win32 build talks to the real system; the portable build has an
// in-memory registry with the same semantics. Tests can put a decorator in
// front of either to inject failures.
class IPlatform {
public:
    virtual ~IPlatform() = default;

    // Registry. An access mask of 0 asks for no particular rights, as on the
    // handheld, where masks are ignored: every open key can be read and written.
    virtual LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) = 0;
    virtual LONG RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options, REGSAM sam,
                                 HKEY* result, DWORD* disposition) = 0;
    // RegCreateKeyExW for a key that the caller knows to be absent: a
    // platform may skip what it does only to keep an existing key as it was.
    virtual LONG RegCreateAbsentKeyW(HKEY parent, LPCWSTR subKey, LPCWSTR className, HKEY* result,
                                     DWORD* disposition)
    {
        return RegCreateKeyExW(parent, subKey, className, 0, 0, result, disposition);
    }
    virtual LONG RegCloseKey(HKEY key) = 0;
    virtual LONG RegFlushKey(HKEY key) = 0;
    virtual LONG RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) = 0;
    // Stores exactly `size` bytes, also for string types.
    virtual LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size) = 0;
    virtual LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength) = 0;
    virtual LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                               DWORD* size) = 0;
    virtual LONG RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                  DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                  DWORD* maxValueLength) = 0;
    // The counts and the last-write time alone: what tells, in one call,
    // whether a key changed since it was last read.
    virtual LONG RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime) = 0;
    virtual LONG RegDeleteKeyW(HKEY parent, LPCWSTR subKey) = 0;
    virtual LONG RegDeleteValueW(HKEY key, LPCWSTR name) = 0;

    // Files.
    virtual HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, DWORD disposition, DWORD attributes) = 0;
    virtual BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* read) = 0;
    virtual BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written) = 0;
    virtual DWORD SetFilePointer(HANDLE file, LONG distance, DWORD method) = 0;
    virtual DWORD GetFileSize(HANDLE file) = 0;
    virtual BOOL FlushFileBuffers(HANDLE file) = 0;
    virtual BOOL DeleteFileW(LPCWSTR path) = 0;
    virtual DWORD GetFileAttributesW(LPCWSTR path) = 0;

    // Text in the ANSI code page (CP_ACP).
    virtual int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out,
                                    int capacity) = 0;
    virtual int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, LPWSTR out,
                                    int capacity) = 0;

    // Threads and manual- or auto-reset events.
    virtual HANDLE CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument) = 0;
    virtual HANDLE GetCurrentThread() = 0;
    virtual BOOL SetThreadPriority(HANDLE thread, int priority) = 0;
    virtual HANDLE CreateEventW(BOOL manualReset, BOOL initialState) = 0;
    virtual BOOL SetEvent(HANDLE event) = 0;
    virtual BOOL ResetEvent(HANDLE event) = 0;
    virtual DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) = 0;
    virtual DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll, DWORD milliseconds) = 0;
    virtual void Sleep(DWORD milliseconds) = 0;

    virtual BOOL CloseHandle(HANDLE handle) = 0;
    virtual DWORD GetLastError() = 0;
};

// The platform the program runs on: the system's own unless a test put
// another in place with CScopedPlatform, or the calling thread has one of its
// own (CScopedThreadPlatform).
IPlatform& Platform();

// The system's own platform of this build.
IPlatform& SystemPlatform();

// Puts a platform in place for the lifetime of the object (tests only; not
// thread-safe against workers that are running).
class CScopedPlatform {
public:
    explicit CScopedPlatform(IPlatform& platform);
    ~CScopedPlatform();
    CScopedPlatform(const CScopedPlatform&) = delete;
    CScopedPlatform& operator=(const CScopedPlatform&) = delete;

private:
    IPlatform* m_previous;
};

// Puts a platform in place for the calling thread alone, for the lifetime of
// the object: work on a worker thread can run against another registry (an
// import preview's overlay) while every other thread keeps the real one.
class CScopedThreadPlatform {
public:
    explicit CScopedThreadPlatform(IPlatform& platform);
    ~CScopedThreadPlatform();
    CScopedThreadPlatform(const CScopedThreadPlatform&) = delete;
    CScopedThreadPlatform& operator=(const CScopedThreadPlatform&) = delete;

private:
    IPlatform* m_previous;
};
