#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editors/HexEditCtrl_win.h"
#include "framework/WindowHelpers_win.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"

namespace {

// Not a command: a tap on the selected value.
const UINT kTap = 0;

// The value editor opened by the main window's commands on a key of the
// test's own. The settings stay away from the registry (their key cannot be
// opened), so that the last position can open the window at the key.
class EditValueTest : public MainWndTest {
protected:
    EditValueTest() : m_scratch(L"EditValue")
    {
        m_faults.FailOpen(L"Settings");
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), L"s", REG_SZ, Utf16Bytes(W("old"), true));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), L"d", REG_DWORD, Bytes({7, 0, 0, 0}));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path(), L"short", REG_DWORD, Bytes({1, 2, 3}));
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path() + L"\\Sub", L"b", REG_BINARY, {});
    }
    ~EditValueTest() override { Settings().SetLastPosition(0, L"", L"", false); }

    // The main window at the key with the value selected (null: none),
    // once the last one has saved its own position.
    void OpenAt(LPCWSTR value, LPCWSTR subkey = L"")
    {
        m_window.reset();
        const CString path = *subkey != 0 ? m_scratch.Path() + L"\\" + subkey : m_scratch.Path();
        Settings().SetSavePosition(true);
        Settings().SetLastPosition(kRootCurrentUser, path, value != nullptr ? value : L"", value != nullptr);
        Open();
    }

    // Runs the main window's command (or kTap, as the pointer makes it) with
    // the steps inside the editor; false when no editor opened.
    bool Run(UINT command, bool newValue, std::vector<std::function<void(HWND)>> steps)
    {
        RECT row = {LVIR_LABEL, 0, 0, 0};
        SendMessageW(m_list, LVM_GETITEMRECT, ListView_GetNextItem(m_list, -1, LVNI_SELECTED),
                     reinterpret_cast<LPARAM>(&row));
        const LPARAM point = MAKELPARAM((row.left + row.right) / 2, (row.top + row.bottom) / 2);
        return RunDialog(command, newValue ? L"New Value" : L"Edit Value", std::move(steps), [&] {
            if (command != kTap)
                return Command(command);
            PostMessageW(m_list, WM_LBUTTONDOWN, MK_LBUTTON, point);
            PostMessageW(m_list, WM_LBUTTONUP, 0, point);
            PumpMessages();
        });
    }
    std::string Dump() const { return DumpTree(HKEY_CURRENT_USER, m_scratch.Path()); }

    CScratchKey m_scratch;
};

// Each command opens the editor that fits. OK writes exactly the bytes typed
// and shows the list again with the value selected; or it says why not, in
// its own words, keeps what was typed and writes nothing.
TEST_F(EditValueTest, EveryCommandWritesTheBytesTypedOrSaysWhyNot)
{
    const struct {
        UINT command;
        LPCWSTR selected;
        LPCWSTR name;
        int field;
        LPCWSTR typed;
        int click;
        const char* outcome;
    } cases[] = {
        {IDM_VALUE_EDIT, L"s", L"s", IDC_VALUE_STRING, L"new", IDOK, "\"s\" 1: 6e 00 65 00 77 00 00 00"},
        {IDM_VALUE_EDIT, L"d", L"d", IDC_VALUE_DWORD, L"4294967295", IDOK, "\"d\" 4: ff ff ff ff"},
        {kTap, L"d", L"d", IDC_VALUE_DWORD, L"0", IDOK, "\"d\" 4: 00 00 00 00"},
        {IDM_NEW_STRING, nullptr, L"n1", IDC_VALUE_STRING, L"a", IDOK, "\"n1\" 1: 61 00 00 00"},
        {IDM_NEW_EXPAND_STRING, nullptr, L"n2", IDC_VALUE_STRING, L"%a%", IDOK, "\"n2\" 2: 25 00 61 00 25 00 00 00"},
        {IDM_NEW_DWORD, nullptr, L"n3", IDC_VALUE_DWORD, L"258", IDOK, "\"n3\" 4: 02 01 00 00"},
        {IDM_NEW_MULTI_STRING, nullptr, L"n4", IDC_VALUE_MULTI_STRING, L"a\r\n\r\nb", IDOK,
         "\"n4\" 7: 61 00 00 00 00 00 62 00 00 00 00 00"},
        {IDM_NEW_BINARY, nullptr, L"n5", IDC_HEX_EDIT, L"0a0B", IDOK, "\"n5\" 3: 0a 0b"},
        {IDM_NEW_CUSTOM, nullptr, L"n6", IDC_CUSTOM_TYPE, L"4", IDOK, "\"n6\" 4:"},
        {IDM_VALUE_EDIT_BINARY, L"s", L"s", IDC_HEX_EDIT, L"41", IDOK, "\"s\" 1: 41 6e 00 65 00 77 00 00 00"},
        {IDM_VALUE_EDIT, L"d", L"d", IDC_VALUE_DWORD, L"abc", IDOK, "Entered value is invalid"},
        {IDM_VALUE_EDIT, L"d", L"d", IDC_VALUE_DWORD, L"abc", IDC_BASE_HEX, "Entered value is invalid"},
        {IDM_NEW_CUSTOM, nullptr, L"n", IDC_CUSTOM_TYPE, L"10000", IDOK, "Entered value is invalid"},
        {IDM_NEW_STRING, nullptr, L"S", IDC_VALUE_STRING, L"x", IDOK, "Value with this name already exists"},
        {IDM_NEW_STRING, nullptr, L"fails", IDC_VALUE_STRING, L"x", IDOK, "Unable to write value"},
        {IDM_NEW_BINARY, nullptr, L"n", IDC_VALUE_NAME, L"n", IDC_HEX_EDIT, "Invalid data"},
    };
    m_faults.FailValueWrite(L"fails");
    for (const auto& test : cases) {
        SCOPED_TRACE(test.outcome);
        m_messages.clear();
        const std::string before = Dump();
        OpenAt(test.selected);
        bool stayedOpen = false;
        const auto type = [&](HWND dialog) {
            const HWND field = GetDlgItem(dialog, test.field);
            if (test.selected == nullptr)
                SetDlgItemTextW(dialog, IDC_VALUE_NAME, test.name);
            for (LPCWSTR c = test.typed; test.field == IDC_HEX_EDIT && *c != 0; ++c)
                SendMessageW(field, WM_CHAR, *c, 0);
            if (test.field != IDC_HEX_EDIT)
                SetWindowTextW(field, test.typed);
            if (test.click == IDC_BASE_HEX) {
                SendDlgItemMessageW(dialog, test.click, BM_CLICK, 0, 0);
            } else if (test.click == IDC_HEX_EDIT) {
                PutClipboardText(dialog, L"no hex");
                SendDlgItemMessageW(dialog, IDC_HEX_EDIT, WM_COMMAND, CHexEditCtrl::kCmdPasteHex, 0);
            } else {
                SendMessageW(dialog, WM_COMMAND, IDOK, 0);
            }
        };
        const auto stillOpen = [&](HWND dialog) {
            stayedOpen = true;
            EXPECT_EQ(ItemText(dialog, IDC_VALUE_NAME), test.name);
            EXPECT_EQ(ItemText(dialog, test.field), test.typed);
            EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_BASE_HEX), 0u);
            EXPECT_EQ(GetFocus() == GetDlgItem(dialog, IDC_HEX_EDIT), test.click == IDC_HEX_EDIT);
        };
        EXPECT_TRUE(Run(test.command, test.selected == nullptr, {type, stillOpen}));
        if (stayedOpen) {
            EXPECT_EQ(Dump(), before);
            EXPECT_EQ(m_messages, std::vector<std::string>{test.outcome});
            EXPECT_EQ(m_lastFlags, 0x10030u);
        } else {
            EXPECT_NE(Dump().find(std::string("  ") + test.outcome + "\n"), std::string::npos) << Dump();
            CString selected;
            EXPECT_TRUE(m_window->GetSelectedValue(selected) && selected == test.name);
            EXPECT_TRUE(m_messages.empty());
        }
        m_window.reset();
    }
}

// A value that cannot be edited closes the editor before it shows; a new
// value under a key deleted meanwhile makes the key again.
TEST_F(EditValueTest, ValuesGoneOrMisshapenCloseAtOnceAndGoneKeysComeBack)
{
    OpenAt(L"short");
    EXPECT_FALSE(Run(IDM_VALUE_EDIT, false, {})) << "three bytes are no DWORD";
    EXPECT_TRUE(Run(IDM_VALUE_EDIT_BINARY, false, {}));
    CShdRegKey key;
    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, m_scratch.Path()) && key.DeleteValue(L"short"));
    key.Close();
    EXPECT_FALSE(Run(IDM_VALUE_EDIT, false, {})) << "the value was deleted meanwhile";

    OpenAt(nullptr, L"Sub");
    ASSERT_TRUE(DeleteTreeForTests(HKEY_CURRENT_USER, m_scratch.Path() + L"\\Sub"));
    EXPECT_TRUE(Run(IDM_NEW_DWORD, true, {[](HWND dialog) {
                        SetDlgItemTextW(dialog, IDC_VALUE_NAME, L"back");
                        SetDlgItemTextW(dialog, IDC_VALUE_DWORD, L"1");
                        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
                    }}));
    EXPECT_EQ(Dump(), ".\n  \"d\" 4: 07 00 00 00\n  \"s\" 1: 6f 00 6c 00 64 00 00 00\nSub\n  \"back\" 4: 01 00 00 00\n");
    EXPECT_TRUE(m_messages.empty());
}

}  // namespace
