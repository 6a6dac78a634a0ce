// Times Quenda's import of a large .reg file beside Wine's (or Windows')
// "reg import" of the same file, in turns, each into the emptied key.
//   import-benchmark.exe FILE SUBKEY-OF-HKCU

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/KeyOperations.h"

namespace {

const int kRounds = 3;

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: import-benchmark.exe FILE SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString file = FromUtf8(argv[1]);
    const CString path = FromUtf8(argv[2]);
    const std::wstring regImport = L"reg.exe import \"" + std::wstring(file.GetString()) + L"\"";

    double quenda = 1e300;
    double reg = 1e300;
    for (int round = 0; round < kRounds; ++round) {
        DeleteKeyTree(HKEY_CURRENT_USER, path);
        const double regTime = TimeCommand(regImport);
        DeleteKeyTree(HKEY_CURRENT_USER, path);
        const double quendaTime = TimeImport(file);
        if (regTime < 0 || quendaTime < 0)
            return 1;
        std::printf("round %d: reg import %.0f ms, Quenda %.0f ms\n", round + 1, regTime, quendaTime);
        reg = std::min(reg, regTime);
        quenda = std::min(quenda, quendaTime);
    }
    unsigned keys = 0;
    unsigned values = 0;
    CountTree(HKEY_CURRENT_USER, path, keys, values);
    std::printf("best of %d: reg import %.0f ms, Quenda %.0f ms (%u keys, %u values); Quenda takes %.2f times as long\n",
                kRounds, reg, quenda, keys, values, quenda / reg);

    CFaultInjectingPlatform counter;
    {
        CScopedPlatform scoped(counter);
        DeleteKeyTree(HKEY_CURRENT_USER, path);
        counter.ResetRegistryCallCount();
        TimeImport(file);
    }
    std::printf("Quenda's registry calls per key: %.2f (a create, a write per value, a close)\n",
                static_cast<double>(counter.RegistryCallCount()) / keys);
    return 0;
}
