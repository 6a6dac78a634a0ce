#include <gtest/gtest.h>

#include "framework/WindowHelpers_win.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

TEST(WndNoRedraw, RedrawingResumesAtTheEnd)
{
    CTestFrame frame;
    const HWND window = frame.GetHwnd();
    {
        CWndNoRedraw noRedraw;
        noRedraw.Begin(window, true, false, true);
        // WM_SETREDRAW with FALSE takes the visible flag away meanwhile.
        EXPECT_FALSE(IsWindowVisible(window));
        noRedraw.End();
        EXPECT_TRUE(IsWindowVisible(window));
        noRedraw.Begin(window, false, false, false);
        noRedraw.Begin(window, false, false, false);
        EXPECT_FALSE(IsWindowVisible(window));
    }
    EXPECT_TRUE(IsWindowVisible(window)) << "the destructor ends it";
}

TEST(ResizeNoFlickering, ACoverLiesOverTheClientAreaUntilTheEnd)
{
    CTestFrame frame;
    const HWND window = frame.GetHwnd();
    CreateWindowExW(0, L"STATIC", L"child", WS_CHILD | WS_VISIBLE, 0, 0, 20, 20, window, nullptr, TestInstance(),
                    nullptr);
    RECT client = {};
    GetClientRect(window, &client);
    {
        CResizeNoFlickering cover;
        cover.Begin(window, TestInstance());
        cover.Begin(window, TestInstance());
        const HWND top = GetWindow(window, GW_CHILD);
        EXPECT_EQ(CShdWnd::GetClassNameOr(top, L""), W("Transparent_{5B8C6868-67C5-444A-9282-2E4154B78AE3}"));
        EXPECT_EQ(GetWindow(top, GW_HWNDNEXT), FindWindowExW(window, nullptr, L"STATIC", nullptr))
            << "one cover, above the child";
        RECT covered = {};
        GetWindowRect(top, &covered);
        EXPECT_EQ(covered.right - covered.left, client.right);
        EXPECT_EQ(covered.bottom - covered.top, client.bottom);
        EXPECT_EQ(SendMessageW(top, WM_ERASEBKGND, 0, 0), 1);
    }
    EXPECT_EQ(CShdWnd::GetClassNameOr(GetWindow(window, GW_CHILD), L""), W("Static"));
}

}  // namespace
