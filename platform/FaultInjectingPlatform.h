#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "base/CString.h"
#include "platform/ForwardingPlatform.h"

// A platform for tests: passes calls on to another (the system's, by default)
// and makes chosen ones fail, on either build. It also counts registry calls,
// which decide the speed of registry-bound work.
class CFaultInjectingPlatform : public CForwardingPlatform {
public:
    CFaultInjectingPlatform();
    explicit CFaultInjectingPlatform(IPlatform& inner);

    // Opening (or creating) a key whose last path name is `keyName` fails
    // with `error`.
    void FailOpen(LPCWSTR keyName, LONG error = ERROR_ACCESS_DENIED);
    // Writing the value `valueName` fails with `error`.
    void FailValueWrite(LPCWSTR valueName, LONG error = ERROR_ACCESS_DENIED);
    // Deleting a key whose last path name is `keyName`, or the value
    // `valueName`, fails with `error`.
    void FailKeyDelete(LPCWSTR keyName, LONG error = ERROR_ACCESS_DENIED);
    void FailValueDelete(LPCWSTR valueName, LONG error = ERROR_ACCESS_DENIED);
    // After `count` more successful value writes, every write fails.
    void FailValueWritesAfter(int count, LONG error = ERROR_ACCESS_DENIED);
    // Files accept only `bytes` more bytes in all; a write that would pass
    // the limit is cut short (it succeeds with fewer bytes written).
    void LimitFileWrites(DWORD bytes);
    // Thread creation fails.
    void FailThreadCreation();
    // Removes every injected failure.
    void Clear();

    unsigned RegistryCallCount() const { return m_registryCalls; }
    void ResetRegistryCallCount() { m_registryCalls = 0; }
    // Calls that would change the registry: creating or deleting a key,
    // writing or deleting a value (whether or not they succeed).
    unsigned RegistryWriteCount() const { return m_registryWrites; }

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override;
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
    BOOL WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written) override;
    HANDLE CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument) override;

private:
    struct SNamedFault {
        CString name;
        LONG error;
    };

    bool FindFault(const std::vector<SNamedFault>& faults, LPCWSTR name, LONG* error) const;
    // The fault for a key path, found by its last name.
    LONG KeyFault(const std::vector<SNamedFault>& faults, LPCWSTR subKey) const;

    mutable std::mutex m_lock;
    std::vector<SNamedFault> m_openFaults;
    std::vector<SNamedFault> m_writeFaults;
    std::vector<SNamedFault> m_keyDeleteFaults;
    std::vector<SNamedFault> m_valueDeleteFaults;
    int m_writesLeft = -1;
    LONG m_writesLeftError = ERROR_SUCCESS;
    bool m_fileLimited = false;
    DWORD m_fileBytesLeft = 0;
    bool m_failThreads = false;
    std::atomic<unsigned> m_registryCalls{0};
    std::atomic<unsigned> m_registryWrites{0};
};
