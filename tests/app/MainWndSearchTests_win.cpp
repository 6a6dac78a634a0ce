#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "framework/DpiScale.h"
#include "platform/Platform.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "search/FloatingToolBar_win.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/ScratchKey.h"

namespace {

using Strings = std::vector<std::string>;

// A scratch key with two keys and a value whose names hold the search text
// and a value whose data holds it.
class MainWndSearch : public MainWndTest {
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
        Open();
        m_results = GetDlgItem(m_hwnd, CSearchController::kFindResultsId);
        m_resultsList = GetDlgItem(m_results, CFindResultsWnd::kListId);
        m_window->Search().ShowSearchResult(HKEY_CURRENT_USER, m_scratch.Path(), nullptr, false);
    }

    // Runs "Start..." and, inside the dialog, the steps given the dialog.
    void RunSearchDialog(std::vector<std::function<void(HWND)>> steps)
    {
        EXPECT_TRUE(RunDialog(IDM_SEARCH_START, L"Search", std::move(steps)));
    }
    void FindAll(const char* text)
    {
        RunSearchDialog({[text](HWND dialog) {
            SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, W(text));
            SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_FIND_ALL, 0);
        }});
    }
    // The search menu's items, or the given ones.
    Strings SearchMenu(std::vector<UINT> commands = {IDM_SEARCH_START, IDM_SEARCH_FIND_NEXT, IDM_SEARCH_PAUSE,
                                                     IDM_SEARCH_STOP, IDM_SEARCH_SHOW_RESULTS})
    {
        return Menu(IDR_MAIN_MENU_OLD, commands);
    }
    std::string Status() const { return ToUtf8(ItemText(m_hwnd, CMainPanes::kKeyNameId)); }
    Strings ListTexts() const
    {
        Strings texts;
        for (const CString& row : ListRows(m_resultsList))
            texts.push_back(ToUtf8(row));
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
    HWND m_results = nullptr;
    HWND m_resultsList = nullptr;
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
    EXPECT_EQ(m_messages,
              (Strings{"Search string can't be empty.", "You should specify at least one item type to search for."}));
    EXPECT_TRUE(Settings().GetSearchParams().searchString.IsEmpty()) << "Cancel keeps the saved criteria";

    RunSearchDialog({[](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_SEARCH_TEXT, L"qzfind");
        SendMessageW(dialog, WM_COMMAND, IDM_SEARCH_DIALOG_START, 0);
    }});
    EXPECT_EQ(Settings().GetSearchParams().searchString, W("qzfind")) << "OK saves them";
    RunSearchDialog({[](HWND dialog) {
        EXPECT_EQ(ItemText(dialog, IDC_SEARCH_TEXT), W("qzfind"));
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }});

    // The first step ran from the dialog; the others from "Find Next", once
    // through HKEY_CURRENT_USER and once through its copy under HKEY_USERS,
    // until nothing is left.
    Strings visited = {Selection(L"SearchCommands\\")};
    m_messages.clear();
    for (int step = 0; step < 12 && m_messages.empty(); ++step) {
        SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_FIND_NEXT, 0);
        PumpMessages();
        if (m_messages.empty())
            visited.push_back(Selection(L"SearchCommands\\"));
    }
    const Strings once = {"\\a qzfind", "\\a qzfind|qzfind value", "\\b|data", "\\b\\qzfind c"};
    Strings expected;
    for (const char* root : {"HKCU", "HKU"})
        for (const std::string& match : once)
            expected.push_back(root + match);
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(m_messages, Strings{"Search finished."});
    EXPECT_EQ(SearchMenu(),
              (Strings{"Start...", "(Find Next)", "(Pause Search)", "(Stop Search)", "(Show Search Results)"}));
}

TEST_F(MainWndSearch, FindAllListsPausesCancelsAndShowsTheMatches)
{
    const std::string scratch = "HKCU\\" + ToUtf8(m_scratch.Path());
    const struct {
        const char* text;
        UINT command;
        Strings menu;
        const char* status;
        Strings items;
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
        FindAll(item.text);
        EXPECT_EQ(ListTexts().at(0), "< Cancel search >");
        // Paused with matches in the list.
        if (item.command == IDM_SEARCH_PAUSE)
            PumpUntil([this] { return ListView_GetItemCount(m_resultsList) >= 3; });
        if (item.command != 0)
            SendMessageW(m_hwnd, WM_COMMAND, item.command, 0);
        EXPECT_EQ(SearchMenu(), item.menu);
        if (item.command == IDM_SEARCH_PAUSE) {
            const Strings paused = ListTexts();
            Sleep(300);
            PumpMessages();
            EXPECT_EQ(ListTexts(), paused) << "nothing is added while paused";
            SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_PAUSE, 0);
        }
        PumpUntil([this] { return SearchMenu()[0] == "Start..."; });
        EXPECT_EQ(Status(), item.status);
        if (item.command == IDM_SEARCH_STOP)
            continue;
        // The copy of HKEY_CURRENT_USER under HKEY_USERS comes second.
        Strings items = ListTexts();
        items.resize(std::min(items.size(), item.items.size()));
        EXPECT_EQ(items, item.items);
    }

    // Ctrl+Tab switches views; activating a match shows it, or says it is gone.
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS_KEY, 0);
    EXPECT_FALSE(IsWindowVisible(m_results));
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS_KEY, 0);
    EXPECT_TRUE(IsWindowVisible(m_results));
    Activate(1);
    EXPECT_EQ(Selection(L"SearchCommands\\"), "HKCU\\a qzfind|qzfind value");
    EXPECT_FALSE(IsWindowVisible(m_results));
    EXPECT_EQ(GetFocus(), m_list);

    // Both gone behind the program's back, the key after the tree loaded it.
    ASSERT_TRUE(Tree().NavigateTo(HKEY_CURRENT_USER, m_scratch.Path() + L"\\b\\qzfind c"));
    CShdRegKey key;
    ASSERT_TRUE(key.Open(m_scratch.Handle(), TEXT("b")));
    ASSERT_TRUE(key.DeleteValue(TEXT("data")));
    ASSERT_EQ(Platform().RegDeleteKeyW(key.GetHandle(), TEXT("qzfind c")), ERROR_SUCCESS);
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_SHOW_RESULTS, 0);
    Activate(2);
    Activate(3);
    EXPECT_EQ(m_messages, (Strings{"Unable to show found registry value.", "Unable to show found registry key."}));

    // A bookmark opened over the results leaves the focus on what shows.
    CSavedKey saved(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Marrowick", L"SavedProgramKey");
    Command(IDM_KEY_ADD_BOOKMARK);
    Command(IDM_SEARCH_SHOW_RESULTS_KEY);
    ASSERT_TRUE(IsWindowVisible(m_results));
    EXPECT_TRUE(RunDialog(IDM_BOOKMARKS, L"Bookmarks", {[](HWND dialog) {
        SendMessageW(dialog, WM_COMMAND, IDM_BOOKMARK_OPEN, 0);
    }}));
    EXPECT_TRUE(IsWindowVisible(GetFocus()));
}

// The toolbar of the main window: what its first two buttons show ("4+":
// normal image 4, enabled), and strokes of the pen on it.
class MainWndToolBar : public MainWndSearch {
protected:
    void SetUp() override
    {
        MainWndSearch::SetUp();
        m_toolBarWindow = GetDlgItem(m_hwnd, CSearchToolBar::kToolBarId);
        ASSERT_NE(m_toolBarWindow, nullptr);
        // The default window class keeps the object in the window's word 0.
        m_toolBar = static_cast<CFloatingToolBar*>(reinterpret_cast<CShdWnd*>(GetWindowLongPtrW(m_toolBarWindow, 0)));
    }
    void TearDown() override { Settings().SetShowSearchToolbar(true); }

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

    HWND m_toolBarWindow = nullptr;
    CFloatingToolBar* m_toolBar = nullptr;
};

TEST_F(MainWndToolBar, FindAllShowsItWhenAllowedAndItsButtonsFollowTheSearch)
{
    Settings().SetShowSearchToolbar(false);
    FindAll("qzfind");
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_TOOLBAR, 0);
    EXPECT_FALSE(IsWindowVisible(m_toolBarWindow)) << "not allowed";
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), Strings{"(Show Search Toolbar)"});
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_STOP, 0);

    Settings().SetShowSearchToolbar(true);
    FindAll("qzfind");
    EXPECT_EQ(Buttons(), "4+ 2+");
    const RECT first = ChildRect(m_toolBarWindow);
    EXPECT_TRUE(first.left == 10 && first.top == 10) << "its first place";
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
        {0, 0, "4+ 2+", "Search in progress...", true, true}, {1, 0, "4- 2+", "Search cancelled", true, true},
        {0, 0, "4- 2+", "Search cancelled", true, true},   {1, 0, "4- 2+", "Search cancelled", true, true},
        {2, 0, "4- 2+", nullptr, false, true},
        {3, 0, "4- 2+", nullptr, false, false},
    };
    for (const auto& stroke : strokes) {
        SCOPED_TRACE(testing::Message() << "button " << stroke.button << ", then " << stroke.buttons);
        Stroke(36 + 20 * stroke.button, 0, stroke.dy);
        EXPECT_EQ(Buttons(), stroke.buttons);
        // The key name bar shows the search's state while the results do.
        EXPECT_TRUE(stroke.status == nullptr || Status() == stroke.status) << Status();
        EXPECT_EQ(IsWindowVisible(m_results) != FALSE, stroke.resultsShown);
        EXPECT_EQ(IsWindowVisible(m_toolBarWindow) != FALSE, stroke.toolBarShown);
    }
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), Strings{"Show Search Toolbar"});
    SendMessageW(m_hwnd, WM_COMMAND, IDM_SEARCH_TOOLBAR, 0);
    EXPECT_EQ(SearchMenu({IDM_SEARCH_TOOLBAR}), Strings{"Hide Search Toolbar"});
}

TEST_F(MainWndToolBar, ItsGripDragsItFlushWithEachEdgeAlsoAfterTheWindowShrinks)
{
    FindAll("qzfind");
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
            const RECT before = ChildRect(m_toolBarWindow);
            EXPECT_TRUE(before.left >= 0 && before.top >= 0 && before.right <= client.right &&
                        before.bottom <= client.bottom);
            Stroke(12, drag.dx, drag.dy);
            const RECT after = ChildRect(m_toolBarWindow);
            if (drag.edge != nullptr)
                EXPECT_EQ(after.*drag.edge, client.*drag.edge);
            else
                EXPECT_TRUE(after.left == before.left + drag.dx && after.top == before.top + drag.dy);
        }
    }
}

}  // namespace
