#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "regfile/Handle.h"
#include "regfile/RegFileJob.h"
#include "tests/regfile/ExportTestFiles.h"

namespace {

// A job that takes `steps` steps (or goes on until cancelled, for -1),
// polling the cancel event before each, and then reports `outcome`.
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
    // Read only after the job has ended.
    int StepsTaken() const { return m_taken; }

protected:
    bool Run() override
    {
        for (m_taken = 0; m_steps < 0 || m_taken < m_steps; ++m_taken) {
            if (IsCancelled())
                return false;
            Platform().Sleep(1);
        }
        return m_outcome;
    }

private:
    int m_steps = 0;
    bool m_outcome = false;
    int m_taken = 0;
};

class RegFileJobTest : public testing::Test {
protected:
    RegFileJobTest() : m_scoped(m_faults), m_file("job-test.bin") {}

    bool IsDone() { return Platform().WaitForSingleObject(m_job.DoneEvent(), 0) == WAIT_OBJECT_0; }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CTestFile m_file;
    CStepJob m_job;
};

TEST_F(RegFileJobTest, AFinishedJobSignalsDoneAndGivesItsResultOnce)
{
    bool result = true;
    EXPECT_FALSE(m_job.GetResult(result)) << "no job yet";
    EXPECT_FALSE(result);
    for (bool outcome : {true, false}) {
        ASSERT_TRUE(m_job.Start(m_file.Path(), 3, outcome));
        EXPECT_EQ(Platform().WaitForSingleObject(m_job.DoneEvent(), INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
        EXPECT_TRUE(m_job.GetResult(result));
        EXPECT_EQ(result, outcome);
        EXPECT_EQ(m_job.StepsTaken(), 3);
        EXPECT_FALSE(m_job.IsRunning());
        EXPECT_FALSE(m_job.GetResult(result));
    }
}

TEST_F(RegFileJobTest, CancelStopsTheWorkerAndCanDeleteTheFile)
{
    for (bool deleteFile : {false, true}) {
        SCOPED_TRACE(deleteFile);
        CShdHandle file(Platform().CreateFileW(m_file.Path(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS,
                                               FILE_ATTRIBUTE_NORMAL));
        file.Close();
        ASSERT_TRUE(m_job.Start(m_file.Path(), -1, true));
        EXPECT_FALSE(m_job.Start(m_file.Path(), 1, true)) << "one job at a time";
        m_job.Cancel(deleteFile);
        EXPECT_FALSE(m_job.IsRunning());
        EXPECT_FALSE(IsDone()) << "a cancelled job is not done";
        bool result = true;
        EXPECT_FALSE(m_job.GetResult(result));
        EXPECT_EQ(m_file.Exists(), !deleteFile);
    }

    // The events are reset for the next job.
    ASSERT_TRUE(m_job.Start(m_file.Path(), 1, true));
    bool result = false;
    EXPECT_TRUE(m_job.GetResult(result));
    EXPECT_TRUE(result);
    EXPECT_TRUE(IsDone());
}

TEST_F(RegFileJobTest, ACancelAfterTheEndStillEndsTheJob)
{
    ASSERT_TRUE(m_job.Start(m_file.Path(), 0, true));
    EXPECT_EQ(Platform().WaitForSingleObject(m_job.DoneEvent(), INFINITE), static_cast<DWORD>(WAIT_OBJECT_0));
    m_job.Cancel(false);
    bool result = true;
    EXPECT_FALSE(m_job.GetResult(result)) << "the thread is gone";
}

TEST_F(RegFileJobTest, AJobWithoutAThreadDoesNotStart)
{
    m_faults.FailThreadCreation();
    EXPECT_FALSE(m_job.Start(m_file.Path(), 1, true));
    EXPECT_FALSE(m_job.IsRunning());
    m_faults.Clear();
    EXPECT_TRUE(m_job.Start(m_file.Path(), 1, true));
}

}  // namespace
