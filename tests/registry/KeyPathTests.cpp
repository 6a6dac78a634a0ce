#include <gtest/gtest.h>

#include "registry/KeyPath.h"
#include "registry/RegistryRoots.h"
#include "tests/support/TestText.h"

namespace {

TEST(KeyPath, RootNamesParseWithoutRegardToCasePathsSplitAtTheFirstBackslash)
{
    const struct { const char* text; HKEY root; HKEY longRoot; } cases[] = {
        {"hklm", HKEY_LOCAL_MACHINE, nullptr}, {"HKEY_local_MACHINE", HKEY_LOCAL_MACHINE, HKEY_LOCAL_MACHINE},
        {"HKU", HKEY_USERS, nullptr}, {"HKEY_USERS", HKEY_USERS, HKEY_USERS}, {"hkcr", HKEY_CLASSES_ROOT, nullptr},
        {"HKEY_CURRENT_USER", HKEY_CURRENT_USER, HKEY_CURRENT_USER}, {"HKCR\\", nullptr, nullptr},
        {" HKCU", nullptr, nullptr}, {"", nullptr, nullptr},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.text);
        EXPECT_EQ(ParseRootName(W(item.text)), item.root);
        EXPECT_EQ(ParseRootLongName(W(item.text)), item.longRoot);
    }
    EXPECT_EQ(CString(RootLongName(HKEY_CLASSES_ROOT)), W("HKEY_CLASSES_ROOT"));
    EXPECT_EQ(CString(RootShortName(HKEY_USERS)), W("HKU"));
    EXPECT_EQ(RootLongName(RootKeyFromValue(0x80000004)), nullptr);
    EXPECT_EQ(CString(RootShortName(nullptr)), W(""));
    EXPECT_EQ(RootValueFromKey(HKEY_LOCAL_MACHINE), 0x80000002u);

    HKEY root = HKEY_USERS;
    CString path = W("sentinel");
    EXPECT_TRUE(ParseFullKeyPath(W("HKLM\\Software\\A\\B"), root, path));
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(path, W("Software\\A\\B"));
    EXPECT_TRUE(ParseFullKeyPath(W("hkey_current_user"), root, path));
    EXPECT_EQ(root, HKEY_CURRENT_USER);
    EXPECT_EQ(path, W(""));
    EXPECT_TRUE(ParseFullKeyPath(W("HKCR\\"), root, path));
    EXPECT_EQ(path, W(""));
    EXPECT_FALSE(ParseFullKeyPath(W("HKXX\\Software"), root, path));
    EXPECT_EQ(root, nullptr);
    EXPECT_EQ(path, W(""));

    EXPECT_EQ(FullKeyName(HKEY_LOCAL_MACHINE, W("Software\\X")), W("HKEY_LOCAL_MACHINE\\Software\\X"));
    EXPECT_EQ(FullKeyName(HKEY_USERS, W("")), W("HKEY_USERS"));
    EXPECT_EQ(FullKeyName(nullptr, W("x")), W(""));
}

}  // namespace
