#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "search/FindAllSearch.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/ScratchKey.h"

namespace {

// Records what the collecting thread reports; every wait is bounded.
class CRecordingSink : public CFindAllSearch::ISink {
public:
    void OnMatchAdded(unsigned run, size_t index) override
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_added.push_back(index);
        m_runs.push_back(run);
    }
    void OnSearchRanOut(unsigned run) override
    {
        std::lock_guard<std::mutex> lock(m_lock);
        m_ranOut.push_back(run);
        m_changed.notify_all();
    }
    bool WaitForRanOut()
    {
        std::unique_lock<std::mutex> lock(m_lock);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return !m_ranOut.empty(); });
    }
    std::vector<unsigned> RanOut()
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_ranOut;
    }
    size_t AddedCount()
    {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_added.size();
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<size_t> m_added;
    std::vector<unsigned> m_runs;
    std::vector<unsigned> m_ranOut;
};

// Ten keys "m000" to "m009" below the scratch key match "m0".
class FindAllSearch : public testing::Test {
protected:
    FindAllSearch() : m_scratch(TEXT("FindAll"))
    {
        for (int i = 0; i < 10; ++i)
            PutKey(m_scratch.Handle(), ("m00" + std::to_string(i)).c_str());
    }

    std::vector<std::string> Results(const CFindAllSearch& search)
    {
        std::vector<std::string> found;
        CRegFinder::SSearchPosition match;
        for (size_t i = 0; search.GetResult(i, match); ++i)
            found.push_back(Describe(match, m_scratch.Path()));
        return found;
    }

    SStartPosition Subtree() { return StartAt(HKEY_CURRENT_USER, m_scratch.Path(), nullptr, true); }

    CScratchKey m_scratch;
    CRecordingSink m_sink;
};

TEST_F(FindAllSearch, CollectsEveryMatchInOrderThenReportsTheEnd)
{
    CFindAllSearch search(m_sink);
    EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kReady));
    ASSERT_TRUE(search.Start(NameSearch("m0"), Subtree()));
    ASSERT_TRUE(m_sink.WaitForRanOut());
    search.Finish();
    EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kFinished));
    const std::vector<std::string> expected = {"HKCU\\m000", "HKCU\\m001", "HKCU\\m002", "HKCU\\m003",
                                               "HKCU\\m004", "HKCU\\m005", "HKCU\\m006", "HKCU\\m007",
                                               "HKCU\\m008", "HKCU\\m009"};
    EXPECT_EQ(Results(search), expected);
    EXPECT_EQ(m_sink.AddedCount(), 10u);
    EXPECT_EQ(m_sink.RanOut(), std::vector<unsigned>{search.GetRun()});

    // A new search forgets the old matches.
    ASSERT_TRUE(search.Start(NameSearch("m005"), Subtree()));
    search.Cancel();
    EXPECT_LE(Results(search).size(), 1u);
    EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kCancelled));
}

// The step after m005 is held as it enters that key, until the pause
// request releases it: it then finds m006, which is not added until the
// resume.
TEST_F(FindAllSearch, NothingIsAddedWhilePausedAndStopEndsAPause)
{
    for (const bool stopWhilePaused : {false, true}) {
        SCOPED_TRACE(stopWhilePaused ? "stop while paused" : "resume");
        CGatePlatform gate;
        gate.PauseAt(TEXT("m005"));
        CScopedPlatform scoped(gate);
        CRecordingSink sink;
        CFindAllSearch search(sink);
        ASSERT_TRUE(search.Start(NameSearch("m0"), Subtree()));
        ASSERT_TRUE(gate.WaitUntilReached());
        EXPECT_EQ(search.GetResultCount(), 6u);
        ASSERT_TRUE(search.Pause());
        EXPECT_FALSE(search.Pause()) << "already paused";
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_EQ(search.GetResultCount(), 6u);
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kPaused));
        if (stopWhilePaused) {
            search.Cancel();
            EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kCancelled));
            EXPECT_EQ(search.GetResultCount(), 6u) << "what was found stays";
            EXPECT_TRUE(sink.RanOut().empty()) << "a stopped search did not run out";
            continue;
        }
        ASSERT_TRUE(search.Resume());
        ASSERT_TRUE(sink.WaitForRanOut());
        search.Finish();
        EXPECT_EQ(search.GetResultCount(), 10u);
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kFinished));
    }
}

TEST_F(FindAllSearch, APauseAfterTheSearchRanOutReturnsAndTheEndStillFinishes)
{
    CFindAllSearch search(m_sink);
    ASSERT_TRUE(search.Start(NameSearch("no such key"), Subtree()));
    ASSERT_TRUE(m_sink.WaitForRanOut());
    EXPECT_TRUE(search.Pause()) << "the ended thread answers for itself";
    search.Finish();
    EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kFinished));
    EXPECT_EQ(search.GetResultCount(), 0u);
    EXPECT_FALSE(search.Resume());

    // Requests that cross the thread's own end at any point never hang.
    for (int i = 0; i < 20; ++i) {
        search.Start(NameSearch("m0"), Subtree());
        search.Pause();
        search.Resume();
        search.Cancel();
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kCancelled));
    }
}

}  // namespace
