#include "tests/support/RunProcess_win.h"

#include <windows.h>

#include <string>

namespace {

const DWORD kPatienceMilliseconds = 30000;

}  // namespace

long RunProcess(const CString& commandLine)
{
    std::wstring line(commandLine.GetString());
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                        &process))
        return -1;
    // The programs run here end at once; one that does not is stopped.
    DWORD exitCode = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process.hProcess, kPatienceMilliseconds) == WAIT_OBJECT_0) {
        GetExitCodeProcess(process.hProcess, &exitCode);
    } else {
        TerminateProcess(process.hProcess, exitCode);
        WaitForSingleObject(process.hProcess, kPatienceMilliseconds);
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<long>(exitCode);
}
