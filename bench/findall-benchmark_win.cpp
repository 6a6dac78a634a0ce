// Times "Find All" in the results window over a large generated subtree,
// for a text that every value name holds, beside the finder's own walk
// through the same matches without a window; and measures, from another
// thread, the longest time the window took to answer a message meanwhile
// and how many answers took over 100 ms. With --window-only the bare walk is
// left out, for a second look at the window's answers on a quiet machine.
//   findall-benchmark.exe SUBKEY-OF-HKCU TEXT [--window-only]

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <cstdio>
#include <cstring>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "search/FindResultsWnd_win.h"

namespace {

SSearchParams ValueNameSearch(const CString& text)
{
    SSearchParams params;
    params.searchString = text;
    params.keyNames = false;
    params.valueData = false;
    return params;
}

SStartPosition Subtree(const CString& keyPath)
{
    SStartPosition start;
    start.root = HKEY_CURRENT_USER;
    start.keyPath = keyPath;
    start.subtreeOnly = true;
    return start;
}

double Now()
{
    static LARGE_INTEGER origin = [] {
        LARGE_INTEGER value;
        QueryPerformanceCounter(&value);
        return value;
    }();
    LARGE_INTEGER value;
    QueryPerformanceCounter(&value);
    return Milliseconds(origin, value);
}

// The finder's steps one after another, as the collecting thread drives
// them, without a window; ends the starting thread's message loop.
struct SBareWalk {
    SSearchParams params;
    SStartPosition start;
    DWORD uiThread = 0;
    unsigned matches = 0;
    double milliseconds = 0;

    static DWORD WINAPI Run(void* argument)
    {
        SBareWalk* walk = static_cast<SBareWalk*>(argument);
        CRegFinder finder;
        finder.SetUp(walk->params, walk->start);
        CRegFinder::SSearchPosition match;
        const double from = Now();
        while (finder.Start() && finder.Collect(match)) {
            // A long walk shows that it is alive.
            if (++walk->matches % 10000 == 0) {
                std::printf("  %u matches after %.0f ms\n", walk->matches, Now() - from);
                std::fflush(stdout);
            }
        }
        walk->milliseconds = Now() - from;
        PostThreadMessageW(walk->uiThread, WM_QUIT, 0, 0);
        return 0;
    }
};

void PumpUntilQuit()
{
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// The results window in a frame of its own; ends the message loop when the
// search has finished.
class CBenchFrame : public CShdWnd, public CFindResultsWnd::ICallback {
public:
    void OnSearchStateChanged() override
    {
        if (m_results.GetState() == CFindAllSearch::kFinished)
            PostQuitMessage(0);
    }
    void ShowSearchResult(HKEY, LPCWSTR, LPCWSTR, bool) override {}

    CFindResultsWnd m_results;
};

// Sends the window a message every few milliseconds and keeps the longest
// wait for its answer, when it began, and how many waits were long.
class CProbe {
public:
    explicit CProbe(HWND window) : m_window(window), m_started(Now())
    {
        m_thread = CreateThread(nullptr, 0, Run, this, 0, nullptr);
    }
    ~CProbe() { Stop(); }
    void Stop()
    {
        if (m_thread == nullptr)
            return;
        m_stop = true;
        // The probe may be waiting for this thread's answer meanwhile.
        while (MsgWaitForMultipleObjects(1, &m_thread, FALSE, INFINITE, QS_SENDMESSAGE) != WAIT_OBJECT_0) {
            MSG message;
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        }
        CloseHandle(m_thread);
        m_thread = nullptr;
    }
    // "N ms WHEN, S s in (M of K answers over 100 ms)"
    void Print(const char* when) const
    {
        std::printf("%.0f ms %s, %.1f s in (%u of %u answers over 100 ms)", m_longest.load(), when,
                    m_longestAt.load() / 1000, m_slow.load(), m_answers.load());
    }

private:
    static DWORD WINAPI Run(void* argument)
    {
        CProbe* probe = static_cast<CProbe*>(argument);
        while (!probe->m_stop) {
            const double from = Now();
            DWORD_PTR answer = 0;
            SendMessageTimeoutW(probe->m_window, WM_NULL, 0, 0, SMTO_NORMAL, 10000, &answer);
            const double waited = Now() - from;
            if (waited > probe->m_longest) {
                probe->m_longest = waited;
                probe->m_longestAt = from - probe->m_started;
            }
            probe->m_slow += waited > 100 ? 1 : 0;
            ++probe->m_answers;
            Sleep(5);
        }
        return 0;
    }

    HWND m_window;
    const double m_started;
    HANDLE m_thread = nullptr;
    std::atomic<bool> m_stop{false};
    std::atomic<double> m_longest{0};
    std::atomic<double> m_longestAt{0};
    std::atomic<unsigned> m_slow{0};
    std::atomic<unsigned> m_answers{0};
};

}  // namespace

int main(int argc, char** argv)
{
    const bool windowOnly = argc == 4 && std::strcmp(argv[3], "--window-only") == 0;
    if (argc != 3 && !windowOnly) {
        std::fprintf(stderr, "usage: findall-benchmark SUBKEY-OF-HKCU TEXT [--window-only]\n");
        return 2;
    }
    const CString keyPath = FromUtf8(argv[1]);
    const SSearchParams params = ValueNameSearch(FromUtf8(argv[2]));
    const SStartPosition start = Subtree(keyPath);

    InitCommonControls();
    std::printf("value names matching \"%s\" below HKCU\\%s\n", argv[2], argv[1]);
    CBenchFrame frame;
    RECT bounds = {0, 0, 400, 500};
    if (!frame.Create(0, nullptr, L"Find All", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 420, 540, nullptr, nullptr,
                      GetModuleHandleW(nullptr)) ||
        !frame.m_results.Create(frame.GetHwnd(), 105, bounds, &frame, GetModuleHandleW(nullptr))) {
        std::fprintf(stderr, "the results window cannot be made\n");
        return 1;
    }
    frame.m_results.Show(true);

    // The bare walk runs on a thread of its own while the window idles, with
    // the same probe: how long the machine itself makes a message wait.
    SBareWalk walk{params, start, GetCurrentThreadId()};
    CProbe idle(frame.GetHwnd());
    if (!windowOnly) {
        const HANDLE thread = CreateThread(nullptr, 0, SBareWalk::Run, &walk, 0, nullptr);
        PumpUntilQuit();
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
        std::printf("finder alone (steps, no window) %8.0f ms  %u matches\n", walk.milliseconds, walk.matches);
        std::fflush(stdout);
    }
    idle.Stop();

    CProbe busy(frame.GetHwnd());
    const double from = Now();
    frame.m_results.StartFindAll(params, start);
    PumpUntilQuit();
    const double windowed = Now() - from;
    busy.Stop();
    const int listed = ListView_GetItemCount(frame.m_results.GetList());

    std::printf("Find All in the results window  %8.0f ms  %d items listed", windowed, listed);
    if (!windowOnly)
        std::printf("  (%.2f times the bare walk)", windowed / walk.milliseconds);
    std::printf("\nlongest wait for the window to answer a message: ");
    busy.Print("during Find All");
    if (!windowOnly) {
        std::printf(", ");
        idle.Print("while idle");
    }
    std::printf("\n");
    return listed > 0 && (windowOnly || listed == static_cast<int>(walk.matches)) ? 0 : 1;
}
