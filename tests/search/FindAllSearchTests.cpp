#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "search/FindAllSearch.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/ScratchKey.h"

namespace {

// Counts what the collecting thread reports.
class CCountingSink : public CFindAllSearch::ISink {
public:
    void OnMatchAdded(unsigned, size_t) override { ++m_added; }
    void OnSearchRanOut(unsigned run) override { m_ranOutRun = run; }
    // Within ten seconds.
    bool WaitForRanOut()
    {
        for (int wait = 0; wait < 1000 && m_ranOutRun == 0; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return m_ranOutRun != 0;
    }

    std::atomic<int> m_added{0};
    std::atomic<unsigned> m_ranOutRun{0};
};

// The step after m005 of the keys m000 to m009 is held as it enters that
// key, until the pause request releases it: it then finds m006, which is not
// added while paused. The search then resumes, is stopped while paused, or
// runs out while the pause is requested.
TEST(FindAllSearch, PauseResumeStopAndTheEndMeetCleanly)
{
    enum { kResume, kStopWhilePaused, kPauseAfterTheEnd };
    for (const int ending : {kResume, kStopWhilePaused, kPauseAfterTheEnd}) {
        SCOPED_TRACE(ending);
        CScratchKey scratch(TEXT("FindAll"));
        for (int i = 0; i < 10; ++i)
            PutKey(scratch.Handle(), ("m00" + std::to_string(i)).c_str());
        CGatePlatform gate;
        gate.PauseAt(ending == kPauseAfterTheEnd ? TEXT("none") : TEXT("m005"));
        CScopedPlatform scoped(gate);
        CCountingSink sink;
        CFindAllSearch search(sink);
        ASSERT_TRUE(search.Start(NameSearch("m0"), StartAt(HKEY_CURRENT_USER, scratch.Path(), nullptr, true)));
        if (ending == kPauseAfterTheEnd) {
            ASSERT_TRUE(sink.WaitForRanOut());
            EXPECT_TRUE(search.Pause()) << "the ended thread answers for itself";
        } else {
            ASSERT_TRUE(gate.WaitUntilReached());
            ASSERT_TRUE(search.Pause());
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            EXPECT_EQ(search.GetResultCount(), 6u) << "nothing is added while paused";
        }
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kPaused));
        if (ending == kStopWhilePaused) {
            search.Cancel();
            EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kCancelled));
            EXPECT_EQ(search.GetResultCount(), 6u) << "what was found stays";
            EXPECT_EQ(sink.m_ranOutRun, 0u) << "a stopped search did not run out";
            continue;
        }
        if (ending == kResume) {
            ASSERT_TRUE(search.Resume());
            ASSERT_TRUE(sink.WaitForRanOut());
        }
        EXPECT_EQ(sink.m_ranOutRun, search.GetRun());
        search.Finish();
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kFinished));
        EXPECT_EQ(search.GetResultCount(), 10u);
        EXPECT_EQ(sink.m_added, 10);
        CRegFinder::SSearchPosition match;
        ASSERT_TRUE(search.GetResult(9, match));
        EXPECT_EQ(Describe(match, scratch.Path()), "HKCU\\m009");
    }
}

TEST(FindAllSearch, RequestsCrossingTheThreadsEndNeverHang)
{
    CScratchKey scratch(TEXT("FindAllRace"));
    PutKey(scratch.Handle(), "m0");
    CCountingSink sink;
    CFindAllSearch search(sink);
    for (int i = 0; i < 20; ++i) {
        search.Start(NameSearch("m0"), StartAt(HKEY_CURRENT_USER, scratch.Path(), nullptr, true));
        search.Pause();
        search.Resume();
        search.Cancel();
        EXPECT_EQ(search.GetState(), static_cast<DWORD>(CFindAllSearch::kCancelled));
        EXPECT_LE(search.GetResultCount(), 1u);
    }
}

}  // namespace
