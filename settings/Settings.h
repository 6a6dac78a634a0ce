#pragma once

#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"
#include "search/SearchParams.h"

class CShdRegKey;

// The three options of the "Options" sheet. The defaults are those of a
// fresh installation.
struct SOptions {
    bool savePosition = true;
    bool showSearchToolbar = true;
    bool doNotCheckImportHeader = false;
};

// The user's persistent choices: the last search criteria, the last position
// in the tree, three options and the paths "Go To" went to. They live in the
// registry under HKEY_LOCAL_MACHINE\SOFTWARE\Marrowick\Quenda\Settings, are
// loaded once at start-up and written back group by group when their owners
// change them. Registry failures are never reported: a missing or unreadable
// value takes its default, a failed write leaves the in-memory value changed.
class CSettings {
public:
    CSettings() = default;
    CSettings(const CSettings&) = delete;
    CSettings& operator=(const CSettings&) = delete;

    // Reads every setting; never creates the key.
    void Load();

    SSearchParams GetSearchParams() const { return m_search; }
    // Stores the criteria and writes them at once.
    void SetSearchParams(const SSearchParams& params);

    // `root` is a predefined root's 32-bit value (registry/RegistryRoots.h),
    // 0 for none; the key name is relative to it.
    void GetLastPosition(DWORD& root, CString& keyName, CString& valueName, bool& valueSelected) const;
    // Stores the position and writes it at once.
    void SetLastPosition(DWORD root, LPCWSTR keyName, LPCWSTR valueName, bool valueSelected);

    // The options change in memory only; SaveOptions writes them.
    bool GetSavePosition() const { return m_options.savePosition; }
    void SetSavePosition(bool value) { m_options.savePosition = value; }
    bool GetShowSearchToolbar() const { return m_options.showSearchToolbar; }
    void SetShowSearchToolbar(bool value) { m_options.showSearchToolbar = value; }
    bool GetDoNotCheckImportHeader() const { return m_options.doNotCheckImportHeader; }
    void SetDoNotCheckImportHeader(bool value) { m_options.doNotCheckImportHeader = value; }
    const SOptions& GetOptions() const { return m_options; }
    void SetOptions(const SOptions& options) { m_options = options; }
    void SaveOptions();

    // The paths "Go To" went to, newest first; the dialog keeps their rules.
    const std::vector<CString>& GetRecentGoToPaths() const { return m_recentGoTo; }
    // Stores them and writes them at once.
    void SetRecentGoToPaths(const std::vector<CString>& paths);

    // Makes the written values reach persistent storage.
    void Flush();

private:
    void LoadSearchParams(CShdRegKey& key);
    void LoadLastPosition(CShdRegKey& key);
    void LoadOptions(CShdRegKey& key);
    void LoadRecentGoToPaths(CShdRegKey& key);

    struct SLastPosition {
        DWORD root = 0;
        CString keyName;
        CString valueName;
        bool valueSelected = false;
    };
    SSearchParams m_search;
    SLastPosition m_last;
    SOptions m_options;
    std::vector<CString> m_recentGoTo;
};

// The program's one instance.
CSettings& Settings();
