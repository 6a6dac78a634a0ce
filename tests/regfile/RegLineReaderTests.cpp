#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Platform.h"
#include "regfile/RegLineReader.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

// Writes `bytes` to a file and reads it back as lines through a reader with
// a buffer of `bufferSize` bytes.
std::vector<CString> ReadLines(const std::string& bytes, DWORD bufferSize, bool* unicode = nullptr)
{
    IPlatform& platform = Platform();
    const CTestFile written("line-reader-test.reg");
    written.Write(bytes);
    HANDLE file =
        platform.CreateFileW(written.Path(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    std::vector<CString> lines;
    CRegLineReader reader(file, bufferSize);
    EXPECT_EQ(reader.Open(platform.GetFileSize(file)), CRegLineReader::EResult::Line);
    CString line;
    while (reader.ReadLine(line) == CRegLineReader::EResult::Line)
        lines.push_back(line);
    if (unicode != nullptr)
        *unicode = reader.IsUnicode();
    platform.CloseHandle(file);
    return lines;
}

TEST(RegLineReader, EveryLineEndCountsOnceAtAnyBufferSize)
{
    const std::string text = "a\r\nb\rc\nd\n\re\r\n\r\nf\n\ng";
    const std::vector<CString> expected = {W("a"), W("b"), W("c"), W("d"), W("e"), W(""), W("f"), W(""), W("g")};
    for (DWORD bufferSize : {1u, 2u, 3u, 7u, 0x80000u}) {
        SCOPED_TRACE(bufferSize);
        EXPECT_EQ(ReadLines(text, bufferSize), expected);
        bool unicode = false;
        EXPECT_EQ(ReadLines(Utf16FileBytes(text), bufferSize * 2, &unicode), expected);
        EXPECT_TRUE(unicode);
    }
}

TEST(RegLineReader, TinyFilesLongLinesAndOddBytes)
{
    EXPECT_TRUE(ReadLines("", 16).empty());
    EXPECT_EQ(ReadLines("x", 16), std::vector<CString>{W("x")});
    EXPECT_EQ(ReadLines("\r\n", 16), std::vector<CString>{W("")});
    EXPECT_TRUE(ReadLines("\xFF\xFE", 16).empty()) << "a byte-order mark alone holds no line";
    // A last odd byte of a UTF-16 file is no character.
    EXPECT_EQ(ReadLines(Utf16FileBytes("ab") + "c", 16), std::vector<CString>{W("ab")});

    const std::string longLine(100000, 'q');
    const std::vector<CString> lines = ReadLines(longLine + "\nz", 4096);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].GetLength(), 100000u);
    EXPECT_EQ(lines[1], W("z"));
}

}  // namespace
