#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include "app/MainWnd_win.h"
#include "framework/DpiScale.h"
#include "framework/MessageBox.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"
#include "settings/Settings.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport.h"

namespace {

using Steps = std::vector<std::function<void()>>;

// Not a command: a tap on the selected value.
const UINT kTap = 0;

struct SShown {
    CString text;
    UINT flags;
};

// The value editor opened by the main window's commands on a key of the
// test's own, with the messages answered and recorded. The settings stay
// away from the registry (their key cannot be opened), so that the last
// position can open the window at the key.
class EditValueTest : public testing::Test {
protected:
    EditValueTest()
        : m_scoped(m_faults),
          m_scratch(TEXT("EditValue")),
          m_answerer([this](HWND, LPCWSTR text, UINT flags) {
              m_shown.push_back({text, flags});
              return IDOK;
          })
    {
        m_faults.FailOpen(TEXT("Settings"));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), TEXT("s"), REG_SZ, Utf16Bytes(W("old"), true));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), TEXT("d"), REG_DWORD, Bytes({7, 0, 0, 0}));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), TEXT("short"), REG_DWORD, Bytes({1, 2, 3}));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\Sub"), TEXT("m"), REG_MULTI_SZ,
                       Bytes({'x', 0, 0, 0, 'y', 0, 0, 0, 0, 0}));
    }
    ~EditValueTest() override { Settings().SetLastPosition(0, TEXT(""), TEXT(""), false); }

    // The main window at the key (below the scratch key, or itself) with the
    // value `value` selected (null: none).
    void Open(LPCWSTR subkey, LPCWSTR value)
    {
        CString path = m_scratch.Path();
        if (*subkey != 0)
            path += CString(TEXT("\\")) + subkey;
        Settings().SetSavePosition(true);
        Settings().SetLastPosition(kRootCurrentUser, path, value != nullptr ? value : TEXT(""), value != nullptr);
        ASSERT_TRUE(m_window.Create(TestInstance()));
        PumpMessages();
    }

    // A tap on the selected row of the value list, as the pointer makes it.
    void TapSelectedValue()
    {
        const HWND list = GetDlgItem(m_window.GetHwnd(), CMainWnd::kListId);
        const int row = static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
        RECT item = {};
        item.left = LVIR_LABEL;
        SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        const LPARAM point = MAKELPARAM((item.left + item.right) / 2, (item.top + item.bottom) / 2);
        PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, point);
        PostMessageW(list, WM_LBUTTONUP, 0, point);
    }

    // Runs the main window's command (or kTap) with the steps inside the
    // editor. A last step cancels an editor still open, so that no test waits
    // for a dialog that a failure left on the screen. False when no editor
    // opened.
    bool Run(UINT command, Steps steps)
    {
        steps.push_back([this] {
            if (Dialog() != nullptr)
                SendMessageW(Dialog(), WM_COMMAND, IDCANCEL, 0);
        });
        CModalScript script(std::move(steps));
        if (command == kTap)
            TapSelectedValue();
        else
            SendMessageW(m_window.GetHwnd(), WM_COMMAND, command, 0);
        PumpMessages();
        return script.Finished();
    }

    static HWND Dialog()
    {
        const HWND edit = FindWindowW(L"#32770", L"Edit Value");
        return edit != nullptr ? edit : FindWindowW(L"#32770", L"New Value");
    }
    static HWND Item(int id) { return GetDlgItem(Dialog(), id); }
    static void Type(int id, const CString& text) { SetWindowTextW(Item(id), text); }
    static CString Text(int id) { return CShdWnd::GetWindowTextOr(Item(id), L""); }
    static void Ok() { SendMessageW(Dialog(), WM_COMMAND, IDOK, 0); }

    std::string Dump() const { return DumpTree(HKEY_CURRENT_USER, m_scratch.Path()); }
    // One value's line of the dump: "name" type: bytes.
    std::string ValueLine(const char* name) const
    {
        const std::string dump = Dump();
        const size_t at = dump.find(std::string("  \"") + name + "\" ");
        return at == std::string::npos ? "" : dump.substr(at + 2, dump.find('\n', at) - at - 2);
    }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CScopedMessageAnswerer m_answerer;
    std::vector<SShown> m_shown;
    CMainWnd m_window;
};

// Each command opens the editor that fits, and OK writes exactly the bytes
// typed and shows the list again with the value selected.
TEST_F(EditValueTest, EveryCommandWritesTheBytesTyped)
{
    const struct {
        UINT command;
        const char* selected;
        const char* name;
        int editor;
        const char* text;
        const char* written;
    } cases[] = {
        {IDM_VALUE_EDIT, "s", "s", IDC_VALUE_STRING, "new", "\"s\" 1: 6e 00 65 00 77 00 00 00"},
        {IDM_VALUE_EDIT, "d", "d", IDC_VALUE_DWORD, "4294967295", "\"d\" 4: ff ff ff ff"},
        {kTap, "d", "d", IDC_VALUE_DWORD, "0", "\"d\" 4: 00 00 00 00"},
        {IDM_NEW_STRING, nullptr, "n1", IDC_VALUE_STRING, "a", "\"n1\" 1: 61 00 00 00"},
        {IDM_NEW_EXPAND_STRING, nullptr, "n2", IDC_VALUE_STRING, "%a%", "\"n2\" 2: 25 00 61 00 25 00 00 00"},
        {IDM_NEW_DWORD, nullptr, "n3", IDC_VALUE_DWORD, "258", "\"n3\" 4: 02 01 00 00"},
        {IDM_NEW_MULTI_STRING, nullptr, "n4", IDC_VALUE_MULTI_STRING, "a\r\n\r\nb",
         "\"n4\" 7: 61 00 00 00 00 00 62 00 00 00 00 00"},
        {IDM_NEW_BINARY, nullptr, "n5", 0, "", "\"n5\" 3:"},
        {IDM_NEW_CUSTOM, nullptr, "n6", IDC_CUSTOM_TYPE, "1F", "\"n6\" 1f:"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.written);
        Open(TEXT(""), test.selected != nullptr ? W(test.selected).GetString() : nullptr);
        EXPECT_TRUE(Run(test.command, {[&] {
                            ASSERT_NE(Dialog(), nullptr);
                            if (test.selected == nullptr)
                                Type(IDC_VALUE_NAME, W(test.name));
                            if (test.editor != 0)
                                Type(test.editor, W(test.text));
                            Ok();
                        }}));
        EXPECT_EQ(Dialog(), nullptr);
        EXPECT_EQ(ValueLine(test.name), test.written);
        CString selected;
        EXPECT_TRUE(m_window.GetSelectedValue(selected));
        EXPECT_EQ(selected, W(test.name));
        DestroyWindow(m_window.GetHwnd());
    }
    EXPECT_TRUE(m_shown.empty());
}

// Each refusal says why in its own words and leaves the dialog open with
// what was typed; nothing reaches the registry.
TEST_F(EditValueTest, RefusedInputStaysTypedAndWritesNothing)
{
    const struct {
        UINT command;
        const char* selected;
        const char* name;
        int field;
        const char* typed;
        int click;
        const char* message;
    } cases[] = {
        {IDM_VALUE_EDIT, "d", "d", IDC_VALUE_DWORD, "abc", IDOK, "Entered value is invalid"},
        {IDM_VALUE_EDIT, "d", "d", IDC_VALUE_DWORD, "abc", IDC_BASE_HEX, "Entered value is invalid"},
        {IDM_NEW_DWORD, nullptr, "n", IDC_VALUE_DWORD, "-1", IDOK, "Entered value is invalid"},
        {IDM_NEW_CUSTOM, nullptr, "n", IDC_CUSTOM_TYPE, "10000", IDOK, "Entered value is invalid"},
        {IDM_NEW_STRING, nullptr, "S", IDC_VALUE_STRING, "x", IDOK, "Value with this name already exists"},
        {IDM_NEW_STRING, nullptr, "fails", IDC_VALUE_STRING, "x", IDOK, "Unable to write value"},
    };
    m_faults.FailValueWrite(TEXT("fails"));
    const std::string before = Dump();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.message);
        m_shown.clear();
        Open(TEXT(""), test.selected != nullptr ? W(test.selected).GetString() : nullptr);
        EXPECT_TRUE(Run(test.command, {[&] {
                            if (test.selected == nullptr)
                                Type(IDC_VALUE_NAME, W(test.name));
                            Type(test.field, W(test.typed));
                            if (test.click == IDOK)
                                Ok();
                            else
                                SendMessageW(Item(test.click), BM_CLICK, 0, 0);
                        },
                                       [&] {
                                           ASSERT_NE(Dialog(), nullptr);
                                           EXPECT_EQ(Text(IDC_VALUE_NAME), W(test.name));
                                           EXPECT_EQ(Text(test.field), W(test.typed));
                                           EXPECT_NE(IsDlgButtonChecked(Dialog(), IDC_BASE_HEX), BST_CHECKED);
                                       }}));
        ASSERT_EQ(m_shown.size(), 1u);
        EXPECT_EQ(m_shown[0].text, W(test.message));
        EXPECT_EQ(m_shown[0].flags, 0x10030u);
        DestroyWindow(m_window.GetHwnd());
    }
    EXPECT_EQ(Dump(), before);
}

// A value that cannot be edited closes the editor before it shows; a new
// value under a key deleted meanwhile makes the key again.
TEST_F(EditValueTest, ValuesGoneOrMisshapenCloseAtOnceAndGoneKeysComeBack)
{
    Open(TEXT(""), TEXT("short"));
    EXPECT_FALSE(Run(IDM_VALUE_EDIT, {[] {}})) << "three bytes are no DWORD";
    EXPECT_TRUE(Run(IDM_VALUE_EDIT_BINARY, {[] { EXPECT_NE(Dialog(), nullptr); }}));
    CShdRegKey key;
    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, m_scratch.Path()) && key.DeleteValue(TEXT("short")));
    key.Close();
    EXPECT_FALSE(Run(IDM_VALUE_EDIT, {[] {}})) << "the value was deleted meanwhile";
    DestroyWindow(m_window.GetHwnd());

    Open(TEXT("Sub"), nullptr);
    ASSERT_TRUE(DeleteTreeForTests(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\Sub")));
    EXPECT_TRUE(Run(IDM_NEW_DWORD, {[] {
                        Type(IDC_VALUE_NAME, L"back");
                        Type(IDC_VALUE_DWORD, L"1");
                        Ok();
                    }}));
    EXPECT_EQ(Dump(), ".\n  \"d\" 4: 07 00 00 00\n  \"s\" 1: 6f 00 6c 00 64 00 00 00\nSub\n  \"back\" 4: 01 00 00 00\n");
    EXPECT_TRUE(m_shown.empty());
}

// Pictures of every editor in both arrangements, to look at, when
// QUENDA_SHOTS names a folder (with its trailing separator) for them.
TEST_F(EditValueTest, PicturesOfEachEditorInBothArrangements)
{
    const char* folder = getenv("QUENDA_SHOTS");
    if (folder == nullptr)
        GTEST_SKIP() << "QUENDA_SHOTS is not set";
    const struct {
        const char* name;
        UINT command;
        const char* selected;
    } editors[] = {{"string", IDM_VALUE_EDIT, "s"}, {"dword", IDM_VALUE_EDIT, "d"},
                   {"multi", IDM_NEW_MULTI_STRING, nullptr}, {"binary", IDM_VALUE_EDIT_BINARY, "s"},
                   {"custom", IDM_NEW_CUSTOM, nullptr}};
    for (const auto& editor : editors) {
        for (const bool tall : {true, false}) {
            Open(TEXT(""), editor.selected != nullptr ? W(editor.selected).GetString() : nullptr);
            SetWindowPos(m_window.GetHwnd(), nullptr, 0, 0, ScaleX(tall ? 240 : 320), ScaleY(tall ? 320 : 200),
                         SWP_NOZORDER | SWP_NOMOVE);
            const std::string path = std::string(folder) + editor.name + (tall ? "-tall" : "-compact") + "-" +
                                     std::to_string(ScreenDpiY()) + ".bmp";
            EXPECT_TRUE(Run(editor.command, {[&] {
                                if (editor.selected == nullptr)
                                    Type(IDC_VALUE_NAME, L"Name");
                                if (editor.command == IDM_NEW_MULTI_STRING)
                                    Type(IDC_VALUE_MULTI_STRING, L"first\r\nsecond");
                            },
                                             [&] { EXPECT_TRUE(SaveWindowImage(m_window.GetHwnd(), path.c_str())); }}));
            DestroyWindow(m_window.GetHwnd());
        }
    }
}

}  // namespace
