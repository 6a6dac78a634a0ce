#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "framework/Utf8.h"
#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "registry/RegistryRoots.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/settings/KeySnapshot.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

std::string Flags(std::initializer_list<bool> flags)
{
    std::string text;
    for (bool flag : flags)
        text += flag ? '1' : '0';
    return text;
}

// "text:flags" in the order of the settings table.
std::string DescribeSearch(const CSettings& settings)
{
    const SSearchParams p = settings.GetSearchParams();
    return ToUtf8(p.searchString) + ":" +
           Flags({p.keyNames, p.valueNames, p.valueData, p.caseSensitive, p.wholeStringOnly, p.typeStrings,
                  p.typeMultiStrings, p.typeDwords, p.typeBinary});
}

std::string DescribePosition(const CSettings& settings)
{
    DWORD root = 1;
    CString keyName = W("sentinel");
    CString valueName = W("sentinel");
    bool selected = true;
    settings.GetLastPosition(root, keyName, valueName, selected);
    char rootText[16];
    snprintf(rootText, sizeof(rootText), "%x", static_cast<unsigned>(root));
    return std::string(rootText) + "|" + ToUtf8(keyName) + "|" + ToUtf8(valueName) + "|" + Flags({selected});
}

std::string DescribeOptions(const CSettings& settings)
{
    return Flags({settings.GetSavePosition(), settings.GetShowSearchToolbar(), settings.GetDoNotCheckImportHeader()});
}

class SettingsTest : public testing::Test {
protected:
    SettingsTest() : m_scoped(m_faults) { DeleteTreeForTests(HKEY_LOCAL_MACHINE, kSettingsKeyPath); }

    void Write(const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(HKEY_LOCAL_MACHINE, kSettingsKeyPath, nullptr));
        ASSERT_TRUE(key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
    }

    std::vector<BYTE> Read(const CString& name, DWORD expectedType)
    {
        CShdRegKey key;
        DWORD type = REG_NONE;
        CShdBinaryBuffer data;
        EXPECT_TRUE(key.Open(HKEY_LOCAL_MACHINE, kSettingsKeyPath) && key.ReadValue(name, type, data)) << ToUtf8(name);
        EXPECT_EQ(type, expectedType) << ToUtf8(name);
        return std::vector<BYTE>(data.GetData(), data.GetData() + data.GetSize());
    }

    bool SettingsKeyExists()
    {
        CShdRegKey key;
        return key.Open(HKEY_LOCAL_MACHINE, kSettingsKeyPath);
    }

    // Restores the program's whole key (settings, bookmarks, install record)
    // after the test, with the system's platform.
    CKeySnapshot m_saved{HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Marrowick")};
    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
};

TEST_F(SettingsTest, WithoutTheKeyEverySettingTakesItsDefaultAndNothingIsCreated)
{
    CSettings settings;
    SSearchParams changed;
    changed.searchString = W("x");
    changed.keyNames = false;
    settings.SetSearchParams(changed);
    settings.SetDoNotCheckImportHeader(true);
    DeleteTreeForTests(HKEY_LOCAL_MACHINE, kSettingsKeyPath);

    settings.Load();

    EXPECT_EQ(DescribeSearch(settings), ":111001111");
    EXPECT_EQ(DescribePosition(settings), "0|||0");
    EXPECT_EQ(DescribeOptions(settings), "110");
    EXPECT_FALSE(SettingsKeyExists());
}

TEST_F(SettingsTest, OnlyFourByteDwordsCountAndStringsComeFromTheThreeStringTypes)
{
    Write(W("SearchString"), REG_BINARY, Utf16Bytes(W("bin"), true));
    Write(W("SearchKeyNames"), REG_SZ, Utf16Bytes(W("0"), true));
    Write(W("SearchValueData"), REG_DWORD, Bytes({0, 0, 0, 0}));
    Write(W("SearchCaseSensitive"), REG_DWORD, Bytes({5, 0, 0, 0}));
    Write(W("SearchWholeStringOnly"), REG_BINARY, Bytes({1, 0, 0, 0}));
    Write(W("SearchTypeStrings"), REG_DWORD, Bytes({0, 0}));
    Write(W("SearchTypeDwords"), REG_DWORD, Bytes({0, 0, 0, 0, 0, 0, 0, 0}));
    Write(W("SavePosition"), REG_DWORD, Bytes({0, 0, 0, 0}));
    Write(W("ShowSearchToolbar"), REG_SZ, Utf16Bytes(W("0"), true));
    Write(W("DoNotCheckImportHeader"), REG_DWORD, Bytes({0, 0, 0, 0x80}));
    // A two-byte root is no root, so the names stored with it are not used.
    Write(W("LastPositionRoot"), REG_DWORD, Bytes({2, 0}));
    Write(W("LastPositionKeyName"), REG_SZ, Utf16Bytes(W("Software"), true));

    CSettings settings;
    settings.Load();

    EXPECT_EQ(DescribeSearch(settings), ":110101111");
    EXPECT_EQ(DescribeOptions(settings), "011");
    EXPECT_EQ(DescribePosition(settings), "0|||0");

    const DWORD stringTypes[] = {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ};
    for (DWORD type : stringTypes) {
        SCOPED_TRACE(type);
        Write(W("SearchString"), type, Utf16Bytes(W("Ärger"), true) + Utf16Bytes(W("more"), true));
        Write(W("LastPositionRoot"), REG_DWORD, Bytes({2, 0, 0, 0x80}));
        Write(W("LastPositionKeyName"), type, Utf16Bytes(W("Software\\Ä"), false));
        Write(W("LastPositionValueName"), type, Utf16Bytes(W("v"), true));
        Write(W("LastPositionValueSelected"), REG_DWORD, Bytes({1, 0, 0, 0}));
        settings.Load();
        EXPECT_EQ(DescribeSearch(settings), "Ärger:110101111");
        EXPECT_EQ(DescribePosition(settings), "80000002|Software\\Ä|v|1");
    }
}

TEST_F(SettingsTest, UnknownRootMeansNoPosition)
{
    Write(W("LastPositionRoot"), REG_DWORD, Bytes({4, 0, 0, 0x80}));
    Write(W("LastPositionKeyName"), REG_SZ, Utf16Bytes(W("Software"), true));
    Write(W("LastPositionValueSelected"), REG_DWORD, Bytes({1, 0, 0, 0}));
    CSettings settings;
    settings.Load();
    EXPECT_EQ(DescribePosition(settings), "0|||0");
}

TEST_F(SettingsTest, SetOperationsWriteAtOnceAndOptionSettersOnlyThroughSaveOptions)
{
    CSettings settings;
    settings.SetSavePosition(false);
    settings.SetShowSearchToolbar(false);
    settings.SetDoNotCheckImportHeader(true);
    EXPECT_FALSE(SettingsKeyExists());

    SSearchParams params;
    params.searchString = W("needle");
    params.keyNames = false;
    params.caseSensitive = true;
    settings.SetSearchParams(params);
    EXPECT_EQ(Read(W("SearchString"), REG_SZ), Utf16Bytes(W("needle"), true));
    EXPECT_EQ(Read(W("SearchKeyNames"), REG_DWORD), Bytes({0, 0, 0, 0}));
    EXPECT_EQ(Read(W("SearchCaseSensitive"), REG_DWORD), Bytes({1, 0, 0, 0}));
    EXPECT_EQ(Read(W("SearchTypeBinary"), REG_DWORD), Bytes({1, 0, 0, 0}));

    settings.SetLastPosition(kRootCurrentUser, W("Software\\Q"), W(""), true);
    EXPECT_EQ(Read(W("LastPositionRoot"), REG_DWORD), Bytes({1, 0, 0, 0x80}));
    EXPECT_EQ(Read(W("LastPositionKeyName"), REG_SZ), Utf16Bytes(W("Software\\Q"), true));
    EXPECT_EQ(Read(W("LastPositionValueName"), REG_SZ), Utf16Bytes(W(""), true));
    EXPECT_EQ(Read(W("LastPositionValueSelected"), REG_DWORD), Bytes({1, 0, 0, 0}));

    CShdRegKey key;
    ASSERT_TRUE(key.Open(HKEY_LOCAL_MACHINE, kSettingsKeyPath));
    EXPECT_EQ(key.ValueCount(), 14u) << "the options wait for SaveOptions";
    settings.SaveOptions();
    settings.Flush();
    EXPECT_EQ(key.ValueCount(), 17u);
    EXPECT_EQ(Read(W("SavePosition"), REG_DWORD), Bytes({0, 0, 0, 0}));
    EXPECT_EQ(Read(W("DoNotCheckImportHeader"), REG_DWORD), Bytes({1, 0, 0, 0}));

    CSettings reloaded;
    reloaded.Load();
    EXPECT_EQ(DescribeSearch(reloaded), "needle:011101111");
    EXPECT_EQ(DescribePosition(reloaded), "80000001|Software\\Q||1");
    EXPECT_EQ(DescribeOptions(reloaded), "001");
}

// Each group is written as old values, then as new values by a run that
// crashes after `k` value writes (every later write fails). Whatever k is,
// the group loads as the old values, its defaults or the new values, never
// a mixture, and the other groups are untouched.
TEST_F(SettingsTest, AWriteCutShortLoadsOldDefaultsOrNewButNeverAMixture)
{
    struct SGroup {
        const char* name;
        int writes;
        std::function<void(CSettings&, bool)> store;
        std::function<std::string(const CSettings&)> describe;
        std::string oldValues, defaults, newValues;
    };
    const SGroup groups[] = {
        {"search", 11,
         [](CSettings& s, bool isNew) {
             SSearchParams p;
             p.searchString = isNew ? W("new") : W("old");
             p.valueNames = false;
             p.valueData = isNew;
             p.keyNames = !isNew;
             p.caseSensitive = isNew;
             s.SetSearchParams(p);
         },
         DescribeSearch, "old:100001111", ":111001111", "new:001101111"},
        {"position", 5,
         [](CSettings& s, bool isNew) {
             if (isNew)
                 s.SetLastPosition(kRootCurrentUser, W("Software\\New"), W(""), false);
             else
                 s.SetLastPosition(kRootLocalMachine, W("Software\\Old"), W("a"), true);
         },
         DescribePosition, "80000002|Software\\Old|a|1", "0|||0", "80000001|Software\\New||0"},
        {"options", 4,
         [](CSettings& s, bool isNew) {
             s.SetSavePosition(isNew);
             s.SetShowSearchToolbar(false);
             s.SetDoNotCheckImportHeader(!isNew);
             s.SaveOptions();
         },
         DescribeOptions, "001", "110", "100"},
    };
    for (const SGroup& group : groups) {
        for (int k = 0; k <= group.writes; ++k) {
            SCOPED_TRACE(std::string(group.name) + " cut after " + std::to_string(k) + " writes");
            DeleteTreeForTests(HKEY_LOCAL_MACHINE, kSettingsKeyPath);
            CSettings writer;
            for (const SGroup& each : groups)
                each.store(writer, false);
            m_faults.FailValueWritesAfter(k);
            group.store(writer, true);
            m_faults.Clear();

            CSettings loaded;
            loaded.Load();
            const std::string& expected = k == 0 ? group.oldValues : k < group.writes ? group.defaults : group.newValues;
            for (const SGroup& each : groups)
                EXPECT_EQ(each.describe(loaded), &each == &group ? expected : each.oldValues) << each.name;
        }
    }
}

TEST_F(SettingsTest, SettingsChangedOutsideTakeEffectOnlyAtTheNextLoad)
{
    CSettings settings;
    settings.Load();
    Write(W("SearchString"), REG_SZ, Utf16Bytes(W("outside"), true));
    EXPECT_EQ(DescribeSearch(settings), ":111001111");
    settings.Load();
    EXPECT_EQ(DescribeSearch(settings), "outside:111001111");
}

}  // namespace
