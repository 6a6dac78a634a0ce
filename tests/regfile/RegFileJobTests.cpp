#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "platform/PlatformHandle.h"
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

}  // namespace
