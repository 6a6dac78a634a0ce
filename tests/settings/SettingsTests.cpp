#include <functional>

#include "base/Utf8.h"
#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "settings/Bookmarks.h"
#include "settings/FileAssociation.h"
#include "settings/ProgramKeys.h"
#include "settings/Settings.h"
#include "tests/settings/SettingsTestSupport.h"
#include "tests/support/TestText.h"

namespace {

using EChange = CBookmarkList::EChange;

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

std::string LoadedBookmarks()
{
    CBookmarkList list;
    list.Load();
    std::string text;
    for (size_t i = 0; i < list.GetCount(); ++i)
        text += (i > 0 ? "," : "") + ToUtf8(list.GetAt(i));
    return text;
}

void WriteBookmarkValue(const char* name, DWORD type, const std::vector<BYTE>& data)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kBookmarksKeyPath, W(name), type, data);
}

using BookmarksTest = ProgramKeyTest;

TEST_F(BookmarksTest, LoadSkipsGapsAndTheNextSaveClosesThem)
{
    WriteBookmarkValue("item_0", REG_SZ, Utf16Bytes(W("HKLM\\zero"), true));
    WriteBookmarkValue("ITEM_2", REG_EXPAND_SZ, Utf16Bytes(W("HKLM\\two"), true));
    WriteBookmarkValue("item_3", REG_SZ, Utf16Bytes(W(""), true));
    WriteBookmarkValue("item_4", REG_BINARY, Bytes({0x41, 0, 0, 0}));
    WriteBookmarkValue("item_05", REG_SZ, Utf16Bytes(W("HKLM\\padded"), true));
    WriteBookmarkValue("item_10", REG_SZ, Utf16Bytes(W("HKLM\\ten"), true));
    EXPECT_EQ(LoadedBookmarks(), "") << "no count";
    WriteBookmarkValue("count", REG_DWORD, Bytes({3, 0}));
    EXPECT_EQ(LoadedBookmarks(), "") << "a two-byte count";
    WriteBookmarkValue("count", REG_DWORD, Bytes({0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(LoadedBookmarks(), "HKLM\\zero,HKLM\\two,HKLM\\ten") << "a damaged count";
    WriteBookmarkValue("count", REG_DWORD, Bytes({4, 0, 0, 0}));

    CBookmarkList list;
    list.Load();
    EXPECT_TRUE(list.Save());
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath),
              "[count]=#2\n[item_05]=HKLM\\padded\n[item_0]=HKLM\\zero\n[item_1]=HKLM\\two\n");
}

// Saving three items takes five writes: count 0, the items, the count. A
// save cut short loads as empty; one refused item costs only that item.
TEST_F(BookmarksTest, ASaveCutShortLoadsAsEmptyAndARefusedItemStopsNothing)
{
    for (int k = 0; k <= 5; ++k) {
        SCOPED_TRACE(k);
        CBookmarkList list;
        list.Load();
        while (list.GetCount() > 0)
            list.Remove(0);
        list.Add(W("HKLM\\old1"));
        list.Add(W("HKLM\\old2"));
        m_faults.FailValueWritesAfter(k);
        list.Add(W("HKLM\\new"));
        m_faults.Clear();
        EXPECT_EQ(LoadedBookmarks(), k == 0 ? "HKLM\\old1,HKLM\\old2" : k < 5 ? "" : "HKLM\\old1,HKLM\\old2,HKLM\\new");
    }
    m_faults.FailValueWrite(W("item_0"));
    CBookmarkList list;
    list.Load();
    EXPECT_EQ(list.Replace(2, W("HKCU\\new")), EChange::Failed);
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath),
              "[count]=#3\n[item_0]=HKLM\\old1\n[item_1]=HKLM\\old2\n[item_2]=HKCU\\new\n");
}

TEST_F(BookmarksTest, DuplicatesAreFoundWithoutRegardToCase)
{
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("Software\\Ärger")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(HKEY_LOCAL_MACHINE, W("SOFTWARE\\ärger")), EAddBookmarkResult::AlreadyExists);
    EXPECT_EQ(AddBookmark(HKEY_USERS, W("")), EAddBookmarkResult::Added);
    EXPECT_EQ(AddBookmark(reinterpret_cast<HKEY>(0x1234), W("Software")), EAddBookmarkResult::Failed);

    CBookmarkList list;
    list.Load();
    EXPECT_EQ(list.Add(W("hkey_users")), EChange::AlreadyExists);
    EXPECT_EQ(list.Replace(1, W("HKEY_USERS")), EChange::Unchanged);
    EXPECT_EQ(list.Replace(1, W("hkey_local_machine\\software\\ÄRGER")), EChange::AlreadyExists);
    EXPECT_EQ(list.Replace(0, W("HKEY_LOCAL_MACHINE\\SOFTWARE\\Ärger")), EChange::Changed) << "case alone";
    EXPECT_EQ(list.Add(W("HKCU")), EChange::Changed);
    EXPECT_EQ(LoadedBookmarks(), "HKEY_LOCAL_MACHINE\\SOFTWARE\\Ärger,HKEY_USERS,HKCU");

    EXPECT_EQ(list.Remove(2), 1) << "the new last item";
    EXPECT_EQ(list.Remove(0), 0) << "the item that took its place";
    EXPECT_EQ(list.Remove(0), -1);
    EXPECT_EQ(DescribeTree(HKEY_LOCAL_MACHINE, kBookmarksKeyPath), "[count]=#0\n");

    m_faults.FailValueWrite(W("count"));
    EXPECT_EQ(AddBookmark(HKEY_CURRENT_USER, W("Software")), EAddBookmarkResult::Added) << "a refused save";
}

TEST(BookmarkLocation, NamesAKnownRootWithoutEmptyPathParts)
{
    for (const char* text : {"HKEY_LOCAL_MACHINE", "hklm\\Software", "HKCR\\.reg", "HKEY_USERS\\a b\\c"})
        EXPECT_TRUE(IsValidBookmarkLocation(W(text))) << text;
    for (const char* text : {"", "HKLM\\", "HKLM\\\\Software", "HKLM\\a\\\\b", "HKXX\\a", "Software", " HKLM"})
        EXPECT_FALSE(IsValidBookmarkLocation(W(text))) << text;
}

// Under Wine the association tests run on the test prefix's real
// HKEY_CLASSES_ROOT; the fixture puts back whatever .reg association was
// there before.
void SetDefault(const char* path, const char* text)
{
    WriteTestValue(HKEY_CLASSES_ROOT, W(path), W(""), REG_SZ, Utf16Bytes(W(text), true));
}

void SetInstallDir(DWORD type, const char* directory)
{
    WriteTestValue(HKEY_LOCAL_MACHINE, kProgramKeyPath, W("InstallDir"), type, Utf16Bytes(W(directory), true));
}

std::string Association()
{
    return DescribeTree(HKEY_CLASSES_ROOT, kRegFileExtension) + "--\n" +
           DescribeTree(HKEY_CLASSES_ROOT, kRegFileClass) + DescribeTree(HKEY_CLASSES_ROOT, TEXT("QuendaTestClass"));
}

class FileAssociationTest : public ProgramKeyTest {
protected:
    CSavedKey m_extension{HKEY_CLASSES_ROOT, kRegFileExtension, TEXT("SavedExtension")};
    CSavedKey m_class{HKEY_CLASSES_ROOT, kRegFileClass, TEXT("SavedClass")};
    CSavedKey m_testClass{HKEY_CLASSES_ROOT, TEXT("QuendaTestClass"), TEXT("SavedTestClass")};
};

TEST_F(FileAssociationTest, ProgramPathComesFromTheInstallationRecord)
{
    EXPECT_EQ(OpenCommandLine() + DefaultIconString(122), W("")) << "no record";
    const struct { DWORD type; const char* directory; const char* path; } cases[] = {
        {REG_SZ, "\\Program Files\\Quenda", "\\Program Files\\Quenda\\Quenda.exe"},
        {REG_EXPAND_SZ, "\\Storage Card\\Über\\", "\\Storage Card\\Über\\Quenda.exe"}, {REG_SZ, "", ""},
        {REG_BINARY, "\\Windows", ""},
    };
    for (const auto& c : cases) {
        SetInstallDir(c.type, c.directory);
        EXPECT_EQ(ProgramPath(), W(c.path)) << c.directory;
    }
}

TEST_F(FileAssociationTest, InstallReplacesAnotherProgramsClassWholeAndRemoveTakesItAway)
{
    SetDefault(".reg", "regfile");
    SetDefault("regfile\\Shell\\Open\\Command", "other.exe \"%1\"");
    SetDefault("regfile\\Shell\\Print\\Command", "other.exe /p \"%1\"");
    const std::string other = Association();
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::NoProgramPath);
    EXPECT_FALSE(InstallRegFileAssociation());
    EXPECT_FALSE(Associate(W(""), W("regfile"), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Associate(W(".reg"), W(""), W("d"), W("i"), W("c")));
    EXPECT_FALSE(Unassociate(W("")));
    EXPECT_EQ(Association(), other);

    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::OtherProgram);
    EXPECT_FALSE(IsAssociated());
    EXPECT_TRUE(InstallRegFileAssociation());
    EXPECT_EQ(Association(), "[]=regfile\n--\n[]=Registry File\n"
                             "\\DefaultIcon[]=\\Program Files\\Quenda\\Quenda.exe,-122\n"
                             "\\Shell\\Open\\Command[]=\"\\Program Files\\Quenda\\Quenda.exe\" \"%1\"\n");
    SetInstallDir(REG_SZ, "\\PROGRAM FILES\\QUENDA");
    EXPECT_TRUE(IsAssociated()) << "commands compare without regard to case";
    EXPECT_EQ(CheckRegFileAssociation(), ERegFileAssociation::Free);

    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(Association(), "--\n");
    EXPECT_FALSE(IsAssociated());
}

TEST_F(FileAssociationTest, OnlyAClassWithoutOpenCommandBelongsToNoProgram)
{
    SetInstallDir(REG_SZ, "\\Program Files\\Quenda");
    SetDefault(".reg", "QuendaTestClass");
    SetDefault("QuendaTestClass\\DefaultIcon", "x.dll,-1");
    // In order: no command at all, then one that is there but empty.
    const struct { const char* command; bool found; ERegFileAssociation state; } cases[] = {
        {nullptr, false, ERegFileAssociation::Free}, {"", true, ERegFileAssociation::OtherProgram}};
    for (const auto& c : cases) {
        if (c.command != nullptr)
            SetDefault("QuendaTestClass\\Shell\\Open\\Command", c.command);
        CString command = W("sentinel");
        EXPECT_EQ(GetOpenCommand(W(".REG"), command), c.found);
        EXPECT_EQ(command, W(""));
        EXPECT_EQ(CheckRegFileAssociation(), c.state);
    }
    EXPECT_TRUE(RemoveRegFileAssociation());
    EXPECT_EQ(Association(), "--\n");
}

}  // namespace
