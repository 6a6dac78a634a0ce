#include <gtest/gtest.h>

#include "framework/Text.h"
#include "platform/FaultInjectingPlatform.h"
#include "regfile/RegExporter.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "tests/regfile/ExportTestFiles.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// The test platform of the exporter: fault injection, plus two behaviours
// the system cannot be made to show on demand.
class CExportTestPlatform : public CFaultInjectingPlatform {
public:
    CExportTestPlatform()
        : m_reached(SystemPlatform().CreateEventW(TRUE, FALSE)), m_go(SystemPlatform().CreateEventW(TRUE, FALSE))
    {
    }
    ~CExportTestPlatform() override
    {
        SystemPlatform().CloseHandle(m_reached);
        SystemPlatform().CloseHandle(m_go);
    }

    // The worker stops when it opens the key `name`, signals Reached(), and
    // goes on as soon as the test signals any event (the cancel, say).
    void PauseAt(LPCWSTR name) { m_pauseAt = name; }
    HANDLE Reached() const { return m_reached; }
    // An ANSI code page in which ideographs take two bytes.
    void UseDoubleByteAnsi() { m_doubleByte = true; }

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override
    {
        if (!m_pauseAt.IsEmpty() && subKey != nullptr && CompareNoCase(subKey, m_pauseAt) == 0) {
            SystemPlatform().SetEvent(m_reached);
            SystemPlatform().WaitForSingleObject(m_go, INFINITE);
        }
        return CFaultInjectingPlatform::RegOpenKeyExW(parent, subKey, options, sam, result);
    }
    BOOL SetEvent(HANDLE event) override
    {
        const BOOL set = CFaultInjectingPlatform::SetEvent(event);
        SystemPlatform().SetEvent(m_go);
        return set;
    }
    int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, char* out, int capacity) override
    {
        for (int i = 0; m_doubleByte && i < length; ++i) {
            if (text[i] >= 0x3000)
                return 0;  // the buffer of one byte per character is too small
        }
        return CFaultInjectingPlatform::WideCharToMultiByte(codePage, flags, text, length, out, capacity);
    }

private:
    HANDLE m_reached;
    HANDLE m_go;
    CString m_pauseAt;
    bool m_doubleByte = false;
};

std::vector<BYTE> Sequence(int count)
{
    std::vector<BYTE> bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<BYTE>(i));
    return bytes;
}

class RegExporterTest : public testing::Test {
protected:
    RegExporterTest() : m_scoped(m_platform), m_scratch(TEXT("Export")), m_file("export-test.reg") {}

    void Write(const char* keyPath, const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        CShdRegKey key(true);
        ASSERT_TRUE(key.Create(m_scratch.Handle(), W(keyPath), nullptr));
        ASSERT_TRUE(key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
    }

    // The registry behind data/every-form-*.reg.
    void FillEveryForm()
    {
        Write("", W(""), REG_SZ, Utf16Bytes(W("Default value"), true));
        Write("", W("@"), REG_SZ, Utf16Bytes(W("literal at"), true));
        Write("", W("binary25"), REG_BINARY, Sequence(25));
        Write("", W("binary26"), REG_BINARY, Sequence(26));
        Write("", W("dword"), REG_DWORD, Bytes({0x78, 0x56, 0x34, 0x12}));
        Write("", W("dword3"), REG_DWORD, Bytes({1, 2, 3}));
        Write("", W("embedded"), REG_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true));
        Write("", W("empty"), REG_BINARY, {});
        Write("", W("expand"), REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%\\ü"), true));
        Write("", W("Grüße"), REG_SZ, Utf16Bytes(W("Müller \"quoted\" C:\\path"), true));
        Write("", W("lines"), REG_SZ, Utf16Bytes(W("one\r\ntwo\tthree"), true));
        Write("", W("multi"), REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true) + Bytes({0, 0, 0, 0}));
        Write("", W("none"), REG_NONE, Bytes({1, 2}));
        Write("", W("odd"), REG_SZ, Bytes({0x61, 0, 0x62}));
        Write("", W("quote\"and\\slash"), REG_SZ, Utf16Bytes(W("a\"b\\c"), true));
        Write("", W("qword"), REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
        Write("", W("unknown"), 0x1234, Bytes({0xFF}));
        Write("", W("unterminated"), REG_SZ, Utf16Bytes(W("abc"), false));
        Write("A", W("inA"), REG_DWORD, Bytes({1, 0, 0, 0}));
        Write("A\\Ünïcode", W("x"), REG_SZ, Utf16Bytes(W("é"), true));
        CShdRegKey b(true);
        ASSERT_TRUE(b.Create(m_scratch.Handle(), W("b"), nullptr));
        Write("c", W(""), REG_SZ, Utf16Bytes(W("c default"), true));
    }

    // Runs an export of the scratch key (or of `root` alone) to completion.
    bool Export(bool unicode, bool& result, HKEY root = HKEY_CURRENT_USER, const CString* path = nullptr)
    {
        return m_exporter.Start(m_file.Path(), false, unicode, root, path != nullptr ? *path : m_scratch.Path()) &&
               m_exporter.GetResult(result);
    }

    CExportTestPlatform m_platform;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CTestFile m_file;
    CRegExporter m_exporter;
};

// The key blocks of A and its subkey in data/every-form-5.reg.
const char kBlocksOfA[] =
    "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\A]\n"
    "\"inA\"=dword:00000001\n"
    "\n"
    "[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\A\\Ünïcode]\n"
    "\"x\"=\"é\"\n"
    "\n";

// A version 5 text without its byte-order mark, to find inside a file.
std::string Version5Text(const char* utf8Text)
{
    return Version5Bytes(utf8Text).substr(2);
}

TEST_F(RegExporterTest, EveryValueFormInBothVersions)
{
    FillEveryForm();
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

TEST_F(RegExporterTest, AKeyThatCannotBeOpenedIsSkipped)
{
    FillEveryForm();
    m_platform.FailOpen(TEXT("A"));
    bool result = false;
    ASSERT_TRUE(Export(true, result));
    EXPECT_TRUE(result);
    std::string expected = ReadExpectedFile("every-form-5.reg");
    const size_t blocks = expected.find(Version5Text(kBlocksOfA));
    ASSERT_NE(blocks, std::string::npos);
    expected.erase(blocks, Version5Text(kBlocksOfA).size());
    EXPECT_EQ(m_file.Bytes(), expected);
}

TEST_F(RegExporterTest, ACancelledExportEndsWithTheCancelLine)
{
    FillEveryForm();
    m_platform.PauseAt(TEXT("c"));
    ASSERT_TRUE(m_exporter.Start(m_file.Path(), false, true, HKEY_CURRENT_USER, m_scratch.Path()));
    ASSERT_EQ(Platform().WaitForSingleObject(m_platform.Reached(), INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
    m_exporter.Cancel(false);

    bool result = true;
    EXPECT_FALSE(m_exporter.GetResult(result));
    EXPECT_NE(Platform().WaitForSingleObject(m_exporter.DoneEvent(), 0), static_cast<DWORD>(WAIT_OBJECT_0));
    std::string expected = ReadExpectedFile("every-form-5.reg");
    const size_t blockOfC = expected.find(Version5Text("[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export\\c]"));
    ASSERT_NE(blockOfC, std::string::npos);
    expected = expected.substr(0, blockOfC) + Version5Text("*** cancelled ***\n");
    EXPECT_EQ(m_file.Bytes(), expected);
}

TEST_F(RegExporterTest, AShortWriteFailsTheExport)
{
    FillEveryForm();
    m_platform.LimitFileWrites(100);
    bool result = true;
    ASSERT_TRUE(Export(true, result));
    EXPECT_FALSE(result);
    EXPECT_EQ(m_file.Bytes(), ReadExpectedFile("every-form-5.reg").substr(0, 100));
}

TEST_F(RegExporterTest, Version4FailsOnCharactersOfTwoAnsiBytes)
{
    m_platform.UseDoubleByteAnsi();
    const struct {
        const char* name;
        DWORD type;
        std::vector<BYTE> data;
    } cases[] = {
        {"日本", REG_DWORD, Bytes({1, 0, 0, 0})},
        {"text", REG_MULTI_SZ, Utf16Bytes(W("日本"), true) + Bytes({0, 0})},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        Write("", W(item.name), item.type, item.data);
        bool result = true;
        ASSERT_TRUE(Export(false, result));
        EXPECT_FALSE(result);
        ASSERT_TRUE(Export(true, result));
        EXPECT_TRUE(result) << "version 5 has no such limit";
        CShdRegKey key(true);
        ASSERT_TRUE(key.Open(m_scratch.Handle(), W("")));
        ASSERT_TRUE(key.DeleteValue(W(item.name)));
    }
}

TEST_F(RegExporterTest, StartArgumentsThatCannotWork)
{
    Write("", W("v"), REG_DWORD, Bytes({1, 0, 0, 0}));
    bool result = false;
    ASSERT_TRUE(Export(true, result));
    ASSERT_TRUE(result);
    const std::string before = m_file.Bytes();

    ASSERT_TRUE(m_exporter.Start(m_file.Path(), true, true, HKEY_CURRENT_USER, m_scratch.Path()));
    ASSERT_TRUE(m_exporter.GetResult(result));
    EXPECT_FALSE(result) << "the file exists already";
    EXPECT_EQ(m_file.Bytes(), before);

    ASSERT_TRUE(Export(true, result, RootKeyFromValue(0x80000004)));
    EXPECT_FALSE(result) << "a root without a name";

    m_platform.FailThreadCreation();
    EXPECT_FALSE(m_exporter.Start(m_file.Path(), false, true, HKEY_CURRENT_USER, m_scratch.Path()));
}

TEST_F(RegExporterTest, TheWholeRegistryHoldsTheFourRootsInOrder)
{
    Write("", W("v"), REG_DWORD, Bytes({1, 0, 0, 0}));
    bool result = false;
    ASSERT_TRUE(Export(true, result, nullptr));
    EXPECT_TRUE(result);
    const std::string file = m_file.Bytes();
    EXPECT_EQ(file.find(Version5Bytes("Windows Registry Editor Version 5.00\n\n[HKEY_CLASSES_ROOT]\n")), 0u);
    size_t previous = 0;
    for (const char* line : {"\n[HKEY_CURRENT_USER]\n", "\n[HKEY_LOCAL_MACHINE]\n", "\n[HKEY_USERS]\n"}) {
        SCOPED_TRACE(line);
        const size_t position = file.find(Version5Text(line));
        EXPECT_NE(position, std::string::npos);
        EXPECT_GT(position, previous);
        previous = position;
    }
    EXPECT_NE(file.find(Version5Text("[HKEY_CURRENT_USER\\Software\\QuendaTests\\Export]\n\"v\"=dword:00000001\n")),
              std::string::npos);
}

}  // namespace
