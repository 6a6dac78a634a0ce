#include "framework/WindowHelpers.h"
#include "platform/WinTypes.h"
#include "resources/resource.h"

namespace {

// The main window's class for interactive runs.
const wchar_t kMainWindowClass[] = L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int)
{
    WNDCLASSW windowClass = {};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = MainWindowProc;
    windowClass.hInstance = instance;
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = kMainWindowClass;
    if (RegisterClassW(&windowClass) == 0)
        return 1;
    // A handheld's portrait screen: 480 x 640 at 96 dpi.
    const HWND window = CreateWindowW(kMainWindowClass, L"Quenda", WS_VISIBLE | WS_CAPTION | WS_SYSMENU,
                                      CW_USEDEFAULT, CW_USEDEFAULT, 480, 640, nullptr, nullptr, instance, nullptr);
    if (window == nullptr)
        return 1;
    CreateMenuBar(window, instance, IDR_MAIN_MENU, false);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
