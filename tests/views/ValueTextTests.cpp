#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FaultInjectingPlatform.h"
#include "tests/support/RegistryDump.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "views/ValueRows.h"
#include "views/ValueText.h"

namespace {

std::string HexPairs(size_t count)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        if (i > 0)
            text += ' ';
        text += digits[(i >> 4) & 0xF];
        text += digits[i & 0xF];
    }
    return text;
}

TEST(ValueText, EachTypeHasItsOwnText)
{
    const struct { DWORD type; std::vector<BYTE> data; std::string text; } cases[] = {
        {REG_SZ, Utf16Bytes(W("Ärger"), true), "Ärger"},
        {REG_SZ, Utf16Bytes(W("no terminator"), false), "no terminator"},
        {REG_SZ, {}, ""},
        {REG_EXPAND_SZ, Utf16Bytes(W("%SystemRoot%\\x"), true), "%SystemRoot%\\x"},
        {REG_MULTI_SZ, Utf16Bytes(W("x"), true) + Bytes({0, 0}), "x..."},
        {REG_MULTI_SZ, Utf16Bytes(W("one"), true) + Utf16Bytes(W("two"), true) + Bytes({0, 0}), "one..."},
        {REG_MULTI_SZ, {}, "..."}, {REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}), "4294967295 (0xFFFFFFFF)"},
        {REG_DWORD, Bytes({0x2A, 0, 0, 0}), "42 (0x0000002A)"}, {REG_DWORD, Bytes({1, 2, 3}), ""},
        {REG_DWORD, Bytes({1, 2, 3, 4, 5}), ""}, {REG_BINARY, Bytes({0x00, 0xAB, 0x7F}), "00 AB 7F"},
        {REG_BINARY, {}, ""}, {REG_BINARY, Sequence(128), HexPairs(128)},
        {REG_BINARY, Sequence(129), HexPairs(128) + "..."}, {REG_NONE, Bytes({0x10}), "10"},
        {11, Bytes({0xDE, 0xAD}), "DE AD"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ValueDataText(c.type, c.data.data(), c.data.size()), W(c.text.c_str()))
            << "type " << c.type << ", " << c.data.size() << " bytes";
    }
}

class ValueRowsTest : public testing::Test {
protected:
    ValueRowsTest() : m_scoped(m_faults), m_scratch(TEXT("ValueRows")) {}

    void Write(LPCWSTR name, DWORD type, const std::vector<BYTE>& data)
    {
        WriteTestValue(m_scratch.Handle(), TEXT(""), name, type, data);
    }

    std::vector<SValueRow> Load(const SCutValue* cut)
    {
        std::vector<SValueRow> rows;
        EXPECT_TRUE(LoadValueRows(HKEY_CURRENT_USER, m_scratch.Path(), cut, rows));
        return rows;
    }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
};

// Each type has its own image; an unknown type shares one.
TEST_F(ValueRowsTest, RowsAreOrderedByNameWithoutRegardToCase)
{
    Write(TEXT("b"), REG_SZ, Utf16Bytes(W("bee"), true));
    Write(TEXT("A"), REG_DWORD, Bytes({1, 2, 3}));
    Write(TEXT("a2"), REG_BINARY, Bytes({0xAB}));
    Write(TEXT(""), REG_SZ, Utf16Bytes(W("default"), true));
    Write(TEXT("_x"), REG_NONE, {});
    Write(TEXT("m"), REG_MULTI_SZ, Bytes({0, 0}));
    Write(TEXT("e"), REG_EXPAND_SZ, Bytes({0, 0}));
    Write(TEXT("u5"), 5, {});
    Write(TEXT("uf"), 0xFFFF, {});

    const std::vector<SValueRow> rows = Load(nullptr);
    ASSERT_EQ(rows.size(), 9u);
    const char* names[] = {"", "_x", "A", "a2", "b", "e", "m", "u5", "uf"};
    const char* texts[] = {"default", "", "", "AB", "bee", "", "...", "", ""};
    const int images[] = {7, 12, 9, 8, 7, 11, 10, 13, 13};
    const DWORD types[] = {REG_SZ, REG_NONE, REG_DWORD, REG_BINARY, REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ, 5, 0xFFFF};
    for (size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].name, W(names[i])) << i;
        EXPECT_EQ(rows[i].dataText, W(texts[i])) << i;
        EXPECT_EQ(rows[i].image, images[i]) << i;
        EXPECT_EQ(ValueImage(types[i], true), images[i] - kCutImageOffset) << i;
    }
}

TEST_F(ValueRowsTest, OnlyTheCutValueOfItsOwnKeyHasTheCutImageAndAKeyNotOpenedHasNoRows)
{
    Write(TEXT("Moved"), REG_SZ, Utf16Bytes(W("x"), true));
    Write(TEXT("Stays"), REG_SZ, Utf16Bytes(W("y"), true));

    SCutValue cut;
    cut.root = HKEY_CURRENT_USER;
    cut.path = m_scratch.Path();
    cut.path.MakeLower();
    cut.valueName = TEXT("MOVED");
    std::vector<SValueRow> rows = Load(&cut);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].image, 0) << "paths and names compare without regard to case";
    EXPECT_EQ(rows[1].image, 7);

    cut.path += TEXT("\\Other");
    rows = Load(&cut);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].image, 7) << "the same name in another key is not cut";

    cut.path = m_scratch.Path();
    cut.root = HKEY_LOCAL_MACHINE;
    EXPECT_EQ(Load(&cut)[0].image, 7) << "nor under another root";

    // A key that cannot be opened gives no rows.
    m_faults.FailOpen(TEXT("ValueRows"));
    EXPECT_FALSE(LoadValueRows(HKEY_CURRENT_USER, m_scratch.Path(), nullptr, rows));
    EXPECT_TRUE(rows.empty());
}

}  // namespace
