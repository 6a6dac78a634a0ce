#pragma once

#include <vector>

#include "base/CString.h"

class CShdRegKey;

// Keys and values are listed in one order everywhere: by name without regard
// to case.
void SortNamesNoCase(std::vector<CString>& names);
// The open key's subkey names, sorted; enumeration ends at its first failure.
// False (with no names) only when memory runs out. `enumerate` is the
// enumeration to use (CShdRegKey::EnumSubkeyFast unless given).
bool ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names,
                           bool (CShdRegKey::*enumerate)(DWORD, CString&) = nullptr);
// True if the sorted names hold the name (without regard to case).
bool SortedNamesContain(const std::vector<CString>& names, LPCWSTR name);
