#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "search/SearchMatcher.h"
#include "search/SearchPaths.h"
#include "tests/support/TestText.h"

namespace {

enum EFlags { kPlain = 0, kCase = 1, kWhole = 2 };

CSearchMatcher Matcher(const char* text, int flags = kPlain)
{
    SSearchParams params;
    params.searchString = W(text);
    params.caseSensitive = (flags & kCase) != 0;
    params.wholeStringOnly = (flags & kWhole) != 0;
    CSearchMatcher matcher;
    matcher.SetUp(params);
    return matcher;
}

TEST(SearchMatcher, DerivesNumberAndHexBytesFromTheText)
{
    struct SCase { const char* text; bool numberValid; DWORD number; std::vector<BYTE> hex; } const cases[] = {
        {"16", true, 16, Bytes({0x16})},        {"0XfF", true, 255, {}},
        {"4294967297", true, 1, Bytes({0x42, 0x94, 0x96, 0x72, 0x97})},
        {"0x", false, 0, {}},                   {"-1", false, 0, {}},
        {" 5", false, 0, Bytes({5})},           {"  ab\tcd ", false, 0, Bytes({0xAB, 0xCD})},
        {"abc", false, 0, Bytes({0xAB, 0x0C})}, {"a b", false, 0, {}},
        {"abc ", false, 0, {}},                 {"ag", false, 0, {}},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.text);
        const CSearchMatcher matcher = Matcher(test.text);
        DWORD number = 99;
        EXPECT_EQ(matcher.GetNumber(number), test.numberValid);
        EXPECT_EQ(number, test.number);
        EXPECT_EQ(matcher.HexBytes(), test.hex);
    }
    EXPECT_EQ(Matcher("Grüße €").AnsiBytes(), Bytes({'G', 'r', 0xFC, 0xDF, 'e', ' ', 0x80}))
        << "Windows-1252 on both builds";
}

TEST(SearchMatcher, NamesAndDataMatchByTheRuleOfTheirType)
{
    const std::vector<BYTE> sixteen = Bytes({16, 0, 0, 0});
    const std::vector<BYTE> endOfList = Bytes({0, 0});
    struct SCase { const char* text; int flags; DWORD type; std::vector<BYTE> data; bool matches; } const cases[] = {
        // Numbers in either notation; case and whole-string rules do not apply.
        {"0x10", kPlain, REG_DWORD, sixteen, true}, {"16", kWhole | kCase, REG_DWORD, sixteen, true},
        {"-1", kPlain, REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}), false},
        {"0", kPlain, REG_DWORD, Bytes({16, 0}), true},
        // Strings, as names are matched; they end at their first NUL.
        {"ÄB", kPlain, REG_SZ, Utf16Bytes(W("xäbx"), true), true},
        {"ab", kCase, REG_SZ, Utf16Bytes(W("xxABxx"), true), false},
        {"cd", kPlain, REG_SZ, Utf16Bytes(W("ab"), true) + Utf16Bytes(W("cd"), true), false},
        {"abc", kWhole, REG_EXPAND_SZ, Utf16Bytes(W("ABC"), false) + Bytes({'x'}), true},
        {"abc", kWhole, REG_SZ, Utf16Bytes(W("abcd"), true), false},
        {"abc", kWhole | kCase, REG_SZ, Utf16Bytes(W("ABC"), true), false},
        // Multi-strings match when any element does; empty elements count.
        {"abc", kWhole, REG_MULTI_SZ, Utf16Bytes(W("x"), true) + Utf16Bytes(W("ABC"), true) + endOfList, true},
        {"abc", kWhole, REG_MULTI_SZ, Utf16Bytes(W("abcd"), true) + endOfList, false},
        {"yz", kPlain, REG_MULTI_SZ, Utf16Bytes(W("a"), true) + endOfList + Utf16Bytes(W("xyz"), false), true},
        // Other types: hex bytes, UTF-16 at any byte offset, or ANSI text.
        {"ab cd", kPlain, REG_BINARY, Bytes({0, 0xAB, 0xCD, 1}), true},
        {"ab cd", kPlain, REG_BINARY, Bytes({7}) + Utf16Bytes(W("xAB CD"), false), true},
        {"ab cd", kPlain, REG_NONE, Bytes({'[', 'A', 'B', ' ', 'C', 'D', ']'}), true},
        {"ab cd", kCase, REG_NONE, Bytes({'[', 'A', 'B', ' ', 'C', 'D', ']'}), false},
        {"grüße", kPlain, REG_BINARY, Bytes({'G', 'R', 0xFC, 0xDF, 'E'}), true},
        {"abc", kWhole, REG_BINARY, Bytes({'x', 'a', 'b', 'c'}), true},
        {"00 10", kPlain, REG_DWORD_BIG_ENDIAN, Bytes({0, 0, 0, 16}), true},
    };
    for (const SCase& test : cases) {
        SCOPED_TRACE(std::string(test.text) + " in type " + std::to_string(test.type));
        EXPECT_EQ(Matcher(test.text, test.flags).MatchData(test.type, test.data.data(), test.data.size()),
                  test.matches);
    }
    EXPECT_FALSE(Matcher("").MatchName(W("x"))) << "an empty text is in no name";
}

TEST(SearchPaths, OrderIsTheOrderOfTheWalk)
{
    const char* ordered[] = {"", "A", "a\\b", "a\\B\\c", "a\\b_", "a\\bc", "A_", "ab", "b"};
    for (size_t i = 0; i + 1 < sizeof(ordered) / sizeof(ordered[0]); ++i) {
        SCOPED_TRACE(std::string(ordered[i]) + " < " + ordered[i + 1]);
        EXPECT_LT(ComparePaths(W(ordered[i]), W(ordered[i + 1])), 0);
        EXPECT_GT(ComparePaths(W(ordered[i + 1]), W(ordered[i])), 0);
    }
    EXPECT_EQ(ComparePaths(W("Ab\\CD"), W("aB\\cd")), 0);
    EXPECT_LT(ComparePaths(nullptr, W("")), 0);
}

}  // namespace
