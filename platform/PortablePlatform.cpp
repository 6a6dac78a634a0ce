#include "platform/PortablePlatform.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "base/Text.h"
#include "base/Utf8.h"

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

// What GetCurrentThread returns on Windows: a pseudo-handle, never closed.
const HANDLE kCurrentThreadPseudoHandle = reinterpret_cast<HANDLE>(static_cast<intptr_t>(-2));

DWORD Win32ErrorFromErrno(int error)
{
    switch (error) {
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EEXIST:
        return ERROR_FILE_EXISTS;
    case ENOSPC:
        return ERROR_DISK_FULL;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case EBADF:
        return ERROR_INVALID_HANDLE;
    default:
        return ERROR_ACCESS_DENIED;
    }
}

// Windows-1252 bytes 0x80 to 0x9F; the others are Latin-1.
const uint16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

WCHAR WidenCp1252(unsigned char byte)
{
    return static_cast<WCHAR>(byte >= 0x80 && byte < 0xA0 ? kCp1252High[byte - 0x80] : byte);
}

char NarrowCp1252(WCHAR c)
{
    const uint16_t unit = static_cast<uint16_t>(c);
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF))
        return static_cast<char>(unit);
    for (int i = 0; i < 32; ++i) {
        if (kCp1252High[i] == unit)
            return static_cast<char>(0x80 + i);
    }
    return '?';
}

}  // namespace

struct CPortablePlatform::SObject {
    virtual ~SObject() = default;
};

struct CPortablePlatform::SFile : SObject {
    explicit SFile(int descriptor) : fd(descriptor) {}
    ~SFile() override { ::close(fd); }
    int fd;
};

struct CPortablePlatform::SEvent : SObject {
    bool manualReset = true;
    bool signalled = false;
};

struct CPortablePlatform::SThread : SObject {
    std::thread thread;
    bool finished = false;
};

CPortablePlatform::CPortablePlatform() = default;

CPortablePlatform::~CPortablePlatform()
{
    // Threads whose handles were never closed are joined here; the program
    // itself always waits for its workers first.
    std::vector<std::shared_ptr<SThread>> threads;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        threads = m_closedThreads;
        for (auto& entry : m_objects) {
            if (auto thread = std::dynamic_pointer_cast<SThread>(entry.second))
                threads.push_back(thread);
        }
    }
    for (auto& thread : threads) {
        if (thread->thread.joinable())
            thread->thread.join();
    }
}

// Registry: the in-memory store. Options and access masks have no meaning there.

LONG CPortablePlatform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD, REGSAM, HKEY* result)
{
    return m_registry.OpenKey(parent, subKey, result);
}

LONG CPortablePlatform::RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD, REGSAM, HKEY* result,
                                        DWORD* disposition)
{
    return m_registry.CreateKey(parent, subKey, className, result, disposition);
}

LONG CPortablePlatform::RegCloseKey(HKEY key)
{
    return m_registry.CloseKey(key);
}

LONG CPortablePlatform::RegFlushKey(HKEY key)
{
    return m_registry.FlushKey(key);
}

LONG CPortablePlatform::RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size)
{
    return m_registry.QueryValue(key, name, type, data, size);
}

LONG CPortablePlatform::RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    return m_registry.SetValue(key, name, type, data, size);
}

LONG CPortablePlatform::RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength)
{
    return m_registry.EnumKey(key, index, name, nameLength);
}

LONG CPortablePlatform::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type,
                                      BYTE* data, DWORD* size)
{
    return m_registry.EnumValue(key, index, name, nameLength, type, data, size);
}

LONG CPortablePlatform::RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                         DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                         DWORD* maxValueLength)
{
    return m_registry.QueryInfoKey(key, className, classLength, subKeys, maxSubKeyLength, values,
                                   maxValueNameLength, maxValueLength);
}

LONG CPortablePlatform::RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime)
{
    return m_registry.QueryKeyStamp(key, subKeys, values, lastWriteTime);
}

LONG CPortablePlatform::RegDeleteKeyW(HKEY parent, LPCWSTR subKey)
{
    return m_registry.DeleteKey(parent, subKey);
}

LONG CPortablePlatform::RegDeleteValueW(HKEY key, LPCWSTR name)
{
    return m_registry.DeleteValue(key, name);
}

// Kernel objects.

HANDLE CPortablePlatform::AddObject(std::shared_ptr<SObject> object)
{
    const HANDLE handle = object.get();
    std::lock_guard<std::mutex> lock(m_lock);
    m_objects.emplace(handle, std::move(object));
    return handle;
}

template <typename T>
std::shared_ptr<T> CPortablePlatform::Find(HANDLE handle)
{
    std::lock_guard<std::mutex> lock(m_lock);
    const auto found = m_objects.find(handle);
    std::shared_ptr<T> object = found == m_objects.end() ? nullptr : std::dynamic_pointer_cast<T>(found->second);
    if (!object)
        t_lastError = ERROR_INVALID_HANDLE;
    return object;
}

BOOL CPortablePlatform::CloseHandle(HANDLE handle)
{
    std::shared_ptr<SObject> object;
    {
        std::lock_guard<std::mutex> lock(m_lock);
        const auto found = m_objects.find(handle);
        if (found == m_objects.end()) {
            t_lastError = ERROR_INVALID_HANDLE;
            return FALSE;
        }
        object = found->second;
        m_objects.erase(found);
    }
    // A thread whose handle is closed runs on; the destructor still waits for it.
    if (auto thread = std::dynamic_pointer_cast<SThread>(object)) {
        std::lock_guard<std::mutex> lock(m_lock);
        m_closedThreads.push_back(thread);
    }
    return TRUE;
}

DWORD CPortablePlatform::GetLastError()
{
    return t_lastError;
}

// Files.

HANDLE CPortablePlatform::CreateFileW(LPCWSTR path, DWORD access, DWORD, DWORD disposition, DWORD)
{
    int flags = O_CLOEXEC;
    const bool reads = (access & GENERIC_READ) != 0;
    const bool writes = (access & GENERIC_WRITE) != 0;
    flags |= reads && writes ? O_RDWR : writes ? O_WRONLY : O_RDONLY;
    switch (disposition) {
    case CREATE_NEW:
        flags |= O_CREAT | O_EXCL;
        break;
    case CREATE_ALWAYS:
        flags |= O_CREAT | O_TRUNC;
        break;
    case OPEN_ALWAYS:
        flags |= O_CREAT;
        break;
    case TRUNCATE_EXISTING:
        flags |= O_TRUNC;
        break;
    case OPEN_EXISTING:
        break;
    default:
        t_lastError = ERROR_INVALID_PARAMETER;
        return INVALID_HANDLE_VALUE;
    }
    const std::string name = ToUtf8(CString(path));
    struct stat info;
    if (::stat(name.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
        t_lastError = ERROR_ACCESS_DENIED;
        return INVALID_HANDLE_VALUE;
    }
    const int fd = ::open(name.c_str(), flags, 0644);
    if (fd < 0) {
        t_lastError = Win32ErrorFromErrno(errno);
        return INVALID_HANDLE_VALUE;
    }
    t_lastError = ERROR_SUCCESS;
    return AddObject(std::make_shared<SFile>(fd));
}

BOOL CPortablePlatform::ReadFile(HANDLE handle, void* buffer, DWORD count, DWORD* read)
{
    *read = 0;
    const auto file = Find<SFile>(handle);
    if (!file)
        return FALSE;
    while (*read < count) {
        const ssize_t got = ::read(file->fd, static_cast<char*>(buffer) + *read, count - *read);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            t_lastError = Win32ErrorFromErrno(errno);
            return FALSE;
        }
        if (got == 0)
            break;
        *read += static_cast<DWORD>(got);
    }
    return TRUE;
}

BOOL CPortablePlatform::WriteFile(HANDLE handle, const void* buffer, DWORD count, DWORD* written)
{
    *written = 0;
    const auto file = Find<SFile>(handle);
    if (!file)
        return FALSE;
    while (*written < count) {
        const ssize_t put = ::write(file->fd, static_cast<const char*>(buffer) + *written, count - *written);
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0) {
            t_lastError = Win32ErrorFromErrno(errno);
            return FALSE;
        }
        *written += static_cast<DWORD>(put);
    }
    return TRUE;
}

DWORD CPortablePlatform::SetFilePointer(HANDLE handle, LONG distance, DWORD method)
{
    const auto file = Find<SFile>(handle);
    if (!file)
        return INVALID_SET_FILE_POINTER;
    const int whence = method == FILE_BEGIN ? SEEK_SET : method == FILE_CURRENT ? SEEK_CUR : SEEK_END;
    const off_t position = ::lseek(file->fd, distance, whence);
    if (position < 0) {
        t_lastError = errno == EINVAL ? ERROR_NEGATIVE_SEEK : Win32ErrorFromErrno(errno);
        return INVALID_SET_FILE_POINTER;
    }
    t_lastError = ERROR_SUCCESS;
    return static_cast<DWORD>(position);
}

DWORD CPortablePlatform::GetFileSize(HANDLE handle)
{
    const auto file = Find<SFile>(handle);
    struct stat info;
    if (!file || ::fstat(file->fd, &info) != 0)
        return INVALID_FILE_SIZE;
    t_lastError = ERROR_SUCCESS;
    return static_cast<DWORD>(info.st_size);
}

BOOL CPortablePlatform::FlushFileBuffers(HANDLE handle)
{
    const auto file = Find<SFile>(handle);
    if (!file)
        return FALSE;
    if (::fdatasync(file->fd) != 0) {
        t_lastError = Win32ErrorFromErrno(errno);
        return FALSE;
    }
    return TRUE;
}

BOOL CPortablePlatform::DeleteFileW(LPCWSTR path)
{
    if (::unlink(ToUtf8(CString(path)).c_str()) != 0) {
        t_lastError = Win32ErrorFromErrno(errno);
        return FALSE;
    }
    return TRUE;
}

DWORD CPortablePlatform::GetFileAttributesW(LPCWSTR path)
{
    struct stat info;
    if (::stat(ToUtf8(CString(path)).c_str(), &info) != 0) {
        t_lastError = Win32ErrorFromErrno(errno);
        return INVALID_FILE_ATTRIBUTES;
    }
    return S_ISDIR(info.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
}

// Text: Windows-1252, one byte for each character either way.

int CPortablePlatform::WideCharToMultiByte(UINT, DWORD, LPCWSTR text, int length, char* out, int capacity)
{
    const int count = length < 0 ? static_cast<int>(StrLen(text)) + 1 : length;
    if (capacity == 0)
        return count;
    if (capacity < count) {
        t_lastError = ERROR_INSUFFICIENT_BUFFER;
        return 0;
    }
    for (int i = 0; i < count; ++i)
        out[i] = NarrowCp1252(text[i]);
    return count;
}

int CPortablePlatform::MultiByteToWideChar(UINT, DWORD, const char* text, int length, LPWSTR out, int capacity)
{
    const int count = length < 0 ? static_cast<int>(std::strlen(text)) + 1 : length;
    if (capacity == 0)
        return count;
    if (capacity < count) {
        t_lastError = ERROR_INSUFFICIENT_BUFFER;
        return 0;
    }
    for (int i = 0; i < count; ++i)
        out[i] = WidenCp1252(static_cast<unsigned char>(text[i]));
    return count;
}

// Threads and events.

HANDLE CPortablePlatform::CreateThread(DWORD, LPTHREAD_START_ROUTINE start, void* argument)
{
    auto thread = std::make_shared<SThread>();
    // The handle is registered before the thread runs, so that a thread that
    // ends at once still finds its object.
    const HANDLE handle = AddObject(thread);
    std::lock_guard<std::mutex> lock(m_lock);
    thread->thread = std::thread([this, thread, start, argument] {
        start(argument);
        std::lock_guard<std::mutex> finished(m_lock);
        thread->finished = true;
        m_signalled.notify_all();
    });
    return handle;
}

HANDLE CPortablePlatform::GetCurrentThread()
{
    return kCurrentThreadPseudoHandle;
}

BOOL CPortablePlatform::SetThreadPriority(HANDLE thread, int)
{
    // Standard threads have no portable priority; the call only checks the handle.
    return thread == kCurrentThreadPseudoHandle || Find<SThread>(thread) ? TRUE : FALSE;
}

HANDLE CPortablePlatform::CreateEventW(BOOL manualReset, BOOL initialState)
{
    auto event = std::make_shared<SEvent>();
    event->manualReset = manualReset != FALSE;
    event->signalled = initialState != FALSE;
    return AddObject(event);
}

BOOL CPortablePlatform::SetEvent(HANDLE handle)
{
    const auto event = Find<SEvent>(handle);
    if (!event)
        return FALSE;
    std::lock_guard<std::mutex> lock(m_lock);
    event->signalled = true;
    m_signalled.notify_all();
    return TRUE;
}

BOOL CPortablePlatform::ResetEvent(HANDLE handle)
{
    const auto event = Find<SEvent>(handle);
    if (!event)
        return FALSE;
    std::lock_guard<std::mutex> lock(m_lock);
    event->signalled = false;
    return TRUE;
}

bool CPortablePlatform::IsSignalled(SObject& object) const
{
    if (auto* event = dynamic_cast<SEvent*>(&object))
        return event->signalled;
    if (auto* thread = dynamic_cast<SThread*>(&object))
        return thread->finished;
    return false;
}

DWORD CPortablePlatform::WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    return WaitForMultipleObjects(1, &handle, TRUE, milliseconds);
}

DWORD CPortablePlatform::WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitAll,
                                                DWORD milliseconds)
{
    std::vector<std::shared_ptr<SObject>> objects;
    for (DWORD i = 0; i < count; ++i) {
        const auto object = Find<SObject>(handles[i]);
        if (!object)
            return WAIT_FAILED;
        objects.push_back(object);
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    std::unique_lock<std::mutex> lock(m_lock);
    for (;;) {
        DWORD ready = count;
        size_t signalled = 0;
        for (DWORD i = 0; i < count; ++i) {
            if (IsSignalled(*objects[i])) {
                ++signalled;
                if (ready == count)
                    ready = i;
            }
        }
        if (count > 0 && (waitAll ? signalled == count : signalled > 0)) {
            // Auto-reset events are consumed by the wait that sees them.
            for (DWORD i = 0; i < count; ++i) {
                auto* event = dynamic_cast<SEvent*>(objects[i].get());
                if (event != nullptr && !event->manualReset && (waitAll || i == ready))
                    event->signalled = false;
            }
            return WAIT_OBJECT_0 + (waitAll ? 0 : ready);
        }
        if (milliseconds == INFINITE)
            m_signalled.wait(lock);
        else if (std::chrono::steady_clock::now() >= deadline)
            return WAIT_TIMEOUT;
        else
            m_signalled.wait_until(lock, deadline);
    }
}

void CPortablePlatform::Sleep(DWORD milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

IPlatform& SystemPlatform()
{
    static CPortablePlatform platform;
    return platform;
}
