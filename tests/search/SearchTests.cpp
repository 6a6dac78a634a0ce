// Searches: the finder's walk inside a scratch subtree (which runs unchanged
// on the in-memory registry and on Wine's real one), across the whole
// registry, and the find-all search on its own thread.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "base/Text.h"
#include "base/Utf8.h"
#include "platform/FaultInjectingPlatform.h"
#include "platform/Platform.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "search/FindAllSearch.h"
#include "search/RegFinder.h"
#include "tests/support/GatePlatform.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// A match as a short readable line: "HKCU\A\B" for a key, "HKCU\A\B|name"
// for a value, with `prefix` and its backslash taken off the key path, and
// " (pass 2)" after a match found once the search left its first root.
std::string Describe(const CRegFinder::SSearchPosition& match, const CString& prefix = CString())
{
    CString path = match.keyPath;
    if (!prefix.IsEmpty() && path.GetLength() >= prefix.GetLength() &&
        CompareNoCase(path, prefix, prefix.GetLength()) == 0)
        path = path.Mid(std::min(path.GetLength(), prefix.GetLength() + 1));
    std::string text = ToUtf8(CString(RootShortName(match.root)));
    if (!path.IsEmpty())
        text += "\\" + ToUtf8(path);
    if (match.kind == CRegFinder::kStateAtValue)
        text += "|" + ToUtf8(match.valueName);
    if (!match.firstPass)
        text += " (pass 2)";
    return text;
}

// Runs steps until one finds nothing, and describes every match.
std::vector<std::string> FindAll(CRegFinder& finder, const CString& prefix = CString())
{
    std::vector<std::string> found;
    CRegFinder::SSearchPosition match;
    // A bound, so that a search that never ends fails instead of hanging.
    while (found.size() < 1000 && finder.Start() && finder.Collect(match))
        found.push_back(Describe(match, prefix));
    return found;
}

// Creates a key (and its parents) below an open key or a root; PutString
// also writes a string value into it.
void PutKey(HKEY parent, const char* path)
{
    CShdRegKey key;
    EXPECT_TRUE(key.Create(parent, W(path), nullptr)) << path;
}

void PutString(HKEY parent, const char* path, const char* name)
{
    CShdRegKey key;
    EXPECT_TRUE(key.Create(parent, W(path), nullptr) && key.WriteString(W(name), TEXT("-"))) << path;
}

// A start at a key, or at one of its values when a value name is given.
SStartPosition StartAt(HKEY root, const CString& keyPath, const char* valueName = nullptr, bool subtreeOnly = false)
{
    SStartPosition start;
    start.root = root;
    start.keyPath = keyPath;
    start.valueSelected = valueName != nullptr;
    start.valueName = valueName != nullptr ? W(valueName) : CString();
    start.subtreeOnly = subtreeOnly;
    return start;
}

// Criteria that test only names, for the text given.
SSearchParams NameSearch(const char* text)
{
    SSearchParams params;
    params.searchString = W(text);
    params.valueData = false;
    return params;
}

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

// A platform on which no key can be stamped: the finder then trusts nothing
// it read in an earlier step and lists every level of the path again, as
// the step-wise walk always did.
class CNoStampPlatform : public CFaultInjectingPlatform {
public:
    LONG RegQueryKeyStampW(HKEY, DWORD*, DWORD*, FILETIME*) override { return ERROR_ACCESS_DENIED; }
};

TEST_F(RegFinderTest, ChangesBetweenStepsGiveWhatTheStepwiseWalkGives)
{
    struct SCase {
        const char* name;
        int stepsBefore;
        void (*change)(HKEY top);
    } const cases[] = {
        {"a key added ahead", 3, [](HKEY top) { PutKey(top, "xa\\xa2"); }},
        {"a key added behind", 5, [](HKEY top) { PutKey(top, "xa\\xa0"); }},
        {"the current key deleted", 4, [](HKEY top) { DeleteTreeForTests(top, W("xa\\xa1")); }},
        {"a value added to the current key", 2, [](HKEY top) { PutString(top, "xa", "xv2"); }},
        {"a level replaced by one of the same size", 4,
         [](HKEY top) {
             DeleteTreeForTests(top, W("xa\\xa3"));
             PutKey(top, "xa\\xa4");
         }},
    };
    CNoStampPlatform noStamps;
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.name);
        CScratchKey scratch(TEXT("Search"));
        for (const char* value : {"xv1", "xv3"})
            PutString(scratch.Handle(), "xa", value);
        for (const char* key : {"xa\\xa1", "xa\\xa3", "xb\\xb1"})
            PutKey(scratch.Handle(), key);
        CRegFinder stepwise;
        for (CRegFinder* finder : {&m_finder, &stepwise})
            finder->SetUp(NameSearch("x"), StartAt(HKEY_CURRENT_USER, scratch.Path(), nullptr, true));
        CRegFinder::SSearchPosition match;
        for (int step = 0; step < test.stepsBefore; ++step) {
            ASSERT_TRUE(m_finder.Start() && m_finder.Collect(match));
            CScopedPlatform scoped(noStamps);
            ASSERT_TRUE(stepwise.Start() && stepwise.Collect(match));
        }
        test.change(scratch.Handle());
        const Lines found = FindAll(m_finder, scratch.Path());
        CScopedPlatform scoped(noStamps);
        EXPECT_EQ(found, FindAll(stepwise, scratch.Path()));
    }
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

// Searches of the whole registry. They need a registry that holds only
// what the test writes, so that the exact order across all four roots can be
// checked: they run natively only.


const HKEY kRoots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS};

void ClearRoots()
{
    for (HKEY root : kRoots) {
        WCHAR name[300];
        DWORD length = 300;
        while (Platform().RegEnumKeyExW(root, 0, name, &length) == ERROR_SUCCESS) {
            ASSERT_TRUE(DeleteTreeForTests(root, CString(name, length)));
            length = 300;
        }
    }
}

class WholeRegistryTest : public testing::Test {
protected:
    void SetUp() override
    {
#ifdef _WIN32
        GTEST_SKIP() << "needs a registry of the test's own";
#endif
        ClearRoots();
        PutKey(HKEY_CLASSES_ROOT, ".reg\\xy");
        PutString(HKEY_CLASSES_ROOT, "xb", "XV2");
        PutString(HKEY_CLASSES_ROOT, "xb", "xv1");
        PutString(HKEY_CLASSES_ROOT, "xb\\xA", "x");
        PutKey(HKEY_CLASSES_ROOT, "xb\\x_c");
        PutString(HKEY_CURRENT_USER, "Software\\Marrowick\\Quenda", "xsaved");
        PutKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Alpha\\x1");
        PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick", "x0");
        PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick\\Quenda", "xsaved");
        PutString(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick\\Quenda\\xSettings", "x");
        PutKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick\\QuendaX");
        PutKey(HKEY_LOCAL_MACHINE, "SOFTWARE\\Zulu\\x2");
        PutString(HKEY_USERS, ".DEFAULT", "x");
    }

    void TearDown() override
    {
#ifndef _WIN32
        ClearRoots();
#endif
    }

    void SetUpFrom(HKEY root, const char* keyPath, const char* valueName = nullptr, bool wrapAround = true)
    {
        SStartPosition start = StartAt(root, W(keyPath), valueName);
        start.wrapAround = wrapAround;
        m_finder.SetUp(NameSearch("x"), start);
    }

    CRegFinder m_finder;
};

// The whole layout above, in the order of a search from the top of
// HKEY_CLASSES_ROOT.
const Lines kAll = {
    "HKCR\\.reg\\xy", "HKCR\\xb", "HKCR\\xb|xv1", "HKCR\\xb|XV2", "HKCR\\xb\\x_c", "HKCR\\xb\\xA",
    "HKCR\\xb\\xA|x", "HKCU\\Software\\Marrowick\\Quenda|xsaved", "HKLM\\SOFTWARE\\Alpha\\x1",
    "HKLM\\SOFTWARE\\Marrowick|x0", "HKLM\\SOFTWARE\\Marrowick\\QuendaX", "HKLM\\SOFTWARE\\Zulu\\x2",
    "HKU\\.DEFAULT|x",
};

// `count` lines of kAll from `first` on, wrapping; all but the first
// `firstPass` marked as found in the second pass.
Lines Expected(size_t first, size_t count, size_t firstPass)
{
    Lines lines;
    for (size_t i = 0; i < count; ++i)
        lines.push_back(kAll[(first + i) % kAll.size()] + (i < firstPass ? "" : " (pass 2)"));
    return lines;
}

TEST_F(WholeRegistryTest, FindAllVisitsTheRootsInOrderAndPassesOverTheProgramsOwnKey)
{
    SetUpFrom(nullptr, "");
    EXPECT_EQ(FindAll(m_finder), Expected(0, 13, 7));
    EXPECT_TRUE(m_finder.IsFinished());
    CRegFinder::SSearchPosition match;
    EXPECT_TRUE(m_finder.Start());
    EXPECT_FALSE(m_finder.Collect(match)) << "finished stays finished";
    EXPECT_TRUE(m_finder.IsFinished());
    EXPECT_FALSE(m_finder.SetPosition(HKEY_CLASSES_ROOT, TEXT("xb"), nullptr));
    SetUpFrom(nullptr, "");
    EXPECT_FALSE(m_finder.IsFinished()) << "until the next set-up";
}

TEST_F(WholeRegistryTest, WrapAroundComesBackToJustBeforeTheStart)
{
    SetUpFrom(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick");
    EXPECT_EQ(FindAll(m_finder), Expected(9, 13, 3));
    SetUpFrom(HKEY_CLASSES_ROOT, "XB", "xv2");
    EXPECT_EQ(FindAll(m_finder), Expected(4, 12, 3)) << "a start value: its key and earlier values come last";
    SetUpFrom(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick", nullptr, false);
    EXPECT_EQ(FindAll(m_finder), Expected(9, 4, 3));
}

TEST_F(WholeRegistryTest, MovingThePositionKeepsTheStopAtTheStart)
{
    struct SCase { HKEY root; LPCWSTR keyPath; Lines expected; } const cases[] = {
        // Into the part searched after the wrap; ahead in the start root;
        // back before the start in its root.
        {HKEY_CURRENT_USER, TEXT("Software"), Expected(7, 2, 0)},
        {HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Zulu"), Expected(11, 11, 1)},
        {HKEY_LOCAL_MACHINE, TEXT("SOFTWARE"), Expected(8, 1, 0)},
    };
    for (const SCase& test : cases) {
        SetUpFrom(HKEY_LOCAL_MACHINE, "SOFTWARE\\Marrowick");
        CRegFinder::SSearchPosition match;
        ASSERT_TRUE(m_finder.Start() && m_finder.Collect(match));
        ASSERT_TRUE(m_finder.SetPosition(test.root, test.keyPath, nullptr));
        EXPECT_EQ(FindAll(m_finder), test.expected);
    }
}

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

// Counts the registry calls of a find-all over 1,110 keys of three values
// each, every value matching, against the same search matching nothing: the
// matches must not make the search walk again.
TEST(FindAllSearch, EveryMatchCostsNoMoreThanTheWalkThatFindsIt)
{
#ifdef _WIN32
    GTEST_SKIP() << "writing the tree into Wine's registry takes too long";
#endif
    CScratchKey scratch(TEXT("FindAllCalls"));
    for (int key = 0; key < 1000; ++key) {
        const std::string path = "k" + std::to_string(key / 100) + "\\k" + std::to_string(key / 10 % 10) +
                                 "\\k" + std::to_string(key % 10);
        for (const char* value : {"v1", "v2", "v3"})
            PutString(scratch.Handle(), path.c_str(), value);
    }
    unsigned calls[2] = {};
    int matches[2] = {};
    for (int matching = 0; matching < 2; ++matching) {
        CFaultInjectingPlatform counting;
        CScopedPlatform scoped(counting);
        CCountingSink sink;
        CFindAllSearch search(sink);
        ASSERT_TRUE(search.Start(NameSearch(matching != 0 ? "v" : "none"),
                                 StartAt(HKEY_CURRENT_USER, scratch.Path(), nullptr, true)));
        ASSERT_TRUE(sink.WaitForRanOut());
        search.Finish();
        calls[matching] = counting.RegistryCallCount();
        matches[matching] = sink.m_added;
    }
    EXPECT_EQ(matches[0], 0);
    EXPECT_EQ(matches[1], 3000);
    EXPECT_LE(calls[1], calls[0] * 12 / 10) << "without a match: " << calls[0];
}

}  // namespace
