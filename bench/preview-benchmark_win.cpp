// Times the preview of a large .reg file beside its import, in turns: both
// into the emptied key, then the preview again over the subtree the import
// left (every value there already, so that every key is read below).
//   preview-benchmark.exe FILE SUBKEY-OF-HKCU

#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "regfile/ImportPreview.h"
#include "registry/KeyOperations.h"

namespace {

const int kRounds = 3;

struct SPreviewRun {
    double milliseconds = -1;
    size_t changes = 0;
    size_t overlayBytes = 0;
};

SPreviewRun TimePreview(const CString& file)
{
    SPreviewRun run;
    LARGE_INTEGER start, end;
    QueryPerformanceCounter(&start);
    CImportPreview preview;
    const bool finished = preview.Start(file) && preview.Wait();
    QueryPerformanceCounter(&end);
    if (!finished || !preview.ErrorText().IsEmpty()) {
        std::fprintf(stderr, "the preview failed: %s\n", ToUtf8(preview.ErrorText()).c_str());
        return run;
    }
    run.milliseconds = Milliseconds(start, end);
    run.changes = preview.Changes().size();
    run.overlayBytes = preview.OverlayMemory();
    return run;
}

// Registry calls of one preview, per key of the file.
double PreviewCallsPerKey(const CString& file, unsigned keys)
{
    CFaultInjectingPlatform counter;
    CScopedPlatform scoped(counter);
    TimePreview(file);
    if (counter.RegistryWriteCount() != 0)
        std::printf("the preview wrote to the registry %u times\n", counter.RegistryWriteCount());
    return static_cast<double>(counter.RegistryCallCount()) / keys;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: preview-benchmark.exe FILE SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString file = FromUtf8(argv[1]);
    const CString path = FromUtf8(argv[2]);

    double import = 1e300;
    SPreviewRun fresh, over;
    fresh.milliseconds = over.milliseconds = 1e300;
    for (int round = 0; round < kRounds; ++round) {
        DeleteKeyTree(HKEY_CURRENT_USER, path);
        const SPreviewRun freshRun = TimePreview(file);
        const double importTime = TimeImport(file);
        const SPreviewRun overRun = TimePreview(file);
        if (freshRun.milliseconds < 0 || importTime < 0 || overRun.milliseconds < 0)
            return 1;
        std::printf("round %d: preview %.0f ms, import %.0f ms, preview over the imported subtree %.0f ms\n",
                    round + 1, freshRun.milliseconds, importTime, overRun.milliseconds);
        import = std::min(import, importTime);
        if (freshRun.milliseconds < fresh.milliseconds)
            fresh = freshRun;
        if (overRun.milliseconds < over.milliseconds)
            over = overRun;
    }
    unsigned keys = 0;
    unsigned values = 0;
    CountTree(HKEY_CURRENT_USER, path, keys, values);
    std::printf("best of %d (%u keys, %u values): import %.0f ms; preview into the emptied key %.0f ms, %.2f times "
                "the import, %zu changes, overlay %.1f MB; preview over the imported subtree %.0f ms, %.2f times "
                "the import, %zu changes, overlay %.1f MB\n",
                kRounds, keys, values, import, fresh.milliseconds, fresh.milliseconds / import, fresh.changes,
                fresh.overlayBytes / 1048576.0, over.milliseconds, over.milliseconds / import, over.changes,
                over.overlayBytes / 1048576.0);
    const double overCalls = PreviewCallsPerKey(file, keys);
    DeleteKeyTree(HKEY_CURRENT_USER, path);
    const double freshCalls = PreviewCallsPerKey(file, keys);
    std::printf("registry calls per key of the preview: %.2f into the emptied key, %.2f over the imported subtree\n",
                freshCalls, overCalls);
    return 0;
}
