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

// The scratch key below, as CScratchKey places it.
#define SCRATCH "Software\\QuendaTests\\GoTo"
#define NO_ROOT "The path must begin with a root key, such as HKEY_LOCAL_MACHINE or HKLM."

TEST(GoToPath, PathsLeadToTheKeyOrNameTheLongestExistingPartOfferTheNextComponentAndAreRemembered)
{
    CFaultInjectingPlatform faults;
    CScopedPlatform scoped(faults);
    CScratchKey scratch(TEXT("GoTo"));
    for (LPCWSTR path : {TEXT("Alpha\\Inner"), TEXT("alps"), TEXT("Beta")}) {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(scratch.Handle(), path, nullptr));
    }
    const struct { const char* text; const char* target; const char* offers; } cases[] = {
        {"HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\\Inner", "HKEY_CURRENT_USER\\" SCRATCH "\\Alpha\\Inner", "Inner|"},
        {"computer\\hkcu\\" SCRATCH "\\al", "\"HKEY_CURRENT_USER\\" SCRATCH "\" has no subkey \"al\".", "Alpha|alps|"},
        {"\\HKCU\\" SCRATCH "\\ALPHA\\", "HKEY_CURRENT_USER\\" SCRATCH "\\ALPHA", "Inner|"},
        {" hkcu\\\\" SCRATCH "\\\\Beta\\ ", "HKEY_CURRENT_USER\\" SCRATCH "\\Beta", ""},
        {"HKCU\\" SCRATCH "\\Beta\\Gone\\Deeper", "\"HKEY_CURRENT_USER\\" SCRATCH "\\Beta\" has no subkey \"Gone\".",
         ""},
        {"hklm", "HKEY_LOCAL_MACHINE", "HKLM|"},
        {"hkc", NO_ROOT, "HKCR|HKCU|"},
        {"HKEY_C", NO_ROOT, "HKEY_CLASSES_ROOT|HKEY_CURRENT_USER|"},
        {"Computer\\", NO_ROOT, "HKEY_CLASSES_ROOT|HKEY_CURRENT_USER|HKEY_LOCAL_MACHINE|HKEY_USERS|"},
        {"HKEY_NOWHERE\\Software", NO_ROOT, ""},
    };
    for (const auto& c : cases) {
        const SGoToTarget target = ResolveGoToPath(W(c.text));
        std::string offers;
        for (const CString& offer : CGoToCompleter().Offer(W(c.text)))
            offers += ToUtf8(offer) + "|";
        EXPECT_EQ(ToUtf8(target.error.IsEmpty() ? FullKeyName(target.root, target.path) : target.error), c.target);
        EXPECT_EQ(offers, c.offers) << c.text;
    }

    // Entering a key reads each subkey name with one call; typing on within
    // the key reads nothing more.
    CGoToCompleter completer;
    faults.ResetRegistryCallCount();
    completer.Offer(W("HKCU\\" SCRATCH "\\a"));
    EXPECT_EQ(faults.RegistryCallCount(), 6u) << "open, three names, the end, close";
    completer.Offer(W("HKCU\\" SCRATCH "\\al"));
    completer.Offer(W("hkcu\\" SCRATCH "\\ALP"));
    EXPECT_EQ(faults.RegistryCallCount(), 6u);

    // Recent paths: newest first, no two that differ only in case, ten at most.
    std::vector<CString> recent;
    std::string text;
    for (const char* path : {"K0", "K1", "K2", "K3", "K4", "K5", "K6", "K7", "K8", "K9", "k3", "New"})
        AddRecentPath(recent, W(path));
    for (const CString& path : recent)
        text += ToUtf8(path) + " ";
    EXPECT_EQ(text, "New k3 K9 K8 K7 K6 K5 K4 K2 K1 ");
}

}  // namespace
