#include <gtest/gtest.h>

#include "platform/PlatformHandle.h"
#include "regfile/FileWriteCache.h"
#include "regfile/RegExporter.h"
#include "registry/RegKey.h"
#include "tests/regfile/ExportTestFiles.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

// Faults and a pause, plus behaviours the system shows only by chance.
class CExportTestPlatform : public CGatePlatform {
public:
    // An ANSI code page in which ideographs take two bytes.
    bool m_doubleByteAnsi = false;

    // Subkeys enumerate last first: the registry's own order is already the
    // sorted one, which would hide a missing sort.
    LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength) override
    {
        DWORD count = 0;
        CFaultInjectingPlatform::RegQueryInfoKeyW(key, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr);
        return CFaultInjectingPlatform::RegEnumKeyExW(key, index < count ? count - 1 - index : index, name,
                                                      nameLength);
    }
    int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out, int capacity) override
    {
        for (int i = 0; m_doubleByteAnsi && i < length; ++i) {
            if (text[i] >= 0x3000)
                return 0;  // one byte per character is too small a buffer
        }
        return CFaultInjectingPlatform::WideCharToMultiByte(codePage, flags, text, length, out, capacity);
    }
};

// Version 5 text without the byte-order mark, to find inside a file.
std::string Version5Text(const char* utf8Text)
{
    return Utf16FileBytes(utf8Text, true).substr(2);
}

class RegExporterTest : public testing::Test {
protected:
    // The registry behind data/every-form-*.reg.
    RegExporterTest() : m_scoped(m_platform), m_scratch(TEXT("Export")), m_file("export-test.reg")
    {
        const struct { const char* key; const char* name; DWORD type; std::vector<BYTE> data; } values[] = {
            {"", "", REG_SZ, Utf16Bytes(W("Default value"), true)},
            {"", "@", REG_SZ, Utf16Bytes(W("literal at"), true)},
            {"", "binary25", REG_BINARY, Sequence(25)}, {"", "binary26", REG_BINARY, Sequence(26)},
            {"", "dword", REG_DWORD, Bytes({0x78, 0x56, 0x34, 0x12})}, {"", "dword3", REG_DWORD, Bytes({1, 2, 3})},
            {"", "embedded", REG_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true)},
            {"", "empty", REG_BINARY, {}}, {"", "expand", REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%\\ü"), true)},
            {"", "Grüße", REG_SZ, Utf16Bytes(W("Müller \"quoted\" C:\\path"), true)},
            {"", "lines", REG_SZ, Utf16Bytes(W("one\r\ntwo\tthree"), true)},
            {"", "multi", REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true) + Bytes({0, 0, 0, 0})},
            {"", "none", REG_NONE, Bytes({1, 2})}, {"", "odd", REG_SZ, Bytes({0x61, 0, 0x62})},
            {"", "quote\"and\\slash", REG_SZ, Utf16Bytes(W("a\"b\\c"), true)},
            {"", "qword", REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8})}, {"", "unknown", 0x1234, Bytes({0xFF})},
            {"", "unterminated", REG_SZ, Utf16Bytes(W("abc"), false)}, {"a", "inA", REG_DWORD, Bytes({1, 0, 0, 0})},
            {"a\\Ünïcode", "x", REG_SZ, Utf16Bytes(W("é"), true)}, {"c", "", REG_SZ, Utf16Bytes(W("c default"), true)},
        };
        for (const auto& value : values)
            WriteTestValue(m_scratch.Handle(), W(value.key), W(value.name), value.type, value.data);
        CShdRegKey b(true);
        EXPECT_TRUE(b.Create(m_scratch.Handle(), W("B"), nullptr));
    }

    // Exports the scratch key (or the whole registry) to the end; false if
    // the job did not run.
    bool Export(bool unicode, bool& result, bool wholeRegistry = false)
    {
        return m_exporter.Start(m_file.Path(), false, unicode, wholeRegistry ? nullptr : HKEY_CURRENT_USER,
                                m_scratch.Path()) &&
               m_exporter.GetResult(result);
    }

    CExportTestPlatform m_platform;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CTestFile m_file;
    CRegExporter m_exporter;
};

TEST_F(RegExporterTest, EveryValueFormInBothVersions)
{
    for (bool unicode : {true, false}) {
        SCOPED_TRACE(unicode ? "version 5" : "version 4");
        bool result = false;
        ASSERT_TRUE(Export(unicode, result));
        EXPECT_TRUE(result);
        const std::string expected = ReadExpectedFile(unicode ? "every-form-5.reg" : "every-form-4.reg");
        ASSERT_FALSE(expected.empty());
        EXPECT_EQ(m_file.Bytes(), expected);
    }
}

TEST_F(RegExporterTest, AKeyThatCannotBeOpenedIsSkippedWithItsSubtree)
{
    m_platform.FailOpen(TEXT("a"));
    bool result = false;
    ASSERT_TRUE(Export(true, result));
    EXPECT_TRUE(result);
    const std::string blocksOfA = Version5Text("[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\a]\n"
                                               "\"inA\"=dword:00000001\n\n"
                                               "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\a\\Ünïcode]\n"
                                               "\"x\"=\"é\"\n\n");
    std::string expected = ReadExpectedFile("every-form-5.reg");
    ASSERT_NE(expected.find(blocksOfA), std::string::npos);
    expected.erase(expected.find(blocksOfA), blocksOfA.size());
    EXPECT_EQ(m_file.Bytes(), expected);
}

TEST_F(RegExporterTest, ACancelledExportEndsWithTheCancelLine)
{
    m_platform.PauseAt(TEXT("c"));
    ASSERT_TRUE(m_exporter.Start(m_file.Path(), false, true, HKEY_CURRENT_USER, m_scratch.Path()));
    ASSERT_TRUE(m_platform.WaitUntilReached());
    m_exporter.Cancel(false);

    bool result = true;
    EXPECT_FALSE(m_exporter.GetResult(result));
    std::string expected = ReadExpectedFile("every-form-5.reg");
    expected.resize(expected.find(Version5Text("[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\c]")));
    EXPECT_EQ(m_file.Bytes(), expected + Version5Text("*** cancelled ***\n"));
}

TEST_F(RegExporterTest, WriteAndConversionFailuresFailTheExport)
{
    m_platform.LimitFileWrites(100);
    bool result = true;
    ASSERT_TRUE(Export(true, result));
    EXPECT_FALSE(result);
    EXPECT_EQ(m_file.Bytes(), ReadExpectedFile("every-form-5.reg").substr(0, 100));
    m_platform.Clear();

    // In version 4 a character must become one ANSI byte, in a name as in
    // text shown as hex; version 5 has no such limit.
    m_platform.m_doubleByteAnsi = true;
    const struct { const char* name; const char* text; } cases[] = {{"日本", "ok"}, {"text", "日本"}};
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        DeleteTreeForTests(m_scratch.Handle(), TEXT("Ideographs"));
        WriteTestValue(m_scratch.Handle(), W("Ideographs"), W(item.name), REG_MULTI_SZ,
                       Utf16Bytes(W(item.text), true) + Bytes({0, 0}));
        ASSERT_TRUE(Export(false, result));
        EXPECT_FALSE(result);
        ASSERT_TRUE(Export(true, result));
        EXPECT_TRUE(result);
    }
}

TEST_F(RegExporterTest, TheWholeRegistryHoldsTheFourRootsInOrder)
{
    bool result = false;
    ASSERT_TRUE(Export(true, result, true));
    EXPECT_TRUE(result);
    const std::string file = m_file.Bytes();
    EXPECT_EQ(file.find(Utf16FileBytes("Windows Registry Editor Version 5.00\n\n[HKEY_CLASSES_ROOT]\n", true)), 0u);
    size_t previous = 0;
    for (const char* line : {"\n[HKEY_CURRENT_USER]\n", "\n[HKEY_LOCAL_MACHINE]\n", "\n[HKEY_USERS]\n"}) {
        SCOPED_TRACE(line);
        const size_t position = file.find(Version5Text(line));
        EXPECT_NE(position, std::string::npos);
        EXPECT_GT(position, previous);
        previous = position;
    }
    EXPECT_NE(file.find(Version5Text("[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export]\n\"@\"=\"Default value\"\n")),
              std::string::npos);
}

TEST(FileWriteCache, WritesFullBuffersOnlyAndNothingAfterAShortWrite)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CTestFile file("write-cache-test.bin");
    CShdHandle handle(
        Platform().CreateFileW(file.Path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
    CShdFileWriteCache cache;
    ASSERT_TRUE(cache.SetBufferSize(8));
    ASSERT_TRUE(cache.Attach(handle.Get()));
    EXPECT_TRUE(cache.Write("abcdef", 6));
    EXPECT_EQ(file.Bytes(), "");
    EXPECT_TRUE(cache.Write("ghijklmnopqrs", 13));
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnop") << "two full buffers";
    EXPECT_FALSE(cache.Write(nullptr, 1));
    EXPECT_FALSE(cache.SetBufferSize(16)) << "bytes are still buffered";
    EXPECT_TRUE(cache.Flush());
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnopqrs");
    EXPECT_FALSE(cache.Write("t", 1)) << "the flush forgot the handle";

    // The file takes two bytes more: the buffer of four fails whole, and
    // nothing written later may land after the gap.
    faults.LimitFileWrites(2);
    ASSERT_TRUE(cache.SetBufferSize(4));
    ASSERT_TRUE(cache.Attach(handle.Get()));
    EXPECT_TRUE(cache.Write("tu", 2));
    EXPECT_FALSE(cache.Write("vw", 2));
    faults.Clear();
    EXPECT_FALSE(cache.Write("xy", 2));
    EXPECT_TRUE(cache.Close());
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnopqrstu");
}

}  // namespace
