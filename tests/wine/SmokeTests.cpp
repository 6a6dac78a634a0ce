#include <gtest/gtest.h>

#include <windows.h>

#include "framework/ShdWnd.h"
#include "tests/wine/QuendaDriver.h"

namespace {

TEST(Smoke, QuendaOpensItsWindowAndClosesCleanly)
{
    CQuendaProcess quenda;
    ASSERT_TRUE(quenda.Start(L""));
    const HWND window = quenda.WaitForWindow(L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}", 20000);
    ASSERT_NE(window, nullptr) << "no visible main window";
    EXPECT_EQ(CShdWnd::GetWindowTextOr(window, L""), CString(L"Quenda"));
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(quenda.WaitForExit(), 0);
}

}  // namespace
