#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/RunProcess_win.h"
#include "tests/support/ScratchKey.h"

namespace {

// The tree and the value list as the main window wires them, on a scratch
// key of the real registry that other programs change meanwhile.
class BrowsingTest : public MainWndTest {
protected:
    BrowsingTest() : m_scratch(TEXT("Browsing")) {}
    void SetUp() override
    {
        // The settings stay in memory, and the window starts at the top
        // instead of where the last test left it.
        m_faults.FailOpen(TEXT("Settings"));
        Settings().SetLastPosition(0, TEXT(""), TEXT(""), false);
        Open();
    }

    void CreateKey(LPCWSTR relative)
    {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(m_scratch.Handle(), relative, nullptr));
    }
    CString ScratchPath(LPCWSTR relative) const { return ChildKeyPath(m_scratch.Path(), relative); }
    bool NavigateTo(LPCWSTR relative) const { return Tree().NavigateTo(HKEY_CURRENT_USER, ScratchPath(relative)); }
    HTREEITEM Item(LPCWSTR relative) const { return Tree().FindItem(HKEY_CURRENT_USER, ScratchPath(relative)); }

    HTREEITEM Next(HTREEITEM item, UINT how) const
    {
        return reinterpret_cast<HTREEITEM>(SendMessageW(m_tree, TVM_GETNEXTITEM, how, reinterpret_cast<LPARAM>(item)));
    }
    std::string Children(HTREEITEM item) const
    {
        std::string labels;
        for (HTREEITEM child = Next(item, TVGN_CHILD); child != nullptr; child = Next(child, TVGN_NEXT)) {
            WCHAR text[300] = {};
            TVITEMW tvi = {};
            tvi.mask = TVIF_TEXT;
            tvi.hItem = child;
            tvi.pszText = text;
            tvi.cchTextMax = 300;
            SendMessageW(m_tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tvi));
            labels += (labels.empty() ? "" : ",") + ToUtf8(CString(text));
        }
        return labels;
    }
    UINT State(HTREEITEM item, UINT mask) const
    {
        return static_cast<UINT>(SendMessageW(m_tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), mask));
    }
    long Reg(const char* verb, LPCWSTR relative)
    {
        return RunProcess(W("reg ") + W(verb) + TEXT(" \"HKCU\\") + ScratchPath(relative) + TEXT("\" /f"));
    }

    CScratchKey m_scratch;
};

TEST_F(BrowsingTest, KeysLoadSortedWithExpandButtonsOnlyWhereSubkeysExist)
{
    CreateKey(TEXT("b"));
    CreateKey(TEXT("A\\deep"));
    CreateKey(TEXT("c"));
    ASSERT_TRUE(NavigateTo(TEXT("")));
    ASSERT_EQ(Children(Tree().GetSelectedItem()), "(not filled yet)");
    m_faults.ResetRegistryCallCount();
    SendMessageW(m_tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(Tree().GetSelectedItem()));
    // The key's open, listing and close; a call a child for its name, and an
    // open, a count and a close for its expand button.
    EXPECT_EQ(m_faults.RegistryCallCount(), 3u + 3 * 4) << "registry calls of the expansion";
    EXPECT_EQ(Children(Item(TEXT(""))), "A,b,c");
    EXPECT_EQ(Children(Item(TEXT("A"))), "(not filled yet)") << "an expand button before the key is loaded";
    EXPECT_EQ(Children(Item(TEXT("b"))), "");

    // A real expansion goes through the parent's forwarding of the notification.
    SendMessageW(m_tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(Item(TEXT("A"))));
    EXPECT_EQ(Children(Item(TEXT("A"))), "deep");
}

// Roots and missing keys are reached through the main window's key commands
// and search results, where a wrong selection shows.
TEST_F(BrowsingTest, NavigationReachesKeysMadeAfterTheirParentWasLoaded)
{
    CreateKey(TEXT("a"));
    CreateKey(TEXT("c"));
    ASSERT_TRUE(NavigateTo(TEXT("c")));
    ASSERT_EQ(Reg("add", TEXT("B\\inner")), 0) << "another program adds a key";
    EXPECT_EQ(Children(Item(TEXT(""))), "a,c");
    ASSERT_TRUE(NavigateTo(TEXT("b\\INNER")));
    EXPECT_EQ(Children(Item(TEXT(""))), "a,b,c") << "inserted in its sorted place";
    EXPECT_EQ(Tree().GetSelectedItem(), Item(TEXT("B\\inner")));
}

TEST_F(BrowsingTest, RefreshingTheTreeKeepsExpandedBranchesAndDropsDeletedKeys)
{
    CreateKey(TEXT("keep\\old"));
    CreateKey(TEXT("gone\\child"));
    CreateKey(TEXT("shut\\x"));
    ASSERT_TRUE(NavigateTo(TEXT("keep\\old")));
    ASSERT_TRUE(NavigateTo(TEXT("gone\\child")));
    ASSERT_EQ(Reg("delete", TEXT("gone")), 0);
    ASSERT_EQ(Reg("add", TEXT("keep\\new")), 0);
    ASSERT_EQ(Reg("add", TEXT("fresh\\y")), 0);
    ASSERT_EQ(Reg("delete", TEXT("shut\\x")), 0);

    Tree().RefreshTree(nullptr);
    EXPECT_EQ(Children(Item(TEXT(""))), "fresh,keep,shut");
    EXPECT_EQ(Children(Item(TEXT("keep"))), "new,old");
    EXPECT_NE(State(Item(TEXT("keep")), TVIS_EXPANDED), 0u);
    EXPECT_EQ(Children(Item(TEXT("fresh"))), "(not filled yet)");
    EXPECT_EQ(Children(Item(TEXT("shut"))), "") << "no expand button once its last subkey is gone";
}

// What a rename asks for, and the cut look of a key, are checked where they
// show, in the main window's edits; here roots refuse the label edit and a
// reloaded item keeps the cut look.
TEST_F(BrowsingTest, OnlyKeysBelowARootCanBeRenamedAndCutMarksFollowTheKey)
{
    CreateKey(TEXT("old"));
    ASSERT_TRUE(NavigateTo(TEXT("old")));
    const HTREEITEM rootItem = Tree().FindItem(HKEY_CURRENT_USER, TEXT(""));
    for (HTREEITEM refused : {Tree().GetTopItem(), rootItem})
        EXPECT_EQ(SendMessageW(m_tree, TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(refused)), 0);

    Tree().SetCut(HKEY_CURRENT_USER, ScratchPath(TEXT("OLD")));
    Tree().RefreshChildren(Item(TEXT("")));
    EXPECT_NE(State(Item(TEXT("old")), TVIS_CUT), 0u) << "a reloaded item of the cut key is cut at once";
}

class ValueListTest : public BrowsingTest {
protected:
    void Write(LPCWSTR name, DWORD type, const std::vector<BYTE>& data)
    {
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), name, type, data);
    }
    std::string Selected() const
    {
        CString name;
        return m_window->GetSelectedValue(name) ? ToUtf8(name) : "(none)";
    }
};

TEST_F(ValueListTest, EveryTypeIsShownInNameOrderAfterASelectionOfItsKey)
{
    std::vector<BYTE> bytes129(129, 0xEE);
    Write(TEXT("b"), REG_SZ, Utf16Bytes(W("text"), true));
    Write(TEXT("A"), REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}));
    Write(TEXT("a2"), REG_MULTI_SZ, Utf16Bytes(W("x"), true) + Bytes({0, 0}));
    Write(TEXT("c"), REG_DWORD, Bytes({1, 2, 3}));
    Write(TEXT("d"), REG_BINARY, bytes129);
    Write(TEXT("e"), REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%\\f"), true));
    Write(TEXT("f"), REG_NONE, Bytes({1}));
    Write(TEXT("g"), 0x100, Bytes({2}));
    ASSERT_TRUE(NavigateTo(TEXT("")));

    EXPECT_EQ(ListRows(m_list), std::vector<CString>({L"A", L"a2", L"b", L"c", L"d", L"e", L"f", L"g"}));
    std::string binary = "EE";
    for (int i = 1; i < 128; ++i)
        binary += " EE";
    EXPECT_EQ(ListRows(m_list, 1), std::vector<CString>({W("4294967295 (0xFFFFFFFF)"), W("x..."), W("text"), W(""),
                                                         W((binary + "...").c_str()), W("%TEMP%\\f"), W("01"),
                                                         W("02")}));
    EXPECT_EQ(ListImages(m_list), std::vector<int>({9, 10, 7, 9, 8, 11, 12, 13}));
}

TEST_F(ValueListTest, TheSelectionSurvivesARefillByName)
{
    Write(TEXT("b"), REG_SZ, Utf16Bytes(W("1"), true));
    Write(TEXT("a2"), REG_SZ, Utf16Bytes(W("2"), true));
    ASSERT_TRUE(NavigateTo(TEXT("")));
    EXPECT_EQ(Selected(), "(none)");
    ASSERT_TRUE(m_window->SelectValueByName(TEXT("b")));
    EXPECT_FALSE(m_window->SelectValueByName(TEXT("missing")));

    Write(TEXT("a1"), REG_SZ, Utf16Bytes(W("3"), true));
    Command(IDM_REGISTRY_REFRESH);
    EXPECT_EQ(ListRows(m_list), std::vector<CString>({L"a1", L"a2", L"b"}));
    EXPECT_EQ(Selected(), "b");

    ASSERT_TRUE(m_window->SelectValueByName(TEXT("a1")));
    CShdRegKey key;
    ASSERT_TRUE(key.Open(m_scratch.Handle(), TEXT("")));
    ASSERT_TRUE(key.DeleteValue(TEXT("a1")));
    Command(IDM_REGISTRY_REFRESH);
    EXPECT_EQ(Selected(), "(none)") << "a kept value that is gone selects nothing";

    SetFocus(m_list);
    PumpMessages();
    EXPECT_EQ(Selected(), "a2") << "focus selects the first row";
}

// A row whose text cannot be read whole names no value: it is no value to
// rename. Renames themselves are made through the main window's tests.
TEST_F(ValueListTest, ARowWhoseNameCannotBeReadWholeIsNoValue)
{
    Write(TEXT("old"), REG_SZ, Utf16Bytes(W("1"), true));
    ASSERT_TRUE(NavigateTo(TEXT("")));
    SetFocus(m_list);
    PumpMessages();
    LVITEMW longer = {};
    longer.pszText = const_cast<LPWSTR>(L"older");
    SendMessageW(m_list, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&longer));
    CString name = W("sentinel");
    EXPECT_FALSE(m_window->GetSelectedValue(name));
    EXPECT_EQ(SendMessageW(m_list, LVM_EDITLABELW, 0, 0), 0);
}

}  // namespace
