#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/Utf8.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "settings/Bookmarks.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/KeySnapshot.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

using EChange = CBookmarkList::EChange;

std::string Describe(const CBookmarkList& list)
{
    std::string text;
    for (size_t i = 0; i < list.GetCount(); ++i)
        text += (i > 0 ? "," : "") + ToUtf8(list.GetAt(i));
    return text;
}

class BookmarksTest : public testing::Test {
protected:
    BookmarksTest() : m_scoped(m_faults) { DeleteTreeForTests(HKEY_LOCAL_MACHINE, kBookmarksKeyPath); }

    void Write(const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(HKEY_LOCAL_MACHINE, kBookmarksKeyPath, nullptr));
        ASSERT_TRUE(key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
    }

    void WriteItem(const char* name, const char* text) { Write(W(name), REG_SZ, Utf16Bytes(W(text), true)); }

    // The stored values as "name=text" (strings) or "name=#n" (DWORDs), in
    // name order.
    std::string Stored()
    {
        CShdRegKey key;
        if (!key.Open(HKEY_LOCAL_MACHINE, kBookmarksKeyPath))
            return "(no key)";
        std::vector<std::string> entries;
        CString name;
        DWORD type = 0;
        for (DWORD index = 0; key.EnumValueName(index, name, type); ++index) {
            DWORD number = 0;
            CString text;
            if (key.ReadDword(name, number))
                entries.push_back(ToUtf8(name) + "=#" + std::to_string(number));
            else if (key.ReadString(name, text))
                entries.push_back(ToUtf8(name) + "=" + ToUtf8(text));
        }
        std::sort(entries.begin(), entries.end());
        std::string result;
        for (const std::string& entry : entries)
            result += (result.empty() ? "" : " ") + entry;
        return result;
    }

    std::string Loaded()
    {
        CBookmarkList list;
        list.Load();
        return Describe(list);
    }

    CKeySnapshot m_saved{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick")};
    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
};

TEST_F(BookmarksTest, GapsAreSkippedOnLoadAndClosedByTheNextSave)
{
    Write(W("count"), REG_DWORD, Bytes({3, 0, 0, 0}));
    WriteItem("item_0", "HKEY_LOCAL_MACHINE\\A");
    WriteItem("item_2", "HKCU\\B");
    WriteItem("item_3", "HKEY_USERS\\beyond the count");

    CBookmarkList list;
    list.Load();
    EXPECT_EQ(Describe(list), "HKEY_LOCAL_MACHINE\\A,HKCU\\B");
    EXPECT_TRUE(list.Save());
    EXPECT_EQ(Stored(), "count=#2 item_0=HKEY_LOCAL_MACHINE\\A item_1=HKCU\\B");
}

TEST_F(BookmarksTest, LoadTakesOnlyNonEmptyStringItemsBelowTheCount)
{
    struct SCase {
        const char* what;
        std::vector<BYTE> count;
        const char* expected;
    };
    const SCase cases[] = {
        {"count of 3", Bytes({3, 0, 0, 0}), "HKLM\\zero,HKLM\\two"},
        {"count of 1", Bytes({1, 0, 0, 0}), "HKLM\\zero"},
        {"damaged count", Bytes({0xFF, 0xFF, 0xFF, 0xFF}), "HKLM\\zero,HKLM\\two,HKLM\\ten"},
        {"two-byte count", Bytes({3, 0}), ""},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.what);
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kBookmarksKeyPath);
        Write(W("count"), REG_DWORD, c.count);
        WriteItem("item_0", "HKLM\\zero");
        WriteItem("item_1", "");
        Write(W("ITEM_2"), REG_EXPAND_SZ, Utf16Bytes(W("HKLM\\two"), true));
        Write(W("item_3"), REG_BINARY, Bytes({0x41, 0, 0, 0}));
        WriteItem("item_04", "HKLM\\padded");
        WriteItem("item_10", "HKLM\\ten");
        EXPECT_EQ(Loaded(), c.expected);
    }
    DeleteTreeForTests(HKEY_LOCAL_MACHINE, kBookmarksKeyPath);
    EXPECT_EQ(Loaded(), "");
}

// Saving three items takes five writes: count 0, the items, the count. A
// run that crashes after k of them leaves the old list (k = 0), an empty
// one, or the new one, never a mixture.
TEST_F(BookmarksTest, ASaveCutShortLoadsAsEmpty)
{
    for (int k = 0; k <= 5; ++k) {
        SCOPED_TRACE(k);
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kBookmarksKeyPath);
        CBookmarkList list;
        list.Add(W("HKLM\\old1"));
        list.Add(W("HKLM\\old2"));
        m_faults.FailValueWritesAfter(k);
        list.Add(W("HKLM\\new"));
        m_faults.Clear();
        EXPECT_EQ(Loaded(), k == 0 ? "HKLM\\old1,HKLM\\old2" : k < 5 ? "" : "HKLM\\old1,HKLM\\old2,HKLM\\new");
    }
}

TEST_F(BookmarksTest, EditsCompareLocationsWithoutRegardToCase)
{
    CBookmarkList list;
    EXPECT_EQ(list.Add(W("HKEY_LOCAL_MACHINE\\Software")), EChange::Changed);
    EXPECT_EQ(list.Add(W("hkey_local_machine\\SOFTWARE")), EChange::AlreadyExists);
    EXPECT_EQ(list.Add(W("HKEY_CURRENT_USER")), EChange::Changed);
    EXPECT_EQ(list.Add(W("HKLM\\Ärger")), EChange::Changed);
    EXPECT_EQ(list.Add(W("HKLM\\ärger")), EChange::AlreadyExists);

    EXPECT_EQ(list.Replace(1, W("HKEY_CURRENT_USER")), EChange::Unchanged);
    EXPECT_EQ(list.Replace(1, W("HKEY_LOCAL_MACHINE\\software")), EChange::AlreadyExists);
    EXPECT_EQ(list.Replace(0, W("HKEY_LOCAL_MACHINE\\SOFTWARE")), EChange::Changed) << "a change of case alone";
    EXPECT_EQ(Loaded(), "HKEY_LOCAL_MACHINE\\SOFTWARE,HKEY_CURRENT_USER,HKLM\\Ärger");

    EXPECT_EQ(list.Remove(2), 1) << "the new last item";
    EXPECT_EQ(list.Remove(0), 0) << "the item that took its place";
    EXPECT_EQ(Loaded(), "HKEY_CURRENT_USER");
    EXPECT_EQ(list.Remove(0), -1);
    EXPECT_EQ(Stored(), "count=#0");

    m_faults.FailOpen(W("Bookmarks"));
    EXPECT_EQ(list.Add(W("HKCR")), EChange::Failed);
}

TEST_F(BookmarksTest, AddBookmarkFromTheTreeRefusesDuplicatesAndUnknownRoots)
{
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("Software\\X")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("SOFTWARE\\x")), EAddBookmarkResult::AlreadyExists);
    EXPECT_EQ(AddBookmark(HKEY_USERS, W("")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(reinterpret_cast<HKEY>(0x1234), W("Software")), EAddBookmarkResult::Failed);
    m_faults.FailValueWrite(W("count"));
    EXPECT_EQ(AddBookmark(HKEY_CURRENT_USER, W("Software")), EAddBookmarkResult::Failed);
    m_faults.Clear();
    EXPECT_EQ(Stored(), "count=#2 item_0=HKEY_LOCAL_MACHINE\\Software\\X item_1=HKEY_USERS");
}

TEST(BookmarkLocation, ValidLocationsNameAKnownRootAndHaveNoEmptyPathParts)
{
    const char* valid[] = {"HKEY_LOCAL_MACHINE", "hklm\\Software", "HKCR\\.reg", "HKEY_USERS\\a b\\c"};
    const char* invalid[] = {"", "HKLM\\", "HKLM\\\\Software", "HKLM\\a\\\\b", "HKXX\\Software", "Software",
                             " HKLM", "\\HKLM"};
    for (const char* text : valid)
        EXPECT_TRUE(IsValidBookmarkLocation(W(text))) << text;
    for (const char* text : invalid)
        EXPECT_FALSE(IsValidBookmarkLocation(W(text))) << text;
}

}  // namespace
