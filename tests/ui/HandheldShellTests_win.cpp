#include <gtest/gtest.h>

#include <string>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

struct SKeyInfo {
    std::string label;
    int command;
    bool dropDown;
};

std::vector<SKeyInfo> Keys(HWND bar)
{
    std::vector<SKeyInfo> keys;
    const int count = static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        WCHAR text[64] = {};
        TBBUTTONINFOW info = {};
        info.cbSize = sizeof(info);
        info.dwMask = TBIF_BYINDEX | TBIF_COMMAND | TBIF_TEXT | TBIF_STYLE;
        info.pszText = text;
        info.cchText = 64;
        EXPECT_EQ(SendMessageW(bar, TB_GETBUTTONINFOW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&info)), i);
        keys.push_back({ToUtf8(CString(text)), info.idCommand, (info.fsStyle & BTNS_DROPDOWN) != 0});
    }
    return keys;
}

int ClientHeight(HWND window)
{
    RECT client = {};
    GetClientRect(window, &client);
    return client.bottom;
}

// Each soft-key bar is made from a menu, or on an old Smartphone from a
// menu-bar resource; both must give the same keys.
TEST(SoftKeyBar, MenusAndMenuBarResourcesGiveTheSameKeys)
{
    struct SPair {
        UINT menu;
        UINT menuBar;
        std::vector<std::string> labels;
        int firstCommand;
    } pairs[] = {
        {IDR_DONE_CANCEL, IDR_DONE_CANCEL_MENUBAR, {"Done", "Cancel"}, IDOK},
        {IDR_CLOSE, IDR_CLOSE_MENUBAR, {"Close"}, IDM_CLOSE},
        {IDR_SELECT_CANCEL, IDR_SELECT_CANCEL_MENUBAR, {"Select", "Cancel"}, IDM_SELECT},
        {IDR_MAIN_MENU, IDR_MAIN_MENUBAR, {"Tab", "Menu"}, IDM_TAB},
        {IDR_SEARCH_MENU, IDR_SEARCH_MENUBAR, {"Start", "Menu"}, IDM_SEARCH_DIALOG_START},
        {IDR_BOOKMARKS_MENU, IDR_BOOKMARKS_MENUBAR, {"Open", "Menu"}, IDM_BOOKMARK_OPEN},
    };
    CTestFrame frame;
    for (const SPair& pair : pairs) {
        for (bool resource : {false, true}) {
            const HWND bar = CreateMenuBar(frame.GetHwnd(), TestInstance(), resource ? pair.menuBar : pair.menu,
                                           resource);
            ASSERT_NE(bar, nullptr) << pair.menu << (resource ? " as resource" : "");
            const std::vector<SKeyInfo> keys = Keys(bar);
            ASSERT_EQ(keys.size(), pair.labels.size()) << pair.menu;
            for (size_t i = 0; i < keys.size(); ++i) {
                EXPECT_EQ(keys[i].label, pair.labels[i]) << pair.menu;
                EXPECT_EQ(keys[i].dropDown, pair.labels[i] == "Menu") << pair.menu;
            }
            EXPECT_EQ(keys[0].command, pair.firstCommand) << pair.menu;
        }
    }
}

// The bar takes its strip from the client area and gives it back; a tap on
// a key, or F1 and F2 in the active window, sends the key's command.
TEST(SoftKeyBar, TheBarTakesItsStripAndItsKeysSendTheirCommands)
{
    CTestFrame frame;
    const HWND window = frame.GetHwnd();
    const int height = ClientHeight(window);
    const int sizesBefore = frame.m_sizes;
    const HWND first = CreateMenuBar(window, TestInstance(), IDR_CLOSE, false);
    EXPECT_GT(frame.m_sizes, sizesBefore) << "the window lays itself out again";
    const HWND bar = CreateMenuBar(window, TestInstance(), IDR_DONE_CANCEL, false);
    ASSERT_NE(bar, nullptr);
    EXPECT_FALSE(IsWindow(first)) << "a window has one bar";
    EXPECT_EQ(ClientHeight(window), height - ScaleY(26));

    TapSoftKey(window, 1, 2);
    EXPECT_EQ(frame.m_commandSenders, std::vector<LPARAM>({reinterpret_cast<LPARAM>(bar)}));
    // Down on one key and up on the other is no tap; nor is one on a
    // disabled key.
    const POINT down = SoftKeyCenter(window, 0, 2);
    POINT up = SoftKeyCenter(window, 1, 2);
    ScreenToClient(window, &up);
    SendMessageW(window, WM_NCLBUTTONDOWN, HTBORDER, MAKELPARAM(down.x, down.y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(up.x, up.y));
    SendMessageW(bar, TB_ENABLEBUTTON, IDOK, FALSE);
    TapSoftKey(window, 0, 2);
    SendMessageW(bar, TB_ENABLEBUTTON, IDOK, TRUE);
    TapSoftKey(window, 0, 2);
    SetActiveWindow(window);
    PostMessageW(window, WM_KEYDOWN, VK_TSOFT1, 1);
    PostMessageW(window, WM_KEYDOWN, VK_TSOFT2, 1);
    PumpMessages();
    PumpMessages();
    EXPECT_EQ(frame.m_commands, std::vector<WPARAM>({IDCANCEL, IDOK, IDOK, IDCANCEL}));

    DestroyWindow(bar);
    EXPECT_EQ(ClientHeight(window), height);
}

// A key asks for the context gesture at once (a tap without the pen held
// is no hold); a gesture the parent does not answer becomes WM_CONTEXTMENU;
// a right click on a child is a tap and hold.
TEST(Gestures, TheContextGestureReachesTheParent)
{
    CTestFrame frame;
    const HWND child = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 10, 20, 100, 50, frame.GetHwnd(),
                                       reinterpret_cast<HMENU>(7), TestInstance(), nullptr);
    SHRGINFO info = {sizeof(SHRGINFO), child, {5, 6}, SHRG_NOTIFYPARENT};
    EXPECT_EQ(SHRecognizeGesture(&info), static_cast<DWORD>(GN_CONTEXTMENU));
    POINT expected = {5, 6};
    ClientToScreen(child, &expected);
    EXPECT_EQ(frame.m_notifiedPoint.x, expected.x);
    EXPECT_EQ(frame.m_notifiedPoint.y, expected.y);
    info.dwFlags = SHRG_RETURNCMD;
    EXPECT_EQ(SHRecognizeGesture(&info), 0u);
    EXPECT_EQ(frame.m_notifications, std::vector<UINT>({static_cast<UINT>(GN_CONTEXTMENU)}));

    frame.m_contextMenus = 0;
    info = {sizeof(SHRGINFO), frame.GetHwnd(), {5, 6}, 0};
    EXPECT_EQ(SHRecognizeGesture(&info), static_cast<DWORD>(GN_CONTEXTMENU));
    EXPECT_EQ(frame.m_contextMenus, 1) << "the frame answered the notification with 0";

    ASSERT_NE(CreateMenuBar(frame.GetHwnd(), TestInstance(), IDR_DONE_CANCEL, false), nullptr);
    frame.m_notifications.clear();
    PostMessageW(child, WM_RBUTTONUP, 0, MAKELPARAM(3, 4));
    PumpMessages();
    PumpMessages();
    EXPECT_EQ(frame.m_notifications, std::vector<UINT>({static_cast<UINT>(GN_CONTEXTMENU)}));
}

TEST(HandheldShell, BackErasesInTheFocusedEdit)
{
    CTestFrame frame;
    const HWND edit = CreateWindowExW(0, L"EDIT", L"abc", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, frame.GetHwnd(),
                                      nullptr, TestInstance(), nullptr);
    SetForegroundWindow(frame.GetHwnd());
    SetFocus(edit);
    ASSERT_EQ(GetFocus(), edit);
    SendMessageW(edit, EM_SETSEL, 3, 3);
    SHSendBackToFocusWindow(WM_HOTKEY, 0, MAKELPARAM(0, VK_TBACK));
    EXPECT_EQ(CShdWnd::GetWindowTextOr(edit, L""), W("ab"));
}

TEST(HandheldShell, AWindowNoOneOwnsTakesTheHandheldSize)
{
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_CAPTION, 10, 10, 900, 900, nullptr,
                                        nullptr, TestInstance(), nullptr);
    SHINITDLGINFO info = {SHIDIM_FLAGS, window, SHIDIF_SIZEDLGFULLSCREEN};
    EXPECT_TRUE(SHInitDialog(&info));
    RECT bounds = {};
    GetWindowRect(window, &bounds);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_EQ(bounds.right - bounds.left, std::min<LONG>(ScaleX(480), work.right - work.left));
    EXPECT_EQ(bounds.bottom - bounds.top, std::min<LONG>(ScaleY(640), work.bottom - work.top));
    EXPECT_NE(GetWindowLongW(window, GWL_STYLE) & WS_CAPTION, 0) << "it keeps its caption";
    DestroyWindow(window);
    info.hDlg = nullptr;
    EXPECT_FALSE(SHInitDialog(&info));
}

}  // namespace
