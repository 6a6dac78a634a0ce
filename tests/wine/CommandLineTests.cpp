#include <gtest/gtest.h>

#include <string>

#include <windows.h>

#include "registry/RegKey.h"
#include "tests/support/ScratchKey.h"
#include "tests/ui/FileDialogTestSupport.h"
#include "tests/wine/QuendaDriver.h"

namespace {

const wchar_t kExportFile[] = L"cmdline-out.reg";
const wchar_t kInvalid[] = L"Invalid command line arguments.";
const wchar_t kInteractiveClass[] = L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";

bool FileExists(const wchar_t* path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

std::wstring Utf16(const std::string& bytes)
{
    return std::wstring(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
}

TEST(CommandLine, ExportWritesTheVersion5FileAndSaysSo)
{
    CScratchKey scratch(L"CmdLineExport");
    CShdRegKey key;
    ASSERT_TRUE(key.Open(scratch.Handle(), L"") && key.WriteString(L"Greeting", L"hello"));
    DeleteFileW(kExportFile);

    CQuendaProcess quenda;
    ASSERT_TRUE(quenda.Start(std::wstring(L"/e ") + kExportFile + L" HKCU\\" + scratch.Path().GetString()));
    EXPECT_EQ(quenda.AnswerNextMessage(IDOK), L"Registry export finished successfully.");
    EXPECT_EQ(quenda.WaitForExit(), 0);

    const std::wstring text = Utf16(FileBytes(kExportFile));
    EXPECT_EQ(text.rfind(L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\", 0), 0u) << "BOM";
    EXPECT_NE(text.find(L"\"Greeting\"=\"hello\"\r\n"), std::wstring::npos);
    DeleteFileW(kExportFile);
}

// Runs that only show a message: help, and exports with bad arguments,
// which write nothing.
TEST(CommandLine, HelpAndBadExportArgumentsOnlyShowTheirMessage)
{
    CScratchKey scratch(L"CmdLineBadExport");
    const std::wstring exportTo = std::wstring(L"/e ") + kExportFile + L" ";
    const std::wstring key = std::wstring(L"HKCU\\") + scratch.Path().GetString();
    const struct {
        std::wstring arguments;
        std::wstring message;
    } cases[] = {
        {L"/?", L"Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\""},
        {exportTo + L"HKXX\\Software", kInvalid},
        {exportTo + key + L"\\Missing", kInvalid},
        {exportTo + key + L" extra", kInvalid},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.arguments.begin(), c.arguments.end()));
        DeleteFileW(kExportFile);
        CQuendaProcess quenda;
        ASSERT_TRUE(quenda.Start(c.arguments));
        EXPECT_EQ(quenda.AnswerNextMessage(IDOK), c.message);
        EXPECT_EQ(quenda.WaitForExit(), 0);
        EXPECT_FALSE(FileExists(kExportFile));
    }
}

TEST(CommandLine, FilesAreImportedOneByOneAfterAQuestion)
{
    CScratchKey scratch(L"CmdLineImport");
    const std::string key = "[HKEY_CURRENT_USER\\Software\\QuendaTests\\CmdLineImport]\r\n";
    WriteFileBytes(L"cmdline-good.reg", "QUENDA4\r\n\r\n" + key + "\"Imported\"=\"yes\"\r\n");
    WriteFileBytes(L"cmdline-bad.reg", "QUENDA4\r\n\r\n" + key + "\"Broken\"=yes\r\n");
    WriteFileBytes(L"cmdline-skipped.reg", "QUENDA4\r\n\r\n" + key + "\"Skipped\"=\"yes\"\r\n");

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
    for (const wchar_t* file : {L"cmdline-good.reg", L"cmdline-bad.reg", L"cmdline-skipped.reg"})
        DeleteFileW(file);
}

TEST(CommandLine, OnlyInteractiveStartsAreKeptToOneInstance)
{
    CQuendaProcess first;
    ASSERT_TRUE(first.Start(L""));
    const HWND window = first.WaitForWindow(kInteractiveClass, 20000);
    ASSERT_NE(window, nullptr);
    wchar_t caption[16] = {};
    GetWindowTextW(window, caption, 16);
    EXPECT_EQ(std::wstring(caption), L"Quenda");

    // A command-line run beside it takes the foreground with its message.
    CQuendaProcess help;
    ASSERT_TRUE(help.Start(L"/?"));
    const HWND usage = help.WaitForMessageBox(20000);
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

}  // namespace
