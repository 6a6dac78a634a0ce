#include <gtest/gtest.h>

#include <vector>

#include <windows.h>

#include "framework/DpiScale.h"
#include "resources/resource.h"
#include "search/FloatingToolBar_win.h"
#include "tests/ui/UiTestSupport.h"

namespace {

const UINT kToolBarId = 106;
const WORD kCommands[] = {IDM_SEARCH_PAUSE, IDM_SEARCH_STOP, IDM_SEARCH_SHOW_RESULTS, IDM_SEARCH_TOOLBAR};

// The main window's toolbar in a test frame, its second button disabled.
class FloatingToolBar : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_toolBar.Create(WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 10, 10, 50, 50, m_frame.GetHwnd(),
                                     kToolBarId, TestInstance()));
        m_toolBar.SetImageList(LoadImageStrip(TestInstance(), IDB_TOOLBAR_16, IDB_TOOLBAR_32));
        for (const WORD command : kCommands)
            ASSERT_TRUE(m_toolBar.AddButton(command, 4, 4, 5, L""));
        m_toolBar.EnableButton(1, false);
        SetForegroundWindow(m_frame.GetHwnd());
        PumpMessages();
    }

    // A point of the toolbar in design units from its top-left corner, on
    // the screen.
    POINT OnToolBar(int xDesign, int yDesign) const
    {
        POINT point = {ScaleX(xDesign), ScaleY(yDesign)};
        ClientToScreen(m_toolBar.GetHwnd(), &point);
        return point;
    }

    RECT ToolBarInFrame() const
    {
        RECT rect;
        GetWindowRect(m_toolBar.GetHwnd(), &rect);
        MapWindowPoints(nullptr, m_frame.GetHwnd(), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }

    CTestFrame m_frame;
    CFloatingToolBar m_toolBar;
};

TEST_F(FloatingToolBar, ATapSendsItsButtonsCommandOnlyWhenReleasedOverIt)
{
    // Buttons start 27 design units in, 18 wide, 2 apart; the band is 5 to 23.
    const struct {
        const char* what;
        POINT down;
        POINT up;
        std::vector<WPARAM> commands;
    } cases[] = {
        {"first button", {30, 14}, {40, 20}, {IDM_SEARCH_PAUSE}},
        {"last button", {100, 14}, {100, 14}, {IDM_SEARCH_TOOLBAR}},
        {"released outside the toolbar", {70, 14}, {70, 80}, {}},
        {"released over another button", {70, 14}, {90, 14}, {}},
        {"disabled button", {55, 14}, {55, 14}, {}},
        {"gap between buttons", {46, 14}, {46, 14}, {}},
        {"beside the buttons' band", {30, 3}, {30, 3}, {}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        m_frame.m_commands.clear();
        m_frame.m_commandSenders.clear();
        PenStroke(OnToolBar(item.down.x, item.down.y), OnToolBar(item.up.x, item.up.y));
        EXPECT_EQ(m_frame.m_commands, item.commands);
        for (const LPARAM sender : m_frame.m_commandSenders)
            EXPECT_EQ(sender, reinterpret_cast<LPARAM>(m_toolBar.GetHwnd()));
        EXPECT_EQ(GetCapture(), nullptr);
    }
    m_toolBar.EnableButton(1, true);
    m_frame.m_commands.clear();
    PenStroke(OnToolBar(55, 14), OnToolBar(55, 14));
    EXPECT_EQ(m_frame.m_commands, std::vector<WPARAM>{IDM_SEARCH_STOP});
}

TEST_F(FloatingToolBar, TheGripDragsItFlushWithEachEdgeOfItsParent)
{
    const struct {
        const char* what;
        int dx;
        int dy;
    } drags[] = {{"right", 400, 0}, {"down", 0, 500}, {"left", -400, 0}, {"up", 0, -500}, {"inside", 30, 20}};
    for (const bool shrunk : {false, true}) {
        if (shrunk) {
            SetWindowPos(m_frame.GetHwnd(), nullptr, 0, 0, 200, 180, SWP_NOMOVE | SWP_NOZORDER);
            m_toolBar.Clamp();
            PumpMessages();
        }
        RECT client;
        GetClientRect(m_frame.GetHwnd(), &client);
        for (const auto& drag : drags) {
            SCOPED_TRACE(testing::Message() << drag.what << (shrunk ? " after shrinking" : ""));
            const RECT before = ToolBarInFrame();
            EXPECT_GE(before.left, 0);
            EXPECT_LE(before.right, client.right);
            EXPECT_LE(before.bottom, client.bottom);
            const POINT grip = OnToolBar(12, 14);
            PenStroke(grip, {grip.x + drag.dx, grip.y + drag.dy});
            const RECT after = ToolBarInFrame();
            EXPECT_EQ(after.right - after.left, before.right - before.left);
            if (drag.dx > 100)
                EXPECT_EQ(after.right, client.right);
            else if (drag.dx < -100)
                EXPECT_EQ(after.left, 0);
            else if (drag.dy > 100)
                EXPECT_EQ(after.bottom, client.bottom);
            else if (drag.dy < -100)
                EXPECT_EQ(after.top, 0);
            else
                EXPECT_TRUE(after.left - before.left == drag.dx && after.top - before.top == drag.dy);
        }
    }
    EXPECT_TRUE(m_frame.m_commands.empty()) << "a drag is no tap";
}

}  // namespace
