#include <gtest/gtest.h>

#include "regfile/RegSyntax.h"
#include "tests/support/TestText.h"

using namespace regsyntax;

namespace {

TEST(RegSyntax, DataFormsAndContinuationLines)
{
    const struct { const char* data; EData result; DWORD type; std::vector<BYTE> bytes; } cases[] = {
        {"\"x\\\"y\"", EData::Complete, REG_SZ, Bytes({'x', 0, '"', 0, 'y', 0, 0, 0})},
        {"\"\"  ", EData::Complete, REG_SZ, Bytes({0, 0})}, {"\"x\" y", EData::SyntaxError, 0, {}},
        {"\"open", EData::SyntaxError, 0, {}},
        {"dword:ffffffff", EData::Complete, REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF})},
        {"DWORD: 1", EData::Complete, REG_DWORD, Bytes({1, 0, 0, 0})}, {"dword:100000000", EData::SyntaxError, 0, {}},
        {"dword:", EData::SyntaxError, 0, {}}, {"dword:1x", EData::SyntaxError, 0, {}},
        {"hex:1,2,3", EData::Complete, REG_BINARY, Bytes({1, 2, 3})},
        {"Hex: 0a , FF ,", EData::Complete, REG_BINARY, Bytes({0x0A, 0xFF})},
        {"hex:", EData::Complete, REG_BINARY, {}}, {"hex:123", EData::SyntaxError, 0, {}},
        {"hex:01 02", EData::SyntaxError, 0, {}}, {"hex:,01", EData::SyntaxError, 0, {}},
        {"hex:01,\\", EData::Continues, REG_BINARY, Bytes({1})}, {"hex:\\", EData::Continues, REG_BINARY, {}},
        {"hex:01\\ x", EData::SyntaxError, 0, {}},
        {"hex(7):61,00,00,00", EData::Complete, REG_MULTI_SZ, Bytes({0x61, 0, 0, 0})},
        {"hex(0):", EData::Complete, REG_NONE, {}}, {"HEX(FfFfFfFf):01", EData::Complete, 0xFFFFFFFF, Bytes({1})},
        {"hex(123456789):01", EData::SyntaxError, 0, {}}, {"hex():01", EData::SyntaxError, 0, {}},
        {"hex(2)01", EData::SyntaxError, 0, {}}, {"hex", EData::SyntaxError, 0, {}},
        {"he", EData::SyntaxError, 0, {}}, {"", EData::SyntaxError, 0, {}}, {"binary:01", EData::SyntaxError, 0, {}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.data);
        DWORD type = 99;
        CShdBinaryBuffer data;
        bool hexForm = false;
        ASSERT_EQ(ParseValueData(W(item.data), 0, type, data, hexForm), item.result);
        if (item.result != EData::SyntaxError) {
            EXPECT_EQ(hexForm, CString(W(item.data)).Left(3).CompareNoCase(TEXT("hex")) == 0);
            EXPECT_EQ(type, item.type);
            EXPECT_EQ(BufferBytes(data), item.bytes);
        }
    }

    // Continuation lines append.
    CShdBinaryBuffer data;
    data.Append("\x01", 1);
    EXPECT_EQ(ParseHexBytes(W("      02,03,\\"), 0, data), EData::Continues);
    EXPECT_EQ(ParseHexBytes(W("  a"), 0, data), EData::Complete);
    EXPECT_EQ(BufferBytes(data), Bytes({1, 2, 3, 0x0A}));
    EXPECT_EQ(ParseHexBytes(W("[HKEY_USERS]"), 0, data), EData::SyntaxError);
}

}  // namespace
