// Times a search of a large generated subtree for a text that matches
// nothing, beside Wine's (or Windows') "reg query KEY /s" of the same
// subtree, and counts the registry calls the search makes per key.
//   search-benchmark.exe SUBKEY-OF-HKCU

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <string>

#include "base/Text.h"
#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "search/RegFinder.h"

namespace {

const int kRuns = 3;

// Also counts the registry reads that carry value data.
class CCountingPlatform : public CFaultInjectingPlatform {
public:
    LONG RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) override
    {
        m_dataReads += data != nullptr;
        return CFaultInjectingPlatform::RegQueryValueExW(key, name, type, data, size);
    }
    LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                       DWORD* size) override
    {
        m_dataReads += data != nullptr;
        return CFaultInjectingPlatform::RegEnumValueW(key, index, name, nameLength, type, data, size);
    }

    std::atomic<unsigned> m_dataReads{0};
};

struct SSearchResult {
    double milliseconds = 0;
    unsigned registryCalls = 0;
    unsigned dataReads = 0;
    bool foundNothing = false;
};

SSearchResult TimeSearch(const CString& keyPath, bool valueData)
{
    SSearchParams params;
    params.searchString = TEXT("QuendaBench-no-such-text-7c1d");
    params.valueData = valueData;
    SStartPosition start;
    start.root = HKEY_CURRENT_USER;
    start.keyPath = keyPath;
    start.subtreeOnly = true;

    SSearchResult best;
    for (int run = 0; run < kRuns; ++run) {
        CCountingPlatform counter;
        CScopedPlatform scoped(counter);
        CRegFinder finder;
        finder.SetUp(params, start);
        CRegFinder::SSearchPosition match;
        LARGE_INTEGER from;
        LARGE_INTEGER to;
        QueryPerformanceCounter(&from);
        const bool started = finder.Start();
        const bool found = finder.Collect(match);
        QueryPerformanceCounter(&to);
        const double elapsed = Milliseconds(from, to);
        if (run == 0 || elapsed < best.milliseconds) {
            best.milliseconds = elapsed;
            best.registryCalls = counter.RegistryCallCount();
            best.dataReads = counter.m_dataReads;
            best.foundNothing = started && !found && finder.IsFinished();
        }
    }
    return best;
}

// The system's reg.exe walking and printing the same subtree, best of the
// runs; -1 when it cannot be run.
double TimeRegQuery(const CString& keyPath)
{
    double best = -1;
    for (int run = 0; run < kRuns; ++run) {
        const double elapsed = TimeCommand(L"reg.exe query \"HKCU\\" + std::wstring(keyPath.GetString()) + L"\" /s");
        if (elapsed < 0)
            break;
        if (best < 0 || elapsed < best)
            best = elapsed;
    }
    return best;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: search-benchmark SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString keyPath = FromUtf8(argv[1]);
    unsigned keys = 0;
    unsigned values = 0;
    if (!CountBenchmarkTree(keyPath, keys, values))
        return 1;
    std::printf("subtree HKCU\\%s: %u keys, %u values (best of %d runs each)\n", argv[1], keys, values, kRuns);

    const struct {
        const char* label;
        bool valueData;
    } modes[] = {{"search, names only     ", false}, {"search, names and data ", true}};
    bool ok = true;
    for (const auto& mode : modes) {
        const SSearchResult result = TimeSearch(keyPath, mode.valueData);
        std::printf("%s %8.0f ms  %5.2f registry calls per key  %u value data reads%s\n", mode.label,
                    result.milliseconds, static_cast<double>(result.registryCalls) / keys, result.dataReads,
                    result.foundNothing ? "" : "  (UNEXPECTED: found a match)");
        ok = ok && result.foundNothing && (mode.valueData || result.dataReads == 0);
    }
    const double query = TimeRegQuery(keyPath);
    if (query < 0) {
        std::printf("reg query /s            could not be run\n");
        return 1;
    }
    std::printf("reg query /s            %8.0f ms  (process start included)\n", query);
    return ok ? 0 : 1;
}
