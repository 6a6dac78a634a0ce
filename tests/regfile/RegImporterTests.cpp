#include <gtest/gtest.h>

#include <string>

#include "platform/Platform.h"
#include "regfile/RegImporter.h"
#include "settings/Settings.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

class RegImporterTest : public testing::Test {
protected:
    void WriteFile(const std::string& bytes)
    {
        HANDLE file = Platform().CreateFileW(m_file, GENERIC_WRITE, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL);
        DWORD written = 0;
        Platform().WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written);
        Platform().CloseHandle(file);
    }
    void TearDown() override
    {
        Settings().SetDoNotCheckImportHeader(false);
        Platform().DeleteFileW(m_file);
    }

    CScratchKey m_scratch{TEXT("Importer")};
    const CString m_file = W("importer-test.reg");
};

TEST_F(RegImporterTest, RunsOnItsThreadAndReportsTheOutcome)
{
    WriteFile("QUENDA4\r\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Importer\\K]\r\n\"v\"=-\r\n");
    CRegImporter importer;
    ASSERT_TRUE(importer.Start(m_file));
    EXPECT_FALSE(importer.Start(m_file)) << "one job at a time";
    EXPECT_EQ(Platform().WaitForSingleObject(importer.DoneEvent(), 10000), static_cast<DWORD>(WAIT_OBJECT_0));
    bool result = true;
    CString error;
    ASSERT_TRUE(importer.GetResult(result, error));
    EXPECT_FALSE(result);
    EXPECT_EQ(error, W("Not all keys and values were imported."));
    EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, m_scratch.Path()), ".\nK\n");
    EXPECT_FALSE(importer.GetResult(result, error)) << "the result is taken once";
}

TEST_F(RegImporterTest, HeaderCheckFollowsTheSettingAndCancelWins)
{
    WriteFile("REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Importer\\H]\r\n");
    CRegImporter importer;
    bool result = false;
    CString error;
    ASSERT_TRUE(importer.Start(m_file));
    ASSERT_TRUE(importer.GetResult(result, error));
    EXPECT_EQ(error, W("Invalid file header."));

    Settings().SetDoNotCheckImportHeader(true);
    ASSERT_TRUE(importer.Start(m_file));
    ASSERT_TRUE(importer.GetResult(result, error));
    EXPECT_TRUE(result);
    EXPECT_EQ(error, W(""));

    // A cancelled job gives no result; the file is kept unless asked.
    ASSERT_TRUE(importer.Start(m_file));
    importer.Cancel(false);
    EXPECT_FALSE(importer.GetResult(result, error));
    EXPECT_NE(Platform().GetFileAttributesW(m_file), INVALID_FILE_ATTRIBUTES);
}

}  // namespace
