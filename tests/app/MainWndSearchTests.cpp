#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "app/MainWnd_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox.h"
#include "framework/Utf8.h"
#include "platform/Platform.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "search/FloatingToolBar_win.h"
#include "settings/Settings.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport.h"

namespace {

// A scratch key with two keys and a value whose names hold the search text
// and a value whose data holds it.
class MainWndSearch : public testing::Test {
protected:
    MainWndSearch() : m_scratch(TEXT("SearchCommands"))
    {
        CShdRegKey key;
        EXPECT_TRUE(key.Create(m_scratch.Handle(), TEXT("a qzfind"), nullptr) &&
                    key.WriteString(TEXT("qzfind value"), TEXT("-")));
        EXPECT_TRUE(key.Create(m_scratch.Handle(), TEXT("b"), nullptr) &&
                    key.WriteString(TEXT("data"), TEXT("has qzfind in it")));
        EXPECT_TRUE(key.Create(m_scratch.Handle(), TEXT("b\\qzfind c"), nullptr));
    }

    void SetUp() override
    {
        ASSERT_TRUE(m_window.Create(TestInstance()));
        PumpMessages();
        m_hwnd = m_window.GetHwnd();
        m_results = GetDlgItem(m_hwnd, CMainWnd::kFindResultsId);
        m_resultsList = GetDlgItem(m_results, CFindResultsWnd::kListId);
        ASSERT_NE(m_resultsList, nullptr);
        m_window.ShowSearchResult(HKEY_CURRENT_USER, m_scratch.Path(), nullptr, false);
    }

    // Runs "Start..." and, inside the dialog, the steps given the dialog.
    void RunSearchDialog(std::vector<std::function<void(HWND)>> steps)
    {
        std::vector<std::function<void()>> script;
        for (auto& step : steps)
            script.push_back([step] { step(FindWindowW(L"#32770", L"Search")); });
        CModalScript modal(script);
        SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_START, 0);
        EXPECT_TRUE(modal.Finished());
    }

    // The search menu as the main window prepares it: "text" or "(text)"
    // when disabled, one per item.
    std::vector<std::string> SearchMenu(std::vector<UINT> commands = {IDM_SEARCH_START, IDM_SEARCH_FIND_NEXT,
                                                                      IDM_SEARCH_PAUSE, IDM_SEARCH_STOP,
                                                                      IDM_SEARCH_SHOW_RESULTS})
    {
        HMENU menu = LoadMenuW(TestInstance(), MAKEINTRESOURCEW(IDR_MAIN_MENU_OLD));
        HMENU popup = GetSubMenu(menu, 0);
        SendMessageW(m_hwnd, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup), 0);
        std::vector<std::string> items;
        for (const UINT command : commands) {
            WCHAR text[64] = {};
            GetMenuStringW(popup, command, text, 64, MF_BYCOMMAND);
            const bool grayed = (GetMenuState(popup, command, MF_BYCOMMAND) & MF_GRAYED) != 0;
            items.push_back(grayed ? "(" + ToUtf8(CString(text)) + ")" : ToUtf8(CString(text)));
        }
        DestroyMenu(menu);
        return items;
    }

    // Where the main window stands: "HKCU\...\key" or "...\key|value",
    // relative to the scratch key, whatever the root.
    std::string Selection()
    {
        HKEY root = nullptr;
        CString path;
        CString value;
        m_window.GetSelectedKey(root, path);
        std::string text = ToUtf8(CString(RootShortName(root))) + "\\";
        const int at = path.Find(TEXT("SearchCommands"));
        text += at < 0 ? ToUtf8(path) : ToUtf8(path.Mid(static_cast<size_t>(at) + 15));
        if (m_window.GetSelectedValue(value))
            text += "|" + ToUtf8(value);
        return text;
    }

    // Pumps until `done` holds, for at most thirty seconds.
    void PumpUntil(const std::function<bool()>& done)
    {
        for (int wait = 0; wait < 3000 && !done(); ++wait) {
            Sleep(10);
            PumpMessages();
        }
    }

    std::vector<std::string> ListTexts()
    {
        std::vector<std::string> texts;
        for (int i = 0; i < ListView_GetItemCount(m_resultsList); ++i) {
            WCHAR text[300] = {};
            ListView_GetItemText(m_resultsList, i, 0, text, 300);
            texts.push_back(ToUtf8(CString(text)));
        }
        return texts;
    }

    void Activate(int item)
    {
        NMITEMACTIVATE activation = {};
        activation.hdr = {m_resultsList, CFindResultsWnd::kListId, static_cast<UINT>(LVN_ITEMACTIVATE)};
        activation.iItem = item;
        SendMessageW(m_results, WM_NOTIFY, CFindResultsWnd::kListId, reinterpret_cast<LPARAM>(&activation));
    }

    CScratchKey m_scratch;
    CMainWnd m_window;
    HWND m_hwnd = nullptr;
    HWND m_results = nullptr;
    HWND m_resultsList = nullptr;
    std::vector<std::string> m_messages;
    CScopedMessageAnswerer m_answerer{[this](HWND, LPCWSTR text, UINT) {
        m_messages.push_back(ToUtf8(CString(text)));
        return IDOK;
    }};
};

TEST_F(MainWndSearch, DialogShowsSavesAndChecksTheCriteriaThenFindNextVisitsEveryMatch)
{
    Settings().SetSearchParams(SSearchParams());
    const auto checked = [](HWND dialog, int id) { return IsDlgButtonChecked(dialog, id) == BST_CHECKED; };
    RunSearchDialog({[&](HWND dialog) {
                         ASSERT_NE(dialog, nullptr);
                         EXPECT_TRUE(checked(dialog, IDC_SEARCH_KEY_NAMES) && checked(dialog, IDC_SEARCH_BINARY));
                         EXPECT_FALSE(checked(dialog, IDC_SEARCH_CASE_SENSITIVE));
                         SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_START, 0);
                         SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, L"qzfind");
                         for (const int id : {IDC_SEARCH_KEY_NAMES, IDC_SEARCH_VALUE_NAMES, IDC_SEARCH_VALUE_DATA})
                             SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0);
                         EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_SEARCH_DWORDS)));
                         SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_FIND_ALL, 0);
                     },
                     [](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }});
    EXPECT_EQ(m_messages, (std::vector<std::string>{"Search string can't be empty.",
                                                  "You should specify at least one item type to search for."}));
    EXPECT_TRUE(Settings().GetSearchParams().searchString.IsEmpty()) << "Cancel keeps the saved criteria";

    RunSearchDialog({[](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, L"qzfind");
        SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_START, 0);
    }});
    EXPECT_EQ(Settings().GetSearchParams().searchString, W("qzfind")) << "OK saves them";
    RunSearchDialog({[](HWND dialog) {
        EXPECT_EQ(CShdWnd::GetWindowTextOr(GetDlgItem(dialog, IDC_SEARCH_TEXT), L""), W("qzfind"));
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }});

    // The first step ran from the dialog; the others from "Find Next", once
    // through HKEY_CURRENT_USER and once through its copy under HKEY_USERS,
    // until nothing is left.
    std::vector<std::string> visited = {Selection()};
    m_messages.clear();
    for (int step = 0; step < 12 && m_messages.empty(); ++step) {
        SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_FIND_NEXT, 0);
        PumpMessages();
        if (m_messages.empty())
            visited.push_back(Selection());
    }
    const std::vector<std::string> once = {"\\a qzfind", "\\a qzfind|qzfind value", "\\b|data", "\\b\\qzfind c"};
    std::vector<std::string> expected;
    for (const char* root : {"HKCU", "HKU"})
        for (const std::string& match : once)
            expected.push_back(root + match);
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(m_messages, std::vector<std::string>{"Search finished."});
    EXPECT_EQ(SearchMenu(), (std::vector<std::string>{"Start...", "(Find Next)", "(Pause Search)", "(Stop Search)",
                                                      "(Show Search Results)"}));
}

TEST_F(MainWndSearch, FindAllListsPausesCancelsAndShowsTheMatches)
{
    const std::string scratch = "HKCU\\" + ToUtf8(m_scratch.Path());
    const struct {
        const char* text;
        UINT command;
        std::vector<std::string> menu;
        const char* status;
        std::vector<std::string> items;
    } cases[] = {
        {"zqnothing", 0, {"(Start...)", "(Find Next)", "Pause Search", "Stop Search", "Show Main Window"},
         "Search finished", {"< Nothing was found >"}},
        {"qzfind", IDM_SEARCH_STOP, {"Start...", "(Find Next)", "(Pause Search)", "(Stop Search)", "Show Main Window"},
         "Search cancelled", {}},
        {"qzfind", IDM_SEARCH_PAUSE, {"(Start...)", "(Find Next)", "Resume Search", "Stop Search", "Show Main Window"},
         "Search finished",
         {scratch + "\\a qzfind", scratch + "\\a qzfind", scratch + "\\b", scratch + "\\b\\qzfind c"}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.text);
        RunSearchDialog({[&](HWND dialog) {
            SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, W(item.text));
            SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_FIND_ALL, 0);
        }});
        EXPECT_EQ(ListTexts().at(0), "< Cancel search >");
        // Paused with matches in the list.
        if (item.command == IDM_SEARCH_PAUSE)
            PumpUntil([this] { return ListView_GetItemCount(m_resultsList) >= 3; });
        if (item.command != 0)
            SendMessageW(m_hwnd, WM_COMMAND, item.command, 0);
        EXPECT_EQ(SearchMenu(), item.menu);
        if (item.command == IDM_SEARCH_PAUSE) {
            const std::vector<std::string> paused = ListTexts();
            Sleep(300);
            PumpMessages();
            EXPECT_EQ(ListTexts(), paused) << "nothing is added while paused";
            SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_PAUSE, 0);
        }
        PumpUntil([this] { return SearchMenu()[0] == "Start..."; });
        EXPECT_EQ(ToUtf8(CShdWnd::GetWindowTextOr(GetDlgItem(m_hwnd, CMainWnd::kKeyNameId), L"")), item.status);
        if (item.command == IDM_SEARCH_STOP)
            continue;
        // The copy of HKEY_CURRENT_USER under HKEY_USERS comes second.
        std::vector<std::string> items = ListTexts();
        items.resize(std::min(items.size(), item.items.size()));
        EXPECT_EQ(items, item.items);
    }

    // Ctrl+Tab switches views; activating a match shows it, or says it is gone.
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS_KEY, 0);
    EXPECT_FALSE(IsWindowVisible(m_results));
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS_KEY, 0);
    EXPECT_TRUE(IsWindowVisible(m_results));
    Activate(1);
    EXPECT_EQ(Selection(), "HKCU\\a qzfind|qzfind value");
    EXPECT_FALSE(IsWindowVisible(m_results));
    EXPECT_EQ(GetFocus(), GetDlgItem(m_hwnd, CMainWnd::kListId));

    CShdRegKey key;
    ASSERT_TRUE(key.Open(m_scratch.Handle(), TEXT("b")));
    ASSERT_TRUE(key.DeleteValue(TEXT("data")));
    ASSERT_EQ(Platform().RegDeleteKeyW(key.GetHandle(), TEXT("qzfind c")), ERROR_SUCCESS);
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS, 0);
    Activate(2);
    Activate(3);
    EXPECT_EQ(m_messages, (std::vector<std::string>{"Unable to show found registry value.",
                                                  "Unable to show found registry key."}));
}

// The toolbar of the main window: what its first two buttons show ("4+":
// normal image 4, enabled), and strokes of the pen on it.
class MainWndToolBar : public MainWndSearch {
protected:
    void SetUp() override
    {
        MainWndSearch::SetUp();
        m_toolBarWindow = GetDlgItem(m_hwnd, CMainWnd::kToolBarId);
        ASSERT_NE(m_toolBarWindow, nullptr);
        // The default window class keeps the object in the window's word 0.
        m_toolBar = static_cast<CFloatingToolBar*>(reinterpret_cast<CShdWnd*>(GetWindowLongPtrW(m_toolBarWindow, 0)));
    }
    void TearDown() override { Settings().SetShowSearchToolbar(true); }

    void StartFindAll()
    {
        RunSearchDialog({[](HWND dialog) {
            SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, L"qzfind");
            SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_FIND_ALL, 0);
        }});
    }

    std::string Buttons() const
    {
        std::string text;
        for (int index = 0; index < 2; ++index) {
            const CFloatingToolBar::SButtonInfo* button = m_toolBar->GetButton(index);
            text += (index > 0 ? " " : "") + std::to_string(button->normalImage) + (button->disabled ? "-" : "+");
        }
        return text;
    }

    // From a point of the toolbar, in design units from its corner, by a
    // distance in pixels. Buttons are 18 units wide from 27 on, 2 apart,
    // between 5 and 23 from the top; the grips lie left of 24.
    void Stroke(int xDesign, int dx, int dy)
    {
        POINT from = {ScaleX(xDesign), ScaleY(14)};
        ClientToScreen(m_toolBarWindow, &from);
        PenStroke(from, {from.x + dx, from.y + dy});
    }

    RECT ToolBarRect() const
    {
        RECT rect;
        GetWindowRect(m_toolBarWindow, &rect);
        MapWindowPoints(nullptr, m_hwnd, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }

    HWND m_toolBarWindow = nullptr;
    CFloatingToolBar* m_toolBar = nullptr;
};

TEST_F(MainWndToolBar, FindAllShowsItWhenAllowedAndItsButtonsFollowTheSearch)
{
    Settings().SetShowSearchToolbar(false);
    StartFindAll();
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_TOOLBAR, 0);
    EXPECT_FALSE(IsWindowVisible(m_toolBarWindow)) << "not allowed";
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), std::vector<std::string>{"(Show Search Toolbar)"});
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_STOP, 0);

    Settings().SetShowSearchToolbar(true);
    StartFindAll();
    EXPECT_EQ(Buttons(), "4+ 2+");
    // A stroke that ends 60 pixels above its button is no tap; nor is one
    // on a disabled button.
    const struct {
        int button;
        int dy;
        const char* buttons;
        const char* status;
        bool resultsShown;
        bool toolBarShown;
    } strokes[] = {
        {0, 0, "0+ 2+", "Search paused", true, true},      {0, -60, "0+ 2+", "Search paused", true, true},
        {0, 0, "4+ 2+", "Search in progress...", true, true}, {1, 0, "4- 2-", "Search cancelled", true, true},
        {0, 0, "4- 2-", "Search cancelled", true, true},   {2, 0, "4- 2-", nullptr, false, true},
        {3, 0, "4- 2-", nullptr, false, false},
    };
    for (const auto& stroke : strokes) {
        SCOPED_TRACE(testing::Message() << "button " << stroke.button << ", then " << stroke.buttons);
        Stroke(36 + 20 * stroke.button, 0, stroke.dy);
        EXPECT_EQ(Buttons(), stroke.buttons);
        // The key name bar shows the search's state while the results do.
        const CString status = CShdWnd::GetWindowTextOr(GetDlgItem(m_hwnd, CMainWnd::kKeyNameId), L"");
        EXPECT_TRUE(stroke.status == nullptr || ToUtf8(status) == stroke.status) << ToUtf8(status);
        EXPECT_EQ(IsWindowVisible(m_results) != FALSE, stroke.resultsShown);
        EXPECT_EQ(IsWindowVisible(m_toolBarWindow) != FALSE, stroke.toolBarShown);
    }
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), std::vector<std::string>{"Show Search Toolbar"});
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_TOOLBAR, 0);
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), std::vector<std::string>{"Hide Search Toolbar"});
}

TEST_F(MainWndToolBar, ItsGripDragsItFlushWithEachEdgeAlsoAfterTheWindowShrinks)
{
    StartFindAll();
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_STOP, 0);
    const struct {
        int dx;
        int dy;
        LONG RECT::*edge;
    } drags[] = {{-1000, 0, &RECT::left}, {0, -1000, &RECT::top}, {1000, 0, &RECT::right},
                 {0, 1000, &RECT::bottom}, {-20, -30, nullptr}};
    for (const bool shrunk : {false, true}) {
        if (shrunk)
            SetWindowPos(m_hwnd, nullptr, 0, 0, 300, 250, SWP_NOMOVE | SWP_NOZORDER);
        RECT client;
        GetClientRect(m_hwnd, &client);
        for (const auto& drag : drags) {
            SCOPED_TRACE(testing::Message() << drag.dx << ", " << drag.dy << (shrunk ? " after shrinking" : ""));
            const RECT before = ToolBarRect();
            EXPECT_TRUE(before.left >= 0 && before.top >= 0 && before.right <= client.right &&
                        before.bottom <= client.bottom);
            Stroke(12, drag.dx, drag.dy);
            const RECT after = ToolBarRect();
            if (drag.edge != nullptr)
                EXPECT_EQ(after.*drag.edge, client.*drag.edge);
            else
                EXPECT_TRUE(after.left == before.left + drag.dx && after.top == before.top + drag.dy);
        }
    }
}

}  // namespace
