#pragma once

#include <vector>

#include "base/CString.h"

class CShdRegKey;

// Keys and values are listed in one order everywhere: by name without regard
// to case.
void SortNamesNoCase(std::vector<CString>& names);
// The open key's subkey names, sorted; enumeration ends at its first failure.
// False (with no names) only when memory runs out.
bool ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names);
// True if the sorted names hold the name (without regard to case).
bool SortedNamesContain(const std::vector<CString>& names, LPCWSTR name);
