#include <gtest/gtest.h>

#include <string>

#include "search/RegFinder.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

TEST(RegFinderThreads, CancelEndsAStepAtOnceWithoutSignallingDone)
{
    CScratchKey scratch(TEXT("Cancel"));
    PutKey(scratch.Handle(), "a-target");
    for (int i = 0; i < 40; ++i)
        PutString(scratch.Handle(), ("k" + std::to_string(1000 + i)).c_str(), "v");
    PutKey(scratch.Handle(), "target");
    CRegFinder finder;
    finder.SetUp(NameSearch("target"), StartAt(HKEY_CURRENT_USER, scratch.Path(), nullptr, true));
    CRegFinder::SSearchPosition match;
    ASSERT_TRUE(finder.Start() && finder.Collect(match));
    {
        CGatePlatform gate;
        gate.PauseAt(TEXT("k1010"));
        CScopedPlatform scoped(gate);
        ASSERT_TRUE(finder.Start());
        ASSERT_TRUE(gate.WaitUntilReached());
        EXPECT_FALSE(finder.Start()) << "one step at a time";
        EXPECT_FALSE(finder.SetPosition(HKEY_CURRENT_USER, scratch.Path(), nullptr));
        finder.Cancel();
        EXPECT_EQ(gate.OpensAfterRelease(), 0) << "no further key is entered";
        EXPECT_EQ(Platform().WaitForSingleObject(finder.GetDoneEvent(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
        EXPECT_FALSE(finder.Collect(match));
        EXPECT_FALSE(finder.IsFinished());
    }
    EXPECT_EQ(FindAll(finder, scratch.Path()), std::vector<std::string>{"HKCU\\target"})
        << "the next step goes on from the last match";
}

}  // namespace
