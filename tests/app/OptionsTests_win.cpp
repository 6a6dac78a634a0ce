#include "resources/resource.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/app/MainWndTestSupport_win.h"
#include "tests/settings/SettingsTestSupport.h"

namespace {

// "1" for each ticked box (with `enabled`: each enabled control); clicks
// each afterwards when asked.
std::string States(HWND page, std::initializer_list<int> ids, bool enabled, bool click)
{
    std::string text;
    for (const int id : ids) {
        text += (enabled ? IsWindowEnabled(GetDlgItem(page, id)) : IsDlgButtonChecked(page, id)) ? "1" : "0";
        if (click)
            SendDlgItemMessageW(page, id, BM_CLICK, 0, 0);
    }
    return text;
}

// Ours (installed from "C:\Quenda"), then changed to the state named.
void SetAssociation(const std::string& state)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, W("InstallDir"), REG_SZ, Utf16Bytes(W("C:\\Quenda"), true));
    InstallRegFileAssociation();
    if (state == "no InstallDir")
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kProgramKeyPath);
    else if (state == "no command")
        DeleteTreeForTests(HKEY_CLASSES_ROOT, TEXT("regfile\\Shell"));
    else if (state == "other")
        WriteTestValue(HKEY_CLASSES_ROOT, W("regfile\\Shell\\Open\\Command"), W(""), REG_SZ,
                       Utf16Bytes(W("other.exe \"%1\""), true));
}

// "Options..." of a main window on the test prefix's real registry (the
// .reg association is put back afterwards, as the fixture puts back the
// program's key). Each case opens the sheet in one state, flips every box,
// may find the registry changed behind it (Remove is enabled only while .reg
// files are ours), presses a button, answers any question and leaves by a
// soft key.
TEST_F(MainWndTest, OptionsSheetShowsAndStoresTheSettingsAndKeepsTheAssociation)
{
    CSavedKey extension(HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension"));
    CSavedKey regClass(HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass"));
    Open();
    const std::string noPath = "Internal error. Required registry settings not found.|10010";
    const std::string ask =
        "This file type is already associated with another program. Do you want to proceed anyway?|10024";
    const int install = IDC_ASSOCIATION_INSTALL;
    const int remove = IDC_ASSOCIATION_REMOVE;
    const struct {
        const char* shown;
        const char* pressed;
        int button;
        int answer;
        std::string message;
        const char* buttons;  // enabled afterwards: Install, Remove
        int softKey;          // 0 Done, 1 Cancel
    } cases[] = {
        {"no InstallDir", "no InstallDir", install, 0, noPath, "10", 1},
        {"ours", "no InstallDir", remove, 0, noPath, "01", 1},
        {"other", "other", install, IDNO, ask, "10", 0},
        {"other", "other", install, IDYES, ask, "01", 1},
        {"no command", "no command", install, 0, "", "01", 1},
        {"ours", "other", remove, 0, "Quenda is not associated with reg files.|10030", "01", 1},
        {"ours", "ours", remove, 0, "", "10", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.shown) + " " + c.pressed + " " + std::to_string(c.answer));
        SetAssociation(c.shown);
        Settings().SetSavePosition(false);
        Settings().SetShowSearchToolbar(true);
        Settings().SetDoNotCheckImportHeader(true);
        std::string message;
        CScopedMessageAnswerer answerer([&](HWND, LPCWSTR text, UINT flags) {
            message = ToUtf8(CString::Formatted(L"%s|%x", text, flags));
            return c.answer;
        });
        const auto page = [] { return PropSheet_GetCurrentPageHwnd(FindWindowW(nullptr, L"Options")); };
        CModalScript script({[&] {
                                 EXPECT_EQ(States(page(), {IDC_SAVE_POSITION, IDC_SHOW_SEARCH_TOOLBAR}, false, true), "01");
                                 PropSheet_SetCurSel(GetParent(page()), nullptr, 1);
                             },
                             [&] {
                                 EXPECT_EQ(States(page(), {IDC_IMPORT_NO_HEADER_CHECK}, false, true), "1");
                                 SetAssociation(c.pressed);
                                 ASSERT_TRUE(IsWindowEnabled(GetDlgItem(page(), c.button)));
                                 SendDlgItemMessageW(page(), c.button, BM_CLICK, 0, 0);
                                 EXPECT_EQ(message, c.message);
                                 EXPECT_EQ(States(page(), {install, remove}, true, false), c.buttons);
                                 EXPECT_TRUE(IsWindowEnabled(GetFocus())) << "the focus left a button gone grey";
                                 TapSoftKey(GetParent(page()), c.softKey, 2);
                             }});
        SendMessageW(m_hwnd, WM_COMMAND, IDM_OPTIONS, 0);
        EXPECT_TRUE(script.Finished());
        EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
                  c.softKey == 0 ? "[DoNotCheckImportHeader]=#0\n[SavePosition]=#1\n[ShowSearchToolbar]=#0\n" : "");
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kSettingsKeyPath);
    }

    // The options reach the registry only from the sheet: one changed there
    // while the program runs is still there after it has ended.
    Settings().SetSavePosition(true);
    WriteTestValue(HKEY_LOCAL_MACHINE, kSettingsKeyPath, W("ShowSearchToolbar"), REG_DWORD, Bytes({1, 0, 0, 0}));
    m_window.reset();
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
              "[LastPositionKeyName]=\n[LastPositionRoot]=#0\n[LastPositionValueName]=\n"
              "[LastPositionValueSelected]=#0\n[ShowSearchToolbar]=#1\n");
    Settings().SetShowSearchToolbar(true);
}

}  // namespace
