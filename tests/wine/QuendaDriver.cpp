#include "tests/wine/QuendaDriver.h"

#include <vector>

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

std::wstring CQuendaProcess::ExePath()
{
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder(path, length);
    return folder.substr(0, folder.find_last_of(L'\\') + 1) + L"Quenda.exe";
}

bool CQuendaProcess::Start(const std::wstring& arguments)
{
    if (m_process.hProcess != nullptr)
        return false;
    std::wstring commandLine = L"\"" + ExePath() + L"\"";
    if (!arguments.empty())
        commandLine += L" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    return CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &m_process) != FALSE;
}

HWND CQuendaProcess::WaitForMessageBox(DWORD timeoutMs) const
{
    return WaitFor({m_process.dwProcessId, L"#32770", L"Quenda", true, nullptr}, timeoutMs);
}

HWND CQuendaProcess::WaitForWindow(LPCWSTR className, DWORD timeoutMs) const
{
    return WaitFor({m_process.dwProcessId, className, nullptr, false, nullptr}, timeoutMs);
}

std::wstring CQuendaProcess::MessageText(HWND box)
{
    const HWND text = GetDlgItem(box, kMessageTextId);
    if (text == nullptr)
        return std::wstring();
    std::vector<wchar_t> buffer(GetWindowTextLengthW(text) + 1);
    const int length = GetWindowTextW(text, buffer.data(), static_cast<int>(buffer.size()));
    return std::wstring(buffer.data(), length);
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

std::wstring CQuendaProcess::AnswerNextMessage(int buttonId, DWORD timeoutMs) const
{
    const HWND box = WaitForMessageBox(timeoutMs);
    if (box == nullptr)
        return std::wstring();
    const std::wstring text = MessageText(box);
    PressButton(box, buttonId);
    return text;
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
