#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "framework/DpiScale.h"
#include "framework/HandheldShell_win.h"
#include "framework/WindowHelpers_win.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"

namespace {

using Messages = std::vector<std::string>;

// Counts the requests, sent to soft-key bars while it lives, that redirect
// the Back key to a dialog: a hook on the thread sees each as it is sent.
class CBackKeyRequests {
public:
    CBackKeyRequests() : m_hook(SetWindowsHookExW(WH_CALLWNDPROC, Record, nullptr, GetCurrentThreadId()))
    {
        s_count = 0;
    }
    ~CBackKeyRequests() { UnhookWindowsHookEx(m_hook); }
    CBackKeyRequests(const CBackKeyRequests&) = delete;
    CBackKeyRequests& operator=(const CBackKeyRequests&) = delete;
    int Count() const { return s_count; }

private:
    static LRESULT CALLBACK Record(int code, WPARAM wParam, LPARAM lParam)
    {
        const auto* sent = reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (code == HC_ACTION && sent->message == SHCMBM_OVERRIDEKEY && sent->wParam == VK_TBACK)
            ++s_count;
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static int s_count;
    HHOOK m_hook;
};

int CBackKeyRequests::s_count = 0;

// Gives the window a client area `height` high: true when it then shows
// `second` below `first`, false when beside it.
bool StackedAt(HWND window, int height, HWND first, HWND second)
{
    RECT frame;
    RECT client;
    GetWindowRect(window, &frame);
    GetClientRect(window, &client);
    SetWindowPos(window, nullptr, 0, 0, frame.right - frame.left, height + (frame.bottom - frame.top) - client.bottom,
                 SWP_NOZORDER | SWP_NOMOVE);
    const bool below = ChildRect(second).top > ChildRect(first).top;
    EXPECT_NE(below, ChildRect(second).left > ChildRect(first).left) << height;
    return below;
}

class MainWnd : public MainWndTest {
protected:
    void SetUp() override
    {
        Open();
        m_splitter = GetDlgItem(m_hwnd, CMainPanes::kSplitterId);
    }
    // The "Key" pop-up's New and Rename items.
    std::vector<std::string> KeyItems() const { return Menu(IDR_KEY_CONTEXT, {IDM_KEY_NEW, IDM_KEY_RENAME}); }

    HWND m_splitter = nullptr;
};

TEST_F(MainWnd, TabCyclesTheFocusThroughTreeSplitterAndList)
{
    EXPECT_EQ(GetFocus(), m_tree) << "the tree has the focus at start";
    const std::pair<UINT, HWND> steps[] = {{IDM_TAB_KEY, m_splitter},      {IDM_TAB_KEY, m_list},
                                           {IDM_TAB_KEY, m_tree},          {IDM_BACK_TAB_KEY, m_list},
                                           {IDM_BACK_TAB_KEY, m_splitter}, {IDM_BACK_TAB_KEY, m_tree}};
    for (const auto& step : steps) {
        Command(step.first);
        EXPECT_EQ(GetFocus(), step.second);
    }
    SetFocus(m_hwnd);
    Command(IDM_TAB);
    EXPECT_EQ(GetFocus(), m_tree) << "from anywhere else to the tree";
}

TEST_F(MainWnd, KeyCommandsFollowTheTreeSelection)
{
    EXPECT_EQ(KeyItems(), (std::vector<std::string>{"(New...)", "(Rename)"})) << "the top item is no key";
    SelectKey(HKEY_LOCAL_MACHINE, L"");
    EXPECT_EQ(KeyItems(), (std::vector<std::string>{"New...", "(Rename)"})) << "a root key cannot be renamed";

    Command(IDM_KEY_COPY_NAME);
    CString copied;
    EXPECT_TRUE(ReadClipboardText(m_hwnd, copied) && copied == W("HKEY_LOCAL_MACHINE"));
    EXPECT_EQ(GetFocus(), m_tree) << "the focus goes back";
}

// Arrow keys on the splitter move the split; short windows put the panes
// side by side.
TEST_F(MainWnd, TheSplitFollowsTheArrowKeysAndTheWindowsHeight)
{
    const int before = ChildRect(m_tree).bottom;
    SetFocus(m_splitter);
    SendMessageW(m_splitter, WM_KEYDOWN, VK_DOWN, 0);
    PumpMessages();
    EXPECT_EQ(ChildRect(m_tree).bottom, before + ScaleY(5));
    SendMessageW(m_splitter, WM_KEYDOWN, VK_LEFT, 0);
    PumpMessages();
    EXPECT_EQ(ChildRect(m_tree).bottom, before + ScaleY(5)) << "a horizontal bar ignores Left and Right";
    EXPECT_EQ(ChildRect(m_splitter).top, before + ScaleY(5));
    EXPECT_TRUE(StackedAt(m_hwnd, ScaleY(180), m_tree, m_list));
    EXPECT_FALSE(StackedAt(m_hwnd, ScaleY(180) - 1, m_tree, m_list));
}

// Every refusal leaves the dialog open with what was typed; a created key
// carries its class and is selected in the tree, and Properties shows both.
// Only the new-key dialog, which has names to erase, takes the Back key.
TEST_F(MainWnd, NewKeyAndKeyProperties)
{
    const CBackKeyRequests backKeys;
    m_faults.FailOpen(L"Refused");
    CScratchKey scratch(L"NewKey");
    CShdRegKey existing;
    ASSERT_TRUE(existing.Create(scratch.Handle(), L"Existing", nullptr));
    existing.Close(false);
    SelectKey(HKEY_CURRENT_USER, scratch.Path());
    const struct {
        const char* name;
        const char* message;
        bool focusOnName;
    } refusals[] = {
        {"a\\b", "Invalid key name", false},
        {"", "Key with this name already exists", true},
        {"EXISTING", "Key with this name already exists", true},
        {"Refused", "Unable to create key", true},
    };
    auto type = [](HWND dialog, const char* name, const char* keyClass) {
        SetDlgItemTextW(dialog, IDC_KEY_NAME, W(name));
        SetDlgItemTextW(dialog, IDC_KEY_CLASS, W(keyClass));
        SetFocus(GetDlgItem(dialog, IDC_KEY_CLASS));
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
    };
    EXPECT_TRUE(RunDialog(IDM_KEY_NEW, L"Edit Key", {[&](HWND dialog) {
        EXPECT_EQ(ItemText(dialog, IDC_PARENT_KEY),
                  L"HKEY_CURRENT_USER\\" + scratch.Path());
        const HWND name = GetDlgItem(dialog, IDC_KEY_NAME);
        EXPECT_TRUE(StackedAt(dialog, ScaleY(180), name, GetDlgItem(dialog, IDC_KEY_CLASS)));
        EXPECT_FALSE(StackedAt(dialog, ScaleY(180) - 1, name, GetDlgItem(dialog, IDC_KEY_CLASS)));
        for (const auto& refusal : refusals) {
            SCOPED_TRACE(refusal.name);
            m_messages.clear();
            type(dialog, refusal.name, "typed");
            EXPECT_EQ(m_messages, Messages{refusal.message});
            EXPECT_EQ(ItemText(dialog, IDC_KEY_NAME), W(refusal.name));
            EXPECT_EQ(ItemText(dialog, IDC_KEY_CLASS), W("typed"));
            EXPECT_EQ(GetFocus() == GetDlgItem(dialog, IDC_KEY_NAME), refusal.focusOnName);
        }
        EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()), ".\n" "Existing\n");
        type(dialog, "New", "Klasse");
    }}));
    EXPECT_EQ(backKeys.Count(), 1);
    HKEY root = nullptr;
    CString selected;
    EXPECT_TRUE(m_window->GetSelectedKey(root, selected));
    EXPECT_EQ(selected, scratch.Path() + L"\\New");
    CShdRegKey created;
    CString storedClass;
    EXPECT_TRUE(created.Open(scratch.Handle(), L"New") && created.GetClass(storedClass));
    created.Close(false);
    EXPECT_EQ(storedClass, L"Klasse");
    EXPECT_TRUE(RunDialog(IDM_KEY_PROPERTIES, L"Key Properties", {[&](HWND dialog) {
        EXPECT_EQ(ItemText(dialog, IDC_KEY_NAME), L"HKEY_CURRENT_USER\\" + selected);
        EXPECT_EQ(ItemText(dialog, IDC_KEY_CLASS), L"Klasse");
        SendMessageW(dialog, WM_COMMAND, IDM_CLOSE, 0);
    }}));
    EXPECT_EQ(backKeys.Count(), 1) << "Key Properties keeps the shell's Back key";

    // Keys deleted behind the program's back.
    DeleteTreeForTests(scratch.Handle(), L"New");
    m_messages.clear();
    Command(IDM_KEY_PROPERTIES);
    EXPECT_EQ(m_messages, Messages{"Unable to open registry key."});
    SelectKey(HKEY_CURRENT_USER, scratch.Path());
    EXPECT_TRUE(RunDialog(IDM_KEY_NEW, L"Edit Key", {[&](HWND dialog) {
        DeleteTreeForTests(HKEY_CURRENT_USER, scratch.Path());
        m_messages.clear();
        type(dialog, "Late", "");
        EXPECT_EQ(m_messages, Messages{"Unable to open parent key"});
        EXPECT_EQ(ItemText(dialog, IDC_KEY_NAME), L"Late");
    }}));
}

// Bookmarks added from the main window and kept in the dialog: each step
// leaves the stored values as the list shows them.
TEST_F(MainWnd, Bookmarks)
{
    CScratchKey scratch(L"Marks");
    const CString marks = L"HKEY_CURRENT_USER\\" + scratch.Path();
    CString lower = marks;
    lower.MakeLower();
    auto stored = [] { return DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath); };
    SelectKey(HKEY_CURRENT_USER, scratch.Path());
    Command(IDM_KEY_ADD_BOOKMARK);
    Command(IDM_KEY_ADD_BOOKMARK);
    EXPECT_EQ(m_messages, (Messages{"Bookmark was successfully added.", "This bookmark already exists."}));
    EXPECT_EQ(GetFocus(), m_tree);
    EXPECT_EQ(stored(), "[count]=#1\n[item_0]=" + ToUtf8(marks) + "\n");

    auto rows = [](HWND dialog) { return ListRows(GetDlgItem(dialog, IDC_BOOKMARK_LIST)); };
    auto command = [](UINT id) { return [id](HWND dialog) { PostMessageW(dialog, WM_COMMAND, id, 0); }; };
    auto type = [this](const CString& text, const char* message) {
        return [this, text, message](HWND) {
            const HWND edit = FindDialog(L"Edit Bookmark");
            m_messages.clear();
            SetDlgItemTextW(edit, IDC_BOOKMARK_LOCATION, text);
            SendMessageW(edit, WM_COMMAND, IDOK, 0);
            EXPECT_EQ(m_messages.empty() ? "" : m_messages[0], message) << ToUtf8(text);
        };
    };
    std::vector<std::function<void(HWND)>> steps = {command(IDM_BOOKMARK_ADD)};
    for (const char* invalid : {"", "HKLM\\a\\", "HKLM\\\\a", "HKXX\\a"})
        steps.push_back(type(W(invalid), "Invalid location."));
    for (const auto& step : std::vector<std::function<void(HWND)>>{
             type(lower, ""),
             [&](HWND dialog) {
                 EXPECT_EQ(m_messages, Messages{"This bookmark already exists."});
                 EXPECT_EQ(rows(dialog).size(), 1u);
             },
             command(IDM_BOOKMARK_EDIT), type(lower, ""), command(IDM_BOOKMARK_ADD), type(L"HKCU\\Software", ""),
             command(IDM_BOOKMARK_ADD), type(L"hklm", ""),
             [&](HWND dialog) {
                 EXPECT_EQ(rows(dialog), (std::vector<CString>{lower, L"HKCU\\Software", L"hklm"}));
                 EXPECT_EQ(stored(), "[count]=#3\n[item_0]=" + ToUtf8(lower) + "\n[item_1]=HKCU\\Software\n[item_2]=hklm\n");
                 SendMessageW(dialog, WM_COMMAND, IDM_BOOKMARK_DELETE, 0);
                 EXPECT_EQ(SelectedRow(GetDlgItem(dialog, IDC_BOOKMARK_LIST)), 1) << "the new last row";
                 SendMessageW(dialog, WM_COMMAND, IDM_BOOKMARK_OPEN, 0);
             }})
        steps.push_back(step);
    EXPECT_TRUE(RunDialog(IDM_BOOKMARKS, L"Bookmarks", steps));
    HKEY root = nullptr;
    CString path;
    EXPECT_TRUE(m_window->GetSelectedKey(root, path));
    EXPECT_EQ(path, L"Software") << "a short root name opens";
    EXPECT_EQ(stored(), "[count]=#2\n[item_0]=" + ToUtf8(lower) + "\n[item_1]=HKCU\\Software\n");

    // The same key in another case; then gone since it was bookmarked; then
    // every item deleted.
    SelectKey(HKEY_CURRENT_USER, scratch.Path());
    m_messages.clear();
    Command(IDM_KEY_ADD_BOOKMARK);
    DeleteTreeForTests(HKEY_CURRENT_USER, scratch.Path());
    EXPECT_TRUE(RunDialog(IDM_BOOKMARKS, L"Bookmarks", {[](HWND dialog) {
        // One tap on the first row opens it.
        const HWND list = GetDlgItem(dialog, IDC_BOOKMARK_LIST);
        RECT row = {LVIR_LABEL, 0, 0, 0};
        SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
        SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(row.left + 4, row.top + 2));
        SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(row.left + 4, row.top + 2));
    }}));
    EXPECT_EQ(m_messages, (Messages{"This bookmark already exists.", "Unable to show registry key."}));
    EXPECT_TRUE(RunDialog(IDM_BOOKMARKS, L"Bookmarks", {command(IDM_BOOKMARK_DELETE), command(IDM_BOOKMARK_DELETE)}));
    EXPECT_EQ(stored(), "[count]=#0\n");
}

// The position is taken when the window goes. The settings are kept from
// the registry here (their key cannot be opened), so only the in-memory
// store changes. Its restoring at start opens the value editor's tests.
TEST_F(MainWndTest, TheLastPositionIsSavedAtExit)
{
    m_faults.FailOpen(TEXT("Settings"));
    CScratchKey scratch(TEXT("Position"));
    Settings().SetSavePosition(true);
    Settings().SetLastPosition(0, TEXT("x"), TEXT("b"), true);
    Open();
    SelectKey(HKEY_CURRENT_USER, scratch.Path());
    m_window.reset();
    DWORD root = 0;
    CString keyName;
    CString valueName;
    bool valueSelected = true;
    Settings().GetLastPosition(root, keyName, valueName, valueSelected);
    EXPECT_EQ(root, kRootCurrentUser);
    EXPECT_EQ(keyName, scratch.Path());
    EXPECT_FALSE(valueSelected);
    Settings().SetLastPosition(0, TEXT(""), TEXT(""), false);
}

// The edit commands as a user gives them, through the window to the edit
// rules (whose every rule the native tests hold): keys picked in the tree,
// values in the list, questions answered, the cut look shown, the pasted key
// selected, the target's children loaded afresh after a failed paste, and the
// focus given back.
TEST_F(MainWndTest, EditCommandsReachTheEditRulesAndThePanesFollow)
{
    CScratchKey scratch(TEXT("Edits"));
    m_faults.FailOpen(TEXT("Settings"));
    WriteTestValue(scratch.Handle(), W("Foo"), W("Abc"), REG_DWORD, Bytes({1, 0, 0, 0}));
    WriteTestValue(scratch.Handle(), W("Bar"), W("Abc"), REG_DWORD, Bytes({9, 0, 0, 0}));
    ASSERT_TRUE(CShdRegKey(true).Create(scratch.Handle(), W("Foo\\Sub"), nullptr));
    std::vector<std::string> messages;
    CScopedMessageAnswerer answerer([&](HWND owner, LPCWSTR text, UINT) {
        EXPECT_EQ(owner, m_hwnd);
        messages.push_back(ToUtf8(text));
        return IDNO;
    });
    Open();
    auto item = [&](const char* path) {
        return Tree().FindItem(HKEY_CURRENT_USER, ChildKeyPath(scratch.Path(), W(path)));
    };
    const std::map<std::string, UINT> commands = {{"key-cut", IDM_KEY_CUT},     {"key-copy", IDM_KEY_COPY},
                                                  {"paste", IDM_KEY_PASTE_CONTEXT}, {"value-copy", IDM_VALUE_COPY},
                                                  {"value-paste", IDM_VALUE_PASTE}};
    for (const std::string step : {"key Foo", "key-cut", "cut-look Foo", "key Bar", "paste", "selected Bar\\Foo",
                                   "value Abc", "value-copy", "key Bar", "value-paste", "key Bar\\Foo", "key-copy",
                                   "key Bar\\Foo\\Sub", "key Bar", "fail-write Abc", "paste", "collapsed Bar\\Foo"}) {
        SCOPED_TRACE(step);
        const size_t space = step.find(' ');
        const std::string verb = step.substr(0, space);
        const std::string arg = space == std::string::npos ? "" : step.substr(space + 1);
        const HWND pane = GetFocus();
        if (verb == "key") {
            SetFocus(m_tree);
            EXPECT_TRUE(Tree().NavigateTo(HKEY_CURRENT_USER, ChildKeyPath(scratch.Path(), W(arg.c_str()))));
        } else if (verb == "value") {
            SetFocus(m_list);
            EXPECT_TRUE(m_window->SelectValueByName(W(arg.c_str())));
        } else if (verb == "selected") {
            EXPECT_EQ(Selection(scratch.Path() + L"\\"), "HKCU\\" + arg);
        } else if (verb == "fail-write") {
            m_faults.FailValueWrite(W(arg.c_str()));
        } else if (verb == "cut-look" || verb == "collapsed") {
            const UINT state = verb == "cut-look" ? TVIS_CUT : TVIS_EXPANDED;
            EXPECT_EQ(TreeView_GetItemState(m_tree, item(arg.c_str()), state) & state, verb == "cut-look" ? state : 0);
        } else {
            Command(commands.at(verb));
            EXPECT_TRUE(IsWindowEnabled(m_hwnd));
            EXPECT_EQ(GetFocus(), pane) << "the focus goes back";
        }
        PumpMessages();
    }
    m_window.reset();
    m_faults.Clear();
    EXPECT_EQ(messages, (Messages{"Value with this name already exists. Do you want to overwrite existing value?",
                                  "Unable to copy registry key."}));
    EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, scratch.Path()),
              ".\nBar\n  \"Abc\" 4: 09 00 00 00\nBar\\Foo\n  \"Abc\" 4: 01 00 00 00\nBar\\Foo\\Sub\n");
}

}  // namespace
