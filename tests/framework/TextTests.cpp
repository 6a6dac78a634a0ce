#include <gtest/gtest.h>

#include "framework/Text.h"
#include "framework/Utf8.h"
#include "tests/support/TestText.h"

namespace {

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

TEST(CompareNoCase, FoldsLettersTheWayTheRegistryDoes)
{
    struct SCase {
        const char* a;
        const char* b;
        int expected;
    } const cases[] = {
        {"HKEY_local_MACHINE", "hkey_LOCAL_machine", 0},
        {"Ä", "ä", 0},
        {"ÆØÅ", "æøå", 0},
        {"Σίσυφος", "ΣΊΣΥΦΟΣ", 0},
        {"Привет", "ПРИВЕТ", 0},
        {"ÿ", "Ÿ", 0},
        // Full case mappings that change the length are not simple folds.
        {"ß", "SS", 1},
        {"abc", "abd", -1},
        {"ab", "abc", -1},
        {"", "", 0},
        // ASCII letters sort as lower case, as _wcsicmp does: "_" (0x5F)
        // before "a" (0x61) and after "Z".
        {"_x", "a", -1},
        {"_x", "A", -1},
        {"Z", "_", 1},
        {"1", "_", -1},
        {"Zeta", "ärger", -1},
    };
    for (const SCase& item : cases) {
        SCOPED_TRACE(std::string(item.a) + " vs " + item.b);
        EXPECT_EQ(Sign(CompareNoCase(W(item.a), W(item.b))), item.expected);
        EXPECT_EQ(Sign(CompareNoCase(W(item.b), W(item.a))), -item.expected);
    }
}

TEST(CompareNoCase, CountedFormsStopAtTheCountOrTheEnd)
{
    EXPECT_EQ(CompareNoCase(W("SOFTWARE\\x"), W("software\\y"), 9), 0);
    EXPECT_NE(CompareNoCase(W("SOFTWARE\\x"), W("software\\y"), 10), 0);
    EXPECT_LT(CompareNoCase(W("ab"), W("abc"), 5), 0);
    const WCHAR withNul[] = {'A', 0, 'b'};
    const WCHAR other[] = {'a', 0, 'B'};
    EXPECT_EQ(CompareNoCaseN(withNul, other, 3), 0);
}

TEST(CaseMapping, MapsSingleUnitsAndLeavesOthers)
{
    EXPECT_EQ(ToLowerChar('A'), 'a');
    EXPECT_EQ(ToUpperChar(0xE4), 0xC4);    // ä
    EXPECT_EQ(ToLowerChar(0x0130), 0x0130);  // İ lowers to two units: kept
    EXPECT_EQ(ToUpperChar(0xD800), 0xD800);  // surrogates are not letters
    EXPECT_EQ(ToUpperChar('1'), '1');
    CString text = W("ÄbC Σ");
    text.MakeLower();
    EXPECT_EQ(text, W("äbc σ"));
}

TEST(TextHelpers, SpaceHexAndSearch)
{
    for (int c : {0x20, 0x09, 0x0A, 0x0D, 0xA0, 0x3000})
        EXPECT_TRUE(IsSpace(static_cast<WCHAR>(c))) << c;
    for (int c : {0x61, 0x5F, 0x00, 0xFEFF})
        EXPECT_FALSE(IsSpace(static_cast<WCHAR>(c))) << c;
    EXPECT_EQ(HexDigitValue('f'), 15);
    EXPECT_EQ(HexDigitValue('F'), 15);
    EXPECT_EQ(HexDigitValue('g'), -1);
    const CString text = W("abcabd");
    EXPECT_EQ(StrStr(text, W("abd")) - text.GetString(), 3);
    EXPECT_EQ(StrStr(text, W("abe")), nullptr);
    EXPECT_EQ(StrStr(text, W("")), text.GetString());
}

TEST(Utf8, RoundTripsAndReplacesBrokenInput)
{
    const CString text = W("a€😀ß");
    EXPECT_EQ(text.GetLength(), 5u);  // the emoji is a surrogate pair
    EXPECT_EQ(ToUtf8(text), "a€😀ß");
    EXPECT_EQ(FromUtf8("\xff" "a"), W("\xef\xbf\xbd" "a"));
    const WCHAR lone[] = {0xD800, 'x'};
    EXPECT_EQ(ToUtf8(lone, 2), "\xef\xbf\xbdx");
}

}  // namespace
