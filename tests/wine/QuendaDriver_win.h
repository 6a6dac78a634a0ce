#pragma once

#include <string>

#include <windows.h>

// Drives Quenda.exe (beside the test program) from outside, as a user
// would: starts it with arguments, finds its windows, answers its message
// boxes (captioned "Quenda") and collects the exit code.
class CQuendaProcess {
public:
    CQuendaProcess() = default;
    // Ends a process still running (a test that failed half-way).
    ~CQuendaProcess();
    CQuendaProcess(const CQuendaProcess&) = delete;
    CQuendaProcess& operator=(const CQuendaProcess&) = delete;

    // Starts Quenda.exe with the argument text, in the current folder.
    bool Start(const std::wstring& arguments);
    // Opens a file through the shell's open verb, as a tap on it would, and
    // drives the process this starts; false when the shell starts none.
    bool Open(const std::wstring& file);
    // The folder of Quenda.exe (beside the test program), with its "\".
    static std::wstring ExeFolder();

    // The process's first visible message box that appears within the time,
    // or null. The progress dialog, of the same caption, is no message box.
    HWND WaitForMessageBox(DWORD timeoutMs = 20000) const;
    // The process's visible top-level window of a class, or null.
    HWND WaitForWindow(LPCWSTR className, DWORD timeoutMs = 20000) const;
    // Presses a button (IDOK, IDYES, IDNO...) and waits for the box to go.
    static bool PressButton(HWND box, int buttonId);
    // The text of the next message box, answered with the button; empty
    // when none came.
    std::wstring AnswerNextMessage(int buttonId) const;

    // The exit code, or -1 if the process did not end in time (it is then
    // ended).
    long WaitForExit(DWORD timeoutMs = 20000);

private:
    PROCESS_INFORMATION m_process = {};
};
