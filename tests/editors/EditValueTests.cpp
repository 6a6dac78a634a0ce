#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editors/EditValueModel.h"
#include "editors/ValueEditRules.h"
#include "framework/EditValueLayout.h"
#include "tests/support/TestText.h"
#include "views/ValueText.h"

namespace {

// Stored bytes become the text shown; that text, or what is typed instead,
// becomes the bytes written.
TEST(EditValue, StoredBytesBecomeTextAndTypedTextBecomesBytes)
{
    const struct {
        bool multi; std::vector<BYTE> stored; const char* shown; const char* typed; std::vector<BYTE> written;
    } cases[] = {
        {false, Bytes({'a', 0, 'b', 0, 'c'}), "ab", "ab", Bytes({'a', 0, 'b', 0, 0, 0})},
        {false, Bytes({'a', 0, 0, 0, 'b', 0, 0, 0}), "a", "", Bytes({0, 0})},
        {true, Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}), "a\r\nb", "a\r\nb", Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {true, Bytes({'a', 0, 0, 0, 'b', 0}), "a\r\nb", "a\nb", Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {true, Bytes({'a', 0, 0, 0, 0, 0, 0, 0}), "a\r\n", "a\n\r", Bytes({'a', 0, 0, 0, 0, 0, 0, 0})},
        {true, Bytes({0, 0, 'b', 0}), "\r\nb", "\rb", Bytes({0, 0, 'b', 0, 0, 0, 0, 0})},
        {true, Bytes({'a', 0, '\r', 0, 'b', 0, 0, 0}), "a\r\nb", "a\r\nb", Bytes({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
        {true, {}, "", "", Bytes({0, 0, 0, 0})},
    };
    for (const auto& test : cases) {
        const CString shown = test.multi ? MultiStringToText(test.stored.data(), test.stored.size())
                                         : StringDataText(test.stored.data(), test.stored.size());
        EXPECT_EQ(shown, W(test.shown));
        CShdBinaryBuffer written;
        ASSERT_TRUE(test.multi ? TextToMultiString(W(test.typed), written) : StringToBytes(W(test.typed), written));
        EXPECT_EQ(BufferBytes(written), test.written) << test.typed;
    }
}

TEST(EditValue, NumbersAreDigitsOnlyWithinTheirLimit)
{
    const struct { const char* text; bool hexadecimal; DWORD limit; bool valid; DWORD value; } cases[] = {
        {"4294967295", false, 0, true, 0xFFFFFFFF}, {"4294967296", false, 0, false, 0},
        {"ffffffff", true, 0, true, 0xFFFFFFFF},    {"-1", true, 0, false, 0},
        {"0x10", true, 0, false, 0},                {" 1", false, 0, false, 0},
        {"a", false, 0, false, 0},                  {"", true, 0, false, 0},
        {"FfFf", true, 0xFFFF, true, 0xFFFF},       {"10000", true, 0xFFFF, false, 0},
        // 2^64 + 5 wraps round unnoticed: no overflow test on the way.
        {"18446744073709551621", false, 0, true, 5},
    };
    for (const auto& test : cases) {
        DWORD value = 123;
        EXPECT_EQ(ParseNumber(W(test.text), test.hexadecimal, test.limit, value), test.valid) << test.text;
        EXPECT_EQ(value, test.value) << test.text;
    }
    EXPECT_EQ(ValueTypeName(REG_DWORD_BIG_ENDIAN), W("Unknown (0x5)"));

    // The base switches only when the number reads in the current base.
    CEditValueModel dword(HKEY_CURRENT_USER, TEXT(""), TEXT(""), REG_DWORD, false);
    CString shown;
    ASSERT_TRUE(dword.Load());
    EXPECT_FALSE(dword.SwitchBase(16, TEXT("abc"), shown));
    EXPECT_TRUE(dword.SwitchBase(16, TEXT("255"), shown) && shown == W("ff") && dword.GetBase() == 16);
}

std::string Text(const SEditValueRect& rect)
{
    return std::to_string(rect.x) + "," + std::to_string(rect.y) + "," + std::to_string(rect.width) + "," +
           std::to_string(rect.height);
}

TEST(EditValue, TallScreensStackAndShortOnesPutTallEditorsBeside)
{
    const struct { int dpi, width, height; SEditValueShape shape; const char* expected; } cases[] = {
        {96, 240, 180, {false, 7, false}, "stacked type 8,159,224,13 name 8,48,224,19 custom 0,0,0,0 tall 8,88,224,67"},
        {96, 320, 179, {false, 1, false}, "stacked 0,0,0,0 name 8,48,304,19 custom 0,0,0,0 tall 8,88,304,83"},
        {96, 320, 179, {true, 0, true}, "side 0,0,0,0 name 8,48,148,19 custom 8,88,148,19 tall 164,48,148,123"},
        {192, 480, 600, {true, 0, true}, "stacked 0,0,0,0 name 16,96,216,38 custom 248,96,216,38 tall 16,176,448,408"},
        {192, 640, 358, {false, 7, false}, "side 0,0,0,0 name 16,96,296,38 custom 16,176,296,38 tall 328,96,296,246"},
    };
    for (const auto& test : cases) {
        const SEditValueLayout layout = ComputeEditValueLayout(SEditValueMetrics::ForDpi(test.dpi, test.dpi),
                                                               test.width, test.height, test.shape);
        EXPECT_EQ(std::string(layout.sideBySide ? "side" : "stacked") + (layout.typeLineShown ? " type " : " ") +
                      Text(layout.typeLine) + " name " + Text(layout.nameField) + " custom " +
                      Text(layout.customTypeField) + " tall " + Text(layout.tallEditor),
                  test.expected);
    }
    const DWORD rows[][2] = {{0, 4}, {1, 1}, {3, 2}, {15, 8}, {40, 16}};
    for (const auto& row : rows)
        EXPECT_EQ(HexBytesPerRow(row[0]), row[1]) << row[0] << " fit";
}

}  // namespace
