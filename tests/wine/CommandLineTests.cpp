#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include <windows.h>

#include "tests/support/ScratchKey.h"
#include "tests/wine/QuendaDriver.h"

namespace {

const wchar_t kExportFile[] = L"cmdline-out.reg";
const wchar_t kInvalid[] = L"Invalid command line arguments.";
const wchar_t kInteractiveClass[] = L"Quenda_{A55A0214-0F7E-46FE-B53B-52C2AE3EC850}";

std::string ReadFileBytes(const wchar_t* path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void WriteFileBytes(const wchar_t* path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file << bytes;
}

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
    const wchar_t data[] = L"hello";
    ASSERT_EQ(RegSetValueExW(scratch.Handle(), L"Greeting", 0, REG_SZ,
                                        reinterpret_cast<const BYTE*>(data), sizeof(data)),
              ERROR_SUCCESS);
    DeleteFileW(kExportFile);

    CQuendaProcess quenda;
    ASSERT_TRUE(quenda.Start(std::wstring(L"/e ") + kExportFile + L" HKCU\\" + scratch.Path().GetString()));
    EXPECT_EQ(quenda.AnswerNextMessage(IDOK), L"Registry export finished successfully.");
    EXPECT_EQ(quenda.WaitForExit(), 0);

    const std::wstring text = Utf16(ReadFileBytes(kExportFile));
    EXPECT_EQ(text.rfind(L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\", 0), 0u) << "BOM";
    EXPECT_NE(text.find(L"\"Greeting\"=\"hello\"\r\n"), std::wstring::npos);
    DeleteFileW(kExportFile);
}

TEST(CommandLine, BadExportArgumentsWriteNothing)
{
    CScratchKey scratch(L"CmdLineBadExport");
    const std::wstring key = std::wstring(L"HKCU\\") + scratch.Path().GetString();
    const std::wstring cases[] = {
        L"HKXX\\Software",
        key + L"\\Missing",
        key + L" extra",
    };
    for (const std::wstring& arguments : cases) {
        SCOPED_TRACE(std::string(arguments.begin(), arguments.end()));
        DeleteFileW(kExportFile);
        CQuendaProcess quenda;
        ASSERT_TRUE(quenda.Start(std::wstring(L"/e ") + kExportFile + L" " + arguments));
        EXPECT_EQ(quenda.AnswerNextMessage(IDOK), kInvalid);
        EXPECT_EQ(quenda.WaitForExit(), 0);
        EXPECT_FALSE(FileExists(kExportFile));
    }
}

TEST(CommandLine, HelpShowsTheUsage)
{
    CQuendaProcess quenda;
    ASSERT_TRUE(quenda.Start(L"/?"));
    EXPECT_EQ(quenda.AnswerNextMessage(IDOK),
              L"Usage:\r\n\"Quenda.exe <file>\"\r\nor\r\n\"Quenda.exe /e <file> <key>\"");
    EXPECT_EQ(quenda.WaitForExit(), 0);
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

    wchar_t value[16] = {};
    DWORD size = sizeof(value);
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExW(scratch.Handle(), L"Imported", nullptr, &type,
                                          reinterpret_cast<BYTE*>(value), &size),
              ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(value), L"yes");
    size = sizeof(value);
    EXPECT_NE(RegQueryValueExW(scratch.Handle(), L"Skipped", nullptr, &type,
                                          reinterpret_cast<BYTE*>(value), &size),
              ERROR_SUCCESS);
    for (const wchar_t* file : {L"cmdline-good.reg", L"cmdline-bad.reg", L"cmdline-skipped.reg"})
        DeleteFileW(file);
}

TEST(CommandLine, OnlyInteractiveStartsAreKeptToOneInstance)
{
    CQuendaProcess first;
    ASSERT_TRUE(first.Start(L""));
    const HWND window = first.WaitForWindow(kInteractiveClass, 20000);
    ASSERT_NE(window, nullptr);

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
