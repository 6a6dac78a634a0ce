#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/FaultInjectingPlatform.h"
#include "registry/KeyPath.h"
#include "registry/RegKey.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"
#include "views/GoToPath.h"

namespace {

// "~" in a case stands for the scratch key's path below HKEY_CURRENT_USER.
class GoToPathTest : public testing::Test {
protected:
    GoToPathTest() : m_scratch(TEXT("GoTo"))
    {
        for (LPCWSTR path : {TEXT("Alpha\\Inner"), TEXT("alps"), TEXT("Beta")}) {
            CShdRegKey key;
            EXPECT_TRUE(key.Create(m_scratch.Handle(), path, nullptr));
        }
    }
    CString Expand(const char* text) const
    {
        std::string expanded(text);
        const size_t at = expanded.find('~');
        return W(at == std::string::npos ? text : expanded.replace(at, 1, ToUtf8(m_scratch.Path())).c_str());
    }
    std::string Shorten(const CString& text) const
    {
        std::string shortened = ToUtf8(text);
        const size_t at = shortened.find(ToUtf8(m_scratch.Path()));
        return at == std::string::npos ? shortened : shortened.replace(at, ToUtf8(m_scratch.Path()).size(), "~");
    }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped{m_faults};
    CScratchKey m_scratch;
};

TEST_F(GoToPathTest, PathsResolveToTheKeyOrNameTheLongestExistingPartAndOfferTheNextComponent)
{
    const struct { const char* text; const char* target; const char* offers; } cases[] = {
        {"HKEY_CURRENT_USER\\~\\Alpha\\Inner", "HKEY_CURRENT_USER\\~\\Alpha\\Inner", "HKEY_CURRENT_USER\\~\\Alpha\\Inner"},
        {"computer\\hkcu\\~\\al", "\"HKEY_CURRENT_USER\\~\" has no subkey \"al\".",
         "computer\\hkcu\\~\\Alpha|computer\\hkcu\\~\\alps"},
        {"\\HKCU\\~\\ALPHA\\", "HKEY_CURRENT_USER\\~\\ALPHA", "\\HKCU\\~\\ALPHA\\Inner"},
        {" hkcu\\\\~\\\\Beta\\ ", "HKEY_CURRENT_USER\\~\\Beta", ""},
        {"HKCU\\~\\Beta\\Gone\\Deeper", "\"HKEY_CURRENT_USER\\~\\Beta\" has no subkey \"Gone\".", ""},
        {"hklm", "HKEY_LOCAL_MACHINE", "HKLM"},
        {"HKEY_C", "The path must begin with a root key, such as HKEY_LOCAL_MACHINE or HKLM.",
         "HKEY_CLASSES_ROOT|HKEY_CURRENT_USER"},
        {"Computer\\", "The path must begin with a root key, such as HKEY_LOCAL_MACHINE or HKLM.",
         "Computer\\HKEY_CLASSES_ROOT|Computer\\HKEY_CURRENT_USER|Computer\\HKEY_LOCAL_MACHINE|Computer\\HKEY_USERS"},
        {"HKEY_NOWHERE\\Software", "The path must begin with a root key, such as HKEY_LOCAL_MACHINE or HKLM.", ""},
    };
    for (const auto& c : cases) {
        const SGoToTarget target = ResolveGoToPath(Expand(c.text));
        CGoToCompleter completer;
        std::string offers;
        for (const CString& offer : completer.Offer(Expand(c.text)))
            offers += (offers.empty() ? "" : "|") + Shorten(offer);
        EXPECT_EQ(Shorten(target.error.IsEmpty() ? FullKeyName(target.root, target.path) : target.error), c.target)
            << c.text;
        EXPECT_EQ(offers, c.offers) << c.text;
    }

    // Typing on within one key reads its subkeys once.
    CGoToCompleter completer;
    completer.Offer(Expand("HKCU\\~\\a"));
    m_faults.ResetRegistryCallCount();
    completer.Offer(Expand("HKCU\\~\\al"));
    completer.Offer(Expand("hkcu\\~\\ALP"));
    EXPECT_EQ(m_faults.RegistryCallCount(), 0u);
}

TEST(RecentGoToPaths, NewestFirstWithoutDuplicatesByCaseAndTenAtMost)
{
    std::vector<CString> recent;
    for (const char* path : {"K0", "K1", "K2", "K3", "K4", "K5", "K6", "K7", "K8", "K9", "k3", "New"})
        AddRecentPath(recent, W(path));
    std::string text;
    for (const CString& path : recent)
        text += ToUtf8(path) + " ";
    EXPECT_EQ(text, "New k3 K9 K8 K7 K6 K5 K4 K2 K1 ");
}

}  // namespace
