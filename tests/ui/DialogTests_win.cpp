#include <gtest/gtest.h>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/ShdDialog_win.h"
#include "framework/WindowHelpers_win.h"
#include "resources/resource.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

const UINT kHeaderId = 1234;

// The bookmark location dialog, as a concrete dialog would run it: its
// soft keys come from menu 104, OK takes the typed text.
class CLocationDialog : public CShdDialog {
public:
    INT_PTR DialogProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message) {
        case WM_INITDIALOG:
            m_param = lParam;
            m_bar = CreateMenuBar(GetHwnd(), TestInstance(), IDR_DONE_CANCEL, false);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK) {
                m_text = CShdWnd::GetWindowTextOr(GetDlgItem(GetHwnd(), IDC_BOOKMARK_LOCATION), L"");
                EndDialog(GetHwnd(), kResultOk);
                return TRUE;
            }
            if (LOWORD(wParam) == IDCANCEL) {
                EndDialog(GetHwnd(), kResultCancel);
                return TRUE;
            }
            return FALSE;
        default:
            return FALSE;
        }
    }

    LPARAM m_param = 0;
    HWND m_bar = nullptr;
    CString m_text;
};

TEST(Dialog, AModalDialogIsDrivenThroughItsSoftKeys)
{
    CTestFrame owner;
    ASSERT_NE(CreateMenuBar(owner.GetHwnd(), TestInstance(), IDR_MAIN_MENU, false), nullptr);
    CLocationDialog dialog;
    dialog.SetFullScreen(true);
    dialog.GetHelper().SetHeader(L"Edit Bookmark", kHeaderId);
    dialog.GetHelper().EnableSipPref();
    HWND header = nullptr;
    CModalScript script({
        [&] {
            const HWND window = dialog.GetHwnd();
            ASSERT_NE(window, nullptr);
            EXPECT_EQ(dialog.DoModal(TestInstance(), IDD_EDIT_BOOKMARK, owner.GetHwnd(), 0), -1)
                << "the object has its window";
            header = GetDlgItem(window, kHeaderId);
            EXPECT_EQ(CShdWnd::GetWindowTextOr(header, L""), W("Edit Bookmark"));
            LOGFONTW font = {};
            GetObjectW(reinterpret_cast<HFONT>(SendMessageW(header, WM_GETFONT, 0, 0)), sizeof(font), &font);
            EXPECT_EQ(font.lfWeight, FW_BOLD);
            EXPECT_EQ(font.lfHeight, FontHeightForPoints(8, ScreenDpiY()));
            EXPECT_NE(FindWindowExW(window, nullptr, WC_SIPPREF, nullptr), nullptr);
            // Full screen: over the owner's area below its caption, bar included.
            RECT area = {};
            GetClientRect(owner.GetHwnd(), &area);
            MapWindowPoints(owner.GetHwnd(), nullptr, reinterpret_cast<POINT*>(&area), 2);
            area.bottom += ScaleY(26);
            RECT bounds = {};
            GetWindowRect(window, &bounds);
            EXPECT_TRUE(EqualRect(&bounds, &area));
            EXPECT_EQ(GetWindowLongW(window, GWL_STYLE) & (WS_BORDER | WS_CAPTION), 0);
            SetDlgItemTextW(window, IDC_BOOKMARK_LOCATION, L"HKLM\\Software");
        },
        [&] { TapSoftKey(dialog.GetHwnd(), 0, 2); },
    });
    EXPECT_EQ(dialog.DoModal(TestInstance(), IDD_EDIT_BOOKMARK, owner.GetHwnd(), 77), CShdDialog::kResultOk);
    EXPECT_TRUE(script.Finished());
    EXPECT_EQ(dialog.m_param, 77);
    EXPECT_EQ(dialog.m_text, W("HKLM\\Software"));
    EXPECT_EQ(dialog.GetHwnd(), nullptr);
    EXPECT_FALSE(IsWindow(header));
}

// The right soft key cancels and the dialog runs again; one without a
// template does not start.
TEST(Dialog, TheRightSoftKeyCancelsAndTheDialogRunsAgain)
{
    CTestFrame owner;
    CLocationDialog dialog;
    for (int run = 0; run < 2; ++run) {
        CModalScript script({[&] {
            // F2 is the right soft key; it goes through the dialog's own loop.
            PostMessageW(GetFocus(), WM_KEYDOWN, VK_TSOFT2, 1);
        }});
        EXPECT_EQ(dialog.DoModal(TestInstance(), IDD_EDIT_BOOKMARK, owner.GetHwnd(), 0), CShdDialog::kResultCancel);
        EXPECT_TRUE(script.Finished());
    }
    EXPECT_EQ(dialog.DoModal(TestInstance(), 9999, nullptr, 0), -1) << "no such template";
}

TEST(Dialog, AModelessDialogLivesUntilItsObjectEnds)
{
    CTestFrame owner;
    HWND window = nullptr;
    {
        CLocationDialog dialog;
        ASSERT_TRUE(dialog.Create(TestInstance(), IDD_EDIT_BOOKMARK, owner.GetHwnd()));
        window = dialog.GetHwnd();
        EXPECT_TRUE(IsWindow(window));
        EXPECT_NE(dialog.m_bar, nullptr);
        EXPECT_FALSE(dialog.Create(TestInstance(), IDD_EDIT_BOOKMARK, owner.GetHwnd()));
    }
    EXPECT_FALSE(IsWindow(window));
}

}  // namespace
