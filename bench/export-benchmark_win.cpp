// Times Quenda's export of a large generated subtree beside Wine's (or
// Windows') "reg export" of the same key, in one run, and counts the
// registry calls the export makes per key.
//   export-benchmark.exe SUBKEY-OF-HKCU

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "regfile/RegExporter.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"

namespace {

const int kRounds = 5;
const LPCWSTR kQuendaFile = L"export-benchmark-quenda.reg";
const LPCWSTR kRegFile = L"export-benchmark-reg.reg";

DWORD FileSize(LPCWSTR path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    return GetFileAttributesExW(path, GetFileExInfoStandard, &data) ? data.nFileSizeLow : 0;
}

// Milliseconds of one Quenda export in version 5, or -1 if it failed.
double TimeQuenda(const CString& path)
{
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CRegExporter exporter;
    bool result = false;
    if (!exporter.Start(kQuendaFile, false, true, HKEY_CURRENT_USER, path) || !exporter.GetResult(result) || !result)
        return -1;
    QueryPerformanceCounter(&end);
    return Milliseconds(start, end);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: export-benchmark.exe SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString path = FromUtf8(argv[1]);
    const std::wstring keyName = FullKeyName(HKEY_CURRENT_USER, path).GetString();
    const std::wstring regExport = L"reg.exe export \"" + keyName + L"\" " + kRegFile + L" /y";
    // What starting reg.exe costs, which its export time includes.
    const std::wstring regStart = L"reg.exe query \"" + keyName + L"\"";
    unsigned keys = 0;
    unsigned values = 0;
    if (!CountBenchmarkTree(path, keys, values))
        return 1;
    std::printf("subtree: %u keys, %u values\n", keys, values);

    // Alternate the two so that neither profits alone from a warm registry.
    double quenda = 1e300;
    double reg = 1e300;
    double startup = 1e300;
    for (int round = 0; round < kRounds; ++round) {
        const double startTime = TimeCommand(regStart);
        const double regTime = TimeCommand(regExport);
        const double quendaTime = TimeQuenda(path);
        if (startTime < 0 || regTime < 0 || quendaTime < 0) {
            const auto state = [](double time) { return time < 0 ? "failed" : "ok"; };
            std::fprintf(stderr, "a run failed: reg query %s, reg export %s, Quenda %s\n", state(startTime),
                         state(regTime), state(quendaTime));
            return 1;
        }
        std::printf("round %d: reg export %.0f ms, Quenda %.0f ms\n", round + 1, regTime, quendaTime);
        startup = std::min(startup, startTime);
        reg = std::min(reg, regTime);
        quenda = std::min(quenda, quendaTime);
    }
    std::printf("best of %d: reg export %.0f ms (%lu bytes; %.0f ms of it start reg.exe), Quenda %.0f ms (%lu bytes)\n",
                kRounds, reg, static_cast<unsigned long>(FileSize(kRegFile)), startup, quenda,
                static_cast<unsigned long>(FileSize(kQuendaFile)));
    std::printf("Quenda takes %.2f times as long as reg export, %.2f times as long as its export alone\n",
                quenda / reg, quenda / (reg - startup));

    CFaultInjectingPlatform counter;
    {
        CScopedPlatform scoped(counter);
        TimeQuenda(path);
    }
    // Per key: the open, the query of its counts, each value, each subkey,
    // the close. Every key but the first is someone's subkey.
    const double needed = (4.0 * keys + values - 1) / keys;
    std::printf("Quenda's registry calls per key: %.2f (reading each key once needs %.2f)\n",
                static_cast<double>(counter.RegistryCallCount()) / keys, needed);
    DeleteFileW(kQuendaFile);
    DeleteFileW(kRegFile);
    return 0;
}
