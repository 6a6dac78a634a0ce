#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>
#include <commctrl.h>

#include "framework/DpiScale.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/RunProcess_win.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport.h"
#include "tests/ui/UiTestSupport.h"
#include "views/RegTree_win.h"
#include "views/ValueList_win.h"

namespace {

// A top-level window with the tree above the value list, wired as the main
// window wires them: notifications forwarded, the list refilled on a new
// tree selection.
class CBrowserHost : public CShdWnd {
public:
    CBrowserHost()
    {
        Create(0, nullptr, L"Browse", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, ScaleX(320), ScaleY(400), nullptr,
               nullptr, TestInstance());
        RECT client = {};
        GetClientRect(GetHwnd(), &client);
        const int half = client.bottom / 2;
        const RECT treeRect = {0, 0, client.right, half};
        m_tree.Create(WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_EDITLABELS, treeRect, GetHwnd(), 101);
        const HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", 0x5001020D, 0, half, client.right,
                                          client.bottom - half, GetHwnd(), nullptr, TestInstance(), nullptr);
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, 0x60);
        const LPCWSTR titles[] = {L"Name", L"Value"};
        for (int column = 0; column < 2; ++column) {
            LVCOLUMNW lvc = {};
            lvc.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
            lvc.fmt = LVCFMT_LEFT;
            lvc.cx = client.right / 2;
            lvc.pszText = const_cast<LPWSTR>(titles[column]);
            SendMessageW(list, LVM_INSERTCOLUMNW, column, reinterpret_cast<LPARAM>(&lvc));
        }
        m_values.Attach(list, &m_tree, GetHwnd());
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != WM_NOTIFY)
            return CShdWnd::WindowProc(message, wParam, lParam);
        const NMHDR* header = reinterpret_cast<const NMHDR*>(lParam);
        LRESULT result = 0;
        if (m_tree.OnNotify(header, result))
            return result;
        if (header->hwndFrom == m_tree.GetHwnd() && header->code == TVN_SELCHANGEDW)
            m_values.Fill(reinterpret_cast<const NMTREEVIEWW*>(header)->itemNew.hItem, false, nullptr);
        m_values.OnNotify(header, result);
        return result;
    }

    CRegTree m_tree;
    CValueList m_values;
};

class BrowsingTest : public testing::Test {
protected:
    BrowsingTest() : m_scratch(TEXT("Browsing")) {}

    void CreateKey(LPCWSTR relative)
    {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(m_scratch.Handle(), relative, nullptr));
    }
    CString ScratchPath(LPCWSTR relative) const { return ChildKeyPath(m_scratch.Path(), relative); }
    HWND Tree() const { return m_host.m_tree.GetHwnd(); }
    HTREEITEM Item(LPCWSTR relative) const { return m_host.m_tree.FindItem(HKEY_CURRENT_USER, ScratchPath(relative)); }

    HTREEITEM Next(HTREEITEM item, UINT how) const
    {
        return reinterpret_cast<HTREEITEM>(SendMessageW(Tree(), TVM_GETNEXTITEM, how, reinterpret_cast<LPARAM>(item)));
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
            SendMessageW(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&tvi));
            labels += (labels.empty() ? "" : ",") + ToUtf8(CString(text));
        }
        return labels;
    }
    UINT State(HTREEITEM item, UINT mask) const
    {
        return static_cast<UINT>(SendMessageW(Tree(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), mask));
    }
    long Reg(const char* verb, LPCWSTR relative)
    {
        return RunProcess(W("reg ") + W(verb) + TEXT(" \"HKCU\\") + ScratchPath(relative) + TEXT("\" /f"));
    }

    CScratchKey m_scratch;
    CBrowserHost m_host;
};

TEST_F(BrowsingTest, KeysLoadSortedWithExpandButtonsOnlyWhereSubkeysExist)
{
    CreateKey(TEXT("b"));
    CreateKey(TEXT("A\\deep"));
    CreateKey(TEXT("c"));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, m_scratch.Path()));
    ASSERT_EQ(Children(m_host.m_tree.GetSelectedItem()), "(not filled yet)");
    SendMessageW(Tree(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(m_host.m_tree.GetSelectedItem()));
    EXPECT_EQ(Children(Item(TEXT(""))), "A,b,c");
    EXPECT_EQ(Children(Item(TEXT("A"))), "(not filled yet)") << "an expand button before the key is loaded";
    EXPECT_EQ(Children(Item(TEXT("b"))), "");

    // A real expansion goes through the parent's forwarding of the notification.
    SendMessageW(Tree(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(Item(TEXT("A"))));
    EXPECT_EQ(Children(Item(TEXT("A"))), "deep");
}

// Roots and missing keys are reached through the main window's key commands
// and search results, where a wrong selection shows.
TEST_F(BrowsingTest, NavigationReachesKeysMadeAfterTheirParentWasLoaded)
{
    CreateKey(TEXT("a"));
    CreateKey(TEXT("c"));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, ScratchPath(TEXT("c"))));
    ASSERT_EQ(Reg("add", TEXT("B\\inner")), 0) << "another program adds a key";
    EXPECT_EQ(Children(Item(TEXT(""))), "a,c");
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, ScratchPath(TEXT("b\\INNER"))));
    EXPECT_EQ(Children(Item(TEXT(""))), "a,b,c") << "inserted in its sorted place";
    EXPECT_EQ(m_host.m_tree.GetSelectedItem(), Item(TEXT("B\\inner")));
    EXPECT_FALSE(m_host.m_tree.NavigateTo(nullptr, TEXT("")));
}

TEST_F(BrowsingTest, RefreshingTheTreeKeepsExpandedBranchesAndDropsDeletedKeys)
{
    CreateKey(TEXT("keep\\old"));
    CreateKey(TEXT("gone\\child"));
    CreateKey(TEXT("shut\\x"));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, ScratchPath(TEXT("keep\\old"))));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, ScratchPath(TEXT("gone\\child"))));
    ASSERT_EQ(Reg("delete", TEXT("gone")), 0);
    ASSERT_EQ(Reg("add", TEXT("keep\\new")), 0);
    ASSERT_EQ(Reg("add", TEXT("fresh\\y")), 0);
    ASSERT_EQ(Reg("delete", TEXT("shut\\x")), 0);

    m_host.m_tree.RefreshTree(nullptr);
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
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, ScratchPath(TEXT("old"))));
    const HTREEITEM rootItem = m_host.m_tree.FindItem(HKEY_CURRENT_USER, TEXT(""));
    for (HTREEITEM refused : {m_host.m_tree.GetTopItem(), rootItem})
        EXPECT_EQ(SendMessageW(Tree(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(refused)), 0);

    m_host.m_tree.SetCut(HKEY_CURRENT_USER, ScratchPath(TEXT("OLD")));
    m_host.m_tree.RefreshChildren(Item(TEXT("")));
    EXPECT_NE(State(Item(TEXT("old")), TVIS_CUT), 0u) << "a reloaded item of the cut key is cut at once";
}

class ValueListTest : public BrowsingTest {
protected:
    void Write(LPCWSTR name, DWORD type, const std::vector<BYTE>& data)
    {
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), name, type, data);
    }
    HWND List() const { return m_host.m_values.GetHwnd(); }
    std::string Selected() const
    {
        CString name;
        return m_host.m_values.GetSelectedValue(name) ? ToUtf8(name) : "(none)";
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
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, m_scratch.Path()));

    EXPECT_EQ(ListRows(List()), std::vector<CString>({L"A", L"a2", L"b", L"c", L"d", L"e", L"f", L"g"}));
    std::string binary = "EE";
    for (int i = 1; i < 128; ++i)
        binary += " EE";
    EXPECT_EQ(ListRows(List(), 1), std::vector<CString>({W("4294967295 (0xFFFFFFFF)"), W("x..."), W("text"), W(""),
                                                         W((binary + "...").c_str()), W("%TEMP%\\f"), W("01"),
                                                         W("02")}));
    EXPECT_EQ(ListImages(List()), std::vector<int>({9, 10, 7, 9, 8, 11, 12, 13}));
}

TEST_F(ValueListTest, TheSelectionSurvivesARefillByName)
{
    Write(TEXT("b"), REG_SZ, Utf16Bytes(W("1"), true));
    Write(TEXT("a2"), REG_SZ, Utf16Bytes(W("2"), true));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, m_scratch.Path()));
    EXPECT_EQ(Selected(), "(none)");
    ASSERT_TRUE(m_host.m_values.SelectValueByName(TEXT("b")));
    EXPECT_FALSE(m_host.m_values.SelectValueByName(TEXT("missing")));

    Write(TEXT("a1"), REG_SZ, Utf16Bytes(W("3"), true));
    m_host.m_values.Fill(nullptr, true, nullptr);
    EXPECT_EQ(ListRows(List()), std::vector<CString>({L"a1", L"a2", L"b"}));
    EXPECT_EQ(Selected(), "b");

    m_host.m_values.Fill(nullptr, false, TEXT("A1"));
    EXPECT_EQ(Selected(), "a1") << "a name to select, without regard to case";

    CShdRegKey key;
    ASSERT_TRUE(key.Open(m_scratch.Handle(), TEXT("")));
    ASSERT_TRUE(key.DeleteValue(TEXT("a1")));
    m_host.m_values.Fill(nullptr, true, TEXT("b"));
    EXPECT_EQ(Selected(), "(none)") << "a kept value that is gone selects nothing";

    SetFocus(List());
    PumpMessages();
    EXPECT_EQ(Selected(), "a2") << "focus selects the first row";
}

// A row whose text cannot be read whole names no value: it is no value to
// rename. Renames themselves are made through the main window's tests.
TEST_F(ValueListTest, ARowWhoseNameCannotBeReadWholeIsNoValue)
{
    Write(TEXT("old"), REG_SZ, Utf16Bytes(W("1"), true));
    ASSERT_TRUE(m_host.m_tree.NavigateTo(HKEY_CURRENT_USER, m_scratch.Path()));
    SetFocus(List());
    LVITEMW longer = {};
    longer.pszText = const_cast<LPWSTR>(L"older");
    SendMessageW(List(), LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&longer));
    CString name = W("sentinel");
    EXPECT_FALSE(m_host.m_values.ReadRowName(0, name));
    EXPECT_EQ(name, W(""));
    EXPECT_EQ(SendMessageW(List(), LVM_EDITLABELW, 0, 0), 0);
}

}  // namespace
