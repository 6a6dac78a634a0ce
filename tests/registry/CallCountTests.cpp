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
// that a change that adds one fails here.
class CallCountTest : public testing::Test {
protected:
    static const unsigned kKeys = 13;

    // A top key, three groups below it and three items below each group;
    // every key holds the five kinds of value that registry files carry most.
    CallCountTest() : m_scoped(m_counter), m_scratch(TEXT("CallCount")), m_file("call-count.reg")
    {
        for (const char* group : {"", "\\G0", "\\G1", "\\G2"}) {
            for (const char* item : {"", "\\Item0", "\\Item1", "\\Item2"}) {
                if (*group == 0 && *item != 0)
                    continue;
                const CString key = Path("Tree") + W(group) + W(item);
                WriteTestValue(HKEY_CURRENT_USER, key, W("Text"), REG_SZ, Utf16Bytes(W("value \"1\""), true));
                WriteTestValue(HKEY_CURRENT_USER, key, W("Number"), REG_DWORD, Bytes({1, 2, 3, 4}));
                WriteTestValue(HKEY_CURRENT_USER, key, W("Blob"), REG_BINARY, Sequence(40));
                WriteTestValue(HKEY_CURRENT_USER, key, W("List"), REG_MULTI_SZ,
                               Utf16Bytes(W("a"), true) + Bytes({0, 0}));
                WriteTestValue(HKEY_CURRENT_USER, key, W("Path"), REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%"), true));
            }
        }
    }

    CString Path(const char* below) const { return ChildKeyPath(m_scratch.Path(), W(below)); }

    bool Export()
    {
        CRegExporter exporter;
        bool result = false;
        return exporter.Start(m_file.Path(), false, true, HKEY_CURRENT_USER, Path("Tree")) &&
               exporter.GetResult(result) && result;
    }
    bool Import()
    {
        CString error;
        return CRegImportRun(m_file.Path(), true).Run([] { return false; }, error);
    }
    bool SearchWalk()
    {
        SSearchParams params;
        params.searchString = TEXT("no such text");
        params.valueData = false;
        SStartPosition start;
        start.root = HKEY_CURRENT_USER;
        start.keyPath = Path("Tree");
        start.subtreeOnly = true;
        CRegFinder finder;
        finder.SetUp(params, start);
        CRegFinder::SSearchPosition match;
        return finder.Start() && !finder.Collect(match) && finder.IsFinished();
    }

    CFaultInjectingPlatform m_counter;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CTestFile m_file;
};

TEST_F(CallCountTest, EachOperationMakesAnExactNumberOfCallsAKey)
{
    // In this order, each leaves what the next one needs: the file, an empty
    // place, the tree again.
    const struct {
        const char* operation;
        std::function<bool()> run;
        unsigned callsPerKey;
        int besides;
    } cases[] = {
        // Open, the listing, a call a value, a call a subkey, close; the top
        // key is nobody's subkey.
        {"export", [this] { return Export(); }, 9, -1},
        // Open, the count, a call a subkey, close, delete; the top key is
        // nobody's subkey, and the end flushes and checks that it is gone.
        {"key delete", [this] { return DeleteKeyTree(HKEY_CURRENT_USER, Path("Tree")); }, 5, 1},
        // Create, a write a value, close; the end flushes the four roots.
        {"import", [this] { return Import(); }, 7, 4},
        // Open, the class and counts, create, a read and a write a value, a
        // call a subkey, both closes; the top is flushed.
        {"key paste",
         [this] { return CopyKeyTree(HKEY_CURRENT_USER, Path("Tree"), HKEY_CURRENT_USER, Path("Copy")); }, 16, 0},
        // Open, a call a value and one for the end, the listing, a call a
        // subkey, close; on the way down from the root, the four keys above
        // the tree are each opened, listed (with their one subkey) and closed.
        {"search walk", [this] { return SearchWalk(); }, 10, 4 * 4},
    };
    for (const auto& test : cases) {
        m_counter.ResetRegistryCallCount();
        EXPECT_TRUE(test.run()) << test.operation;
        const int expected = static_cast<int>(test.callsPerKey * kKeys) + test.besides;
        EXPECT_EQ(static_cast<int>(m_counter.RegistryCallCount()), expected) << test.operation;
    }
}

}  // namespace
