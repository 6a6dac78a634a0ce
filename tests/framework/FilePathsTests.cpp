#include <gtest/gtest.h>

#include "framework/FilePaths.h"
#include "tests/support/TestText.h"

namespace {

TEST(FilePaths, TrailingBackslashes)
{
    struct SCase { const char* path; const char* ensured; const char* removed; } const cases[] = {
        {"", "\\", ""}, {"\\", "\\", "\\"}, {"\\Windows", "\\Windows\\", "\\Windows"},
        {"\\Windows\\", "\\Windows\\", "\\Windows"}, {"a\\\\", "a\\\\", "a\\"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.path);
        CString path = W(c.path);
        EnsureTrailingBackslash(path);
        EXPECT_EQ(path, W(c.ensured));
        path = W(c.path);
        RemoveTrailingBackslash(path);
        EXPECT_EQ(path, W(c.removed));
    }
}

TEST(FilePaths, SplitsPathsAndExtensionsAndFindsParentsAndTops)
{
    struct SCase {
        const char* path; const char* folder; const char* name; const char* base; const char* extension;
    } const cases[] = {
        {"\\My Documents\\backup.reg", "\\My Documents", "backup.reg", "\\My Documents\\backup", ".reg"},
        {"\\backup.reg", "\\", "backup.reg", "\\backup", ".reg"}, {"\\Windows\\", "\\Windows", "", "\\Windows\\", ""},
        {"name", "", "name", "name", ""},
        // A dot in a folder is no extension of the name.
        {"\\v1.2\\readme", "\\v1.2", "readme", "\\v1.2\\readme", ""},
        {"\\a\\archive.tar.gz", "\\a", "archive.tar.gz", "\\a\\archive.tar", ".gz"},
        {"\\a\\.profile", "\\a", ".profile", "\\a\\", ".profile"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.path);
        CString folder = W("stale");
        CString name = W("stale");
        SplitPath(W(c.path), folder, name);
        EXPECT_EQ(folder, W(c.folder));
        EXPECT_EQ(name, W(c.name));
        CString base;
        CString extension = W("stale");
        SplitExtension(W(c.path), base, extension);
        EXPECT_EQ(base, W(c.base));
        EXPECT_EQ(extension, W(c.extension));
    }

    struct SFolder { const char* folder; bool top; const char* parent; } const folders[] = {
        {"\\", true, "\\"}, {"\\Windows", false, "\\"}, {"\\Storage Card\\Backups", false, "\\Storage Card"},
        {"C:", true, "C:"}, {"C:\\", true, "C:"}, {"C:\\users", false, "C:"}, {"C:\\users\\q", false, "C:\\users"},
    };
    for (const SFolder& c : folders) {
        SCOPED_TRACE(c.folder);
        EXPECT_EQ(IsTopFolder(W(c.folder)), c.top);
        EXPECT_EQ(ParentFolder(W(c.folder)), W(c.parent));
    }
}

TEST(FilePaths, TypedNamesAreCheckedAndCompleted)
{
    struct SCase { const char* typed; EFileNameCheck check; const char* completed; } const cases[] = {
        {"backup", EFileNameCheck::kValid, "backup.reg"}, {"backup.txt", EFileNameCheck::kValid, "backup.txt"},
        {"my.backup", EFileNameCheck::kValid, "my.backup"}, {"résumé", EFileNameCheck::kValid, "résumé.reg"},
        {"", EFileNameCheck::kEmpty, nullptr},  {".", EFileNameCheck::kDotName, nullptr},
        {"..", EFileNameCheck::kDotName, nullptr}, {"...", EFileNameCheck::kValid, "..."},
    };
    for (const char* bad : {"a\\b", "a/b", "c:", "*", "what?", "\"q\"", "<a>", "a|b"}) {
        EXPECT_EQ(CheckTypedFileName(W(bad)), EFileNameCheck::kBadCharacters) << bad;
        EXPECT_FALSE(IsValidFileName(W(bad))) << bad;
    }
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.typed);
        EXPECT_EQ(CheckTypedFileName(W(c.typed)), c.check);
        EXPECT_TRUE(IsValidFileName(W(c.typed)));
        if (c.completed != nullptr) {
            EXPECT_EQ(WithDefaultExtension(W(c.typed)), W(c.completed));
        }
    }
    EXPECT_EQ(CString(FileNameCheckMessage(EFileNameCheck::kBadCharacters)),
              W("File name can not contain the following characters:\r\n\\/:*?\"<>|"));
    EXPECT_EQ(FileNameCheckMessage(EFileNameCheck::kValid), nullptr);
}

TEST(FilePaths, RowImages)
{
    const DWORD card = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_TEMPORARY;
    EXPECT_EQ(FileRowImage(kRowParent, 0, W("..")), 2);
    EXPECT_EQ(FileRowImage(kRowFolder, FILE_ATTRIBUTE_DIRECTORY, W("Windows")), 1);
    EXPECT_EQ(FileRowImage(kRowFolder, card, W("Storage Card")), 4);
    EXPECT_EQ(FileRowImage(kRowFile, 0, W("a.REG")), 3);
    EXPECT_EQ(FileRowImage(kRowFile, 0, W("a.reg.txt")), 0);
    EXPECT_EQ(FileRowImage(kRowFile, 0, W("reg")), 0);
}

TEST(FilePaths, LocationsShortenFromTheMiddleAndSpecialFoldersExpandAtTheStart)
{
    struct SCase { const char* folder; size_t width; const char* expected; } const cases[] = {
        {"\\My Documents\\Personal\\Backups", 100, "Location: \\My Documents\\Personal\\Backups"},
        {"\\My Documents\\Personal\\Backups", 36, "Location: \\My Documents\\P...\\Backups"},
        {"\\My Documents\\Personal\\Backups", 22, "Location: \\...\\Backups"},
        {"\\My Documents\\Personal\\Backups", 21, "Location: ...\\Backups"},
        {"\\My Documents\\Personal\\Backups", 18, "Location: ...ckups"}, {"\\Windows", 17, "Location: ...dows"},
        {"\\Windows", 1, "Location: ..."},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.expected);
        const CString text =
            ShortenedLocation(W(c.folder), [&](const CString& candidate) { return candidate.GetLength() <= c.width; });
        EXPECT_EQ(text, W(c.expected));
    }

    const auto resolve = [](int index) {
        return index == 2 ? W("\\Windows") : index == 3 ? W("\\Temp\\") : CString();
    };
    struct SSpecial { const char* path; const char* expected; } const specials[] = {
        {"%Windows%", "\\Windows"}, {"%windows%\\quenda.reg", "\\Windows\\quenda.reg"},
        {"%TEMP%\\x.reg", "\\Temp\\x.reg"}, {"%Temp%", "\\Temp\\"}, {"%StartUp%\\x", "%StartUp%\\x"},
        {"%Windowsx%", "%Windowsx%"}, {"\\a\\%Windows%", "\\a\\%Windows%"},
    };
    for (const SSpecial& c : specials) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(ExpandSpecialFolder(W(c.path), resolve), W(c.expected));
    }
    EXPECT_EQ(CString(SpecialFolderToken(0)), W("%StartUp%"));
    EXPECT_EQ(CString(SpecialFolderToken(4)), W("%Programs%"));
}

}  // namespace
