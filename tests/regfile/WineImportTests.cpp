// Windows build only: files that Wine's own reg.exe exports import into the
// same registry state as Wine's own reg import gives.
#include <gtest/gtest.h>

#include <string>

#include "regfile/RegImportRun.h"
#include "registry/KeyOperations.h"
#include "registry/RegKey.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/RunProcess_win.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

TEST(WineImport, RegExportFilesImportAsRegImportDoes)
{
    CScratchKey scratch(TEXT("WineImport"));
    const CString source = scratch.Path() + TEXT("\\Src");
    {
        CShdRegKey key(true);
        ASSERT_TRUE(key.Create(HKEY_CURRENT_USER, source, nullptr));
        const struct {
            const char* name;
            DWORD type;
            std::vector<BYTE> data;
        } values[] = {
            {"", REG_SZ, Utf16Bytes(W("default"), true)},
            {"quotes \"and\" \\slashes\\", REG_SZ, Utf16Bytes(W("a \"b\" \\c\\ ;d [e]"), true)},
            {"non-ASCII äЖ€", REG_SZ, Utf16Bytes(W("ünïcødé 中"), true)},
            {"empty", REG_SZ, Utf16Bytes(W(""), true)},
            {"dword", REG_DWORD, Bytes({0x78, 0x56, 0x34, 0x12})},
            {"binary", REG_BINARY, std::vector<BYTE>(60, 0xAB)},
            {"empty binary", REG_BINARY, {}},
            {"expand", REG_EXPAND_SZ, Utf16Bytes(W("%PATH%;x"), true)},
            {"multi", REG_MULTI_SZ, Utf16Bytes(W("a"), true) + Utf16Bytes(W("b"), true) + Bytes({0, 0})},
            {"qword", REG_QWORD, Bytes({1, 2, 3, 4, 5, 6, 7, 8})},
            {"none", REG_NONE, Bytes({9})},
            // The one known difference: Wine writes a line feed inside a
            // string as \n, which this format reads as the letter n.
            {"newline", REG_SZ, Utf16Bytes(W("line1\nline2"), true)},
        };
        for (const auto& value : values)
            ASSERT_TRUE(key.WriteValue(W(value.name), value.type, value.data.data(),
                                       static_cast<DWORD>(value.data.size())));
        CShdRegKey child(true);
        ASSERT_TRUE(child.Create(key.GetHandle(), W("Child [1]"), nullptr));
        ASSERT_TRUE(child.WriteDword(W("n"), 1));
    }
    const CString full = CString(TEXT("HKEY_CURRENT_USER\\")) + source;
    const CString file = W("wine-export.reg");
    ASSERT_EQ(RunProcess(CString::Formatted(TEXT("reg.exe export \"%s\" %s /y"), full, file)), 0);

    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, source));
    ASSERT_EQ(RunProcess(CString::Formatted(TEXT("reg.exe import %s"), file)), 0);
    const std::string byWine = DumpTree(HKEY_CURRENT_USER, source);

    ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, source));
    CString error;
    EXPECT_TRUE(CRegImportRun(file, true).Run([] { return false; }, error)) << ToUtf8(error);
    std::string byQuenda = DumpTree(HKEY_CURRENT_USER, source);
    DeleteFileW(file);

    const std::string wineNewline = "6c 00 69 00 6e 00 65 00 31 00 0a 00";  // "line1" LF
    const std::string quendaNewline = "6c 00 69 00 6e 00 65 00 31 00 6e 00";  // "line1" n
    const size_t at = byQuenda.find(quendaNewline);
    ASSERT_NE(at, std::string::npos) << byQuenda;
    byQuenda.replace(at, quendaNewline.size(), wineNewline);
    EXPECT_EQ(byQuenda, byWine);
}

}  // namespace
