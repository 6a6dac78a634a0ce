#include "settings/Settings.h"

#include "registry/RegistryRoots.h"
#include "registry/RegKey.h"
#include "settings/ProgramKeys.h"

namespace {

const LPCWSTR kSearchString = TEXT("SearchString");
const LPCWSTR kLastPositionRoot = TEXT("LastPositionRoot");
const LPCWSTR kLastPositionKeyName = TEXT("LastPositionKeyName");
const LPCWSTR kLastPositionValueName = TEXT("LastPositionValueName");
const LPCWSTR kLastPositionValueSelected = TEXT("LastPositionValueSelected");
const LPCWSTR kSavePosition = TEXT("SavePosition");
const LPCWSTR kShowSearchToolbar = TEXT("ShowSearchToolbar");
const LPCWSTR kDoNotCheckImportHeader = TEXT("DoNotCheckImportHeader");

// Present (as a DWORD 1) only while its group is being written; see
// CGroupWriter.
const LPCWSTR kSearchIncomplete = TEXT("SearchIncomplete");
const LPCWSTR kLastPositionIncomplete = TEXT("LastPositionIncomplete");
const LPCWSTR kOptionsIncomplete = TEXT("OptionsIncomplete");
const LPCWSTR kGoToRecentIncomplete = TEXT("GoToRecentIncomplete");

// The recent "Go To" paths are "GoToRecent1" (the newest) onward, up to the
// first one missing.
CString GoToRecentName(size_t number)
{
    return CString::Formatted(TEXT("GoToRecent%u"), static_cast<unsigned>(number));
}

struct SSearchFlag {
    LPCWSTR name;
    bool SSearchParams::*field;
};

const SSearchFlag kSearchFlags[] = {
    {TEXT("SearchKeyNames"), &SSearchParams::keyNames},
    {TEXT("SearchValueNames"), &SSearchParams::valueNames},
    {TEXT("SearchValueData"), &SSearchParams::valueData},
    {TEXT("SearchCaseSensitive"), &SSearchParams::caseSensitive},
    {TEXT("SearchWholeStringOnly"), &SSearchParams::wholeStringOnly},
    {TEXT("SearchTypeStrings"), &SSearchParams::typeStrings},
    {TEXT("SearchTypeMultiStrings"), &SSearchParams::typeMultiStrings},
    {TEXT("SearchTypeDwords"), &SSearchParams::typeDwords},
    {TEXT("SearchTypeBinary"), &SSearchParams::typeBinary},
};

bool IsKnownRoot(DWORD root)
{
    return root >= kRootClassesRoot && root < kRootClassesRoot + kRootCount;
}

// Writes one group of settings (the search criteria, the last position or
// the options) so that a crash part-way cannot load as a mixture.
//
// The registry has no transactions, and a group is several values: a crash
// between two writes would leave some values new and some old, a
// combination nobody chose: new search text with the targets of an older
// search (possibly none ticked at all), or one root's key path under another
// root. So the group is bracketed by a marker value, written before the
// first value and deleted after the last. A store with the marker set is one
// whose group was cut short, and Load gives that group its defaults. Stores
// never written by a crashed run hold no marker and load as before.
//
// When the marker itself cannot be written nothing else is, so the old group
// stays whole. After any failed write the marker is left in place, since the
// group can no longer be known to be whole.
class CGroupWriter {
public:
    explicit CGroupWriter(LPCWSTR marker) : m_marker(marker)
    {
        m_ok = m_key.Create(HKEY_LOCAL_MACHINE, kSettingsKeyPath, nullptr) && m_key.WriteDword(m_marker, 1);
    }

    ~CGroupWriter()
    {
        if (m_ok)
            m_key.DeleteValue(m_marker);
    }

    CGroupWriter(const CGroupWriter&) = delete;
    CGroupWriter& operator=(const CGroupWriter&) = delete;

    void String(LPCWSTR name, LPCWSTR text) { m_ok = m_ok && m_key.WriteString(name, text); }
    void Dword(LPCWSTR name, DWORD value) { m_ok = m_ok && m_key.WriteDword(name, value); }
    void Flag(LPCWSTR name, bool value) { Dword(name, value ? 1 : 0); }
    // False when there was nothing to delete, which is no failure.
    bool Delete(LPCWSTR name) { return m_ok && m_key.DeleteValue(name); }

private:
    LPCWSTR m_marker;
    CShdRegKey m_key;
    bool m_ok = false;
};

}  // namespace

void CSettings::Load()
{
    CShdRegKey key;
    key.Open(HKEY_LOCAL_MACHINE, kSettingsKeyPath);
    // With the key missing every read below fails and gives the default.
    LoadSearchParams(key);
    LoadLastPosition(key);
    LoadOptions(key);
    LoadRecentGoToPaths(key);
    key.Close(false);
}

void CSettings::LoadSearchParams(CShdRegKey& key)
{
    m_search.Reset();
    if (key.ReadBool(kSearchIncomplete, false))
        return;
    m_search.searchString = key.ReadStringOr(kSearchString, TEXT(""));
    for (const SSearchFlag& flag : kSearchFlags)
        m_search.*flag.field = key.ReadBool(flag.name, m_search.*flag.field);
}

void CSettings::LoadLastPosition(CShdRegKey& key)
{
    m_last = SLastPosition();
    if (key.ReadBool(kLastPositionIncomplete, false))
        return;
    const DWORD root = key.ReadDwordOr(kLastPositionRoot, 0);
    // Without a root the names mean nothing: the position is the top.
    if (!IsKnownRoot(root))
        return;
    m_last.root = root;
    m_last.keyName = key.ReadStringOr(kLastPositionKeyName, TEXT(""));
    m_last.valueName = key.ReadStringOr(kLastPositionValueName, TEXT(""));
    m_last.valueSelected = key.ReadBool(kLastPositionValueSelected, false);
}

void CSettings::LoadOptions(CShdRegKey& key)
{
    m_options = SOptions();
    if (key.ReadBool(kOptionsIncomplete, false))
        return;
    m_options.savePosition = key.ReadBool(kSavePosition, m_options.savePosition);
    m_options.showSearchToolbar = key.ReadBool(kShowSearchToolbar, m_options.showSearchToolbar);
    m_options.doNotCheckImportHeader = key.ReadBool(kDoNotCheckImportHeader, m_options.doNotCheckImportHeader);
}

void CSettings::LoadRecentGoToPaths(CShdRegKey& key)
{
    m_recentGoTo.clear();
    if (key.ReadBool(kGoToRecentIncomplete, false))
        return;
    CString path;
    for (size_t number = 1; key.ReadString(GoToRecentName(number), path) && !path.IsEmpty(); ++number)
        m_recentGoTo.push_back(path);
}

void CSettings::SetSearchParams(const SSearchParams& params)
{
    m_search = params;
    CGroupWriter writer(kSearchIncomplete);
    writer.String(kSearchString, m_search.searchString);
    for (const SSearchFlag& flag : kSearchFlags)
        writer.Flag(flag.name, m_search.*flag.field);
}

void CSettings::GetLastPosition(DWORD& root, CString& keyName, CString& valueName, bool& valueSelected) const
{
    root = m_last.root;
    keyName = m_last.keyName;
    valueName = m_last.valueName;
    valueSelected = m_last.valueSelected;
}

void CSettings::SetLastPosition(DWORD root, LPCWSTR keyName, LPCWSTR valueName, bool valueSelected)
{
    m_last.root = root;
    m_last.keyName = keyName;
    m_last.valueName = valueName;
    m_last.valueSelected = valueSelected;
    CGroupWriter writer(kLastPositionIncomplete);
    writer.Dword(kLastPositionRoot, m_last.root);
    writer.String(kLastPositionKeyName, m_last.keyName);
    writer.String(kLastPositionValueName, m_last.valueName);
    writer.Flag(kLastPositionValueSelected, m_last.valueSelected);
}

void CSettings::SaveOptions()
{
    CGroupWriter writer(kOptionsIncomplete);
    writer.Flag(kSavePosition, m_options.savePosition);
    writer.Flag(kShowSearchToolbar, m_options.showSearchToolbar);
    writer.Flag(kDoNotCheckImportHeader, m_options.doNotCheckImportHeader);
}

void CSettings::SetRecentGoToPaths(const std::vector<CString>& paths)
{
    m_recentGoTo = paths;
    CGroupWriter writer(kGoToRecentIncomplete);
    for (size_t index = 0; index < paths.size(); ++index)
        writer.String(GoToRecentName(index + 1), paths[index]);
    // A shorter list than the stored one leaves no old tail behind.
    size_t number = paths.size() + 1;
    while (writer.Delete(GoToRecentName(number)))
        ++number;
}

void CSettings::Flush()
{
    CShdRegKey key;
    if (key.Open(HKEY_LOCAL_MACHINE, kSettingsKeyPath))
        key.Close(true);
}

CSettings& Settings()
{
    static CSettings settings;
    return settings;
}
