#include <gtest/gtest.h>

#include <utility>

#include <windows.h>

#include <commctrl.h>

#include "app/MainWnd_win.h"
#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "settings/Settings.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport.h"

namespace {

// An interactive main window made in the test's own thread, with the
// program's resources from the test's module.
class MainWnd : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_window.Create(TestInstance()));
        PumpMessages();
        m_hwnd = m_window.GetHwnd();
        m_tree = GetDlgItem(m_hwnd, CMainWnd::kTreeId);
        m_list = GetDlgItem(m_hwnd, CMainWnd::kListId);
        m_splitter = GetDlgItem(m_hwnd, CMainWnd::kSplitterId);
        ASSERT_NE(m_tree, nullptr);
        ASSERT_NE(m_list, nullptr);
        ASSERT_NE(m_splitter, nullptr);
    }

    void Command(UINT command)
    {
        SendMessageW(m_hwnd, WM_COMMAND, command, 0);
        PumpMessages();
    }

    void SelectRoot(int index)
    {
        HTREEITEM item = TreeView_GetChild(m_tree, TreeView_GetRoot(m_tree));
        for (int i = 0; i < index; ++i)
            item = TreeView_GetNextSibling(m_tree, item);
        TreeView_SelectItem(m_tree, item);
        PumpMessages();
    }

    RECT ChildRect(HWND child) const
    {
        RECT rect;
        GetWindowRect(child, &rect);
        MapWindowPoints(nullptr, m_hwnd, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }

    // The enabled state of each item of the "Key" pop-up after the main
    // window has prepared it.
    bool KeyItemEnabled(UINT command)
    {
        HMENU menu = LoadMenuW(TestInstance(), MAKEINTRESOURCEW(IDR_KEY_CONTEXT));
        HMENU popup = GetSubMenu(menu, 0);
        SendMessageW(m_hwnd, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup), 0);
        const UINT state = GetMenuState(popup, command, MF_BYCOMMAND);
        DestroyMenu(menu);
        return (state & MF_GRAYED) == 0;
    }

    CMainWnd m_window;
    HWND m_hwnd = nullptr;
    HWND m_tree = nullptr;
    HWND m_list = nullptr;
    HWND m_splitter = nullptr;
};

TEST_F(MainWnd, TabCyclesTheFocusThroughTreeSplitterAndList)
{
    EXPECT_EQ(GetFocus(), m_tree) << "the tree has the focus at start";
    const std::pair<UINT, HWND> steps[] = {{IDM_TAB_KEY, m_splitter},      {IDM_TAB_KEY, m_list},
                                           {IDM_TAB_KEY, m_tree},          {IDM_BACK_TAB_KEY, m_list},
                                           {IDM_BACK_TAB_KEY, m_splitter}, {IDM_BACK_TAB_KEY, m_tree}};
    for (const auto& step : steps) {
        Command(step.first);
        EXPECT_EQ(GetFocus(), step.second);
    }
    SetFocus(m_hwnd);
    Command(IDM_TAB);
    EXPECT_EQ(GetFocus(), m_tree) << "from anywhere else to the tree";
}

TEST_F(MainWnd, KeyCommandsFollowTheTreeSelection)
{
    EXPECT_FALSE(KeyItemEnabled(IDM_KEY_NEW)) << "the top item is no key";
    SelectRoot(2);
    EXPECT_TRUE(KeyItemEnabled(IDM_KEY_NEW));
    EXPECT_FALSE(KeyItemEnabled(IDM_KEY_RENAME)) << "a root key cannot be renamed";

    Command(IDM_KEY_COPY_NAME);
    ASSERT_TRUE(OpenClipboard(m_hwnd));
    const HANDLE copied = GetClipboardDataAlloc(CF_UNICODETEXT);
    CloseClipboard();
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(CString(static_cast<LPCWSTR>(copied)), W("HKEY_LOCAL_MACHINE"));
    LocalFree(copied);
    EXPECT_EQ(GetFocus(), m_tree) << "the focus goes back";
}

TEST_F(MainWnd, ShortWindowsPutThePanesSideBySide)
{
    const int threshold = ScaleY(180);
    RECT window;
    RECT client;
    GetWindowRect(m_hwnd, &window);
    GetClientRect(m_hwnd, &client);
    const int frame = (window.bottom - window.top) - client.bottom;
    for (const int height : {threshold, threshold - 1}) {
        SCOPED_TRACE(height);
        SetWindowPos(m_hwnd, nullptr, 0, 0, window.right - window.left, height + frame, SWP_NOZORDER | SWP_NOMOVE);
        PumpMessages();
        const RECT tree = ChildRect(m_tree);
        const RECT list = ChildRect(m_list);
        const bool stacked = height >= threshold;
        EXPECT_EQ(list.top > tree.top, stacked);
        EXPECT_EQ(list.left > tree.left, !stacked);
    }
}

TEST_F(MainWnd, ArrowKeysOnTheSplitterMoveTheSplit)
{
    const int before = ChildRect(m_tree).bottom;
    SetFocus(m_splitter);
    SendMessageW(m_splitter, WM_KEYDOWN, VK_DOWN, 0);
    PumpMessages();
    EXPECT_EQ(ChildRect(m_tree).bottom, before + ScaleY(5));
    SendMessageW(m_splitter, WM_KEYDOWN, VK_LEFT, 0);
    PumpMessages();
    EXPECT_EQ(ChildRect(m_tree).bottom, before + ScaleY(5)) << "a horizontal bar ignores Left and Right";
    EXPECT_EQ(ChildRect(m_splitter).top, before + ScaleY(5));
}

}  // namespace

namespace {

// The last position comes back at the next start and is taken again when
// the window goes. The settings are kept from the registry here (their key
// cannot be opened), so only the in-memory store changes.
TEST(MainWndPosition, LastPositionIsRestoredAtStartAndSavedAtExit)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    faults.FailOpen(TEXT("Settings"));
    CScratchKey scratch(TEXT("Position"));
    const CString path = scratch.Path() + TEXT("\\Deeper");
    CShdRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, path, nullptr));
    ASSERT_TRUE(key.WriteDword(TEXT("a"), 1));
    ASSERT_TRUE(key.WriteDword(TEXT("b"), 2));
    key.Close();
    Settings().SetSavePosition(true);
    Settings().SetLastPosition(kRootCurrentUser, path, TEXT("b"), true);

    {
        CMainWnd window;
        ASSERT_TRUE(window.Create(TestInstance()));
        PumpMessages();
        HKEY root = nullptr;
        CString selected;
        EXPECT_TRUE(window.GetSelectedKey(root, selected));
        EXPECT_EQ(root, HKEY_CURRENT_USER);
        EXPECT_EQ(selected, path);
        CString value;
        EXPECT_TRUE(window.GetSelectedValue(value));
        EXPECT_EQ(value, W("b"));

        // Select the key's parent, then close: that is what is kept.
        const HWND tree = GetDlgItem(window.GetHwnd(), CMainWnd::kTreeId);
        TreeView_SelectItem(tree, TreeView_GetParent(tree, TreeView_GetSelection(tree)));
        PumpMessages();
        DestroyWindow(window.GetHwnd());
        PumpMessages();
    }
    DWORD root = 0;
    CString keyName;
    CString valueName;
    bool valueSelected = true;
    Settings().GetLastPosition(root, keyName, valueName, valueSelected);
    EXPECT_EQ(root, kRootCurrentUser);
    EXPECT_EQ(keyName, scratch.Path());
    EXPECT_FALSE(valueSelected);
    Settings().SetLastPosition(0, TEXT(""), TEXT(""), false);
}

}  // namespace
