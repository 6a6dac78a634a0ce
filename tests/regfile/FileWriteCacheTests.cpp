#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "regfile/FileWriteCache.h"
#include "regfile/Handle.h"
#include "tests/regfile/ExportTestFiles.h"

namespace {

class FileWriteCacheTest : public testing::Test {
protected:
    FileWriteCacheTest()
        : m_scoped(m_faults), m_file("write-cache-test.bin"),
          m_handle(Platform().CreateFileW(m_file.Path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL))
    {
        EXPECT_TRUE(m_handle.IsValid());
    }

    // What the file holds so far, as another reader sees it.
    std::string OnDisk() const { return m_file.Bytes(); }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CTestFile m_file;
    CShdHandle m_handle;
    CShdFileWriteCache m_cache;
};

TEST_F(FileWriteCacheTest, WritesOnlyFullBuffersUntilFlushed)
{
    ASSERT_TRUE(m_cache.SetBufferSize(8));
    ASSERT_TRUE(m_cache.Attach(m_handle.Get()));
    EXPECT_TRUE(m_cache.Write("abc", 3));
    EXPECT_TRUE(m_cache.Write("def", 3));
    EXPECT_EQ(OnDisk(), "");
    EXPECT_TRUE(m_cache.Write("ghijklmnopqrs", 13));
    EXPECT_EQ(OnDisk(), "abcdefghijklmnop") << "two full buffers";
    EXPECT_TRUE(m_cache.Write("", 0));
    EXPECT_FALSE(m_cache.Write(nullptr, 1));
    EXPECT_FALSE(m_cache.SetBufferSize(16)) << "bytes are still buffered";
    EXPECT_TRUE(m_cache.Flush());
    EXPECT_EQ(OnDisk(), "abcdefghijklmnopqrs");

    // The flush forgot the handle: nothing more is taken until an attach.
    EXPECT_FALSE(m_cache.Write("t", 1));
    ASSERT_TRUE(m_cache.Attach(m_handle.Get()));
    EXPECT_TRUE(m_cache.Write("t", 1));
    EXPECT_TRUE(m_cache.Close());
    EXPECT_EQ(OnDisk(), "abcdefghijklmnopqrst");
}

TEST_F(FileWriteCacheTest, WithoutABufferWritesGoStraightThrough)
{
    EXPECT_FALSE(m_cache.SetBufferSize(size_t(0x7FFFFFFF) + 1));
    ASSERT_TRUE(m_cache.SetBufferSize(0));
    ASSERT_TRUE(m_cache.Attach(m_handle.Get()));
    EXPECT_TRUE(m_cache.Write("abc", 3));
    EXPECT_EQ(OnDisk(), "abc");
}

TEST_F(FileWriteCacheTest, AShortWriteFailsAndNothingFollowsTheGap)
{
    for (size_t bufferSize : {size_t(0), size_t(4)}) {
        SCOPED_TRACE(bufferSize);
        CShdFileWriteCache cache;
        m_faults.LimitFileWrites(2);
        ASSERT_TRUE(cache.SetBufferSize(bufferSize));
        ASSERT_TRUE(cache.Attach(m_handle.Get()));
        EXPECT_TRUE(cache.Write("ab", 2));
        EXPECT_FALSE(cache.Write("cdef", 4));
        m_faults.Clear();
        EXPECT_FALSE(cache.Write("gh", 2));
        EXPECT_TRUE(cache.Close()) << "the failed bytes are not written again";
        EXPECT_EQ(OnDisk(), "ab");
        m_handle.Close();
        m_handle.Reset(Platform().CreateFileW(m_file.Path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS,
                                              FILE_ATTRIBUTE_NORMAL));
    }
}

}  // namespace
