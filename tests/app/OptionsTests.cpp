#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include <windows.h>

#include "app/MainWnd_win.h"
#include "framework/MessageBox.h"
#include "framework/Utf8.h"
#include "registry/RegKey.h"
#include "resources/resource.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"
#include "tests/ui/UiTestSupport.h"

namespace {

// What the association looks like after Install with the test's InstallDir.
const char kOurs[] = "[]=regfile\n--\n[]=Registry File\n"
                     "\\DefaultIcon[]=C:\\Quenda Test\\Quenda.exe,-122\n"
                     "\\Shell\\Open\\Command[]=\"C:\\Quenda Test\\Quenda.exe\" \"%1\"\n";
const char kGone[] = "--\n";

// The states the association can be found in.
enum class EState { Ours, OtherProgram, NoOpenCommand, NoInstallDir };

void SetDefault(const char* path, const char* text)
{
    WriteTestValue(HKEY_CLASSES_ROOT, W(path), W(""), REG_SZ, Utf16Bytes(W(text), true));
}

void SetState(EState state)
{
    if (state == EState::NoInstallDir) {
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kProgramKeyPath);
        return;
    }
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, W("InstallDir"), REG_SZ,
                   Utf16Bytes(W("C:\\Quenda Test"), true));
    DeleteTreeForTests(HKEY_CLASSES_ROOT, kRegFileExtension);
    DeleteTreeForTests(HKEY_CLASSES_ROOT, kRegFileClass);
    if (state == EState::Ours) {
        InstallRegFileAssociation();
        return;
    }
    SetDefault(".reg", "regfile");
    SetDefault("regfile", "Registry File");
    if (state == EState::OtherProgram) {
        SetDefault("regfile\\Shell\\Open\\Command", "other.exe \"%1\"");
        SetDefault("regfile\\Shell\\Print\\Command", "other.exe /p \"%1\"");
    }
}

std::string Association()
{
    return DescribeTree(HKEY_CLASSES_ROOT, kRegFileExtension) + "--\n" + DescribeTree(HKEY_CLASSES_ROOT, kRegFileClass);
}

// "1" per ticked box, "0" per clear one (for buttons: enabled, disabled).
std::string States(HWND page, std::initializer_list<int> ids, bool enabled)
{
    std::string text;
    for (const int id : ids) {
        const bool on = enabled ? IsWindowEnabled(GetDlgItem(page, id)) : IsDlgButtonChecked(page, id) == BST_CHECKED;
        text += on ? "1" : "0";
    }
    return text;
}

// The options sheet of a main window, on the real registry of the test
// prefix; the program's key and the .reg association are put back after.
class Options : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_window.Create(TestInstance()));
        PumpMessages();
    }
    void TearDown() override
    {
        Settings().SetSavePosition(true);
        Settings().SetShowSearchToolbar(true);
        Settings().SetDoNotCheckImportHeader(false);
    }

    // Opens "Options..." and runs the steps inside the sheet, each given the
    // sheet and its current page.
    void RunSheet(std::vector<std::function<void(HWND sheet, HWND page)>> steps)
    {
        std::vector<std::function<void()>> script;
        for (auto& step : steps) {
            script.push_back([this, step] {
                const HWND sheet = FindWindowW(nullptr, L"Options");
                ASSERT_NE(sheet, nullptr);
                EXPECT_EQ(GetWindow(sheet, GW_OWNER), m_window.GetHwnd());
                step(sheet, reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0)));
            });
        }
        CModalScript modal(script);
        SendMessageW(m_window.GetHwnd(), WM_COMMAND, IDM_OPTIONS, 0);
        EXPECT_TRUE(modal.Finished());
        EXPECT_EQ(FindWindowW(nullptr, L"Options"), nullptr);
    }

    CSavedKey m_programKey{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick"), TEXT("SavedProgramKey")};
    CSavedKey m_extension{HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension")};
    CSavedKey m_class{HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass")};
    CMainWnd m_window;
};

TEST_F(Options, PagesShowTheSettingsAndOnlyDoneStoresThem)
{
    const struct {
        int softKey;
        const char* stored;
    } cases[] = {
        {1, ""},
        {0, "[DoNotCheckImportHeader]=#0\n[SavePosition]=#1\n[ShowSearchToolbar]=#0\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.softKey);
        Settings().SetSavePosition(false);
        Settings().SetShowSearchToolbar(true);
        Settings().SetDoNotCheckImportHeader(true);
        RunSheet({
            [](HWND sheet, HWND page) {
                EXPECT_EQ(States(page, {IDC_SAVE_POSITION, IDC_SHOW_SEARCH_TOOLBAR}, false), "01");
                SendDlgItemMessageW(page, IDC_SAVE_POSITION, BM_CLICK, 0, 0);
                SendDlgItemMessageW(page, IDC_SHOW_SEARCH_TOOLBAR, BM_CLICK, 0, 0);
                SendMessageW(sheet, PSM_SETCURSEL, 1, 0);
            },
            [&c](HWND sheet, HWND page) {
                EXPECT_EQ(States(page, {IDC_IMPORT_NO_HEADER_CHECK}, false), "1");
                SendDlgItemMessageW(page, IDC_IMPORT_NO_HEADER_CHECK, BM_CLICK, 0, 0);
                TapSoftKey(sheet, c.softKey, 2);
            },
        });
        EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath), c.stored);
        EXPECT_EQ(Settings().GetSavePosition(), c.softKey == 0);
    }
}

// Each case opens the sheet in one state, may find the registry changed
// behind it before the button is pressed, and answers any question.
TEST_F(Options, InstallAndRemoveActAtOnceOrExplainWhyNot)
{
    const std::string internalError = "Internal error. Required registry settings not found.|10010";
    const std::string question =
        "This file type is already associated with another program. Do you want to proceed anyway?|10024";
    const struct {
        EState shown;
        EState pressed;
        int button;
        int answer;
        std::string message;
        const char* after;  // null: unchanged
        const char* buttons;
    } cases[] = {
        {EState::NoInstallDir, EState::NoInstallDir, IDC_ASSOCIATION_INSTALL, 0, internalError, nullptr, "10"},
        {EState::Ours, EState::NoInstallDir, IDC_ASSOCIATION_REMOVE, 0, internalError, nullptr, "01"},
        {EState::OtherProgram, EState::OtherProgram, IDC_ASSOCIATION_INSTALL, IDNO, question, nullptr, "10"},
        {EState::OtherProgram, EState::OtherProgram, IDC_ASSOCIATION_INSTALL, IDYES, question, kOurs, "01"},
        {EState::Ours, EState::OtherProgram, IDC_ASSOCIATION_REMOVE, 0,
         "Quenda is not associated with reg files.|10030", nullptr, "01"},
        {EState::NoOpenCommand, EState::NoOpenCommand, IDC_ASSOCIATION_INSTALL, 0, "", kOurs, "01"},
        {EState::Ours, EState::NoOpenCommand, IDC_ASSOCIATION_REMOVE, 0, "", kGone, "10"},
        {EState::Ours, EState::Ours, IDC_ASSOCIATION_REMOVE, 0, "", kGone, "10"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(c.shown) << " " << c.button << " " << c.answer);
        SetState(EState::Ours);
        SetState(c.shown);
        std::string message;
        std::string before;
        CScopedMessageAnswerer answerer([&](HWND, LPCWSTR text, UINT flags) {
            message = ToUtf8(CString(text)) + ToUtf8(CString::Formatted(L"|%x", flags));
            return c.answer;
        });
        RunSheet({
            [](HWND sheet, HWND) { SendMessageW(sheet, PSM_SETCURSEL, 1, 0); },
            [&](HWND sheet, HWND page) {
                SetState(c.pressed);
                before = Association();
                ASSERT_TRUE(IsWindowEnabled(GetDlgItem(page, c.button)));
                SendDlgItemMessageW(page, c.button, BM_CLICK, 0, 0);
                EXPECT_EQ(message, c.message);
                EXPECT_EQ(Association(), c.after != nullptr ? c.after : before);
                EXPECT_EQ(States(page, {IDC_ASSOCIATION_INSTALL, IDC_ASSOCIATION_REMOVE}, true), c.buttons);
                EXPECT_TRUE(IsWindowEnabled(GetFocus()));
                TapSoftKey(sheet, 1, 2);
            },
        });
        EXPECT_EQ(Association(), c.after != nullptr ? c.after : before) << "Cancel keeps what the button did";
    }
}

// The options reach the registry only from the sheet: one changed there
// while the program runs is still there after it has ended.
TEST_F(Options, ExitWritesOnlyTheLastPosition)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kSettingsKeyPath, W("ShowSearchToolbar"), REG_DWORD, Bytes({0, 0, 0, 0}));
    DestroyWindow(m_window.GetHwnd());
    PumpMessages();
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
              "[LastPositionKeyName]=\n[LastPositionRoot]=#0\n[LastPositionValueName]=\n"
              "[LastPositionValueSelected]=#0\n[ShowSearchToolbar]=#0\n");
}

}  // namespace
