#include "platform/FaultInjectingPlatform.h"

#include <algorithm>

#include "base/Text.h"

CFaultInjectingPlatform::CFaultInjectingPlatform() : CForwardingPlatform(SystemPlatform()) {}

CFaultInjectingPlatform::CFaultInjectingPlatform(IPlatform& inner) : CForwardingPlatform(inner) {}

void CFaultInjectingPlatform::FailOpen(LPCWSTR keyName, LONG error)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_openFaults.push_back({keyName, error});
}

void CFaultInjectingPlatform::FailValueWrite(LPCWSTR valueName, LONG error)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_writeFaults.push_back({valueName, error});
}

void CFaultInjectingPlatform::FailKeyDelete(LPCWSTR keyName, LONG error)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_keyDeleteFaults.push_back({keyName, error});
}

void CFaultInjectingPlatform::FailValueDelete(LPCWSTR valueName, LONG error)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_valueDeleteFaults.push_back({valueName, error});
}

void CFaultInjectingPlatform::FailValueWritesAfter(int count, LONG error)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_writesLeft = count;
    m_writesLeftError = error;
}

void CFaultInjectingPlatform::LimitFileWrites(DWORD bytes)
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_fileLimited = true;
    m_fileBytesLeft = bytes;
}

void CFaultInjectingPlatform::FailThreadCreation()
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_failThreads = true;
}

void CFaultInjectingPlatform::Clear()
{
    std::lock_guard<std::mutex> lock(m_lock);
    m_openFaults.clear();
    m_writeFaults.clear();
    m_keyDeleteFaults.clear();
    m_valueDeleteFaults.clear();
    m_writesLeft = -1;
    m_fileLimited = false;
    m_failThreads = false;
}

bool CFaultInjectingPlatform::FindFault(const std::vector<SNamedFault>& faults, LPCWSTR name, LONG* error) const
{
    const LPCWSTR wanted = name != nullptr ? name : TEXT("");
    const auto found = std::find_if(faults.begin(), faults.end(),
                                    [&](const SNamedFault& fault) { return fault.name.CompareNoCase(wanted) == 0; });
    if (found == faults.end())
        return false;
    *error = found->error;
    return true;
}

LONG CFaultInjectingPlatform::KeyFault(const std::vector<SNamedFault>& faults, LPCWSTR subKey) const
{
    CString path(subKey);
    while (!path.IsEmpty() && path.GetAt(path.GetLength() - 1) == '\\')
        path.Truncate(path.GetLength() - 1);
    const CString lastName = path.Mid(static_cast<size_t>(path.ReverseFind('\\') + 1));
    std::lock_guard<std::mutex> lock(m_lock);
    LONG error = ERROR_SUCCESS;
    FindFault(faults, lastName, &error);
    return error;
}

LONG CFaultInjectingPlatform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result)
{
    ++m_registryCalls;
    const LONG fault = KeyFault(m_openFaults, subKey);
    if (fault != ERROR_SUCCESS) {
        *result = nullptr;
        return fault;
    }
    return CForwardingPlatform::RegOpenKeyExW(parent, subKey, options, sam, result);
}

LONG CFaultInjectingPlatform::RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options,
                                              REGSAM sam, HKEY* result, DWORD* disposition)
{
    ++m_registryCalls;
    ++m_registryWrites;
    const LONG fault = KeyFault(m_openFaults, subKey);
    if (fault != ERROR_SUCCESS) {
        *result = nullptr;
        return fault;
    }
    return CForwardingPlatform::RegCreateKeyExW(parent, subKey, className, options, sam, result, disposition);
}

LONG CFaultInjectingPlatform::RegCloseKey(HKEY key)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegCloseKey(key);
}

LONG CFaultInjectingPlatform::RegFlushKey(HKEY key)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegFlushKey(key);
}

LONG CFaultInjectingPlatform::RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegQueryValueExW(key, name, type, data, size);
}

LONG CFaultInjectingPlatform::RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    ++m_registryCalls;
    ++m_registryWrites;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        LONG error = ERROR_SUCCESS;
        if (FindFault(m_writeFaults, name, &error))
            return error;
        if (m_writesLeft == 0)
            return m_writesLeftError;
        if (m_writesLeft > 0)
            --m_writesLeft;
    }
    return CForwardingPlatform::RegSetValueExW(key, name, type, data, size);
}

LONG CFaultInjectingPlatform::RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegEnumKeyExW(key, index, name, nameLength);
}

LONG CFaultInjectingPlatform::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type,
                                            BYTE* data, DWORD* size)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegEnumValueW(key, index, name, nameLength, type, data, size);
}

LONG CFaultInjectingPlatform::RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                               DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                               DWORD* maxValueLength)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegQueryInfoKeyW(key, className, classLength, subKeys, maxSubKeyLength, values,
                                                 maxValueNameLength, maxValueLength);
}

LONG CFaultInjectingPlatform::RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime)
{
    ++m_registryCalls;
    return CForwardingPlatform::RegQueryKeyStampW(key, subKeys, values, lastWriteTime);
}

LONG CFaultInjectingPlatform::RegDeleteKeyW(HKEY parent, LPCWSTR subKey)
{
    ++m_registryCalls;
    ++m_registryWrites;
    const LONG fault = KeyFault(m_keyDeleteFaults, subKey);
    if (fault != ERROR_SUCCESS)
        return fault;
    return CForwardingPlatform::RegDeleteKeyW(parent, subKey);
}

LONG CFaultInjectingPlatform::RegDeleteValueW(HKEY key, LPCWSTR name)
{
    ++m_registryCalls;
    ++m_registryWrites;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        LONG error = ERROR_SUCCESS;
        if (FindFault(m_valueDeleteFaults, name, &error))
            return error;
    }
    return CForwardingPlatform::RegDeleteValueW(key, name);
}

BOOL CFaultInjectingPlatform::WriteFile(HANDLE file, const void* buffer, DWORD count, DWORD* written)
{
    DWORD allowed = count;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        if (m_fileLimited) {
            allowed = std::min(count, m_fileBytesLeft);
            m_fileBytesLeft -= allowed;
        }
    }
    if (allowed == 0 && count != 0) {
        *written = 0;
        return TRUE;
    }
    return CForwardingPlatform::WriteFile(file, buffer, allowed, written);
}

HANDLE CFaultInjectingPlatform::CreateThread(DWORD stackSize, LPTHREAD_START_ROUTINE start, void* argument)
{
    {
        std::lock_guard<std::mutex> lock(m_lock);
        if (m_failThreads)
            return nullptr;
    }
    return CForwardingPlatform::CreateThread(stackSize, start, argument);
}
