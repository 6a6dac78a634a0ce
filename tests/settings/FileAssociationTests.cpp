// Under Wine these run on the test prefix's real HKEY_CLASSES_ROOT; the
// fixture puts back whatever .reg association was there before.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "framework/Utf8.h"
#include "registry/RegKey.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "tests/settings/KeySnapshot.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

const char* const kTestClass = "QuendaTestClass";

void Collect(HKEY parent, const CString& path, const std::string& prefix, std::vector<std::string>& lines)
{
    CShdRegKey key;
    if (!key.Open(parent, path))
        return;
    CString name;
    DWORD type = 0;
    for (DWORD index = 0; key.EnumValueName(index, name, type); ++index) {
        CString text;
        key.ReadString(name, text);
        lines.push_back(prefix + "[" + ToUtf8(name) + "]=" + ToUtf8(text));
    }
    std::vector<CString> subkeys;
    for (DWORD index = 0; key.EnumSubkey(index, name); ++index)
        subkeys.push_back(name);
    for (const CString& subkey : subkeys)
        Collect(key.GetHandle(), subkey, prefix + "\\" + ToUtf8(subkey), lines);
}

// Every value of a key's tree as "path[name]=text", sorted, one per line.
std::string DescribeTree(const char* path)
{
    std::vector<std::string> lines;
    Collect(HKEY_CLASSES_ROOT, W(path), path, lines);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

void SetDefault(const char* path, const char* text)
{
    CShdRegKey key;
    ASSERT_TRUE(key.Create(HKEY_CLASSES_ROOT, W(path), nullptr));
    ASSERT_TRUE(key.WriteString(W(""), W(text)));
}

class FileAssociationTest : public testing::Test {
protected:
    FileAssociationTest()
    {
        DeleteTreeForTests(HKEY_LOCAL_MACHINE, kProgramKeyPath);
        DeleteTreeForTests(HKEY_CLASSES_ROOT, kRegFileExtension);
        DeleteTreeForTests(HKEY_CLASSES_ROOT, kRegFileClass);
    }

    void SetInstallDir(DWORD type, const char* directory)
    {
        CShdRegKey key;
        const std::vector<BYTE> data = Utf16Bytes(W(directory), true);
        ASSERT_TRUE(key.Create(HKEY_LOCAL_MACHINE, kProgramKeyPath, nullptr));
        ASSERT_TRUE(key.WriteValue(W("InstallDir"), type, data.data(), static_cast<DWORD>(data.size())));
    }

    // The association of another program, with a second verb of its own.
    void AssociateOtherProgram()
    {
        SetDefault(".reg", "regfile");
        SetDefault("regfile", "Other");
        SetDefault("regfile\\Shell\\Open\\Command", "other.exe \"%1\"");
        SetDefault("regfile\\Shell\\Print\\Command", "other.exe /p \"%1\"");
    }

    CKeySnapshot m_savedProgram{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick")};
    CKeySnapshot m_savedExtension{HKEY_CLASSES_ROOT, kRegFileExtension};
    CKeySnapshot m_savedClass{HKEY_CLASSES_ROOT, kRegFileClass};
    CKeySnapshot m_savedTestClass{HKEY_CLASSES_ROOT, W(kTestClass)};
};

TEST_F(FileAssociationTest, ProgramPathComesFromTheInstallationRecord)
{
    struct SCase {
        DWORD type;
        const char* directory;
        const char* path;
    };
    const SCase cases[] = {
        {REG_SZ, "\\Program Files\\Quenda", "\\Program Files\\Quenda\\Quenda.exe"},
        {REG_SZ, "\\Program Files\\Quenda\\", "\\Program Files\\Quenda\\Quenda.exe"},
        {REG_EXPAND_SZ, "\\Storage Card\\Über", "\\Storage Card\\Über\\Quenda.exe"},
        {REG_SZ, "", ""},
        {REG_BINARY, "\\Windows", ""},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.directory);
        SetInstallDir(c.type, c.directory);
        EXPECT_EQ(ProgramPath(), W(c.path));
    }

    SetInstallDir(REG_SZ, "\\Program Files\\Quenda\\");
    EXPECT_EQ(OpenCommandLine(), W("\"\\Program Files\\Quenda\\Quenda.exe\" \"%1\""));
    EXPECT_EQ(DefaultIconString(122), W("\\Program Files\\Quenda\\Quenda.exe,-122"));

    DeleteTreeForTests(HKEY_LOCAL_MACHINE, kProgramKeyPath);
    EXPECT_EQ(ProgramPath(), W(""));
    EXPECT_EQ(OpenCommandLine(), W(""));
    EXPECT_EQ(DefaultIconString(122), W(""));
}

TEST_F(FileAssociationTest, InstallReplacesAnotherProgramsClassWhole)
{
    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    AssociateOtherProgram();
    CString command;
    EXPECT_TRUE(GetOpenCommand(W(".REG"), command));
    EXPECT_EQ(command, W("other.exe \"%1\""));
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::OtherProgram);
    EXPECT_FALSE(IsAssociated());

    EXPECT_TRUE(InstallRegFileAssociation());

    EXPECT_EQ(DescribeTree(".reg"), ".reg[]=regfile\n");
    EXPECT_EQ(DescribeTree("regfile"),
              "regfile[]=Registry File\n"
              "regfile\\DefaultIcon[]=\\Program Files\\Quenda\\Quenda.exe,-122\n"
              "regfile\\Shell\\Open\\Command[]=\"\\Program Files\\Quenda\\Quenda.exe\" \"%1\"\n");
    EXPECT_TRUE(IsAssociated());
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::Free);

    // The command is compared without regard to case.
    SetInstallDir(REG_SZ, "\\PROGRAM FILES\\QUENDA");
    EXPECT_TRUE(IsAssociated());
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::Free);
}

TEST_F(FileAssociationTest, RemoveTakesTheClassThatTheExtensionNamed)
{
    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    ASSERT_TRUE(InstallRegFileAssociation());
    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(DescribeTree(".reg") + DescribeTree("regfile"), "");
    EXPECT_FALSE(IsAssociated());

    // A class without an open command belongs to no program: both buttons act.
    SetDefault(".reg", kTestClass);
    SetDefault((std::string(kTestClass) + "\\DefaultIcon").c_str(), "x.dll,-1");
    CString command = W("sentinel");
    EXPECT_FALSE(GetOpenCommand(W(".reg"), command));
    EXPECT_EQ(command, W(""));
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::Free);
    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(DescribeTree(".reg") + DescribeTree(kTestClass), "");
}

TEST_F(FileAssociationTest, NothingChangesWithoutAProgramPathOrWithEmptyNames)
{
    AssociateOtherProgram();
    const std::string before = DescribeTree(".reg") + DescribeTree("regfile");

    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::NoProgramPath);
    EXPECT_FALSE(InstallRegFileAssociation());
    EXPECT_FALSE(IsAssociated());
    EXPECT_FALSE(Associate(W(""), W("regfile"), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Associate(W(".reg"), W(""), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Unassociate(W("")));
    EXPECT_EQ(DescribeTree(".reg") + DescribeTree("regfile"), before);
}

}  // namespace
