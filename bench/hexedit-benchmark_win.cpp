// Times the hex edit control with 1 KiB and 1 MiB of data: loading with the
// first paint, one byte typed at offset 0, and a scroll to the end; counts
// the paints each keystroke causes.
//   hexedit-benchmark.exe          prints the figures
//   hexedit-benchmark.exe show S   shows a selection in both columns and a
//                                  half-typed byte for S seconds (screenshots)

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <vector>

#include "bench/BenchSupport_win.h"
#include "editors/HexEditCtrl_win.h"
#include "framework/DpiScale.h"

namespace {

const int kRuns = 20;

void Pump()
{
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

class CBenchFrame : public CShdWnd {
public:
    CBenchFrame()
    {
        Create(0, nullptr, L"Hex edit", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, ScaleX(320), ScaleY(260), nullptr,
               nullptr, GetModuleHandleW(nullptr));
        RECT client = {};
        GetClientRect(GetHwnd(), &client);
        m_control.CreateChild(GetHwnd(), 1032, client);
        m_control.SetBytesPerRow(4);
        SetFocus(m_control.GetHwnd());
    }
    CHexEditCtrl m_control;
};

// Milliseconds of one action and the paint it causes.
template <typename Action>
double Time(CHexEditCtrl& control, Action action)
{
    LARGE_INTEGER from, to;
    QueryPerformanceCounter(&from);
    action();
    UpdateWindow(control.GetHwnd());
    QueryPerformanceCounter(&to);
    return Milliseconds(from, to);
}

void Measure(CBenchFrame& frame, size_t size)
{
    CHexEditCtrl& control = frame.m_control;
    const HWND window = control.GetHwnd();
    std::vector<BYTE> data(size);
    for (size_t i = 0; i < size; ++i)
        data[i] = static_cast<BYTE>(i * 7);
    const double load = Time(control, [&] { control.SetData(data.data(), data.size()); });
    double typing = 0;
    double scrolling = 0;
    const unsigned paintsBefore = control.GetPaintCount();
    for (int run = 0; run < kRuns; ++run) {
        SendMessageW(window, WM_KEYDOWN, VK_HOME, 1);
        UpdateWindow(window);
        const unsigned paints = control.GetPaintCount();
        typing += Time(control, [&] { SendMessageW(window, WM_CHAR, L'5', 1); });
        if (control.GetPaintCount() - paints != 1)
            std::printf("  a keystroke painted %u times\n", control.GetPaintCount() - paints);
        scrolling += Time(control, [&] { SendMessageW(window, WM_VSCROLL, SB_BOTTOM, 0); });
        Pump();
    }
    std::printf("%8zu bytes: load + first paint %7.3f ms, type at 0 %7.3f ms, scroll to end %7.3f ms, "
                "%.1f paints a keystroke or scroll\n",
                size, load, typing / kRuns, scrolling / kRuns,
                static_cast<double>(control.GetPaintCount() - paintsBefore) / (3 * kRuns));
}

void Show(CBenchFrame& frame, int seconds)
{
    CHexEditCtrl& control = frame.m_control;
    const HWND window = control.GetHwnd();
    const char text[] = "Quenda hex edit: bytes and characters.";
    control.SetData(reinterpret_cast<const BYTE*>(text), sizeof text - 1);
    // A selection from byte 2 to byte 9 made with the stylus, in the pairs.
    const CHexEditModel& model = control.GetModel();
    const int y = model.Metrics().marginTop + 1;
    SendMessageW(window, WM_LBUTTONDOWN, 0, MAKELPARAM(model.PairX(2) + 2, y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(model.PairX(1) + 2, y + 2 * model.Metrics().lineHeight));
    const DWORD end = GetTickCount() + static_cast<DWORD>(seconds) * 1000;
    while (GetTickCount() < end) {
        Pump();
        Sleep(50);
    }
    // Then the caret with a half-typed byte.
    SendMessageW(window, WM_KEYDOWN, VK_END, 1);
    SendMessageW(window, WM_CHAR, L'C', 1);
    const DWORD again = GetTickCount() + static_cast<DWORD>(seconds) * 1000;
    while (GetTickCount() < again) {
        Pump();
        Sleep(50);
    }
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    CBenchFrame frame;
    if (argc > 2 && std::wcscmp(argv[1], L"show") == 0) {
        Show(frame, _wtoi(argv[2]));
        return 0;
    }
    Pump();
    Measure(frame, 1024);
    Measure(frame, 1024 * 1024);
    return 0;
}
