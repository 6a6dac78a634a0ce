#include "tests/wine/QuendaDriver_win.h"

#include <vector>

#include <shellapi.h>

namespace {

// A message box's text control.
const int kMessageTextId = 0xFFFF;
const DWORD kPollMs = 50;

struct SSearch {
    DWORD processId;
    LPCWSTR className;
    LPCWSTR caption;
    bool messageBoxOnly;
    HWND found;
};

BOOL CALLBACK MatchWindow(HWND window, LPARAM lParam)
{
    SSearch& search = *reinterpret_cast<SSearch*>(lParam);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner != search.processId || !IsWindowVisible(window))
        return TRUE;
    wchar_t text[256] = {};
    GetClassNameW(window, text, 256);
    if (search.className != nullptr && lstrcmpW(text, search.className) != 0)
        return TRUE;
    GetWindowTextW(window, text, 256);
    if (search.caption != nullptr && lstrcmpW(text, search.caption) != 0)
        return TRUE;
    if (search.messageBoxOnly && GetDlgItem(window, kMessageTextId) == nullptr)
        return TRUE;
    search.found = window;
    return FALSE;
}

HWND WaitFor(SSearch search, DWORD timeoutMs)
{
    for (DWORD waited = 0;; waited += kPollMs) {
        search.found = nullptr;
        EnumWindows(MatchWindow, reinterpret_cast<LPARAM>(&search));
        if (search.found != nullptr || waited >= timeoutMs)
            return search.found;
        Sleep(kPollMs);
    }
}

}  // namespace

CQuendaProcess::~CQuendaProcess()
{
    if (m_process.hProcess == nullptr)
        return;
    if (WaitForSingleObject(m_process.hProcess, 0) != WAIT_OBJECT_0)
        TerminateProcess(m_process.hProcess, 3);
    CloseHandle(m_process.hThread);
    CloseHandle(m_process.hProcess);
}

std::wstring CQuendaProcess::ExeFolder()
{
    wchar_t path[MAX_PATH];
    const std::wstring self(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return self.substr(0, self.find_last_of(L'\\') + 1);
}

bool CQuendaProcess::Start(const std::wstring& arguments)
{
    std::wstring commandLine = L"\"" + ExeFolder() + L"Quenda.exe\"";
    if (!arguments.empty())
        commandLine += L" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    return m_process.hProcess == nullptr && CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, FALSE, 0,
                                                           nullptr, nullptr, &startup, &m_process) != FALSE;
}

bool CQuendaProcess::Open(const std::wstring& file)
{
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    info.lpVerb = L"open";
    info.lpFile = file.c_str();
    info.nShow = SW_SHOWNORMAL;
    if (m_process.hProcess != nullptr || !ShellExecuteExW(&info) || info.hProcess == nullptr)
        return false;
    m_process.hProcess = info.hProcess;
    m_process.dwProcessId = GetProcessId(info.hProcess);
    return true;
}

HWND CQuendaProcess::WaitForMessageBox(DWORD timeoutMs) const
{
    return WaitFor({m_process.dwProcessId, L"#32770", L"Quenda", true, nullptr}, timeoutMs);
}

HWND CQuendaProcess::WaitForWindow(LPCWSTR className, DWORD timeoutMs) const
{
    return WaitFor({m_process.dwProcessId, className, nullptr, false, nullptr}, timeoutMs);
}

bool CQuendaProcess::PressButton(HWND box, int buttonId)
{
    const HWND button = GetDlgItem(box, buttonId);
    if (button == nullptr)
        return false;
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(buttonId, BN_CLICKED), reinterpret_cast<LPARAM>(button));
    for (DWORD waited = 0; IsWindow(box) && waited < 10000; waited += kPollMs)
        Sleep(kPollMs);
    return !IsWindow(box);
}

std::wstring CQuendaProcess::AnswerNextMessage(int buttonId) const
{
    const HWND box = WaitForMessageBox();
    const HWND text = GetDlgItem(box, kMessageTextId);
    if (box == nullptr || text == nullptr)
        return std::wstring();
    std::vector<wchar_t> buffer(GetWindowTextLengthW(text) + 1);
    const int length = GetWindowTextW(text, buffer.data(), static_cast<int>(buffer.size()));
    PressButton(box, buttonId);
    return std::wstring(buffer.data(), length);
}

long CQuendaProcess::WaitForExit(DWORD timeoutMs)
{
    if (m_process.hProcess == nullptr)
        return -1;
    if (WaitForSingleObject(m_process.hProcess, timeoutMs) != WAIT_OBJECT_0) {
        TerminateProcess(m_process.hProcess, 3);
        WaitForSingleObject(m_process.hProcess, 5000);
        return -1;
    }
    DWORD exitCode = 0;
    GetExitCodeProcess(m_process.hProcess, &exitCode);
    return static_cast<long>(exitCode);
}
