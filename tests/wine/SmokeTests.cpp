#include <gtest/gtest.h>

#include <string>

#include <windows.h>

namespace {

// Quenda.exe is built into the same folder as the test programs.
std::wstring QuendaPath()
{
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + L"Quenda.exe";
}

HWND WaitForTopLevelWindow(const wchar_t* caption, DWORD processId, DWORD timeoutMs)
{
    for (DWORD waited = 0; waited < timeoutMs; waited += 50) {
        for (HWND window = FindWindowW(nullptr, caption); window != nullptr;
             window = FindWindowExW(nullptr, window, nullptr, caption)) {
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == processId)
                return window;
        }
        Sleep(50);
    }
    return nullptr;
}

TEST(Smoke, QuendaOpensItsWindowAndClosesCleanly)
{
    std::wstring commandLine = L"\"" + QuendaPath() + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    ASSERT_TRUE(CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                               &process));
    const HWND window = WaitForTopLevelWindow(L"Quenda", process.dwProcessId, 20000);
    EXPECT_NE(window, nullptr) << "no top-level window captioned \"Quenda\"";
    if (window != nullptr) {
        EXPECT_TRUE(IsWindowVisible(window));
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    if (WaitForSingleObject(process.hProcess, 20000) != WAIT_OBJECT_0)
        TerminateProcess(process.hProcess, 2);
    DWORD exitCode = 1;
    GetExitCodeProcess(process.hProcess, &exitCode);
    EXPECT_EQ(exitCode, 0u);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

}  // namespace
