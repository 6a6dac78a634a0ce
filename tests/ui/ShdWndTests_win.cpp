#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "framework/ShdWnd_win.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport_win.h"

namespace {

const UINT kPing = WM_APP + 7;

class CRecordingWnd : public CShdWnd {
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        m_messages.push_back(message);
        if (message == WM_CREATE)
            m_handleAtCreate = GetHwnd();
        if (message == kPing)
            return 42;
        return CShdWnd::WindowProc(message, wParam, lParam);
    }
    bool Saw(UINT message) const
    {
        return std::find(m_messages.begin(), m_messages.end(), message) != m_messages.end();
    }

    std::vector<UINT> m_messages;
    HWND m_handleAtCreate = nullptr;
};

bool CreatePopup(CShdWnd& object, const CShdWnd::CClass* windowClass, LPCWSTR title)
{
    return object.Create(0, windowClass, title, WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, TestInstance());
}

// The object has its window from WM_CREATE on, one at a time. Classes
// without extra bytes keep the object in word zero; classes with extra bytes
// leave those to the window's own code and use a property.
TEST(ShdWnd, TheObjectIsFoundWhereItsClassKeepsIt)
{
    const struct {
        LPCWSTR name;
        int extraBytes;
        bool inProperty;
    } cases[] = {{L"QuendaTest.Word", 0, false}, {L"QuendaTest.Property", 16, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.extraBytes);
        CShdWnd::CClass windowClass;
        ASSERT_TRUE(windowClass.Register(c.name, c.extraBytes, nullptr));
        HWND window = nullptr;
        {
            CRecordingWnd object;
            ASSERT_TRUE(CreatePopup(object, &windowClass, L""));
            window = object.GetHwnd();
            EXPECT_EQ(object.m_handleAtCreate, window);
            EXPECT_FALSE(CreatePopup(object, &windowClass, L""));
            EXPECT_EQ(CShdWnd::FromHandle(window), c.inProperty ? &object : nullptr);
            EXPECT_EQ(GetWindowLongPtrW(window, 0), c.inProperty ? 0 : reinterpret_cast<LONG_PTR>(&object));
            EXPECT_EQ(SendMessageW(window, kPing, 0, 0), 42);
        }
        EXPECT_FALSE(IsWindow(window)) << "the destructor destroys the window";
    }
}

TEST(ShdWnd, SubclassingRoutesAnotherWindowsMessagesUntilUnsubclassed)
{
    const HWND edit = CreateWindowExW(0, L"EDIT", L"abc", WS_POPUP, 0, 0, 80, 20, nullptr, nullptr,
                                      TestInstance(), nullptr);
    ASSERT_NE(edit, nullptr);
    const LONG_PTR original = GetWindowLongPtrW(edit, GWLP_WNDPROC);
    CRecordingWnd object;
    ASSERT_TRUE(object.Subclass(edit));
    EXPECT_FALSE(object.Subclass(edit)) << "one window at a time";
    EXPECT_EQ(CShdWnd::FromHandle(edit), &object);
    EXPECT_EQ(SendMessageW(edit, kPing, 0, 0), 42);
    SetWindowTextW(edit, L"changed");
    EXPECT_TRUE(object.Saw(WM_SETTEXT));
    EXPECT_EQ(CShdWnd::GetWindowTextOr(edit, L""), W("changed")) << "the edit's own procedure still runs";

    object.Unsubclass();
    EXPECT_EQ(object.GetHwnd(), nullptr);
    EXPECT_EQ(GetWindowLongPtrW(edit, GWLP_WNDPROC), original);
    EXPECT_EQ(CShdWnd::FromHandle(edit), nullptr);
    object.m_messages.clear();
    EXPECT_EQ(SendMessageW(edit, kPing, 0, 0), 0);
    EXPECT_TRUE(object.m_messages.empty());

    ASSERT_TRUE(object.Subclass(edit)) << "a released object can subclass again";
    DestroyWindow(edit);
    EXPECT_EQ(object.GetHwnd(), nullptr) << "the window's end releases the object";
}

TEST(ShdWnd, TextHelpersReadWholeTextsAndClassNames)
{
    const std::wstring longText(1000, L'x');
    const HWND edit = CreateWindowExW(0, L"EDIT", longText.c_str(), WS_POPUP, 0, 0, 80, 20, nullptr, nullptr,
                                      TestInstance(), nullptr);
    ASSERT_NE(edit, nullptr);
    CString text = W("sentinel");
    EXPECT_TRUE(CShdWnd::GetWindowText(edit, text));
    EXPECT_EQ(text.GetLength(), 1000u);
    SetWindowTextW(edit, L"");
    EXPECT_TRUE(CShdWnd::GetWindowText(edit, text));
    EXPECT_EQ(text, W(""));
    CString name;
    EXPECT_TRUE(CShdWnd::GetClassName(edit, name));
    EXPECT_EQ(name.CompareNoCase(L"Edit"), 0);
    DestroyWindow(edit);
}

}  // namespace
