#include <gtest/gtest.h>

#include <string>

#include <windows.h>

#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"
#include "tests/ui/FileDialogTestSupport.h"
#include "tests/wine/QuendaDriver.h"

namespace {

// The association written by "Install" is one the shell follows: opening a
// .reg file starts this Quenda.exe with the file, which asks about the
// import. After "Remove" the shell has nothing to start.
TEST(FileAssociation, TheShellOpensRegFilesWithQuendaOnlyWhileInstalled)
{
    CSavedKey program(HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick"), TEXT("SavedProgramKey"));
    CSavedKey extension(HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension"));
    CSavedKey regClass(HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass"));
    const std::wstring exe = CQuendaProcess::ExePath();
    const CString folder(exe.substr(0, exe.rfind(L'\\') + 1).c_str());
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, W("InstallDir"), REG_SZ, Utf16Bytes(folder, true));
    const wchar_t file[] = L"association test.reg";
    ASSERT_TRUE(WriteFileBytes(file, "QUENDA4\r\n"));

    ASSERT_TRUE(InstallRegFileAssociation());
    {
        CQuendaProcess quenda;
        ASSERT_TRUE(quenda.Open(file));
        const std::wstring question = quenda.AnswerNextMessage(IDNO);
        const std::wstring start = L"Do you want to import registry file \"";
        const std::wstring end = std::wstring(L"\\") + file + L"\"?";
        EXPECT_EQ(question.substr(0, start.size()), start);
        EXPECT_EQ(question.substr(question.size() - std::min(question.size(), end.size())), end);
        EXPECT_EQ(quenda.WaitForExit(), 0);
    }

    ASSERT_TRUE(RemoveRegFileAssociation());
    CQuendaProcess quenda;
    EXPECT_FALSE(quenda.Open(file));
    DeleteFileW(file);
}

}  // namespace
