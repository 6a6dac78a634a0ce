#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "app/MainWnd_win.h"
#include "framework/MessageBox.h"
#include "framework/Utf8.h"
#include "resources/resource.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport.h"

namespace {

using PageStep = std::function<void(HWND page)>;

// "1" for each ticked box (or, with `enabled`, each enabled control).
std::string States(HWND page, std::initializer_list<int> ids, bool enabled = false)
{
    std::string text;
    for (const int id : ids)
        text += (enabled ? IsWindowEnabled(GetDlgItem(page, id)) : IsDlgButtonChecked(page, id)) ? "1" : "0";
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

// The options sheet of a main window, on the test prefix's real registry;
// the program's key and the .reg association are put back afterwards.
class Options : public testing::Test {
protected:
    void SetUp() override
    {
        PumpMessages();  // the quit message that the last main window left
        ASSERT_TRUE(m_window.Create(TestInstance()));
    }

    // "Options...": a step on the General page, one on the Import page, then
    // soft key 0 (Done) or 1 (Cancel).
    void RunSheet(const PageStep& general, const PageStep& import, int softKey)
    {
        const auto page = [] { return PropSheet_GetCurrentPageHwnd(FindWindowW(nullptr, L"Options")); };
        CModalScript script({[&] {
                                 general(page());
                                 PropSheet_SetCurSel(GetParent(page()), nullptr, 1);
                             },
                             [&] {
                                 import(page());
                                 TapSoftKey(GetParent(page()), softKey, 2);
                             }});
        SendMessageW(m_window.GetHwnd(), WM_COMMAND, IDM_OPTIONS, 0);
        EXPECT_TRUE(script.Finished());
    }

    CSavedKey m_programKey{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick"), TEXT("SavedProgramKey")};
    CSavedKey m_extension{HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension")};
    CSavedKey m_class{HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass")};
    CMainWnd m_window;
};

TEST_F(Options, PagesShowTheSettingsAndOnlyDoneStoresThem)
{
    for (const int softKey : {1, 0}) {
        Settings().SetSavePosition(false);
        Settings().SetShowSearchToolbar(true);
        Settings().SetDoNotCheckImportHeader(true);
        const auto flip = [](std::initializer_list<int> ids, const char* shown) {
            return [=](HWND page) {
                EXPECT_EQ(States(page, ids), shown);
                for (const int id : ids)
                    SendDlgItemMessageW(page, id, BM_CLICK, 0, 0);
            };
        };
        RunSheet(flip({IDC_SAVE_POSITION, IDC_SHOW_SEARCH_TOOLBAR}, "01"), flip({IDC_IMPORT_NO_HEADER_CHECK}, "1"),
                 softKey);
        EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
                  softKey == 0 ? "[DoNotCheckImportHeader]=#0\n[SavePosition]=#1\n[ShowSearchToolbar]=#0\n" : "");
    }
    Settings().SetShowSearchToolbar(true);
}

// The buttons act at once, Cancel or not. Remove is enabled only while .reg
// files are ours, so its refusals need the registry changed behind the sheet.
TEST_F(Options, InstallAndRemoveActOrSayWhyNot)
{
    const std::string noPath = "Internal error. Required registry settings not found.|10010";
    const std::string ask =
        "This file type is already associated with another program. Do you want to proceed anyway?|10024";
    const struct {
        const char* shown;
        const char* pressed;
        int button;
        int answer;
        std::string message;
        const char* buttons;  // enabled afterwards: Install, Remove
    } cases[] = {
        {"no InstallDir", "no InstallDir", IDC_ASSOCIATION_INSTALL, 0, noPath, "10"},
        {"ours", "no InstallDir", IDC_ASSOCIATION_REMOVE, 0, noPath, "01"},
        {"other", "other", IDC_ASSOCIATION_INSTALL, IDNO, ask, "10"},
        {"other", "other", IDC_ASSOCIATION_INSTALL, IDYES, ask, "01"},
        {"no command", "no command", IDC_ASSOCIATION_INSTALL, 0, "", "01"},
        {"ours", "other", IDC_ASSOCIATION_REMOVE, 0, "Quenda is not associated with reg files.|10030", "01"},
        {"ours", "ours", IDC_ASSOCIATION_REMOVE, 0, "", "10"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.shown) + " " + c.pressed + " " + std::to_string(c.answer));
        SetAssociation(c.shown);
        std::string message;
        CScopedMessageAnswerer answerer([&](HWND, LPCWSTR text, UINT flags) {
            message = ToUtf8(CString::Formatted(L"%s|%x", text, flags));
            return c.answer;
        });
        RunSheet([](HWND) {},
                 [&](HWND page) {
                     SetAssociation(c.pressed);
                     ASSERT_TRUE(IsWindowEnabled(GetDlgItem(page, c.button)));
                     SendDlgItemMessageW(page, c.button, BM_CLICK, 0, 0);
                     EXPECT_EQ(message, c.message);
                     EXPECT_EQ(States(page, {IDC_ASSOCIATION_INSTALL, IDC_ASSOCIATION_REMOVE}, true), c.buttons);
                     EXPECT_TRUE(IsWindowEnabled(GetFocus())) << "the focus left the button that went grey";
                 },
                 1);
    }
}

TEST_F(Options, ExitKeepsOptionsChangedInTheRegistryMeanwhile)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kSettingsKeyPath, W("ShowSearchToolbar"), REG_DWORD, Bytes({0, 0, 0, 0}));
    DestroyWindow(m_window.GetHwnd());
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
              "[LastPositionKeyName]=\n[LastPositionRoot]=#0\n[LastPositionValueName]=\n"
              "[LastPositionValueSelected]=#0\n[ShowSearchToolbar]=#0\n");
}

}  // namespace
