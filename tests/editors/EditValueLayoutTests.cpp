#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "editors/EditValueLayout.h"

namespace {

std::string Text(const SEditValueRect& rect)
{
    std::ostringstream out;
    out << rect.x << "," << rect.y << "," << rect.width << "," << rect.height;
    return out.str();
}

// The controls that tell the arrangements apart, as "x,y,width,height".
std::string Describe(const SEditValueLayout& layout)
{
    return std::string(layout.sideBySide ? "side" : "stacked") + (layout.typeLineShown ? " type " : " ") +
           Text(layout.typeLine) + " name " + Text(layout.nameField) + " value " + Text(layout.valueLabel) +
           " custom " + Text(layout.customTypeField) + " dword " + Text(layout.dwordField) + " hex " +
           Text(layout.hexadecimalRadio) + " tall " + Text(layout.tallEditor);
}

TEST(EditValueLayout, TallScreensStackAndShortOnesPutTallEditorsBeside)
{
    const struct {
        int dpi;
        int width;
        int height;
        SEditValueShape shape;
        const char* expected;
    } cases[] = {
        {96, 240, 300, {false, 7, false},
         "stacked type 8,279,224,13 name 8,48,224,19 value 8,71,108,13 custom 0,0,0,0 dword 8,88,108,19 "
         "hex 124,108,108,16 tall 8,88,224,187"},
        {96, 240, 180, {false, 1, false},
         "stacked type 8,159,224,13 name 8,48,224,19 value 8,71,108,13 custom 0,0,0,0 dword 8,88,108,19 "
         "hex 124,108,108,16 tall 8,88,224,67"},
        {96, 320, 179, {false, 1, false},
         "stacked 0,0,0,0 name 8,48,304,19 value 8,71,148,13 custom 0,0,0,0 dword 8,88,148,19 "
         "hex 164,108,148,16 tall 8,88,304,83"},
        {96, 320, 179, {true, 0, true},
         "side 0,0,0,0 name 8,48,148,19 value 164,31,148,13 custom 8,88,148,19 dword 8,88,148,19 "
         "hex 164,108,148,16 tall 164,48,148,123"},
        {96, 320, 179, {false, 7, false},
         "side 0,0,0,0 name 8,48,148,19 value 164,31,148,13 custom 8,88,148,19 dword 8,88,148,19 "
         "hex 164,108,148,16 tall 164,48,148,123"},
        {192, 480, 600, {true, 0, true},
         "stacked 0,0,0,0 name 16,96,216,38 value 16,142,216,26 custom 248,96,216,38 dword 16,176,216,38 "
         "hex 248,216,216,32 tall 16,176,448,408"},
        {192, 480, 600, {false, 4, false},
         "stacked type 16,558,448,26 name 16,96,448,38 value 16,142,216,26 custom 0,0,0,0 dword 16,176,216,38 "
         "hex 248,216,216,32 tall 16,176,448,374"},
        {192, 640, 358, {true, 3, false},
         "side 0,0,0,0 name 16,96,296,38 value 328,62,296,26 custom 16,176,296,38 dword 16,176,296,38 "
         "hex 328,216,296,32 tall 328,96,296,246"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << test.dpi << " dpi, " << test.width << "x" << test.height);
        const SEditValueMetrics metrics = SEditValueMetrics::ForDpi(test.dpi, test.dpi);
        EXPECT_EQ(Describe(ComputeEditValueLayout(metrics, test.width, test.height, test.shape)), test.expected);
    }
}

TEST(EditValueLayout, HexRowsHoldAPowerOfTwoBytes)
{
    const DWORD cases[][2] = {{0, 4}, {1, 1}, {3, 2}, {7, 4}, {8, 8}, {15, 8}, {16, 16}, {40, 16}};
    for (const auto& test : cases)
        EXPECT_EQ(HexBytesPerRow(test[0]), test[1]) << test[0] << " fit";
}

}  // namespace
