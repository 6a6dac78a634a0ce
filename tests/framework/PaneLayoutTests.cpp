#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/PaneLayout.h"

namespace {

// "x,y width x height" of each rectangle named.
std::string Rects(std::initializer_list<SPaneRect> rects)
{
    std::string text;
    for (const SPaneRect& rect : rects)
        text += " " + std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.width) + "x" +
                std::to_string(rect.height);
    return text;
}

TEST(PaneLayout, MetricsScaleWithTheVerticalResolution)
{
    const SPaneMetrics high = SPaneMetrics::ForDpi(192);
    const int figures[] = {high.stackThreshold, high.minPaneHeight, high.minPaneWidth, high.keyNameHeight,
                           high.splitterThickness, SPaneMetrics::ForDpi(96).stackThreshold};
    EXPECT_EQ(std::vector<int>(std::begin(figures), std::end(figures)), std::vector<int>({360, 100, 200, 34, 12, 180}));
}

TEST(PaneLayout, StacksFromTheThresholdHeightAndHalvesAFreshSplit)
{
    const SPaneMetrics metrics = SPaneMetrics::ForDpi(96);
    CPaneSplit split;
    SPaneLayout layout = split.Compute(metrics, 240, 180, false, 0, 0);
    EXPECT_TRUE(layout.stacked);
    EXPECT_EQ(Rects({layout.keyName, layout.panes, layout.tree, layout.splitter, layout.list}),
              " 0,163 240x17 0,0 240x163 0,0 240x81 0,81 240x6 0,87 240x76");

    split.Reset();
    layout = split.Compute(metrics, 320, 179, false, 0, 0);
    EXPECT_FALSE(layout.stacked);
    EXPECT_EQ(Rects({layout.tree, layout.splitter, layout.list}), " 0,0 160x162 160,0 6x162 166,0 154x162");
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
