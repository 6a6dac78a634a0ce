#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editors/HexEditCtrl_win.h"
#include "framework/WindowHelpers_win.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

const UINT kControlId = 1032;
const int kMenuItems = 8;
const int kSeparator = 6;
const UINT kCmdFirstAfterSeparator = 7;

class HexEditCtrlTest : public testing::Test {
protected:
    void SetUp() override
    {
        const RECT rect = {0, 0, 280, 200};
        ASSERT_TRUE(m_control.CreateChild(m_frame.GetHwnd(), kControlId, rect));
        m_control.SetBytesPerRow(4);
        SetFocus(Hwnd());
    }
    HWND Hwnd() const { return m_control.GetHwnd(); }
    const CHexEditModel& Model() const { return m_control.GetModel(); }

    void Load(std::vector<BYTE> bytes) { m_control.SetData(bytes.data(), bytes.size()); }
    std::vector<BYTE> Data() const
    {
        CShdBinaryBuffer data;
        EXPECT_TRUE(m_control.GetData(data));
        return std::vector<BYTE>(data.GetData(), data.GetData() + data.GetSize());
    }
    void Press(WPARAM key, bool shift = false) const
    {
        BYTE state[256] = {};
        GetKeyboardState(state);
        state[VK_SHIFT] = shift ? 0x80 : 0;
        SetKeyboardState(state);
        SendMessageW(Hwnd(), WM_KEYDOWN, key, 1);
        state[VK_SHIFT] = 0;
        SetKeyboardState(state);
    }
    // Opens the context menu, records which items are enabled ("+" or "-",
    // separator left out) and chooses a command (0: none) with the keys, as
    // a user would: only when it is enabled.
    std::string Menu(UINT command) const
    {
        std::string enabled;
        HWND menuWindow = nullptr;
        CModalScript script(
            [&] {
                menuWindow = FindWindowW(L"#32768", nullptr);
                return menuWindow != nullptr && IsWindowVisible(menuWindow);
            },
            [&] {
                const HMENU menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, MN_GETHMENU, 0, 0));
                for (int i = 0; i < kMenuItems; ++i) {
                    if (i != kSeparator)
                        enabled += (GetMenuState(menu, i, MF_BYPOSITION) & MF_GRAYED) ? '-' : '+';
                }
                EndMenu();
            });
        SendMessageW(Hwnd(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(Hwnd()), MAKELPARAM(-1, -1));
        EXPECT_TRUE(script.Finished());
        // Wine's menu loop takes no posted clicks or keys: the item chosen
        // comes as the command it stands for.
        if (command != 0 && enabled[command < kCmdFirstAfterSeparator ? command - 1 : kSeparator] == '+')
            SendMessageW(Hwnd(), WM_COMMAND, command, 0);
        return enabled;
    }
    void SetClipboard(const char* text) const { ASSERT_TRUE(PutClipboardText(m_frame.GetHwnd(), W(text))); }
    void EmptyTheClipboard() const
    {
        ASSERT_TRUE(OpenClipboard(m_frame.GetHwnd()));
        EmptyClipboard();
        CloseClipboard();
    }
    void Click(UINT message, int x, int y) const { SendMessageW(Hwnd(), message, 0, MAKELPARAM(x, y)); }

    CTestFrame m_frame;
    CHexEditCtrl m_control;
};

TEST_F(HexEditCtrlTest, EveryKeyOfTheKeyTable)
{
    Load(std::vector<BYTE>(400));
    const int rows = Model().VisibleRows();
    ASSERT_GT(rows, 2);
    const size_t page = static_cast<size_t>(rows) * 4;
    const struct {
        WPARAM key;
        size_t caret;
        size_t size;
    } steps[] = {
        {VK_END, 400, 400},        {VK_LEFT, 399, 400},       {VK_UP, 395, 400},
        {VK_HOME, 0, 400},         {VK_RIGHT, 1, 400},        {VK_DOWN, 5, 400},
        {VK_PRIOR, 0, 400},        {VK_PRIOR, 0, 400},        {VK_NEXT, page - 1, 400},
        {VK_BACK, page - 2, 399},  {VK_DELETE, page - 2, 398},
    };
    for (const auto& step : steps) {
        Press(step.key);
        SCOPED_TRACE(testing::Message() << "key " << step.key);
        EXPECT_EQ(Model().Caret(), step.caret);
        EXPECT_EQ(Model().Size(), step.size);
    }
    // The dialog leaves arrows, Tab and characters to the control. Tab
    // leaves the characters for the next control; Enter raises the menu.
    EXPECT_EQ(SendMessageW(Hwnd(), WM_GETDLGCODE, 0, 0), DLGC_WANTARROWS | DLGC_WANTTAB | DLGC_WANTCHARS);
    Press(VK_TAB);
    EXPECT_FALSE(Model().IsHexActive());
    Press(VK_TAB, true);
    EXPECT_TRUE(Model().IsHexActive());
    HWND menuWindow = nullptr;
    CModalScript script([&] { return (menuWindow = FindWindowW(L"#32768", nullptr)) != nullptr; }, [] { EndMenu(); });
    Press(VK_RETURN);
    EXPECT_TRUE(script.Finished());
}

TEST_F(HexEditCtrlTest, StylusDragSelectsPastTheBottomWithAutoScroll)
{
    Load(std::vector<BYTE>(256));
    RECT client = {};
    GetClientRect(Hwnd(), &client);
    const int x = Model().PairX(1) + 2;
    Click(WM_LBUTTONDOWN, x, Model().Metrics().marginTop + 1);
    EXPECT_EQ(GetCapture(), Hwnd());
    // The real pointer goes below the control too: a mouse move that the
    // system makes up from where it is would otherwise end the auto-scroll.
    POINT below = {x, client.bottom + 5};
    ClientToScreen(Hwnd(), &below);
    SetCursorPos(below.x, below.y);
    Click(WM_MOUSEMOVE, x, client.bottom + 5);
    PumpUntil([this] { return Model().Top() >= 8; }, 10000);
    Click(WM_LBUTTONUP, x, client.bottom + 5);
    EXPECT_GE(Model().Top(), 8u);
    EXPECT_EQ(Model().SelectionMin(), 1u);
    EXPECT_GT(Model().SelectionMax(), static_cast<size_t>(Model().VisibleRows()) * 4);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(HexEditCtrlTest, ContextMenuCopyAndThePastes)
{
    // Cut, Copy, the three pastes, Clear, Select All.
    Load({});
    EmptyTheClipboard();
    EXPECT_EQ(Menu(0), "-------");
    Load({0x00, 0xFF});
    EXPECT_EQ(Menu(CHexEditCtrl::kCmdSelectAll), "------+");
    EXPECT_TRUE(Model().IsAllSelected());
    EXPECT_EQ(Menu(CHexEditCtrl::kCmdCopy), "++---+-");
    CString copied;
    ASSERT_TRUE(ReadClipboardText(m_frame.GetHwnd(), copied));
    EXPECT_EQ(copied, W("00 FF"));
    EXPECT_EQ(Menu(0), "++++++-");

    const struct {
        const char* clipboard;
        UINT item;
        std::vector<BYTE> expected;
    } pastes[] = {
        {"1 2 3", CHexEditCtrl::kCmdPasteHex, {0x00, 0x01, 0x23, 0xFF}},
        {"Az", CHexEditCtrl::kCmdPasteText, {0x00, 0x41, 0x7A, 0xFF}},
        {"Az", CHexEditCtrl::kCmdPasteUnicode, {0x00, 0x41, 0x00, 0x7A, 0x00, 0xFF}},
        {"xyz", CHexEditCtrl::kCmdPasteHex, {0x00, 0xFF}},
    };
    for (const auto& paste : pastes) {
        Load({0x00, 0xFF});
        Press(VK_RIGHT);
        SetClipboard(paste.clipboard);
        m_frame.m_commands.clear();
        Menu(paste.item);
        SCOPED_TRACE(paste.clipboard);
        EXPECT_EQ(Data(), paste.expected);
    }
    ASSERT_EQ(m_frame.m_commands.size(), 1u);
    EXPECT_EQ(m_frame.m_commands[0], MAKEWPARAM(kControlId, CHexEditCtrl::kNotifyPasteFailed));
    EXPECT_EQ(m_frame.m_commandSenders[0], reinterpret_cast<LPARAM>(Hwnd()));

    // No text on the clipboard turns the pastes off; 0x10000 digits paste.
    EmptyTheClipboard();
    EXPECT_EQ(Menu(CHexEditCtrl::kCmdPasteHex), "------+");
    EXPECT_EQ(Data(), Bytes({0x00, 0xFF}));
    SetClipboard(std::string(0x10000, '7').c_str());
    Menu(CHexEditCtrl::kCmdPasteHex);
    EXPECT_EQ(Model().Size(), 2u + 0x8000u);
    Press(VK_HOME);
    SendMessageW(Hwnd(), WM_CHAR, L'5', 1);
    EXPECT_EQ(Data()[0], 0x50);
}

}  // namespace
