#include <gtest/gtest.h>

#include <string>

#include <windows.h>

#include "registry/RegKey.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"
#include "tests/wine/QuendaDriver_win.h"

namespace {

const wchar_t kInvalid[] = L"Invalid command line arguments.";
const wchar_t kInteractiveClass[] = L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";

// An export writes the version 5 file and says so; help and an export of a
// missing key only show their message and write nothing. The parsing itself
// is covered by the runner's own tests.
TEST(CommandLine, ExportsWriteTheVersion5FileOrOnlySayWhyNot)
{
    CScratchKey scratch(L"CmdLineExport");
    CShdRegKey key;
    ASSERT_TRUE(key.Open(scratch.Handle(), L"") && key.WriteString(L"Greeting", L"hello"));
    const CTestFile file("cmdline-out.reg");
    const std::wstring exportTo = L"/e cmdline-out.reg HKCU\\" + std::wstring(scratch.Path().GetString());
    const struct {
        std::wstring arguments;
        std::wstring message;
    } cases[] = {
        {L"/?", L"Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\""},
        {exportTo + L"\\Missing", kInvalid},
        {exportTo, L"Registry export finished successfully."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.arguments.begin(), c.arguments.end()));
        CQuendaProcess quenda;
        ASSERT_TRUE(quenda.Start(c.arguments));
        EXPECT_EQ(quenda.AnswerNextMessage(IDOK), c.message);
        EXPECT_EQ(quenda.WaitForExit(), 0);
        EXPECT_EQ(file.Exists(), c.arguments == exportTo);
    }
    const std::string text = file.Bytes();
    EXPECT_EQ(text.rfind(Utf16FileBytes("Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\", true), 0), 0u);
    EXPECT_NE(text.find(Utf16FileBytes("\"Greeting\"=\"hello\"\n", true).substr(2)), std::string::npos);
}

TEST(CommandLine, FilesAreImportedOneByOneAfterAQuestion)
{
    CScratchKey scratch(L"CmdLineImport");
    const std::string key = "QUENDA4\r\n\r\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\CmdLineImport]\r\n";
    const CTestFile good("cmdline-good.reg");
    const CTestFile bad("cmdline-bad.reg");
    const CTestFile skipped("cmdline-skipped.reg");
    good.Write(key + "\"Imported\"=\"yes\"\r\n");
    bad.Write(key + "\"Broken\"=yes\r\n");
    skipped.Write(key + "\"Skipped\"=\"yes\"\r\n");

    CQuendaProcess quenda;
    ASSERT_TRUE(quenda.Start(L"cmdline-good.reg \"cmdline-skipped.reg\" cmdline-bad.reg"));
    EXPECT_EQ(quenda.AnswerNextMessage(IDYES), L"Do you want to import registry file \"cmdline-good.reg\"?");
    EXPECT_EQ(quenda.AnswerNextMessage(IDOK), L"Registry import finished successfully.");
    EXPECT_EQ(quenda.AnswerNextMessage(IDNO), L"Do you want to import registry file \"cmdline-skipped.reg\"?");
    EXPECT_EQ(quenda.AnswerNextMessage(IDYES), L"Do you want to import registry file \"cmdline-bad.reg\"?");
    EXPECT_EQ(quenda.AnswerNextMessage(IDOK),
              L"There were errors during importing registry file. Syntax error at line 4.");
    EXPECT_EQ(quenda.WaitForExit(), 0);

    CShdRegKey imported;
    ASSERT_TRUE(imported.Open(scratch.Handle(), L""));
    EXPECT_EQ(imported.ReadStringOr(L"Imported", L"none"), CString(L"yes"));
    EXPECT_FALSE(imported.ValueExists(L"Skipped"));
}

TEST(CommandLine, OnlyInteractiveStartsAreKeptToOneInstance)
{
    // The window saves its last position as it closes.
    CSavedKey program(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Marrowick", L"SavedProgramKey");
    CQuendaProcess first;
    ASSERT_TRUE(first.Start(L""));
    const HWND window = first.WaitForWindow(kInteractiveClass);
    ASSERT_NE(window, nullptr);
    wchar_t caption[16] = {};
    GetWindowTextW(window, caption, 16);
    EXPECT_EQ(std::wstring(caption), L"Quenda");

    // A command-line run beside it takes the foreground with its message.
    CQuendaProcess help;
    ASSERT_TRUE(help.Start(L"/?"));
    const HWND usage = help.WaitForMessageBox();
    ASSERT_NE(usage, nullptr) << "a command-line run is not kept out";

    CQuendaProcess second;
    ASSERT_TRUE(second.Start(L"   "));
    EXPECT_EQ(second.WaitForExit(), 0);
    EXPECT_EQ(GetForegroundWindow(), window) << "the running instance comes forward";
    EXPECT_EQ(FindWindowExW(nullptr, window, kInteractiveClass, nullptr), nullptr) << "no second main window";

    CQuendaProcess::PressButton(usage, IDOK);
    EXPECT_EQ(help.WaitForExit(), 0);
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(first.WaitForExit(), 0);
}

// Installed from this Quenda.exe's folder, the association is one the shell
// follows: opening a .reg file starts Quenda with it. Removed, it is gone.
TEST(CommandLine, TheShellOpensRegFilesWithQuendaOnlyWhileAssociated)
{
    CSavedKey program(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Marrowick", L"SavedProgramKey");
    CSavedKey extension(HKEY_CLASSES_ROOT, kRegFileExtension, L"SavedExtension");
    CSavedKey regClass(HKEY_CLASSES_ROOT, kRegFileClass, L"SavedClass");
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, L"InstallDir", REG_SZ,
                   Utf16Bytes(CQuendaProcess::ExeFolder().c_str(), true));
    const CTestFile file("cmdline-open.reg");
    file.Write("QUENDA4\r\n");
    ASSERT_TRUE(InstallRegFileAssociation());
    CQuendaProcess opened;
    ASSERT_TRUE(opened.Open(L"cmdline-open.reg"));
    const std::wstring question = opened.AnswerNextMessage(IDNO);
    EXPECT_EQ(question.substr(0, 37), L"Do you want to import registry file \"") << question.c_str();
    EXPECT_EQ(question.substr(question.rfind(L'\\') + 1), L"cmdline-open.reg\"?");
    EXPECT_EQ(opened.WaitForExit(), 0);

    ASSERT_TRUE(RemoveRegFileAssociation());
    CQuendaProcess notOpened;
    EXPECT_FALSE(notOpened.Open(L"cmdline-open.reg"));
}

}  // namespace
