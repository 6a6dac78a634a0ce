// Times "Find All" in the results window over a large generated subtree,
// for a text that every value name holds, beside "Find All" for a text found
// nowhere in the same subtree (the walk alone); counts the registry calls of
// both; measures, from another thread, the longest time the window took to
// answer a message meanwhile and how many answers took over 100 ms; and
// times one "Find Next" step at a level of 100 and of 10,000 siblings.
// With --registry, "Find All" for the text over the whole registry instead,
// beside "Find All" for the reference text, its rows written to ROWS-FILE
// when given. Each pair runs three times in turn; the best times count.
//   findall-benchmark.exe SUBKEY-OF-HKCU TEXT
//   findall-benchmark.exe --registry TEXT REFERENCE-TEXT [ROWS-FILE]

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "search/FindResultsWnd_win.h"

namespace {

const WCHAR kNowhere[] = L"QuendaBench-no-such-text-7c1d";
const int kTimedSteps = 50;
const int kRounds = 3;

SSearchParams NameSearch(const CString& text, bool keyNames)
{
    SSearchParams params;
    params.searchString = text;
    params.keyNames = keyNames;
    params.valueNames = !keyNames;
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
        if (m_results->GetState() == CFindAllSearch::kFinished)
            PostQuitMessage(0);
    }
    void ShowSearchResult(HKEY, LPCWSTR, LPCWSTR, bool) override {}

    // A new results window for each run: emptying the list of the last
    // would be timed with the next.
    bool NewResults()
    {
        m_results.reset();
        m_results = std::make_unique<CFindResultsWnd>();
        const RECT bounds = {0, 0, 400, 500};
        if (!m_results->Create(GetHwnd(), 105, bounds, this, GetModuleHandleW(nullptr)))
            return false;
        m_results->Show(true);
        return true;
    }

    std::unique_ptr<CFindResultsWnd> m_results;
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

struct SFindAll {
    double milliseconds = 0;
    int listed = 0;
    unsigned registryCalls = 0;
};

// One "Find All" in the window, to its end, with the probe watching.
SFindAll RunFindAll(CBenchFrame& frame, const SSearchParams& params, const SStartPosition& start,
                    std::unique_ptr<CProbe>& probe)
{
    SFindAll result;
    if (!frame.NewResults())
        return result;
    CFaultInjectingPlatform counter;
    CScopedPlatform scoped(counter);
    probe = std::make_unique<CProbe>(frame.GetHwnd());
    const double from = Now();
    frame.m_results->StartFindAll(params, start);
    PumpUntilQuit();
    result.milliseconds = Now() - from;
    probe->Stop();
    result.listed = ListView_GetItemCount(frame.m_results->GetList());
    result.registryCalls = counter.RegistryCallCount();
    return result;
}

// The mean time of one "Find Next" step among `count` empty sibling keys
// that all match, made below HKCU\parent\name, timed in the middle of the
// level; the first step, which reads the level, is not counted.
double TimeStep(const CString& parent, const CString& name, int count)
{
    const CString path = parent + L"\\" + name;
    CShdRegKey level;
    if (!level.Create(HKEY_CURRENT_USER, path, nullptr))
        return -1;
    for (int i = 0; i < count; ++i) {
        WCHAR child[32];
        wsprintfW(child, L"QbStep%05d", i);
        CShdRegKey key;
        key.Create(level.GetHandle(), child, nullptr);
    }
    CRegFinder finder;
    finder.SetUp(NameSearch(L"QbStep", true), Subtree(path));
    CRegFinder::SSearchPosition match;
    // The steps are timed from the middle of the level.
    WCHAR middle[32];
    wsprintfW(middle, L"\\QbStep%05d", (count - kTimedSteps) / 2);
    if (!finder.Start() || !finder.Collect(match) || !finder.SetPosition(HKEY_CURRENT_USER, path + middle, nullptr))
        return -1;
    const double from = Now();
    for (int i = 0; i < kTimedSteps; ++i) {
        if (!finder.Start() || !finder.Collect(match))
            return -1;
    }
    return (Now() - from) / kTimedSteps;
}

// Each search and its reference in turn, kRounds times; the best time of
// each, so that a moment of load elsewhere on the machine hits one run, not
// the comparison. Every run is printed, with the window's longest wait.
struct SComparison {
    SFindAll search;
    SFindAll reference;
};

SComparison Compare(CBenchFrame& frame, const SSearchParams& search, const SSearchParams& reference,
                    const SStartPosition& start)
{
    SComparison best;
    for (int round = 0; round < kRounds; ++round) {
        for (const bool isReference : {true, false}) {
            std::unique_ptr<CProbe> probe;
            const SFindAll run = RunFindAll(frame, isReference ? reference : search, start, probe);
            std::printf("  \"%s\" %8.0f ms  %d items; window: ", ToUtf8(isReference ? reference.searchString
                                                                                    : search.searchString).c_str(),
                        run.milliseconds, run.listed);
            probe->Print("longest wait");
            std::printf("\n");
            std::fflush(stdout);
            SFindAll& kept = isReference ? best.reference : best.search;
            if (round == 0 || run.milliseconds < kept.milliseconds)
                kept = run;
        }
    }
    std::printf("best of %d: \"%s\" %.0f ms, \"%s\" %.0f ms: %.2f times\n", kRounds,
                ToUtf8(search.searchString).c_str(), best.search.milliseconds,
                ToUtf8(reference.searchString).c_str(), best.reference.milliseconds,
                best.search.milliseconds / best.reference.milliseconds);
    return best;
}

int Subtree(CBenchFrame& frame, const CString& keyPath, const char* text)
{
    std::printf("Find All for value names matching \"%s\" below HKCU\\%s, beside a text found nowhere\n", text,
                ToUtf8(keyPath).c_str());
    const SComparison best =
        Compare(frame, NameSearch(FromUtf8(text), false), NameSearch(kNowhere, false), Subtree(keyPath));
    const int matches = best.search.listed;
    std::printf("registry calls: %u, %.2f a match (%.3f a match more than the search that finds nothing)\n",
                best.search.registryCalls, double(best.search.registryCalls) / matches,
                (double(best.search.registryCalls) - best.reference.registryCalls) / matches);
    // The window holds the matches of the last run, the search's: a new
    // search first empties the list, on the window's thread.
    const double from = Now();
    frame.m_results->StartFindAll(NameSearch(kNowhere, false), Subtree(keyPath));
    const double emptying = Now() - from;
    PumpUntilQuit();
    std::printf("a new search over the %d listed matches: the window waits %.0f ms while the list empties\n",
                matches, emptying);
    std::fflush(stdout);
    const double step100 = TimeStep(keyPath, L"Level100", 100);
    const double step10000 = TimeStep(keyPath, L"Level10000", 10000);
    std::printf("one Find Next step at a level of 100 siblings: %.2f ms; of 10,000 siblings: %.2f ms\n", step100,
                step10000);
    return matches > 0 && step100 > 0 && step10000 > 0 ? 0 : 1;
}

int WholeRegistry(CBenchFrame& frame, const char* text, const char* referenceText, const char* rowsFile)
{
    std::printf("Find All for \"%s\" beside \"%s\" in the whole registry\n", text, referenceText);
    SSearchParams search;
    search.searchString = FromUtf8(text);
    SSearchParams reference;
    reference.searchString = FromUtf8(referenceText);
    const SComparison best = Compare(frame, search, reference, SStartPosition());
    std::printf("registry calls: %u and %u\n", best.search.registryCalls, best.reference.registryCalls);
    // The list holds the rows of the last run, the search's.
    if (rowsFile != nullptr) {
        FILE* rows = std::fopen(rowsFile, "wb");
        if (rows == nullptr)
            return 1;
        for (int i = 0; i < best.search.listed; ++i) {
            WCHAR row[1024] = {};
            ListView_GetItemText(frame.m_results->GetList(), i, 0, row, 1024);
            std::fprintf(rows, "%s\n", ToUtf8(CString(row)).c_str());
        }
        std::fclose(rows);
    }
    return best.search.listed > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const bool registry = argc >= 4 && std::strcmp(argv[1], "--registry") == 0;
    if (argc != 3 && !(registry && argc <= 5)) {
        std::fprintf(stderr,
                     "usage: findall-benchmark SUBKEY-OF-HKCU TEXT | --registry TEXT REFERENCE-TEXT [ROWS-FILE]\n");
        return 2;
    }
    InitCommonControls();
    CBenchFrame frame;
    if (!frame.Create(0, nullptr, L"Find All", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 420, 540, nullptr, nullptr,
                      GetModuleHandleW(nullptr)) ||
        !frame.NewResults()) {
        std::fprintf(stderr, "the results window cannot be made\n");
        return 1;
    }
    if (registry)
        return WholeRegistry(frame, argv[2], argv[3], argc == 5 ? argv[4] : nullptr);
    return Subtree(frame, FromUtf8(argv[1]), argv[2]);
}
