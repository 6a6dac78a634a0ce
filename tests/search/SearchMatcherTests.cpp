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

TEST(SearchMatcher, NamesAndDataMatchByTheRuleOfTheirType)
{
    const std::vector<BYTE> sixteen = Bytes({16, 0, 0, 0});
    const std::vector<BYTE> endOfList = Bytes({0, 0});
    struct SCase { const char* text; int flags; DWORD type; std::vector<BYTE> data; bool matches; } const cases[] = {
        // Numbers in either notation; case and whole-string rules do not apply.
        {"0x10", kPlain, REG_DWORD, sixteen, true}, {"16", kWhole | kCase, REG_DWORD, sixteen, true},
        {"-1", kPlain, REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}), false},
        {"0", kPlain, REG_DWORD, Bytes({16, 0}), true},
        {"0XfF", kPlain, REG_DWORD, Bytes({0xFF, 0, 0, 0}), true},
        {"4294967297", kPlain, REG_DWORD, Bytes({1, 0, 0, 0}), true},  // wraps round
        {"0x", kPlain, REG_DWORD, Bytes({0, 0, 0, 0}), false}, {" 5", kPlain, REG_DWORD, Bytes({5, 0, 0, 0}), false},
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
        // Other types: hex bytes, UTF-16 at any byte offset, or ANSI text
        // (Windows-1252 on both builds). Blanks may stand between bytes; a
        // lone digit counts only as the very last character.
        {"ab cd", kPlain, REG_BINARY, Bytes({0, 0xAB, 0xCD, 1}), true},
        {"  ab\tcd ", kPlain, REG_BINARY, Bytes({0xAB, 0xCD}), true}, {" 5", kPlain, REG_BINARY, Bytes({5}), true},
        {"abc", kPlain, REG_BINARY, Bytes({0xAB, 0x0C}), true}, {"abc", kPlain, REG_BINARY, Bytes({0xAB, 0x0B}), false},
        {"abc ", kPlain, REG_BINARY, Bytes({0xAB, 0x0C}), false}, {"a b", kPlain, REG_BINARY, Bytes({0x0A, 0x0B}), false},
        {"Grüße €", kPlain, REG_BINARY, Bytes({'G', 'r', 0xFC, 0xDF, 'e', ' ', 0x80}), true},
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
