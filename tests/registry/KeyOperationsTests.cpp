#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/Text.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

class KeyOperationsTest : public testing::Test {
protected:
    KeyOperationsTest() : m_scoped(m_faults), m_scratch(TEXT("KeyOperations"))
    {
        Write("Source", "", REG_SZ, Utf16Bytes(W("default"), true));
        Write("Source", "odd", REG_SZ, Bytes({0x61, 0, 0}));
        Write("Source", "empty", REG_BINARY, {});
        Write("Source", "big", REG_BINARY, std::vector<BYTE>(3000, 0x5A));
        Write("Source", "Grüße", REG_MULTI_SZ, Utf16Bytes(W("ß"), true) + Bytes({0, 0}));
        Write("Source\\Child\\Grandchild", "deep", REG_DWORD, Bytes({1, 0, 0, 0}));
        Write("Source\\Second", "x", 0x1234, Bytes({2}));
        CShdRegKey classy(true);
        EXPECT_TRUE(classy.Create(HKEY_CURRENT_USER, Path("Source\\Classy"), W("myclass")));
    }

    void Write(const char* keyPath, const char* name, DWORD type, const std::vector<BYTE>& data)
    {
        WriteTestValue(HKEY_CURRENT_USER, Path(keyPath), W(name), type, data);
    }
    CString Path(const char* below) const { return ChildKeyPath(m_scratch.Path(), W(below)); }
    std::string SnapshotOf(const char* below) const { return DumpTree(HKEY_CURRENT_USER, Path(below)); }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
};

TEST_F(KeyOperationsTest, CopyKeyTreeCopiesEverythingOrReportsWhatItMissed)
{
    const std::string source = SnapshotOf("Source");
    EXPECT_NE(source.find("\nClassy (myclass)\n"), std::string::npos);
    EXPECT_TRUE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("Copy")));
    EXPECT_EQ(SnapshotOf("Copy"), source);

    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Missing"), HKEY_CURRENT_USER, Path("Other")));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("source\\Second\\Copy")));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, W(""), HKEY_CURRENT_USER, Path("Whole")));
    for (const char* target : {"Other", "Source\\Second\\Copy", "Whole"})
        EXPECT_EQ(SnapshotOf(target), "(missing)") << target;

    // Best effort: everything but the failed value and subkey arrives.
    m_faults.FailValueWrite(TEXT("odd"));
    m_faults.FailOpen(TEXT("Child"));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("Partial")));
    m_faults.Clear();
    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source\\Child")));
    CShdRegKey key(true);
    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, Path("Source")));
    ASSERT_TRUE(key.DeleteValue(W("odd")));
    EXPECT_EQ(SnapshotOf("Partial"), SnapshotOf("Source"));
}

TEST_F(KeyOperationsTest, DeleteKeyTreeRemovesWhatItCan)
{
    EXPECT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Missing")));
    // Third cannot be reached, so Second and Source stay; the rest goes.
    Write("Source\\Second\\Third", "v", REG_DWORD, Bytes({1, 0, 0, 0}));
    m_faults.FailOpen(TEXT("Second"));
    EXPECT_FALSE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source")));
    m_faults.Clear();
    EXPECT_EQ(SnapshotOf("Source"), ".\nSecond\n  \"x\" 1234: 02\nSecond\\Third\n  \"v\" 4: 01 00 00 00\n");
    EXPECT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source")));
    EXPECT_EQ(SnapshotOf("Source"), "(missing)");
}

TEST(KeyOperations, IsSameOrDescendant)
{
    const struct { const char* pathA; const char* pathB; bool allowEqual; bool expected; } cases[] = {
        {"Software\\A", "software", false, true}, {"Software\\A", "SOFTWARE\\a", true, true},
        {"Software\\A", "SOFTWARE\\a", false, false}, {"SoftwareX", "Software", true, false},
        {"Soft", "Software", true, false}, {"Software", "", true, false}, {"", "", true, true},
        {"Äpfel\\x", "äPFEL", false, true},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.pathA) + " in " + item.pathB);
        EXPECT_EQ(IsSameOrDescendant(HKEY_CURRENT_USER, W(item.pathA), HKEY_CURRENT_USER, W(item.pathB),
                                     item.allowEqual),
                  item.expected);
    }
    EXPECT_FALSE(IsSameOrDescendant(HKEY_CURRENT_USER, W("A\\B"), HKEY_LOCAL_MACHINE, W("A"), true));
}

TEST(KeyOperations, UniqueNamesStripAPositiveSuffixAndCountFromTwo)
{
    const struct { const char* source; std::set<std::string> taken; const char* expected; } cases[] = {
        {"Foo", {"Foo"}, "Foo (2)"}, {"Foo", {"Foo", "foo (2)"}, "Foo (3)"},
        {"Foo (3)", {"Foo", "Foo (3)"}, "Foo (2)"}, {"Foo (2)", {"Foo (2)"}, "Foo (3)"},
        {"Foo (0)", {}, "Foo (0) (2)"}, {"Foo (-4)", {}, "Foo (-4) (2)"}, {"Foo (7x)", {}, "Foo (2)"},
        {"Foo(5)", {}, "Foo(5) (2)"}, {"(5)", {}, "(5) (2)"}, {" (5)", {}, " (2)"},
        // Read into a 32-bit long: too large a number is its limit.
        {"Foo (9300000000000000000)", {}, "Foo (2)"}, {"Foo (2147483648)", {}, "Foo (2)"},
        {"Foo (-9300000000000000000)", {}, "Foo (-9300000000000000000) (2)"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.source);
        CString name;
        const auto exists = [&](const CString& candidate) {
            return std::any_of(item.taken.begin(), item.taken.end(), [&](const std::string& taken) {
                return CompareNoCase(W(taken.c_str()), candidate) == 0;
            });
        };
        EXPECT_TRUE(MakeUniqueName(W(item.source), exists, name));
        EXPECT_EQ(name, W(item.expected));
    }

    int asked = 0;
    CString name = W("sentinel");
    EXPECT_FALSE(MakeUniqueName(W("Full"), [&](const CString&) { return ++asked > 0; }, name));
    EXPECT_EQ(asked, 32766) << "2 to 32767";
    EXPECT_EQ(name, W(""));
}


}  // namespace
