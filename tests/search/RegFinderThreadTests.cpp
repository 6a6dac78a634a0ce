#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "framework/Text.h"
#include "platform/ForwardingPlatform.h"
#include "search/RegFinder.h"
#include "tests/search/FinderTestSupport.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

// Holds the search thread inside the opening of one key until someone sets
// an event (the finder's cancel), and counts the keys opened after that.
class CGatePlatform : public CForwardingPlatform {
public:
    explicit CGatePlatform(LPCWSTR gateKey)
        : CForwardingPlatform(SystemPlatform()), m_system(SystemPlatform()), m_gateKey(gateKey),
          m_reached(m_system.CreateEventW(TRUE, FALSE)), m_released(m_system.CreateEventW(TRUE, FALSE))
    {
    }
    ~CGatePlatform() override
    {
        m_system.CloseHandle(m_reached);
        m_system.CloseHandle(m_released);
    }

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override
    {
        if (m_system.WaitForSingleObject(m_released, 0) == WAIT_OBJECT_0)
            ++m_opensAfterRelease;
        else if (subKey != nullptr && CompareNoCase(subKey, m_gateKey) == 0) {
            m_system.SetEvent(m_reached);
            m_system.WaitForSingleObject(m_released, INFINITE);
        }
        return CForwardingPlatform::RegOpenKeyExW(parent, subKey, options, sam, result);
    }
    BOOL SetEvent(HANDLE event) override
    {
        const BOOL result = CForwardingPlatform::SetEvent(event);
        if (m_system.WaitForSingleObject(m_reached, 0) == WAIT_OBJECT_0)
            m_system.SetEvent(m_released);
        return result;
    }

    bool WaitUntilReached() { return m_system.WaitForSingleObject(m_reached, 10000) == WAIT_OBJECT_0; }
    int OpensAfterRelease() const { return m_opensAfterRelease; }

private:
    IPlatform& m_system;
    CString m_gateKey;
    HANDLE m_reached;
    HANDLE m_released;
    std::atomic<int> m_opensAfterRelease{0};
};

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
        CGatePlatform gate(TEXT("k1010"));
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
