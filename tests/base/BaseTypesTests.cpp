#include <gtest/gtest.h>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/ObjArray.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "tests/support/TestText.h"

namespace {

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

TEST(CompareNoCase, FoldsLettersTheWayTheRegistryDoes)
{
    const struct { const char* a; const char* b; int expected; } cases[] = {
        {"HKEY_local_MACHINE", "hkey_LOCAL_machine", 0}, {"Ä", "ä", 0}, {"ÆØÅ", "æøå", 0}, {"ÿ", "Ÿ", 0},
        {"Σίσυφος", "ΣΊΣΥΦΟΣ", 0}, {"Привет", "ПРИВЕТ", 0}, {"abc", "abd", -1}, {"ab", "abc", -1}, {"", "", 0},
        // Full case mappings that change the length are not simple folds.
        {"ß", "SS", 1},
        // ASCII letters sort as lower case, as _wcsicmp does: "_" (0x5F)
        // before "a" (0x61) and after "Z".
        {"_x", "a", -1}, {"_x", "A", -1}, {"Z", "_", 1}, {"1", "_", -1}, {"Zeta", "ärger", -1},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.a) + " vs " + item.b);
        EXPECT_EQ(Sign(CompareNoCase(W(item.a), W(item.b))), item.expected);
        EXPECT_EQ(Sign(CompareNoCase(W(item.b), W(item.a))), -item.expected);
    }
    // Counted forms stop at the count or the end.
    EXPECT_EQ(CompareNoCase(W("SOFTWARE\\x"), W("software\\y"), 9), 0);
    EXPECT_NE(CompareNoCase(W("SOFTWARE\\x"), W("software\\y"), 10), 0);
    EXPECT_LT(CompareNoCase(W("ab"), W("abc"), 5), 0);
    const WCHAR withNul[] = {'A', 0, 'b'};
    const WCHAR other[] = {'a', 0, 'B'};
    EXPECT_EQ(CompareNoCaseN(withNul, other, 3), 0);
}

TEST(TextHelpers, CaseMappingSpaceSearchAndUtf8)
{
    // The ordinary letters are pinned by every comparison and search; these
    // are the units the mapping must leave alone.
    EXPECT_EQ(ToLowerChar(0x0130), 0x0130);  // İ lowers to two units: kept
    EXPECT_EQ(ToUpperChar(0xD800), 0xD800);  // surrogates are not letters

    for (int c : {0x20, 0x09, 0x0A, 0x0D, 0xA0, 0x3000})
        EXPECT_TRUE(IsSpace(static_cast<WCHAR>(c))) << c;
    for (int c : {0x61, 0x5F, 0x00, 0xFEFF})
        EXPECT_FALSE(IsSpace(static_cast<WCHAR>(c))) << c;
    const CString text = W("abcabd");
    EXPECT_EQ(StrStr(text, W("abd")) - text.GetString(), 3);
    EXPECT_EQ(StrStr(text, W("abe")), nullptr);
    EXPECT_EQ(StrStr(text, W("")), text.GetString());

    // UTF-8 round trips; broken input becomes the replacement character.
    const CString utf8 = W("a€😀ß");
    EXPECT_EQ(utf8.GetLength(), 5u);  // the emoji is a surrogate pair
    EXPECT_EQ(ToUtf8(utf8), "a€😀ß");
    EXPECT_EQ(FromUtf8("\xff" "a"), W("\xef\xbf\xbd" "a"));
    const WCHAR lone[] = {0xD800, 'x'};
    EXPECT_EQ(ToUtf8(lone, 2), "\xef\xbf\xbdx");
}

TEST(CString, SearchesCutsEditsAndKeepsEmbeddedNuls)
{
    const CString path = W("HKLM\\Software\\Foo (3)");
    EXPECT_EQ(std::vector<int>({path.Find('\\'), path.Find('\\', 5), path.Find(W("Foo")), path.Find('#'),
                                path.ReverseFind('(')}),
              std::vector<int>({4, 13, 14, -1, 18}));
    EXPECT_EQ(path.Left(4) + W("|") + path.Mid(5, 8) + W("|") + path.Mid(14) + W("|") + path.Mid(99) + W("|") +
                  path.Right(3),
              W("HKLM|Software|Foo (3)||(3)"));
    EXPECT_EQ(path.Right(99), path);

    CString text = W("ab c");
    text.Insert(2, TEXT("--"));
    EXPECT_EQ(text, W("ab-- c"));

    const WCHAR units[] = {'a', 0, 'b'};
    const CString withNul(units, 3);
    EXPECT_EQ(withNul.GetLength(), 3u);
    EXPECT_NE(withNul, CString(units, 1));
    EXPECT_EQ(withNul, CString(units, 3));

    CString filled;
    LPWSTR buffer = filled.GetBuffer(10);
    buffer[0] = 'h';
    buffer[1] = 'i';
    buffer[2] = 0;
    filled.ReleaseBuffer();
    EXPECT_EQ(filled, W("hi"));
    EXPECT_EQ(CString(static_cast<LPCWSTR>(nullptr)), W(""));
}

// The array sorts and removes its elements (that it frees them, the
// sanitizer build sees); the buffer grows zero-filled, copies only when
// asked, and reports a failed growth instead of throwing.
TEST(Containers, ObjArraySortsItsElementsBinaryBufferGrowsZeroFilled)
{
    CShdObjArray<int> items;
    for (int value : {3, 1, 2})
        EXPECT_GE(items.Add(new int(value)), 0);
    items.Sort([](int a, int b) { return a - b; });
    EXPECT_EQ(*items[0], 1);
    EXPECT_EQ(*items.GetAt(2), 3);
    items.RemoveAt(0);
    EXPECT_EQ(items.GetCount(), 2u);
    EXPECT_EQ(*items[0], 2);

    CShdCopyableBinaryBuffer buffer;
    ASSERT_TRUE(buffer.Append("ab", 2));
    ASSERT_TRUE(buffer.SetSize(4));
    EXPECT_EQ(BufferBytes(buffer), Bytes({'a', 'b', 0, 0}));
    CShdCopyableBinaryBuffer copy = buffer;
    buffer.Clear();
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(copy.GetSize(), 4u);
    EXPECT_TRUE(copy.Append(nullptr, 0));
    EXPECT_FALSE(copy.SetSize(static_cast<size_t>(-1)));
    EXPECT_EQ(copy.GetSize(), 4u);
}

}  // namespace
