// Times the loading of one tree item with 5,000 subkeys (every tenth with a
// subkey of its own, so that both kinds of child appear) and counts the
// registry calls made per child.
//   tree-benchmark.exe SUBKEY-OF-HKCU

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <vector>

#include "base/Utf8.h"
#include "bench/BenchSupport_win.h"
#include "framework/ShdWnd_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "registry/SortedNames.h"
#include "views/RegTree_win.h"

namespace {

const int kChildren = 5000;
const int kRuns = 5;

bool MakeKeys(const CString& path)
{
    CShdRegKey parent;
    if (!parent.Create(HKEY_CURRENT_USER, path, nullptr))
        return false;
    for (int i = 0; i < kChildren; ++i) {
        const CString name = CString::Formatted(TEXT("Key%05d"), (i * 7919) % kChildren);
        CShdRegKey child;
        if (!child.Create(parent.GetHandle(), i % 10 == 0 ? name + TEXT("\\Inner") : name, nullptr))
            return false;
    }
    return true;
}

// The registry work of one load without the tree: the sorted names, then
// one open and one subkey count per child.
double TimeRegistryAlone(const CString& path)
{
    LARGE_INTEGER from, to;
    QueryPerformanceCounter(&from);
    CShdRegKey parent;
    if (!parent.Open(HKEY_CURRENT_USER, path))
        return -1;
    std::vector<CString> names;
    ReadSortedSubkeyNames(parent, names);
    for (const CString& name : names) {
        CShdRegKey child;
        if (child.Open(HKEY_CURRENT_USER, ChildKeyPath(path, name)))
            child.SubkeyCount();
    }
    QueryPerformanceCounter(&to);
    return Milliseconds(from, to);
}

// Inserting as many labels into a bare tree view, without the registry.
double TimeInsertsAlone(HWND parent)
{
    const HWND tree = CreateWindowExW(0, WC_TREEVIEWW, L"", WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES,
                                      0, 0, 300, 440, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    LARGE_INTEGER from, to;
    QueryPerformanceCounter(&from);
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    for (int i = 0; i < kChildren; ++i) {
        const CString label = CString::Formatted(TEXT("Key%05d"), i);
        TVINSERTSTRUCTW insert = {};
        insert.hParent = TVI_ROOT;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT;
        insert.item.pszText = const_cast<LPWSTR>(label.GetString());
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert));
    }
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    UpdateWindow(tree);
    QueryPerformanceCounter(&to);
    DestroyWindow(tree);
    return Milliseconds(from, to);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: tree-benchmark.exe SUBKEY-OF-HKCU\n");
        return 2;
    }
    const CString path = FromUtf8(argv[1]);
    DeleteKeyTree(HKEY_CURRENT_USER, path);
    if (!MakeKeys(path)) {
        std::fprintf(stderr, "could not create the keys\n");
        return 1;
    }

    InitCommonControls();
    CShdWnd frame;
    if (!frame.Create(0, nullptr, L"Tree benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 320, 480, nullptr,
                      nullptr, GetModuleHandleW(nullptr))) {
        std::fprintf(stderr, "could not create the window\n");
        return 1;
    }
    CRegTree tree;
    const RECT position = {0, 0, 300, 440};
    if (!tree.Create(WS_CHILD | WS_VISIBLE, position, frame.GetHwnd(), 101) ||
        !tree.NavigateTo(HKEY_CURRENT_USER, path)) {
        std::fprintf(stderr, "could not show the key\n");
        return 1;
    }
    const HTREEITEM item = tree.GetSelectedItem();

    double best = 0;
    unsigned calls = 0;
    for (int run = 0; run < kRuns; ++run) {
        // Timed from an empty item, as at the first expansion.
        HTREEITEM child;
        while ((child = reinterpret_cast<HTREEITEM>(SendMessageW(tree.GetHwnd(), TVM_GETNEXTITEM, TVGN_CHILD,
                                                                 reinterpret_cast<LPARAM>(item)))) != nullptr)
            SendMessageW(tree.GetHwnd(), TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(child));
        CFaultInjectingPlatform counter;
        CScopedPlatform scoped(counter);
        LARGE_INTEGER from, to;
        QueryPerformanceCounter(&from);
        tree.RefreshChildren(item);
        SendMessageW(tree.GetHwnd(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
        UpdateWindow(tree.GetHwnd());
        QueryPerformanceCounter(&to);
        const double milliseconds = Milliseconds(from, to);
        if (run == 0 || milliseconds < best)
            best = milliseconds;
        calls = counter.RegistryCallCount();
    }
    double registryAlone = 0;
    for (int run = 0; run < kRuns; ++run) {
        const double milliseconds = TimeRegistryAlone(path);
        if (run == 0 || milliseconds < registryAlone)
            registryAlone = milliseconds;
    }
    const double insertsAlone = TimeInsertsAlone(frame.GetHwnd());
    const unsigned items = static_cast<unsigned>(SendMessageW(tree.GetHwnd(), TVM_GETCOUNT, 0, 0));
    std::printf("loading %d subkeys into the tree: best of %d runs %.0f ms (%.1f us per child)\n", kChildren, kRuns,
                best, best * 1000.0 / kChildren);
    std::printf("registry calls: %u for %d children, %.2f per child\n", calls, kChildren,
                static_cast<double>(calls) / kChildren);
    std::printf("the same registry calls without the tree: %.0f ms (%.0f%% of the load)\n", registryAlone,
                best > 0 ? registryAlone * 100.0 / best : 0.0);
    std::printf("%d inserts into a bare tree view: %.0f ms\n", kChildren, insertsAlone);
    std::printf("tree items after loading: %u\n", items);
    DestroyWindow(frame.GetHwnd());
    DeleteKeyTree(HKEY_CURRENT_USER, path);
    return 0;
}
