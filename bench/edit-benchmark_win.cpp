// Times Quenda's paste of a copied key into its own parent (a copy of the
// whole subtree beside it) and the deletion of that copy, beside Wine's (or
// Windows') "reg copy /s /f" and "reg delete /f" of the same subtree, and
// counts the registry calls each makes per key.
//   edit-benchmark.exe SUBKEY-OF-HKCU

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/EditOperations.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"

namespace {

const int kRounds = 3;

struct SQuendaTimes {
    double copy = -1;
    double remove = -1;
};

// One paste and one deletion of the pasted copy; -1 for whichever failed.
SQuendaTimes TimeQuenda(const CString& path, const CString& expectedCopy)
{
    SQuendaTimes times;
    CRegClipboard clipboard;
    clipboard.Put(CRegClipboard::kCopiedKey, HKEY_CURRENT_USER, path, nullptr);
    const int slash = path.ReverseFind(TEXT('\\'));
    const CString parent = slash < 0 ? CString() : path.Left(static_cast<size_t>(slash));
    LARGE_INTEGER start, middle, end;
    QueryPerformanceCounter(&start);
    SKeyCopy plan;
    EEditMessage message = EEditMessage::kNone;
    if (!PlanKeyPaste(clipboard, HKEY_CURRENT_USER, parent, plan, message) || plan.targetPath != expectedCopy ||
        !RunKeyCopy(plan, clipboard).copied)
        return times;
    QueryPerformanceCounter(&middle);
    times.copy = Milliseconds(start, middle);
    if (DeleteRegKey(clipboard, HKEY_CURRENT_USER, plan.targetPath) != EEditMessage::kNone)
        return times;
    QueryPerformanceCounter(&end);
    times.remove = Milliseconds(middle, end);
    return times;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: edit-benchmark.exe SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString path = FromUtf8(argv[1]);
    const CString copyPath = path + TEXT(" (2)");
    const std::wstring source = FullKeyName(HKEY_CURRENT_USER, path).GetString();
    const std::wstring copy = FullKeyName(HKEY_CURRENT_USER, copyPath).GetString();
    const std::wstring regCopy = L"reg.exe copy \"" + source + L"\" \"" + copy + L"\" /s /f";
    const std::wstring regDelete = L"reg.exe delete \"" + copy + L"\" /f";
    // What starting reg.exe costs, which both of its times include.
    const std::wstring regStart = L"reg.exe query \"" + source + L"\"";
    unsigned keys = 0;
    unsigned values = 0;
    if (!CountBenchmarkTree(path, keys, values))
        return 1;
    std::printf("subtree: %u keys, %u values\n", keys, values);
    DeleteKeyTree(HKEY_CURRENT_USER, copyPath);

    double regCopyBest = 1e300, regDeleteBest = 1e300, startup = 1e300;
    SQuendaTimes best;
    best.copy = best.remove = 1e300;
    // Alternate the two so that neither profits alone from a warm registry.
    for (int round = 0; round < kRounds; ++round) {
        const double startTime = TimeCommand(regStart);
        const double regCopyTime = TimeCommand(regCopy);
        const double regDeleteTime = TimeCommand(regDelete);
        const SQuendaTimes quenda = TimeQuenda(path, copyPath);
        if (startTime < 0 || regCopyTime < 0 || regDeleteTime < 0 || quenda.copy < 0 || quenda.remove < 0) {
            std::fprintf(stderr, "a run failed: reg %.0f/%.0f/%.0f ms, Quenda %.0f/%.0f ms (-1: failed)\n", startTime,
                         regCopyTime, regDeleteTime, quenda.copy, quenda.remove);
            DeleteKeyTree(HKEY_CURRENT_USER, copyPath);
            return 1;
        }
        std::printf("round %d: reg copy %.0f ms, Quenda paste %.0f ms; reg delete %.0f ms, Quenda delete %.0f ms\n",
                    round + 1, regCopyTime, quenda.copy, regDeleteTime, quenda.remove);
        startup = std::min(startup, startTime);
        regCopyBest = std::min(regCopyBest, regCopyTime);
        regDeleteBest = std::min(regDeleteBest, regDeleteTime);
        best.copy = std::min(best.copy, quenda.copy);
        best.remove = std::min(best.remove, quenda.remove);
    }
    std::printf("best of %d (reg.exe starts in %.0f ms):\n", kRounds, startup);
    std::printf("  copy:   reg %.0f ms, Quenda %.0f ms: ratio %.2f (%.2f against reg's work alone)\n", regCopyBest,
                best.copy, best.copy / regCopyBest, best.copy / (regCopyBest - startup));
    std::printf("  delete: reg %.0f ms, Quenda %.0f ms: ratio %.2f (%.2f against reg's work alone)\n", regDeleteBest,
                best.remove, best.remove / regDeleteBest, best.remove / (regDeleteBest - startup));

    // Per key, a copy needs the source's open, one query (class and counts),
    // the target's creation, both closes and its enumeration as a subkey,
    // and per value one read and one write; a deletion needs the open, the
    // subkey count, the close, the deletion and its enumeration as a subkey.
    CFaultInjectingPlatform counter;
    unsigned copyCalls = 0;
    unsigned deleteCalls = 0;
    {
        CScopedPlatform scoped(counter);
        CRegClipboard clipboard;
        clipboard.Put(CRegClipboard::kCopiedKey, HKEY_CURRENT_USER, path, nullptr);
        SKeyCopy plan;
        EEditMessage message = EEditMessage::kNone;
        PlanKeyPaste(clipboard, HKEY_CURRENT_USER, copyPath.Left(copyPath.ReverseFind(TEXT('\\'))), plan, message);
        RunKeyCopy(plan, clipboard);
        copyCalls = counter.RegistryCallCount();
        counter.ResetRegistryCallCount();
        DeleteRegKey(clipboard, HKEY_CURRENT_USER, plan.targetPath);
        deleteCalls = counter.RegistryCallCount();
    }
    std::printf("registry calls per key: paste %.2f (needed %.2f), delete %.2f (needed %.2f)\n",
                static_cast<double>(copyCalls) / keys, (6.0 * keys + 2.0 * values - 1) / keys,
                static_cast<double>(deleteCalls) / keys, (5.0 * keys - 1) / keys);
    return 0;
}
