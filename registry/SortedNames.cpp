#include "registry/SortedNames.h"

#include <algorithm>
#include <new>

#include "base/Text.h"

namespace {

bool LessNoCase(const CString& a, const CString& b)
{
    return CompareNoCase(a, b) < 0;
}

}  // namespace

void SortNamesNoCase(std::vector<CString>& names)
{
    std::sort(names.begin(), names.end(), LessNoCase);
}

bool ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names)
{
    return ReadSortedSubkeyNames(key, key.QueryListing(), names);
}

bool ReadSortedSubkeyNames(CShdRegKey& key, const CShdRegKey::SListing& listing, std::vector<CString>& names)
{
    names.clear();
    CString name;
    try {
        // The count spares the call that would only report the end.
        for (DWORD index = 0; index < listing.subkeys && key.EnumSubkey(index, name, listing.longestSubkey); ++index)
            names.push_back(name);
    } catch (const std::bad_alloc&) {
        names.clear();
        return false;
    }
    SortNamesNoCase(names);
    return true;
}

bool SortedNamesContain(const std::vector<CString>& names, LPCWSTR name)
{
    return std::binary_search(names.begin(), names.end(), CString(name), LessNoCase);
}
