#include "bench/BenchSupport_win.h"

#include <cstdio>

#include "base/Utf8.h"
#include "regfile/RegImportRun.h"
#include "registry/RegKey.h"

double Milliseconds(const LARGE_INTEGER& from, const LARGE_INTEGER& to)
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return 1000.0 * static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double TimeCommand(std::wstring command)
{
    SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
    HANDLE nul = CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, OPEN_EXISTING, 0,
                             nullptr);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = nul;
    startup.hStdError = nul;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    PROCESS_INFORMATION process = {};
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    const BOOL started = CreateProcessW(nullptr, &command[0], nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                        nullptr, &startup, &process);
    CloseHandle(nul);
    if (!started)
        return -1;
    WaitForSingleObject(process.hProcess, INFINITE);
    QueryPerformanceCounter(&end);
    DWORD exitCode = 1;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return exitCode == 0 ? Milliseconds(start, end) : -1;
}

double TimeImport(const CString& file)
{
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CString error;
    const bool result = CRegImportRun(file, true).Run([] { return false; }, error);
    QueryPerformanceCounter(&end);
    if (!result)
        std::fprintf(stderr, "Quenda's import failed: %s\n", ToUtf8(error).c_str());
    return result ? Milliseconds(start, end) : -1;
}

void CountTree(HKEY parent, const CString& path, unsigned& keys, unsigned& values)
{
    CShdRegKey key;
    if (!key.Open(parent, path))
        return;
    ++keys;
    values += key.ValueCount();
    CString name;
    for (DWORD index = 0; key.EnumSubkey(index, name); ++index)
        CountTree(key.GetHandle(), name, keys, values);
}

bool CountBenchmarkTree(const CString& path, unsigned& keys, unsigned& values)
{
    keys = 0;
    values = 0;
    CountTree(HKEY_CURRENT_USER, path, keys, values);
    if (keys == 0)
        std::fprintf(stderr, "HKCU\\%s does not exist\n", ToUtf8(path).c_str());
    return keys != 0;
}
