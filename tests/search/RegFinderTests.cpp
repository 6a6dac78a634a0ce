// Searches inside a scratch subtree, so that they run unchanged on the
// in-memory registry and on Wine's real one.

#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "search/RegFinder.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

typedef std::vector<std::string> Lines;

class RegFinderTest : public testing::Test {
protected:
    RegFinderTest() : m_scratch(TEXT("Search")) {}

    // Searches below a key of the scratch subtree, from that key or one of its values.
    void SetUpSubtree(const SSearchParams& params, const char* startKey, const char* startValue = nullptr)
    {
        const CString path = *startKey != 0 ? m_scratch.Path() + TEXT("\\") + W(startKey) : m_scratch.Path();
        m_finder.SetUp(params, StartAt(HKEY_CURRENT_USER, path, startValue, true));
    }

    Lines FindInSubtree(const SSearchParams& params, const char* startKey, const char* startValue = nullptr)
    {
        SetUpSubtree(params, startKey, startValue);
        return FindAll(m_finder, m_scratch.Path());
    }

    std::string Next()
    {
        CRegFinder::SSearchPosition match;
        return m_finder.Start() && m_finder.Collect(match) ? Describe(match, m_scratch.Path()) : "finished";
    }

    CScratchKey m_scratch;
    CRegFinder m_finder;
};

TEST_F(RegFinderTest, SubtreeIsWalkedInNameOrderKeyThenValuesThenSubkeys)
{
    const HKEY top = m_scratch.Handle();
    PutString(top, "xa", "x");
    for (const char* name : {"XV2", "xv1", "other"})
        PutString(top, "xtree", name);
    PutKey(top, "xtree\\xA");
    PutString(top, "xtree\\x_c", "x");
    PutKey(top, "xtree\\Plain\\xdeep");
    PutString(top, "xz", "x");
    PutKey(top, "xtree\\xlocked\\xhidden");
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    faults.FailOpen(TEXT("xlocked"));

    EXPECT_EQ(FindInSubtree(NameSearch("x"), "xtree"),
              (Lines{"HKCU\\xtree|xv1", "HKCU\\xtree|XV2", "HKCU\\xtree\\Plain\\xdeep", "HKCU\\xtree\\x_c",
                     "HKCU\\xtree\\x_c|x", "HKCU\\xtree\\xA", "HKCU\\xtree\\xlocked"}))
        << "neither the start key itself nor its siblings; nothing inside a key that cannot be opened";
    EXPECT_TRUE(m_finder.IsFinished());
    EXPECT_EQ(FindInSubtree(NameSearch("x"), "xtree", "xv1"),
              (Lines{"HKCU\\xtree|XV2", "HKCU\\xtree\\Plain\\xdeep", "HKCU\\xtree\\x_c", "HKCU\\xtree\\x_c|x",
                     "HKCU\\xtree\\xA", "HKCU\\xtree\\xlocked"}));
    EXPECT_EQ(FindInSubtree(NameSearch("x"), "missing"), Lines{});
}

TEST_F(RegFinderTest, ResumeKeyThatVanishedBetweenStepsLetsTheWalkGoOn)
{
    const HKEY top = m_scratch.Handle();
    PutKey(top, "xa\\xdeep");
    PutKey(top, "xa\\xmid\\xinner");
    PutKey(top, "xb");
    SetUpSubtree(NameSearch("x"), "");
    EXPECT_EQ(Next(), "HKCU\\xa");
    EXPECT_EQ(Next(), "HKCU\\xa\\xdeep");
    ASSERT_TRUE(DeleteTreeForTests(top, W("xa\\xdeep")));
    EXPECT_EQ(Next(), "HKCU\\xa\\xmid") << "a later sibling of the vanished key";
    EXPECT_EQ(Next(), "HKCU\\xa\\xmid\\xinner");
    ASSERT_TRUE(DeleteTreeForTests(top, W("xa")));
    EXPECT_EQ(Next(), "HKCU\\xb") << "the level above goes on";
    EXPECT_EQ(Next(), "finished");
}


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
