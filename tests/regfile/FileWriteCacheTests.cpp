#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "platform/PlatformHandle.h"
#include "regfile/FileWriteCache.h"
#include "tests/support/TestFiles.h"

namespace {

TEST(FileWriteCache, WritesFullBuffersOnlyAndNothingAfterAShortWrite)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CTestFile file("write-cache-test.bin");
    CShdHandle handle(
        Platform().CreateFileW(file.Path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
    CShdFileWriteCache cache;
    ASSERT_TRUE(cache.SetBufferSize(8));
    ASSERT_TRUE(cache.Attach(handle.Get()));
    EXPECT_TRUE(cache.Write("abcdef", 6));
    EXPECT_EQ(file.Bytes(), "");
    EXPECT_TRUE(cache.Write("ghijklmnopqrs", 13));
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnop") << "two full buffers";
    EXPECT_FALSE(cache.Write(nullptr, 1));
    EXPECT_FALSE(cache.SetBufferSize(16)) << "bytes are still buffered";
    EXPECT_TRUE(cache.Flush());
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnopqrs");
    EXPECT_FALSE(cache.Write("t", 1)) << "the flush forgot the handle";

    // The file takes two bytes more: the buffer of four fails whole, and
    // nothing written later may land after the gap.
    faults.LimitFileWrites(2);
    ASSERT_TRUE(cache.SetBufferSize(4));
    ASSERT_TRUE(cache.Attach(handle.Get()));
    EXPECT_TRUE(cache.Write("tu", 2));
    EXPECT_FALSE(cache.Write("vw", 2));
    faults.Clear();
    EXPECT_FALSE(cache.Write("xy", 2));
    EXPECT_TRUE(cache.Close());
    EXPECT_EQ(file.Bytes(), "abcdefghijklmnopqrstu");
}

}  // namespace
