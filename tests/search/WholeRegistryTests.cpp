// Searches of the whole registry. Natively the registry holds only what a
// test writes, so the exact order across all four roots can be checked;
// Wine's registry is large and its own, so there only a search for a text
// that nothing else contains runs.

#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "search/RegFinder.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

typedef std::vector<std::string> Lines;

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

// On any registry: a text that only the test's own values hold is found
// after the start, then, after a walk through every root, before it.
TEST(WholeRegistryWrap, EndsJustBeforeTheStartOnAnyRegistry)
{
    CScratchKey scratch(TEXT("Wrap"));
    PutString(scratch.Handle(), "k1", "QuendaWrapMark-1");
    PutString(scratch.Handle(), "k2", "QuendaWrapMark-2");
    SSearchParams params = NameSearch("quendawrapmark");
    params.keyNames = false;
    CRegFinder finder;
    finder.SetUp(params, StartAt(HKEY_CURRENT_USER, scratch.Path() + TEXT("\\k2")));

    const Lines found = FindAll(finder, scratch.Path());
    ASSERT_GE(found.size(), 2u);
    EXPECT_EQ(found.front(), "HKCU\\k2|QuendaWrapMark-2");
    EXPECT_EQ(found.back(), "HKCU\\k1|QuendaWrapMark-1 (pass 2)");
    // Wine shows the current user's hive under HKEY_USERS as well.
    for (size_t i = 1; i + 1 < found.size(); ++i)
        EXPECT_EQ(found[i].rfind("HKU\\", 0), 0u) << found[i];
    EXPECT_TRUE(finder.IsFinished());
}

}  // namespace
