#include <gtest/gtest.h>

#include "search/FloatingToolBarLayout.h"

namespace {

template <int Dpi>
int Scale(int designUnits)
{
    return (designUnits * Dpi + 48) / 96;
}

// The toolbar of the main window: three grips, four buttons of 16 or 32
// pixels; or the same without buttons.
CToolBarGeometry Geometry(int scale, int buttons)
{
    const SToolBarMetrics metrics =
        scale == 1 ? SToolBarMetrics::Scaled(Scale<96>, Scale<96>) : SToolBarMetrics::Scaled(Scale<192>, Scale<192>);
    return CToolBarGeometry(metrics, 3, 16 * scale, 16 * scale, buttons);
}

TEST(FloatingToolBarLayout, SizeDoublesAtTwiceTheResolution)
{
    const struct {
        int buttons;
        int width;
        int height;
    } cases[] = {{4, 111, 28}, {1, 51, 28}, {0, 33, 8}};
    for (const auto& item : cases) {
        for (int scale = 1; scale <= 2; ++scale) {
            SCOPED_TRACE(testing::Message() << item.buttons << " buttons at scale " << scale);
            const CToolBarGeometry geometry = Geometry(scale, item.buttons);
            EXPECT_EQ(geometry.GetWidth(), item.width * scale);
            EXPECT_EQ(geometry.GetHeight(), item.height * scale);
            EXPECT_EQ(geometry.GetGripAreaWidth(), 24 * scale);
        }
    }
}

TEST(FloatingToolBarLayout, HitTestFindsGripButtonsAndGaps)
{
    const int none = CToolBarGeometry::kHitNone;
    const int grip = CToolBarGeometry::kHitGrip;
    // Points at 96 dpi; at 192 dpi the same points doubled hit the same.
    const struct {
        int buttons;
        int x;
        int y;
        int hit;
    } cases[] = {
        {4, 0, 0, grip},    {4, 23, 27, grip},  {4, 24, 10, none}, {4, 27, 5, 0},      {4, 27, 4, none},
        {4, 44, 22, 0},     {4, 44, 23, none},  {4, 45, 10, none}, {4, 47, 10, 1},     {4, 104, 10, 3},
        {4, 105, 10, none}, {4, 111, 10, none}, {4, -1, 10, none}, {4, 30, 28, none},  {0, 5, 7, grip},
        {0, 24, 4, none},   {0, 5, 8, none},
    };
    for (const auto& item : cases) {
        for (int scale = 1; scale <= 2; ++scale) {
            SCOPED_TRACE(testing::Message() << "(" << item.x << ", " << item.y << ") at scale " << scale);
            EXPECT_EQ(Geometry(scale, item.buttons).HitTest(item.x * scale, item.y * scale), item.hit);
        }
    }
}

TEST(FloatingToolBarLayout, StaysInsideItsParent)
{
    const struct {
        SToolBarPoint wanted;
        int parentWidth;
        int parentHeight;
        bool place;
        SToolBarPoint expected;
    } cases[] = {
        {{10, 20}, 200, 150, false, {10, 20}},   {{500, 500}, 200, 150, false, {89, 122}},
        {{-30, -40}, 200, 150, false, {0, 0}},   {{50, 50}, 100, 20, false, {0, 0}},
        {{-10, -10}, 200, 150, true, {79, 112}}, {{5, -1}, 200, 150, true, {5, 121}},
        {{-300, 7}, 200, 150, true, {0, 7}},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(testing::Message() << item.wanted.x << ", " << item.wanted.y << " in " << item.parentWidth);
        const SToolBarPoint result =
            item.place ? PlaceInParent(item.wanted, 111, 28, item.parentWidth, item.parentHeight)
                       : ClampToParent(item.wanted, 111, 28, item.parentWidth, item.parentHeight);
        EXPECT_EQ(result.x, item.expected.x);
        EXPECT_EQ(result.y, item.expected.y);
    }
}

}  // namespace
