#include "framework/Utf8.h"
#include "settings/Bookmarks.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"

namespace {

using EChange = CBookmarkList::EChange;

std::string Loaded()
{
    CBookmarkList list;
    list.Load();
    std::string text;
    for (size_t i = 0; i < list.GetCount(); ++i)
        text += (i > 0 ? "," : "") + ToUtf8(list.GetAt(i));
    return text;
}

void Write(const char* name, DWORD type, const std::vector<BYTE>& data)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kBookmarksKeyPath, W(name), type, data);
}

using BookmarksTest = ProgramKeyTest;

TEST_F(BookmarksTest, LoadSkipsGapsAndTheNextSaveClosesThem)
{
    Write("item_0", REG_SZ, Utf16Bytes(W("HKLM\\zero"), true));
    Write("ITEM_2", REG_EXPAND_SZ, Utf16Bytes(W("HKLM\\two"), true));
    Write("item_3", REG_SZ, Utf16Bytes(W(""), true));
    Write("item_4", REG_BINARY, Bytes({0x41, 0, 0, 0}));
    Write("item_05", REG_SZ, Utf16Bytes(W("HKLM\\padded"), true));
    Write("item_10", REG_SZ, Utf16Bytes(W("HKLM\\ten"), true));
    EXPECT_EQ(Loaded(), "") << "no count";
    Write("count", REG_DWORD, Bytes({3, 0}));
    EXPECT_EQ(Loaded(), "") << "a two-byte count";
    Write("count", REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(Loaded(), "HKLM\\zero,HKLM\\two,HKLM\\ten") << "a damaged count";
    Write("count", REG_DWORD, Bytes({4, 0, 0, 0}));

    CBookmarkList list;
    list.Load();
    EXPECT_TRUE(list.Save());
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath),
              "[count]=#2\n[item_05]=HKLM\\padded\n[item_0]=HKLM\\zero\n[item_1]=HKLM\\two\n");
}

// Saving three items takes five writes: count 0, the items, the count. A
// save cut short loads as empty; one refused item costs only that item.
TEST_F(BookmarksTest, ASaveCutShortLoadsAsEmptyAndARefusedItemStopsNothing)
{
    for (int k = 0; k <= 5; ++k) {
        SCOPED_TRACE(k);
        CBookmarkList list;
        list.Load();
        while (list.GetCount() > 0)
            list.Remove(0);
        list.Add(W("HKLM\\old1"));
        list.Add(W("HKLM\\old2"));
        m_faults.FailValueWritesAfter(k);
        list.Add(W("HKLM\\new"));
        m_faults.Clear();
        EXPECT_EQ(Loaded(), k == 0 ? "HKLM\\old1,HKLM\\old2" : k < 5 ? "" : "HKLM\\old1,HKLM\\old2,HKLM\\new");
    }
    m_faults.FailValueWrite(W("item_0"));
    CBookmarkList list;
    list.Load();
    EXPECT_EQ(list.Replace(2, W("HKCU\\new")), EChange::Failed);
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath),
              "[count]=#3\n[item_0]=HKLM\\old1\n[item_1]=HKLM\\old2\n[item_2]=HKCU\\new\n");
}

TEST_F(BookmarksTest, DuplicatesAreFoundWithoutRegardToCase)
{
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("Software\\Ärger")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("SOFTWARE\\ärger")), EAddBookmarkResult::AlreadyExists);
    EXPECT_EQ(AddBookmark(HKEY_USERS, W("")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(reinterpret_cast<HKEY>(0x1234), W("Software")), EAddBookmarkResult::Failed);

    CBookmarkList list;
    list.Load();
    EXPECT_EQ(list.Add(W("hkey_users")), EChange::AlreadyExists);
    EXPECT_EQ(list.Replace(1, W("HKEY_USERS")), EChange::Unchanged);
    EXPECT_EQ(list.Replace(1, W("hkey_local_machine\\software\\ÄRGER")), EChange::AlreadyExists);
    EXPECT_EQ(list.Replace(0, W("HKEY_LOCAL_MACHINE\\SOFTWARE\\Ärger")), EChange::Changed) << "case alone";
    EXPECT_EQ(list.Add(W("HKCU")), EChange::Changed);
    EXPECT_EQ(Loaded(), "HKEY_LOCAL_MACHINE\\SOFTWARE\\Ärger,HKEY_USERS,HKCU");

    EXPECT_EQ(list.Remove(2), 1) << "the new last item";
    EXPECT_EQ(list.Remove(0), 0) << "the item that took its place";
    EXPECT_EQ(list.Remove(0), -1);
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath), "[count]=#0\n");

    m_faults.FailValueWrite(W("count"));
    EXPECT_EQ(AddBookmark(HKEY_CURRENT_USER, W("Software")), EAddBookmarkResult::Failed);
}

TEST(BookmarkLocation, NamesAKnownRootWithoutEmptyPathParts)
{
    for (const char* text : {"HKEY_LOCAL_MACHINE", "hklm\\Software", "HKCR\\.reg", "HKEY_USERS\\a b\\c"})
        EXPECT_TRUE(IsValidBookmarkLocation(W(text))) << text;
    for (const char* text : {"", "HKLM\\", "HKLM\\\\Software", "HKLM\\a\\\\b", "HKXX\\a", "Software", " HKLM"})
        EXPECT_FALSE(IsValidBookmarkLocation(W(text))) << text;
}

}  // namespace
