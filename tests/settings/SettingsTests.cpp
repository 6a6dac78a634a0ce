#include <functional>

#include "framework/Utf8.h"
#include "registry/RegistryRoots.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"

namespace {

// "text:<nine search flags> <value selected, three options> root|key|value"
std::string Loaded()
{
    CSettings s;
    s.Load();
    const SSearchParams p = s.GetSearchParams();
    DWORD root = 1;
    CString key, value;
    bool selected = true;
    s.GetLastPosition(root, key, value, selected);
    std::string text = ToUtf8(p.searchString) + ":";
    for (bool flag : {p.keyNames, p.valueNames, p.valueData, p.caseSensitive, p.wholeStringOnly, p.typeStrings,
                      p.typeMultiStrings, p.typeDwords, p.typeBinary})
        text += flag ? "1" : "0";
    text += " ";
    for (bool flag : {selected, s.GetSavePosition(), s.GetShowSearchToolbar(), s.GetDoNotCheckImportHeader()})
        text += flag ? "1" : "0";
    return text + ToUtf8(CString::Formatted(TEXT(" %x|%s|%s"), root, key, value));
}

void Write(const char* name, DWORD type, const std::vector<BYTE>& data)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kSettingsKeyPath, W(name), type, data);
}

using SettingsTest = ProgramKeyTest;

TEST_F(SettingsTest, WronglyTypedValuesAreIgnoredAndStringsComeFromAllStringTypes)
{
    EXPECT_EQ(Loaded(), ":111001111 0110 0||") << "no key";
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath), "") << "Load creates nothing";

    Write("SearchKeyNames", REG_SZ, Utf16Bytes(W("0"), true));
    Write("SearchValueData", REG_DWORD, Bytes({0, 0, 0, 0}));
    Write("SearchCaseSensitive", REG_DWORD, Bytes({5, 0, 0, 0}));
    Write("SearchWholeStringOnly", REG_BINARY, Bytes({1, 0, 0, 0}));
    Write("SearchTypeStrings", REG_DWORD, Bytes({0, 0}));
    Write("SearchTypeDwords", REG_DWORD, Bytes({0, 0, 0, 0, 0, 0, 0, 0}));
    Write("SearchString", REG_BINARY, Utf16Bytes(W("bin"), true));
    Write("ShowSearchToolbar", REG_DWORD, Bytes({0, 0, 0, 0}));
    // A root that is not four bytes, or names no root, leaves no position.
    Write("LastPositionKeyName", REG_SZ, Utf16Bytes(W("Software"), true));
    Write("LastPositionValueSelected", REG_DWORD, Bytes({1, 0, 0, 0}));
    Write("LastPositionRoot", REG_DWORD, Bytes({2, 0}));
    EXPECT_EQ(Loaded(), ":110101111 0100 0||");
    Write("LastPositionRoot", REG_DWORD, Bytes({4, 0, 0, 0x80}));
    EXPECT_EQ(Loaded(), ":110101111 0100 0||");

    Write("LastPositionRoot", REG_DWORD, Bytes({2, 0, 0, 0x80}));
    for (DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ}) {
        Write("SearchString", type, Utf16Bytes(W("Ärger"), true) + Utf16Bytes(W("more"), true));
        Write("LastPositionValueName", type, Utf16Bytes(W("v"), false));
        EXPECT_EQ(Loaded(), "Ärger:110101111 1100 80000002|Software|v") << type;
    }
}

TEST_F(SettingsTest, SetSearchParamsWritesAtOnceAndOptionsWaitForSaveOptions)
{
    CSettings settings;
    SSearchParams params;
    params.searchString = W("needle");
    params.keyNames = false;
    settings.SetSavePosition(false);
    settings.SetSearchParams(params);
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kSettingsKeyPath),
              "[SearchCaseSensitive]=#0\n[SearchKeyNames]=#0\n[SearchString]=needle\n[SearchTypeBinary]=#1\n"
              "[SearchTypeDwords]=#1\n[SearchTypeMultiStrings]=#1\n[SearchTypeStrings]=#1\n[SearchValueData]=#1\n"
              "[SearchValueNames]=#1\n[SearchWholeStringOnly]=#0\n");
    settings.SaveOptions();
    settings.Flush();
    EXPECT_EQ(Loaded(), "needle:011001111 0010 0||");
}

// Every group is stored with old values, then one group with new values by a
// run that crashes after k value writes. That group loads as old (nothing
// written), defaults (cut short) or new (complete), never as a mixture.
TEST_F(SettingsTest, AWriteCutShortLoadsDefaultsRatherThanAMixture)
{
    SSearchParams search;
    search.searchString = W("new");
    search.keyNames = false;
    search.caseSensitive = true;
    const struct { int writes; std::function<void(CSettings&)> write; const char* cut; const char* done; } cases[] = {
        {11, [&](CSettings& s) { s.SetSearchParams(search); }, ":111001111 1010 80000002|Old|a",
         "new:011101111 1010 80000002|Old|a"},
        {5, [](CSettings& s) { s.SetLastPosition(kRootCurrentUser, W("New"), W(""), false); },
         "old:110001111 0010 0||", "old:110001111 0010 80000001|New|"},
        {4, [](CSettings& s) { s.SetSavePosition(true); s.SetShowSearchToolbar(false); s.SaveOptions(); },
         "old:110001111 1110 80000002|Old|a", "old:110001111 1100 80000002|Old|a"},
    };
    for (const auto& c : cases) {
        for (int k = 0; k <= c.writes; ++k) {
            CSettings settings;
            SSearchParams old;
            old.searchString = W("old");
            old.valueData = false;
            settings.SetSearchParams(old);
            settings.SetLastPosition(kRootLocalMachine, W("Old"), W("a"), true);
            settings.SetSavePosition(false);
            settings.SaveOptions();
            m_faults.FailValueWritesAfter(k);
            c.write(settings);
            m_faults.Clear();
            EXPECT_EQ(Loaded(), k == 0 ? "old:110001111 1010 80000002|Old|a" : k < c.writes ? c.cut : c.done) << k;
        }
    }
}

}  // namespace
