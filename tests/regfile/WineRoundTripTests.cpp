// Windows build only: Wine's own reg.exe reads back what the exporter writes.
#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "registry/KeyOperations.h"
#include "registry/RegKey.h"
#include "tests/regfile/ExportTestFiles.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/RunProcess_win.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

TEST(WineRoundTrip, WhatRegImportReadsExportsTheSame)
{
    CScratchKey scratch(TEXT("RoundTrip"));
    CTestFile first("roundtrip-first.reg");
    CTestFile second("roundtrip-second.reg");
    const auto write = [&](const char* keyPath, const char* name, DWORD type, const std::vector<BYTE>& data) {
        WriteTestValue(scratch.Handle(), W(keyPath), W(name), type, data);
    };
    // Every value form but these: two that cannot survive by design of the
    // two formats, a value literally named "@" (this format writes the
    // default value as "@"= too) and strings holding CR or LF (written raw
    // inside the quotes, which Wine's reader does not accept); and one found
    // here: REG_SZ data that is not one terminated string goes out as
    // hex(1): bytes, exactly, but Wine's reg import adds the missing
    // terminator (61,00,62,00 comes back as 61,00,62,00,00,00) and drops an
    // odd last byte (61,00,62 comes back as 61,00,00,00,00).
    std::vector<BYTE> large;
    for (int i = 0; i < 1100; ++i)
        large.push_back(static_cast<BYTE>(i * 7));
    write("", "", REG_SZ, Utf16Bytes(W("Default value"), true));
    write("", "binary25", REG_BINARY, std::vector<BYTE>(25, 0xA5));
    write("", "binary26", REG_BINARY, std::vector<BYTE>(26, 0x5A));
    write("", "dword", REG_DWORD, Bytes({0x78, 0x56, 0x34, 0x12}));
    write("", "dword3", REG_DWORD, Bytes({1, 2, 3}));
    write("", "embedded", REG_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true));
    write("", "empty", REG_BINARY, {});
    write("", "expand", REG_EXPAND_SZ, Utf16Bytes(W("%TEMP%\\ü"), true));
    write("", "Grüße \"quoted\" \\", REG_SZ, Utf16Bytes(W("Müller \"quoted\" C:\\path\\"), true));
    write("", "large", REG_BINARY, large);
    write("", "multi", REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true) + Bytes({0, 0}));
    write("", "none", REG_NONE, Bytes({1, 2}));
    write("", "qword", REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
    write("", "unknown", 0x1234, Bytes({0xFF}));
    write("A", "inA", REG_DWORD, Bytes({1, 0, 0, 0}));
    write("A\\Ünïcode ключ", "日本", REG_SZ, Utf16Bytes(W("é"), true));
    write("b", "tab", REG_SZ, Utf16Bytes(W("a\tb"), true));
    write("c", "", REG_SZ, Utf16Bytes(W("c default"), true));

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

}  // namespace
