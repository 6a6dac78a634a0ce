#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FaultInjectingPlatform.h"
#include "regfile/RegImporter.h"
#include "regfile/RegImportRun.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

const char kHeader5[] = "Windows Registry Editor Version 5.00";
const char kKey[] = "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import";

class RegImportRunTest : public testing::Test {
protected:
    // Imports a file holding exactly `bytes`; returns the result and leaves
    // the error text in m_error.
    bool ImportBytes(const std::string& bytes, bool checkHeader = true, DWORD bufferSize = 0x80000,
                     bool cancel = false)
    {
        m_file.Write(bytes);
        return CRegImportRun(m_file.Path(), checkHeader, bufferSize).Run([cancel] { return cancel; }, m_error);
    }

    // A version-5 file: the header, then `body` (UTF-8 here, lines ending CR LF).
    bool Import(const std::string& body, bool checkHeader = true)
    {
        return ImportBytes(Utf16FileBytes(std::string(kHeader5) + "\r\n\r\n" + body), checkHeader);
    }

    std::string Dump() { return DumpTree(HKEY_CURRENT_USER, m_scratch.Path()); }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped{m_faults};
    CScratchKey m_scratch{TEXT("Import")};
    CTestFile m_file{"import-test.reg"};
    CString m_error;
};

TEST_F(RegImportRunTest, EveryDataFormLandsAsWritten)
{
    // Root names ignore case; a key's path ends at the line's last bracket.
    ASSERT_TRUE(Import(std::string(kKey) + "\\Forms]\r\n@=\"default\"\r\n\"@\"=dword:ffffffff\r\n\"[x]\"=\"y\"\r\n"
                       "\"q\\\"b\\\\\"=\"a\\\"b\\\\c;d\"\r\n\"bin\"=hex:de,AD,0\r\n\"none\"=hex(0):\r\n"
                       "\"multi\"=hex(7):61,00,00,00,62,00,00,00,00,00\r\n\"long\"=hex(b):01,02,\\\r\n"
                       "  ; a comment line inside the value\r\n  03 , 04,\\ ; and one after the backslash\r\n"
                       "  05\r\n\"ä€\"=\"ü\"\r\n"
                       "[hkey_current_user\\Software\\QuendaTests\\Import\\Forms\\C]x]junk\r\n"
                       "@=dword:1 ; a comment: the line holds no quote\r\n"))
        << ToUtf8(m_error);
    EXPECT_EQ(Dump(), ".\nForms\n  \"\" 1: 64 00 65 00 66 00 61 00 75 00 6c 00 74 00 00 00\n  \"@\" 4: ff ff ff ff\n"
                      "  \"[x]\" 1: 79 00 00 00\n"
                      "  \"bin\" 3: de ad 00\n  \"long\" b: 01 02 03 04 05\n"
                      "  \"multi\" 7: 61 00 00 00 62 00 00 00 00 00\n  \"none\" 0:\n"
                      "  \"q\"b\\\" 1: 61 00 22 00 62 00 5c 00 63 00 3b 00 64 00 00 00\n  \"ä€\" 1: fc 00 00 00\n"
                      "Forms\\C]x\n  \"\" 4: 01 00 00 00\n");
    EXPECT_EQ(m_error, W(""));
}

TEST_F(RegImportRunTest, SyntaxErrorsNameTheirPhysicalLine)
{
    const struct { const char* body; int line; } cases[] = {
        // Lines 1 and 2 are the header and the empty line after it.
        {"\"v\"=\"x\"\r\n", 3}, {"\r\n\r\n[HKLM\\Software]\r\n", 5}, {"[]\r\n", 3}, {"[-]\r\n", 3},
        // No comment follows a quote on its line.
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\n\"a\"=\"x\" ; note\r\n", 4},
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\n\"a\"=hex:123\r\n", 4},
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\nname=\"x\"\r\n", 4},
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\n\"n\":\"v\"\r\n", 4},
        // A minus followed by more is no deletion.
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\n\"v\"=-1\r\n", 4},
        {"[HKEY_CURRENT_USER\\Software\\QuendaTests\\Import]\r\n\"a\"=hex:01,\\\r\n\r\n  02,\\\r\n  zz\r\n", 7},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.body);
        EXPECT_FALSE(Import(item.body));
        EXPECT_EQ(m_error, CString::Formatted(TEXT("Syntax error at line %i."), item.line));
    }
}

TEST_F(RegImportRunTest, HeaderMustMatchTheEncodingUnlessTheCheckIsOff)
{
    const std::string body = "\r\njunk line\r\n" + std::string(kKey) + "\\H]\r\n\"v\"=dword:2\r\n";
    const struct { bool unicode; const char* header; bool checkHeader; bool imports; } cases[] = {
        {true, kHeader5, true, true},       {true, "windows registry editor version 5.00", true, true},
        {true, "QUENDA4", true, false},     {false, "QUENDA4", true, true},
        {false, "  quenda4  ", true, true}, {false, kHeader5, true, false},
        {true, "QUENDA4", false, true},     {false, "REGEDIT4", false, true},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.header) + (item.unicode ? " unicode" : " ansi") +
                     (item.checkHeader ? " checked" : " unchecked"));
        DeleteTreeForTests(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\H"));
        const std::string text = std::string(item.header) + "\r\n" + body;
        // A valid header is followed by a "junk line" that is a syntax error;
        // an invalid one that is allowed skips it on the way to the key.
        const bool result = ImportBytes(item.unicode ? Utf16FileBytes(text) : text, item.checkHeader);
        if (!item.imports) {
            EXPECT_FALSE(result);
            EXPECT_EQ(m_error, W("Invalid file header."));
        } else if (item.checkHeader) {
            EXPECT_FALSE(result);
            EXPECT_EQ(m_error, W("Syntax error at line 3."));
        } else {
            EXPECT_TRUE(result) << ToUtf8(m_error);
            EXPECT_EQ(Dump(), ".\nH\n  \"v\" 4: 02 00 00 00\n");
        }
    }
}

TEST_F(RegImportRunTest, DeletionsRemoveWholeTreesAndReportWhatWasMissing)
{
    for (LPCWSTR path : {TEXT("\\Del\\a\\b\\c\\d"), TEXT("\\Del\\a\\sibling")})
        WriteTestValue(HKEY_CURRENT_USER, m_scratch.Path() + path, W("v"), REG_BINARY, Bytes({1}));

    EXPECT_TRUE(Import("[-" + std::string(kKey + 1) + "\\Del\\a]\r\n\"ignored\"=dword:1\r\n" +
                       "[-" + std::string(kKey + 1) + "\\Never\\There]\r\n"))
        << ToUtf8(m_error);
    EXPECT_EQ(Dump(), ".\nDel\n");

    // A value deletion that finds nothing is a change that was not made.
    EXPECT_FALSE(Import(std::string(kKey) + "\\Del]\r\n\"gone\"=-\r\n\"kept\"=dword:3\r\n"));
    EXPECT_EQ(m_error, W("Not all keys and values were imported."));
    EXPECT_EQ(Dump(), ".\nDel\n  \"kept\" 4: 03 00 00 00\n");
    EXPECT_TRUE(Import(std::string(kKey) + "\\Del]\r\n\"KEPT\" = - \r\n"));
    EXPECT_EQ(Dump(), ".\nDel\n");

    // A whole root is never deleted.
    EXPECT_FALSE(Import("[-HKEY_CURRENT_USER]\r\n"));
    EXPECT_EQ(m_error, W("Not all keys and values were imported."));
    EXPECT_EQ(Dump(), ".\nDel\n");
}

TEST_F(RegImportRunTest, FailedWritesAreReportedAndTheRestIsImported)
{
    m_faults.FailValueWrite(TEXT("bad"));
    m_faults.FailOpen(TEXT("Locked"));
    EXPECT_FALSE(Import(std::string(kKey) + "\\W]\r\n\"bad\"=dword:1\r\n\"good\"=dword:2\r\n" + kKey +
                        "\\Locked]\r\n\"lost\"=dword:3\r\n" + kKey + "\\After]\r\n@=\"x\"\r\n"));
    EXPECT_EQ(m_error, W("Not all keys and values were imported."));
    EXPECT_EQ(Dump(), ".\nAfter\n  \"\" 1: 78 00 00 00\nW\n  \"good\" 4: 02 00 00 00\n");
}

TEST_F(RegImportRunTest, LongLinesLongContinuationsTinyFilesAndNoFile)
{
    std::string hex = std::string(kKey) + "\\Long]\r\n\"run\"=hex:\\\r\n";
    for (int line = 0; line < 400; ++line)
        hex += "  00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,17,18,\\\r\n";
    hex += "  ff\r\n\"text\"=\"" + std::string(5000, 'x') + "\"\r\n";
    // A read buffer far shorter than the lines.
    ASSERT_TRUE(ImportBytes(Utf16FileBytes(std::string(kHeader5) + "\r\n" + hex), true, 256)) << ToUtf8(m_error);
    CShdRegKey key;
    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\Long")));
    DWORD type = 0;
    CShdBinaryBuffer run, text;
    EXPECT_TRUE(key.ReadValue(W("run"), type, run) && key.ReadValue(W("text"), type, text));
    EXPECT_EQ(run.GetSize(), 400u * 25 + 1);
    EXPECT_EQ(text.GetSize(), 5001u * 2);

    // A file cut off inside a value that announced more lines leaves no
    // truncated value behind.
    ASSERT_TRUE(ImportBytes(Utf16FileBytes(std::string(kHeader5) + "\r\n" + kKey + "\\Cut]\r\n\"v\"=hex:01,\\\r\n")));
    EXPECT_EQ(DumpTree(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\Cut")), ".\n");

    EXPECT_TRUE(ImportBytes("")) << "an empty file has nothing to import";
    EXPECT_TRUE(ImportBytes("\xFF\xFE"));
    EXPECT_FALSE(ImportBytes("x"));
    EXPECT_EQ(m_error, W("Invalid file header."));
    EXPECT_TRUE(ImportBytes("\n\n")) << "blank lines only: nothing to import";

    CRegImportRun missing(TEXT("no-such-file.reg"), true);
    EXPECT_FALSE(missing.Run([] { return false; }, m_error));
    EXPECT_EQ(m_error, W("Unable to open file \"no-such-file.reg\"."));
}

// Read a few bytes at a time, so that the widening goes on across reads.
TEST_F(RegImportRunTest, AnsiFilesWidenTextThroughTheCodePage)
{
    ASSERT_TRUE(ImportBytes("QUENDA4\r\n" + std::string(kKey) + "\\Ansi]\r\n\"s\"=\"\x80\xe4\xff\"\r\n" +
                                "\"h\"=hex(1):e4,80,00\r\n\"e\"=hex(2):\r\n\"b\"=hex:e4\r\n",
                            true, 5))
        << ToUtf8(m_error);
    EXPECT_EQ(Dump(), ".\nAnsi\n  \"b\" 3: e4\n  \"e\" 2:\n  \"h\" 1: e4 00 ac 20 00 00\n"
                      "  \"s\" 1: ac 20 e4 00 ff 00 00 00\n");
}

TEST_F(RegImportRunTest, CancelIsSeenOnlyAtTheEnd)
{
    EXPECT_FALSE(ImportBytes(Utf16FileBytes(std::string(kHeader5) + "\r\n" + kKey + "\\C]\r\n@=dword:5\r\n"), true,
                             0x80000, true));
    EXPECT_EQ(m_error, W("Cancelled by user."));
    EXPECT_EQ(Dump(), ".\nC\n  \"\" 4: 05 00 00 00\n") << "the parse ran to its end first";
}

// The importer runs the import on its worker, with the header check that its
// caller asks for; one job at a time, its result taken once. A cancelled job
// gives no result and keeps the file unless asked to delete it.
TEST_F(RegImportRunTest, ImporterRunsOnItsWorkerWithTheHeaderCheckItIsGiven)
{
    m_file.Write("REGEDIT4\r\n" + std::string(kKey) + "\\K]\r\n\"v\"=dword:1\r\n");
    CRegImporter importer;
    bool result = true;
    ASSERT_TRUE(importer.Start(m_file.Path(), true));
    EXPECT_FALSE(importer.Start(m_file.Path(), true)) << "one job at a time";
    ASSERT_TRUE(importer.GetResult(result, m_error));
    EXPECT_EQ(m_error, W("Invalid file header."));
    EXPECT_FALSE(importer.GetResult(result, m_error)) << "the result is taken once";

    ASSERT_TRUE(importer.Start(m_file.Path(), false));
    EXPECT_TRUE(importer.GetResult(result, m_error));
    EXPECT_TRUE(result);
    EXPECT_EQ(m_error, W("")) << "the last run's error is gone";
    EXPECT_EQ(Dump(), ".\nK\n  \"v\" 4: 01 00 00 00\n");

    ASSERT_TRUE(importer.Start(m_file.Path(), true));
    importer.Cancel(false);
    EXPECT_FALSE(importer.GetResult(result, m_error));
    EXPECT_TRUE(m_file.Exists());
    ASSERT_TRUE(importer.Start(m_file.Path(), true));
    importer.Cancel(true);
    EXPECT_FALSE(m_file.Exists());
}


// CR LF, CR, LF, LF CR and doubled line ends each count once, at any read
// buffer size and in both encodings: every value lands whole and the syntax
// error at the end names its physical line.
TEST_F(RegImportRunTest, EveryLineEndCountsOnceAtAnyBufferSize)
{
    const std::string body = "\r\n" + std::string(kKey) + "\\E]\r\n\"a\"=\"1\"\r\"b\"=\"2\"\n\"c\"=\"3\"\n\r\"d\"=\"4\"\r\n\r\n" +
                             "\"e\"=\"5\"\n\n\rx";
    for (bool unicode : {false, true}) {
        for (DWORD bufferSize : {1u, 2u, 3u, 7u, 0x80000u}) {
            SCOPED_TRACE(testing::Message() << unicode << " " << bufferSize);
            DeleteTreeForTests(HKEY_CURRENT_USER, m_scratch.Path() + TEXT("\\E"));
            const std::string text = (unicode ? kHeader5 : "QUENDA4") + body;
            EXPECT_FALSE(ImportBytes(unicode ? Utf16FileBytes(text) : text, true, unicode ? bufferSize * 2 : bufferSize));
            EXPECT_EQ(m_error, W("Syntax error at line 10."));
            EXPECT_EQ(Dump(), ".\nE\n  \"a\" 1: 31 00 00 00\n  \"b\" 1: 32 00 00 00\n  \"c\" 1: 33 00 00 00\n"
                              "  \"d\" 1: 34 00 00 00\n  \"e\" 1: 35 00 00 00\n");
        }
    }
    EXPECT_TRUE(ImportBytes(Utf16FileBytes(kHeader5) + "c")) << "a last odd byte of a UTF-16 file is no character";
}

}  // namespace
