#include <gtest/gtest.h>

#include <functional>

#include "platform/FaultInjectingPlatform.h"
#include "regfile/RegExporter.h"
#include "regfile/RegImportRun.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "search/RegFinder.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

// Registry-bound work is as fast as the registry calls it makes: each
// operation over a generated tree makes an exact number of calls a key, so
// that a change that adds one fails here. In this order, each operation
// leaves what the next needs: the file, an empty place, the tree again.
TEST(CallCount, EachOperationMakesAnExactNumberOfCallsAKey)
{
    CFaultInjectingPlatform counter;
    CScopedPlatform scoped(counter);
    CScratchKey scratch(TEXT("CallCount"));
    CTestFile file("call-count.reg");
    const CString tree = ChildKeyPath(scratch.Path(), TEXT("Tree"));
    // A top key, three groups below it and three items below each; every key
    // holds the five kinds of value that registry files carry most.
    const unsigned keys = 13;
    for (const char* key : {"", "\\G0", "\\G1", "\\G2", "\\G0\\I0", "\\G0\\I1", "\\G0\\I2", "\\G1\\I0", "\\G1\\I1",
                            "\\G1\\I2", "\\G2\\I0", "\\G2\\I1", "\\G2\\I2"}) {
        const auto write = [&](const char* name, DWORD type, const std::vector<BYTE>& data) {
            WriteTestValue(HKEY_CURRENT_USER, tree + W(key), W(name), type, data);
        };
        write("Text", REG_SZ, Utf16Bytes(W("value \"1\""), true));
        write("Number", REG_DWORD, Bytes({1, 2, 3, 4}));
        write("Blob", REG_BINARY, Sequence(40));
        write("List", REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Bytes({0, 0}));
        write("Path", REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%"), true));
    }

    const struct {
        const char* operation;
        std::function<bool()> run;
        unsigned callsPerKey;
        int besides;
    } cases[] = {
        // Open, the count query, a call a value, a call a subkey, close; the
        // top key is nobody's subkey.
        {"export",
         [&] {
             CRegExporter exporter;
             bool result = false;
             return exporter.Start(file.Path(), false, true, HKEY_CURRENT_USER, tree) && exporter.GetResult(result) &&
                    result;
         },
         9, -1},
        // Open, the count, a call a subkey, close, delete; the end flushes and
        // checks that the key is gone.
        {"key delete", [&] { return DeleteKeyTree(HKEY_CURRENT_USER, tree); }, 5, -1 + 2},
        // Create, a write a value, close; the end flushes the four roots.
        {"import",
         [&] {
             CString error;
             return CRegImportRun(file.Path(), true).Run([] { return false; }, error);
         },
         7, 4},
        // Open, the class and counts, create, a read and a write a value, a
        // call a subkey, both closes; the top is flushed.
        {"key paste",
         [&] { return CopyKeyTree(HKEY_CURRENT_USER, tree, HKEY_CURRENT_USER, tree + TEXT(" (2)")); }, 16, -1 + 1},
        // Open, the query of counts and last-write time, a call a value, a
        // call a subkey, close; the four keys above the tree are each opened,
        // listed (with their one subkey) and closed on the way down.
        {"search walk",
         [&] {
             SStartPosition start;
             start.root = HKEY_CURRENT_USER;
             start.keyPath = tree;
             start.subtreeOnly = true;
             CRegFinder finder;
             SSearchParams names;
             names.valueData = false;
             names.searchString = TEXT("no such text");
             finder.SetUp(names, start);
             CRegFinder::SSearchPosition match;
             return finder.Start() && !finder.Collect(match) && finder.IsFinished();
         },
         9, 4 * 4},
    };
    for (const auto& test : cases) {
        counter.ResetRegistryCallCount();
        EXPECT_TRUE(test.run()) << test.operation;
        const int expected = static_cast<int>(test.callsPerKey * keys) + test.besides;
        EXPECT_EQ(static_cast<int>(counter.RegistryCallCount()), expected) << test.operation;
    }
}

}  // namespace
