#include <gtest/gtest.h>

#include <string>

#include "platform/Platform.h"
#include "regfile/RegImporter.h"
#include "settings/Settings.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

class RegImporterTest : public testing::Test {
protected:
    void TearDown() override { Settings().SetDoNotCheckImportHeader(false); }

    CScratchKey m_scratch{TEXT("Importer")};
    CTestFile m_file{"importer-test.reg"};
};

TEST_F(RegImporterTest, RunsOnItsThreadAndReportsTheOutcome)
{
    m_file.Write("QUENDA4\r\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Importer\\K]\r\n\"v\"=-\r\n");
    CRegImporter importer;
    ASSERT_TRUE(importer.Start(m_file.Path()));
    EXPECT_FALSE(importer.Start(m_file.Path())) << "one job at a time";
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
    m_file.Write("REGEDIT4\r\n[HKEY_CURRENT_USER\\Software\\QuendaTests\\Importer\\H]\r\n");
    CRegImporter importer;
    bool result = false;
    CString error;
    ASSERT_TRUE(importer.Start(m_file.Path()));
    ASSERT_TRUE(importer.GetResult(result, error));
    EXPECT_EQ(error, W("Invalid file header."));

    Settings().SetDoNotCheckImportHeader(true);
    ASSERT_TRUE(importer.Start(m_file.Path()));
    ASSERT_TRUE(importer.GetResult(result, error));
    EXPECT_TRUE(result);
    EXPECT_EQ(error, W(""));

    // A cancelled job gives no result; the file is kept unless asked.
    ASSERT_TRUE(importer.Start(m_file.Path()));
    importer.Cancel(false);
    EXPECT_FALSE(importer.GetResult(result, error));
    EXPECT_TRUE(m_file.Exists());
}

}  // namespace
