// Under Wine these run on the test prefix's real HKEY_CLASSES_ROOT; the
// fixture puts back whatever .reg association was there before.

#include "registry/RegKey.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"

namespace {

void SetDefault(const char* path, const char* text)
{
    WriteTestValue(HKEY_CLASSES_ROOT, W(path), W(""), REG_SZ, Utf16Bytes(W(text), true));
}

void SetInstallDir(DWORD type, const char* directory)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, W("InstallDir"), type, Utf16Bytes(W(directory), true));
}

std::string Association()
{
    return DescribeTree(HKEY_CLASSES_ROOT, kRegFileExtension) + "--\n" +
           DescribeTree(HKEY_CLASSES_ROOT, kRegFileClass) + DescribeTree(HKEY_CLASSES_ROOT, TEXT("QuendaTestClass"));
}

class FileAssociationTest : public ProgramKeyTest {
protected:
    CSavedKey m_extension{HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension")};
    CSavedKey m_class{HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass")};
    CSavedKey m_testClass{HKEY_CLASSES_ROOT, TEXT("QuendaTestClass"), TEXT("SavedTestClass")};
};

TEST_F(FileAssociationTest, ProgramPathComesFromTheInstallationRecord)
{
    EXPECT_EQ(OpenCommandLine() + DefaultIconString(122), W("")) << "no record";
    const struct { DWORD type; const char* directory; const char* path; } cases[] = {
        {REG_SZ, "\\Program Files\\Quenda", "\\Program Files\\Quenda\\Quenda.exe"},
        {REG_EXPAND_SZ, "\\Storage Card\\Über\\", "\\Storage Card\\Über\\Quenda.exe"}, {REG_SZ, "", ""},
        {REG_BINARY, "\\Windows", ""},
    };
    for (const auto& c : cases) {
        SetInstallDir(c.type, c.directory);
        EXPECT_EQ(ProgramPath(), W(c.path)) << c.directory;
    }
    SetInstallDir(REG_SZ, "\\Program Files\\Quenda\\");
    EXPECT_EQ(OpenCommandLine(), W("\"\\Program Files\\Quenda\\Quenda.exe\" \"%1\""));
    EXPECT_EQ(DefaultIconString(122), W("\\Program Files\\Quenda\\Quenda.exe,-122"));
}

TEST_F(FileAssociationTest, InstallReplacesAnotherProgramsClassWholeAndRemoveTakesItAway)
{
    SetDefault(".reg", "regfile");
    SetDefault("regfile\\Shell\\Open\\Command", "other.exe \"%1\"");
    SetDefault("regfile\\Shell\\Print\\Command", "other.exe /p \"%1\"");
    const std::string other = Association();
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::NoProgramPath);
    EXPECT_FALSE(InstallRegFileAssociation());
    EXPECT_FALSE(Associate(W(""), W("regfile"), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Associate(W(".reg"), W(""), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Unassociate(W("")));
    EXPECT_EQ(Association(), other);

    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::OtherProgram);
    EXPECT_FALSE(IsAssociated());
    EXPECT_TRUE(InstallRegFileAssociation());
    EXPECT_EQ(Association(), "[]=regfile\n--\n[]=Registry File\n"
                             "\\DefaultIcon[]=\\Program Files\\Quenda\\Quenda.exe,-122\n"
                             "\\Shell\\Open\\Command[]=\"\\Program Files\\Quenda\\Quenda.exe\" \"%1\"\n");
    SetInstallDir(REG_SZ, "\\PROGRAM FILES\\QUENDA");
    EXPECT_TRUE(IsAssociated()) << "commands compare without regard to case";
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::Free);

    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(Association(), "--\n");
    EXPECT_FALSE(IsAssociated());
}

TEST_F(FileAssociationTest, OnlyAClassWithoutOpenCommandBelongsToNoProgram)
{
    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    SetDefault(".reg", "QuendaTestClass");
    SetDefault("QuendaTestClass\\DefaultIcon", "x.dll,-1");
    // In order: no command at all, then one that is there but empty.
    const struct { const char* command; bool found; ERegFileAssociation state; } cases[] = {
        {nullptr, false, ERegFileAssociation::Free}, {"", true, ERegFileAssociation::OtherProgram}};
    for (const auto& c : cases) {
        if (c.command != nullptr)
            SetDefault("QuendaTestClass\\Shell\\Open\\Command", c.command);
        CString command = W("sentinel");
        EXPECT_EQ(GetOpenCommand(W(".REG"), command), c.found);
        EXPECT_EQ(command, W(""));
        EXPECT_EQ(CheckRegFileAssociation(), c.state);
    }
    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(Association(), "--\n");
}

}  // namespace
