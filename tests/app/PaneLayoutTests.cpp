#include <gtest/gtest.h>

#include "app/PaneLayout.h"

namespace {

void ExpectRect(const SPaneRect& rect, int x, int y, int width, int height)
{
    EXPECT_EQ(rect.x, x);
    EXPECT_EQ(rect.y, y);
    EXPECT_EQ(rect.width, width);
    EXPECT_EQ(rect.height, height);
}

TEST(PaneLayout, MetricsScaleWithTheVerticalResolution)
{
    const SPaneMetrics high = SPaneMetrics::ForDpi(192);
    EXPECT_EQ(high.stackThreshold, 360);
    EXPECT_EQ(high.minPaneHeight, 100);
    EXPECT_EQ(high.minPaneWidth, 200);
    EXPECT_EQ(high.keyNameHeight, 34);
    EXPECT_EQ(high.splitterThickness, 12);
    EXPECT_EQ(SPaneMetrics::ForDpi(96).stackThreshold, 180);
}

TEST(PaneLayout, StacksFromTheThresholdHeightAndHalvesAFreshSplit)
{
    const SPaneMetrics metrics = SPaneMetrics::ForDpi(96);
    CPaneSplit split;
    SPaneLayout layout = split.Compute(metrics, 240, 180, false, 0, 0);
    EXPECT_TRUE(layout.stacked);
    ExpectRect(layout.keyName, 0, 163, 240, 17);
    ExpectRect(layout.panes, 0, 0, 240, 163);
    ExpectRect(layout.tree, 0, 0, 240, 81);
    ExpectRect(layout.splitter, 0, 81, 240, 6);
    ExpectRect(layout.list, 0, 87, 240, 76);

    split.Reset();
    layout = split.Compute(metrics, 320, 179, false, 0, 0);
    EXPECT_FALSE(layout.stacked);
    ExpectRect(layout.tree, 0, 0, 160, 162);
    ExpectRect(layout.splitter, 160, 0, 6, 162);
    ExpectRect(layout.list, 166, 0, 154, 162);
}

TEST(PaneLayout, ADragIsKeptWithinTheMinimumPaneSizes)
{
    const SPaneMetrics metrics = SPaneMetrics::ForDpi(96);
    const struct {
        bool stacked;
        int dragTo;
        int tree;
    } cases[] = {
        {false, 1000, 640 - 6 - 100}, {false, 3, 100},   {false, 250, 250},
        {true, 1000, 463 - 6 - 50},   {true, 10, 50},    {true, 300, 300},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(testing::Message() << item.stacked << " " << item.dragTo);
        CPaneSplit split;
        const int height = item.stacked ? 480 : 170;
        const SPaneLayout layout = split.Compute(metrics, 640, height, true, item.dragTo, item.dragTo);
        EXPECT_EQ(layout.stacked, item.stacked);
        EXPECT_EQ(item.stacked ? layout.tree.height : layout.tree.width, item.tree);
        EXPECT_EQ(item.stacked ? split.GetTreeHeight() : split.GetTreeWidth(), item.tree);
        const int listStart = item.stacked ? layout.list.y : layout.list.x;
        EXPECT_EQ(listStart, item.tree + 6);
    }
}

TEST(PaneLayout, EachArrangementRemembersItsOwnSplit)
{
    const SPaneMetrics metrics = SPaneMetrics::ForDpi(96);
    CPaneSplit split;
    split.Compute(metrics, 480, 640, true, 7, 200);
    split.Compute(metrics, 640, 170, true, 400, 7);
    EXPECT_EQ(split.Compute(metrics, 480, 640, false, 0, 0).tree.height, 200);
    EXPECT_EQ(split.Compute(metrics, 640, 170, false, 0, 0).tree.width, 400);
    // A narrower window pulls a remembered split back to leave the list its minimum.
    EXPECT_EQ(split.Compute(metrics, 300, 170, false, 0, 0).tree.width, 300 - 6 - 100);
    EXPECT_EQ(split.GetTreeWidth(), 194);
}

}  // namespace
