// Windows build only: this program and Wine's own reg.exe read each other's
// files.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "regfile/RegImportRun.h"
#include "registry/KeyOperations.h"
#include "registry/RegKey.h"
#include "tests/regfile/ExportTestFiles.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/RunProcess_win.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

// Every value form but those that cannot survive the two formats by design:
// a value literally named "@" (this format writes the default value as "@"=
// too) and strings holding CR or LF (written raw inside the quotes, which
// Wine's reader does not accept); and one found here: REG_SZ data that is not
// one terminated string goes out as hex(1): bytes, exactly, but Wine's reg
// import adds the missing terminator (61,00,62,00 comes back as
// 61,00,62,00,00,00) and drops an odd last byte.
void WriteEveryPortableForm(HKEY key)
{
    const auto write = [&](const char* keyPath, const char* name, DWORD type, const std::vector<BYTE>& data) {
        WriteTestValue(key, W(keyPath), W(name), type, data);
    };
    write("", "", REG_SZ, Utf16Bytes(W("Default value"), true));
    write("", "binary25", REG_BINARY, std::vector<BYTE>(25, 0xA5));
    write("", "binary26", REG_BINARY, std::vector<BYTE>(26, 0x5A));
    write("", "dword", REG_DWORD, Bytes({0x78, 0x56, 0x34, 0x12}));
    write("", "dword3", REG_DWORD, Bytes({1, 2, 3}));
    write("", "embedded", REG_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true));
    write("", "empty", REG_BINARY, {});
    write("", "empty string", REG_SZ, Utf16Bytes(W(""), true));
    write("", "expand", REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%\\ü"), true));
    write("", "Grüße \"quoted\" \\", REG_SZ, Utf16Bytes(W("Müller \"quoted\" C:\\path\\ ;d [e]"), true));
    write("", "large", REG_BINARY, Sequence(1100, 7));
    write("", "multi", REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true) + Bytes({0, 0}));
    write("", "non-ASCII äЖ€", REG_SZ, Utf16Bytes(W("ünïcødé 中"), true));
    write("", "none", REG_NONE, Bytes({1, 2}));
    write("", "qword", REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
    write("", "unknown", 0x1234, Bytes({0xFF}));
    write("A", "inA", REG_DWORD, Bytes({1, 0, 0, 0}));
    write("A\\Ünïcode ключ", "日本", REG_SZ, Utf16Bytes(W("é"), true));
    write("b", "tab", REG_SZ, Utf16Bytes(W("a\tb"), true));
    write("c", "", REG_SZ, Utf16Bytes(W("c default"), true));
    write("Child [1]", "n", REG_DWORD, Bytes({1, 0, 0, 0}));
}

TEST(WineInterop, WhatRegImportReadsExportsTheSame)
{
    CScratchKey scratch(TEXT("RoundTrip"));
    CTestFile first("roundtrip-first.reg");
    CTestFile second("roundtrip-second.reg");
    WriteEveryPortableForm(scratch.Handle());
    ASSERT_TRUE(ExportKey(first.Path(), true, scratch.Path()));
    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, scratch.Path()));
    ASSERT_EQ(RunProcess(CString(TEXT("reg.exe import ")) + first.Path()), 0);
    ASSERT_TRUE(ExportKey(second.Path(), true, scratch.Path()));
    EXPECT_EQ(second.Bytes(), first.Bytes());

    // The same bytes, yet not the same registry: the default value came
    // back as a value named "@".
    CShdRegKey key;
    ASSERT_TRUE(key.Open(HKEY_CURRENT_USER, scratch.Path()));
    EXPECT_TRUE(key.ValueExists(TEXT("@")));
    EXPECT_FALSE(key.ValueExists(TEXT("")));
}

// Files that reg.exe exports import into the same registry state as reg.exe's
// own import gives.
TEST(WineInterop, RegExportFilesImportAsRegImportDoes)
{
    CScratchKey scratch(TEXT("WineImport"));
    CTestFile file("wine-export.reg");
    WriteEveryPortableForm(scratch.Handle());
    // The one known difference: Wine writes a line feed inside a string as
    // \n, which this format reads as the letter n.
    WriteTestValue(scratch.Handle(), W(""), W("newline"), REG_SZ, Utf16Bytes(W("line1\nline2"), true));
    const CString full = CString(TEXT("HKEY_CURRENT_USER\\")) + scratch.Path();
    ASSERT_EQ(RunProcess(CString::Formatted(TEXT("reg.exe export \"%s\" %s /y"), full, file.Path())), 0);

    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, scratch.Path()));
    ASSERT_EQ(RunProcess(CString::Formatted(TEXT("reg.exe import %s"), file.Path())), 0);
    const std::string byWine = DumpTree(HKEY_CURRENT_USER, scratch.Path());

    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, scratch.Path()));
    CString error;
    EXPECT_TRUE(CRegImportRun(file.Path(), true).Run([] { return false; }, error)) << ToUtf8(error);
    std::string byQuenda = DumpTree(HKEY_CURRENT_USER, scratch.Path());
    const std::string wineNewline = "6c 00 69 00 6e 00 65 00 31 00 0a 00";  // "line1" LF
    const std::string quendaNewline = "6c 00 69 00 6e 00 65 00 31 00 6e 00";  // "line1" n
    const size_t at = byQuenda.find(quendaNewline);
    ASSERT_NE(at, std::string::npos) << byQuenda;
    byQuenda.replace(at, quendaNewline.size(), wineNewline);
    EXPECT_EQ(byQuenda, byWine);
}

}  // namespace
