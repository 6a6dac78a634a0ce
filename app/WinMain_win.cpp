#include <windows.h>

#include <commctrl.h>

#include <new>

#include "app/MainWnd_win.h"
#include "framework/WinHandles_win.h"
#include "resources/resource.h"
#include "settings/Settings.h"

namespace {

// Held by the interactive instance for as long as it runs; a second
// interactive start that finds it exits.
const wchar_t kInstanceMutexName[] = L"Quenda_{CC166F37-60E2-4B85-9CB8-CDD36DBD7101}";

// Any argument, even a tab, means a command-line run; blanks alone do not.
bool HasArguments(LPCWSTR commandLine)
{
    for (; commandLine != nullptr && *commandLine != 0; ++commandLine) {
        if (*commandLine != L' ')
            return true;
    }
    return false;
}

void RunMessageLoop(HWND mainWindow, HINSTANCE instance)
{
    const HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDA_MAIN));
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (accelerators == nullptr || !TranslateAcceleratorW(mainWindow, accelerators, &message))
            TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int)
{
    SetAppInstance(instance);
    const bool commandLineMode = HasArguments(commandLine);
    CShdUniqueKernelObject mutex;
    if (!commandLineMode) {
        const HWND running = FindWindowW(CMainWnd::kInteractiveClassName, nullptr);
        if (running != nullptr) {
            Handheld::SetForegroundWindow(running);
            return 0;
        }
        mutex.Reset(CreateMutexW(nullptr, FALSE, kInstanceMutexName));
        if (mutex && GetLastError() == ERROR_ALREADY_EXISTS)
            return 0;
    }

    INITCOMMONCONTROLSEX controls = {sizeof(INITCOMMONCONTROLSEX),
                                     ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&controls);
    Settings().Load();

    CMainWnd* mainWindow = new (std::nothrow) CMainWnd;
    if (mainWindow == nullptr)
        return 1;
    mainWindow->SetCommandLineMode(commandLineMode);
    const bool created = mainWindow->Create(instance);
    if (created)
        RunMessageLoop(mainWindow->GetHwnd(), instance);
    delete mainWindow;
    return created ? 0 : 1;
}
