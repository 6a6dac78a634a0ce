#include <gtest/gtest.h>

#include "framework/BinaryBuffer.h"
#include "framework/CString.h"
#include "framework/ObjArray.h"
#include "tests/support/TestText.h"

namespace {

struct STracked {
    explicit STracked(int* live, int value) : live(live), value(value) { ++*live; }
    ~STracked() { --*live; }
    int* live;
    int value;
};

TEST(CShdObjArray, OwnsSortsAndFreesItsElements)
{
    int live = 0;
    {
        CShdObjArray<STracked> items;
        for (int value : {3, 1, 2})
            EXPECT_GE(items.Add(new STracked(&live, value)), 0);
        EXPECT_EQ(live, 3);
        items.Sort([](const STracked& a, const STracked& b) { return a.value - b.value; });
        EXPECT_EQ(items[0]->value, 1);
        EXPECT_EQ(items.GetAt(2)->value, 3);
        items.RemoveAt(0);
        EXPECT_EQ(live, 2);
        EXPECT_EQ(items.GetCount(), 2u);
    }
    EXPECT_EQ(live, 0);
}

TEST(CShdBinaryBuffer, GrowsZeroFilledAndCopiesOnlyWhenAsked)
{
    CShdCopyableBinaryBuffer buffer;
    ASSERT_TRUE(buffer.Append("ab", 2));
    ASSERT_TRUE(buffer.SetSize(4));
    EXPECT_EQ(std::vector<BYTE>(buffer.GetData(), buffer.GetData() + 4), Bytes({'a', 'b', 0, 0}));
    CShdCopyableBinaryBuffer copy = buffer;
    buffer.Clear();
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(copy.GetSize(), 4u);
    EXPECT_TRUE(copy.Append(nullptr, 0));
    EXPECT_FALSE(copy.SetSize(static_cast<size_t>(-1)));  // reports failure instead of throwing
    EXPECT_EQ(copy.GetSize(), 4u);
}

}  // namespace
