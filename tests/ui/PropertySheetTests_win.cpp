#include <gtest/gtest.h>

#include "framework/PropertySheet_win.h"
#include "resources/resource.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

class CTestPage : public CShdPropertySheetPage {
public:
    bool OnSetActive() override
    {
        ++m_activations;
        return true;
    }
    bool OnApply() override
    {
        ++m_applies;
        return true;
    }

    int m_activations = 0;
    int m_applies = 0;
};

class PropertySheetTest : public testing::Test {
protected:
    PropertySheetTest()
    {
        EXPECT_TRUE(m_general.Init(TestInstance(), IDD_OPTIONS_GENERAL, L"General"));
        EXPECT_TRUE(m_import.Init(TestInstance(), IDD_OPTIONS_IMPORT, L"Import"));
        EXPECT_TRUE(m_sheet.Init(TestInstance(), L"Options", 1));
        EXPECT_EQ(m_sheet.AddPage(&m_general), 0);
        EXPECT_EQ(m_sheet.AddPage(&m_import), 1);
    }

    HWND CurrentPage() const
    {
        return reinterpret_cast<HWND>(SendMessageW(m_sheet.GetHwnd(), PSM_GETCURRENTPAGEHWND, 0, 0));
    }

    CTestFrame m_owner;
    CShdPropertySheet m_sheet;
    CTestPage m_general;
    CTestPage m_import;
};

// Cancel ends the sheet; it runs again with its page handles made afresh,
// on its start page, and OK applies only the page that was shown.
TEST_F(PropertySheetTest, TheSheetRunsFromItsStartPageAgainAfterCancel)
{
    CModalScript cancel({[&] {
        const HWND sheetWindow = m_sheet.GetHwnd();
        ASSERT_NE(sheetWindow, nullptr) << "the sheet found its object through its caption";
        EXPECT_EQ(CShdWnd::FromHandle(sheetWindow), &m_sheet);
        EXPECT_EQ(CShdWnd::GetWindowTextOr(sheetWindow, L""), W("Options"));
        EXPECT_FALSE(m_sheet.DoModal(m_owner.GetHwnd())) << "the sheet is shown already";
        SendMessageW(sheetWindow, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    }});
    EXPECT_FALSE(m_sheet.DoModal(m_owner.GetHwnd()));
    EXPECT_TRUE(cancel.Finished());

    CModalScript ok({[&] {
        EXPECT_EQ(CurrentPage(), m_import.GetHwnd()) << "the start page";
        SendMessageW(m_sheet.GetHwnd(), PSM_PRESSBUTTON, PSBTN_OK, 0);
    }});
    EXPECT_TRUE(m_sheet.DoModal(m_owner.GetHwnd()));
    EXPECT_TRUE(ok.Finished());
    EXPECT_EQ(m_import.m_applies, 1);
    EXPECT_EQ(m_general.m_activations, 0) << "a page never shown is never asked";
    EXPECT_EQ(m_general.m_applies, 0);
    EXPECT_EQ(m_sheet.GetHwnd(), nullptr);
    EXPECT_EQ(m_import.GetHwnd(), nullptr);
}

}  // namespace
