#include <gtest/gtest.h>

#include <set>
#include <string>

#include "framework/Text.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/KeyOperations.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// A key's class, values and subtree as text, with subkeys in name order, so
// that two trees can be compared whole.
std::string Snapshot(HKEY parent, const CString& path, const std::string& indent = "")
{
    CShdRegKey key;
    if (!key.Open(parent, path))
        return indent + "(cannot open)\n";
    CString text;
    key.GetClass(text);
    std::string result = indent + "[" + ToUtf8(path) + "] class=" + ToUtf8(text) + "\n";
    CShdBinaryBuffer data;
    DWORD type = 0;
    for (DWORD index = 0; key.EnumValue(index, text, type, data); ++index) {
        result += indent + "  " + ToUtf8(text) + " type=" + std::to_string(type) + ":";
        for (size_t i = 0; i < data.GetSize(); ++i)
            result += " " + std::to_string(data.GetData()[i]);
        result += "\n";
    }
    std::set<std::string> children;
    for (DWORD index = 0; key.EnumSubkey(index, text); ++index)
        children.insert(Snapshot(key.GetHandle(), text, indent + "  "));
    for (const std::string& child : children)
        result += child;
    return result;
}

class KeyOperationsTest : public testing::Test {
protected:
    KeyOperationsTest() : m_scoped(m_faults), m_scratch(TEXT("KeyOperations")) {}

    // Source\ with values of awkward forms and two levels of subkeys.
    void FillSource()
    {
        CShdRegKey source(true);
        ASSERT_TRUE(source.Create(m_scratch.Handle(), W("Source"), W("srcclass")));
        Write(source, W(""), REG_SZ, Utf16Bytes(W("default"), true));
        Write(source, W("odd"), REG_SZ, Bytes({0x61, 0, 0}));
        Write(source, W("empty"), REG_BINARY, {});
        Write(source, W("big"), REG_BINARY, std::vector<BYTE>(3000, 0x5A));
        Write(source, W("qword"), REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
        Write(source, W("Grüße"), REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("ß"), true) + Bytes({0, 0}));
        CShdRegKey child(true);
        ASSERT_TRUE(child.Create(source.GetHandle(), W("Child\\Grandchild"), nullptr));
        Write(child, W("deep"), REG_DWORD, Bytes({1, 0, 0, 0}));
        ASSERT_TRUE(child.Create(source.GetHandle(), W("Second"), nullptr));
        Write(child, W("x"), REG_DWORD, Bytes({2, 0, 0, 0}));
    }

    static void Write(CShdRegKey& key, const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        ASSERT_TRUE(key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
    }

    CString Path(const char* below) const { return ChildKeyPath(m_scratch.Path(), W(below)); }

    std::string SnapshotOf(const char* below) const { return Snapshot(HKEY_CURRENT_USER, Path(below)); }

    // The snapshot with the key's own line left out, for comparing a copy
    // under another name.
    std::string BodyOf(const char* below) const
    {
        const std::string snapshot = SnapshotOf(below);
        return snapshot.substr(snapshot.find(']'));
    }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
};

TEST_F(KeyOperationsTest, CopyKeyTreeCopiesClassValuesAndSubtree)
{
    FillSource();
    EXPECT_TRUE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("Target")));
    EXPECT_EQ(BodyOf("Target"), BodyOf("Source"));
    EXPECT_NE(SnapshotOf("Source").find("class=srcclass"), std::string::npos);

    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Missing"), HKEY_CURRENT_USER, Path("Other")));
    CShdRegKey other;
    EXPECT_FALSE(other.Open(HKEY_CURRENT_USER, Path("Other"))) << "nothing is created for a missing source";
}

TEST_F(KeyOperationsTest, CopyKeyTreeIsBestEffort)
{
    FillSource();
    m_faults.FailValueWrite(TEXT("odd"));
    m_faults.FailOpen(TEXT("Child"));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("Target")));
    m_faults.Clear();

    CShdRegKey target;
    ASSERT_TRUE(target.Open(HKEY_CURRENT_USER, Path("Target")));
    EXPECT_FALSE(target.ValueExists(W("odd")));
    EXPECT_TRUE(target.ValueExists(W("qword"))) << "values after the failed one are still copied";
    DWORD value = 0;
    CShdRegKey second;
    EXPECT_TRUE(second.Open(target.GetHandle(), W("Second"))) << "subkeys after the failed one are still copied";
    EXPECT_TRUE(second.ReadDword(W("x"), value));
    EXPECT_FALSE(second.Open(target.GetHandle(), W("Child")));
}

TEST_F(KeyOperationsTest, CopyKeyTreeRefusesATargetInsideItsSource)
{
    FillSource();
    const std::string before = SnapshotOf("Source");
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("Source\\Child\\Copy")));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, Path("Source"), HKEY_CURRENT_USER, Path("source")));
    EXPECT_FALSE(CopyKeyTree(HKEY_CURRENT_USER, W(""), HKEY_CURRENT_USER, Path("Whole")));
    EXPECT_EQ(SnapshotOf("Source"), before);
}

TEST_F(KeyOperationsTest, DeleteKeyTreeRemovesEverythingItCan)
{
    FillSource();
    EXPECT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source\\Child")));
    EXPECT_EQ(SnapshotOf("Source\\Child"), "(cannot open)\n");
    EXPECT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source\\Child"))) << "a missing key is deleted already";

    // A subkey whose own subkeys cannot be reached keeps its parent alive;
    // the rest goes.
    CShdRegKey third;
    ASSERT_TRUE(third.Create(HKEY_CURRENT_USER, Path("Source\\Second\\Third"), nullptr));
    third.Close();
    m_faults.FailOpen(TEXT("Second"));
    EXPECT_FALSE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source")));
    m_faults.Clear();
    CShdRegKey source;
    ASSERT_TRUE(source.Open(HKEY_CURRENT_USER, Path("Source")));
    EXPECT_EQ(source.ValueCount(), 0u);
    EXPECT_EQ(source.SubkeyCount(), 1u);

    EXPECT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, Path("Source")));
    EXPECT_EQ(SnapshotOf("Source"), "(cannot open)\n");
}

TEST(KeyOperations, IsSameOrDescendant)
{
    const struct {
        HKEY rootA;
        const char* pathA;
        HKEY rootB;
        const char* pathB;
        bool allowEqual;
        bool expected;
    } cases[] = {
        {HKEY_CURRENT_USER, "Software\\A", HKEY_CURRENT_USER, "software", false, true},
        {HKEY_CURRENT_USER, "Software\\A", HKEY_CURRENT_USER, "Software\\A", true, true},
        {HKEY_CURRENT_USER, "Software\\A", HKEY_CURRENT_USER, "SOFTWARE\\a", false, false},
        {HKEY_CURRENT_USER, "Software\\A", HKEY_LOCAL_MACHINE, "Software", true, false},
        {HKEY_CURRENT_USER, "SoftwareX", HKEY_CURRENT_USER, "Software", true, false},
        {HKEY_CURRENT_USER, "Soft", HKEY_CURRENT_USER, "Software", true, false},
        {HKEY_CURRENT_USER, "Software", HKEY_CURRENT_USER, "", true, false},
        {HKEY_CURRENT_USER, "", HKEY_CURRENT_USER, "", true, true},
        {HKEY_CURRENT_USER, "Äpfel\\x", HKEY_CURRENT_USER, "äPFEL", false, true},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.pathA) + " in " + item.pathB);
        EXPECT_EQ(IsSameOrDescendant(item.rootA, W(item.pathA), item.rootB, W(item.pathB), item.allowEqual),
                  item.expected);
    }
}

TEST(KeyOperations, UniqueNamesStripAPositiveSuffixAndCountFromTwo)
{
    const struct {
        const char* source;
        std::set<std::string> taken;
        const char* expected;
    } cases[] = {
        {"Foo", {"Foo"}, "Foo (2)"},
        {"Foo", {"Foo", "foo (2)"}, "Foo (3)"},
        {"Foo (3)", {"Foo", "Foo (3)"}, "Foo (2)"},
        {"Foo (2)", {"Foo (2)"}, "Foo (3)"},
        {"Foo (0)", {}, "Foo (0) (2)"},
        {"Foo (-4)", {}, "Foo (-4) (2)"},
        {"Foo (7x)", {}, "Foo (2)"},
        {"Foo(5)", {}, "Foo(5) (2)"},
        {"(5)", {}, "(5) (2)"},
        {" (5)", {}, " (2)"},
        {"", {}, " (2)"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.source);
        CString name = W("sentinel");
        const auto exists = [&](const CString& candidate) {
            for (const std::string& taken : item.taken) {
                if (CompareNoCase(W(taken.c_str()), candidate) == 0)
                    return true;
            }
            return false;
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
