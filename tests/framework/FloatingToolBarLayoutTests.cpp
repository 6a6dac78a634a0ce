#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "framework/FloatingToolBarLayout.h"

namespace {

template <int Dpi>
int Scale(int designUnits)
{
    return (designUnits * Dpi + 48) / 96;
}

// Three grips and 16-pixel images at 96 dpi (scale 1) or 32-pixel images at
// 192 dpi (scale 2): every length doubles, so one table serves both.
TEST(FloatingToolBarLayout, SizeAndHitTestDoubleAtTwiceTheResolutionAndTheBarStaysInItsParent)
{
    const int none = CToolBarGeometry::kHitNone;
    const int grip = CToolBarGeometry::kHitGrip;
    const struct {
        int buttons;
        int width;
        int height;
        // Points on the edges of grips, buttons, gaps and the band.
        std::vector<std::pair<std::pair<int, int>, int>> hits;
    } cases[] = {
        {4, 111, 28, {{{0, 0}, grip},     {{23, 27}, grip},   {{24, 10}, none}, {{27, 5}, 0},    {{27, 4}, none},
                      {{44, 22}, 0},      {{44, 23}, none},   {{45, 10}, none}, {{47, 10}, 1},   {{104, 10}, 3},
                      {{105, 10}, none},  {{111, 10}, none},  {{-1, 10}, none}}},
        {0, 33, 8, {{{5, 7}, grip}, {{24, 4}, none}, {{5, 8}, none}}},
    };
    for (const auto& item : cases) {
        for (int scale = 1; scale <= 2; ++scale) {
            SCOPED_TRACE(testing::Message() << item.buttons << " buttons at scale " << scale);
            const CToolBarGeometry geometry(scale == 1 ? SToolBarMetrics::Scaled(Scale<96>, Scale<96>)
                                                       : SToolBarMetrics::Scaled(Scale<192>, Scale<192>),
                                            3, 16 * scale, 16 * scale, item.buttons);
            EXPECT_EQ(geometry.GetWidth(), item.width * scale);
            EXPECT_EQ(geometry.GetHeight(), item.height * scale);
            for (const auto& hit : item.hits)
                EXPECT_EQ(geometry.HitTest(hit.first.first * scale, hit.first.second * scale), hit.second)
                    << hit.first.first << ", " << hit.first.second;
        }
    }

    // A 111 x 28 toolbar in a 200 x 150 parent; placing counts negative
    // coordinates from the right and bottom; a parent too small shows the
    // toolbar's corner.
    const SToolBarPoint far = ClampToParent({500, 500}, 111, 28, 200, 150);
    const SToolBarPoint placed = PlaceInParent({-10, -10}, 111, 28, 200, 150);
    const SToolBarPoint small = ClampToParent({50, 50}, 111, 28, 100, 20);
    EXPECT_TRUE(far.x == 89 && far.y == 122 && placed.x == 79 && placed.y == 112 && small.x == 0 && small.y == 0);
}

}  // namespace
