#pragma once

#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"

// Reads a key path as other tools copy it: a long or short root name in any
// letter case, optionally after "Computer\" or "\", optionally ending in
// "\". Surrounding blanks and doubled backslashes are dropped. False, with a
// null root, when the text names no root.
bool ParseGoToPath(LPCWSTR text, HKEY& root, CString& subkeyPath);

// Where "Go To" leads for a typed path: the key when it exists, else the
// message that says why not, naming the longest part of the path that
// exists.
struct SGoToTarget {
    HKEY root = nullptr;
    CString path;
    CString error;
};
SGoToTarget ResolveGoToPath(LPCWSTR text);

// Offers the next component of a path being typed: the names that can stand
// for its last component (what follows its last "\"), the subkey names (or,
// before the first "\", the root names) that begin with it, sorted. The
// subkey names of the last parent asked about are kept, so that typing
// within one key reads the registry once.
class CGoToCompleter {
public:
    std::vector<CString> Offer(LPCWSTR text);

private:
    void LoadNames(HKEY root, const CString& path);

    bool m_loaded = false;
    HKEY m_root = nullptr;
    CString m_path;
    std::vector<CString> m_names;
};

// The recent paths, newest first, without two that differ only in case.
const size_t kMaxRecentPaths = 10;
void AddRecentPath(std::vector<CString>& recent, LPCWSTR path);
