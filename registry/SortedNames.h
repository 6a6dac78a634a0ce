#pragma once

#include <vector>

#include "base/CString.h"
#include "registry/RegKey.h"

// Keys and values are listed in one order everywhere: by name without regard
// to case.
void SortNamesNoCase(std::vector<CString>& names);
// The open key's subkey names, sorted, read with one query for their number
// and longest length and one call a name; enumeration ends at its first
// failure. False (with no names) only when memory runs out.
bool ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names);
// The same for a caller that has queried the key's listing already.
bool ReadSortedSubkeyNames(CShdRegKey& key, const CShdRegKey::SListing& listing, std::vector<CString>& names);
// True if the sorted names hold the name (without regard to case).
bool SortedNamesContain(const std::vector<CString>& names, LPCWSTR name);
