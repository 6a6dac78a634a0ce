#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "platform/PlatformHandle.h"
#include "regfile/FileWriteCache.h"
#include "regfile/RegFileJob.h"
#include "tests/support/TestFiles.h"

namespace {

// Takes `steps` steps (-1: until cancelled), polling before each, and then
// reports `outcome`.
class CStepJob : public CRegFileJob {
public:
    ~CStepJob() override { Cancel(false); }
    bool Start(LPCWSTR path, int steps, bool outcome)
    {
        if (IsRunning())
            return false;
        m_steps = steps;
        m_outcome = outcome;
        return StartJob(path);
    }

protected:
    bool Run() override
    {
        for (int step = 0; m_steps < 0 || step < m_steps; ++step) {
            if (IsCancelled())
                return false;
            Platform().Sleep(1);
        }
        return m_outcome;
    }

private:
    int m_steps = 0;
    bool m_outcome = false;
};

TEST(RegFileJob, FinishCancelAndStartAgain)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CTestFile file("job-test.bin");
    CStepJob job;
    const auto isDone = [&] { return Platform().WaitForSingleObject(job.DoneEvent(), 0) == WAIT_OBJECT_0; };
    bool result = true;
    EXPECT_FALSE(job.GetResult(result)) << "no job yet";

    for (bool outcome : {true, false}) {
        ASSERT_TRUE(job.Start(file.Path(), 3, outcome));
        ASSERT_EQ(Platform().WaitForSingleObject(job.DoneEvent(), 10000), static_cast<DWORD>(WAIT_OBJECT_0));
        EXPECT_TRUE(job.GetResult(result));
        EXPECT_EQ(result, outcome);
        EXPECT_FALSE(job.GetResult(result)) << "the result is taken once";
    }

    CShdHandle written(Platform().CreateFileW(file.Path(), GENERIC_WRITE, 0, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL));
    written.Reset();
    ASSERT_TRUE(job.Start(file.Path(), -1, true));
    EXPECT_FALSE(job.Start(file.Path(), 1, true)) << "one job at a time";
    job.Cancel(true);
    EXPECT_FALSE(job.IsRunning());
    EXPECT_FALSE(isDone()) << "a cancelled job is not done";
    EXPECT_FALSE(job.GetResult(result));
    EXPECT_FALSE(file.Exists());

    faults.FailThreadCreation();
    EXPECT_FALSE(job.Start(file.Path(), 1, true));
    faults.Clear();
    ASSERT_TRUE(job.Start(file.Path(), 1, true)) << "the events were reset for the next job";
    EXPECT_TRUE(job.GetResult(result));
    EXPECT_TRUE(isDone());
}


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
