#include "views/SortedNames.h"

#include <algorithm>

#include "framework/Text.h"
#include "registry/RegKey.h"

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

void ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names)
{
    names.clear();
    CString name;
    for (DWORD index = 0; key.EnumSubkeyFast(index, name); ++index)
        names.push_back(name);
    SortNamesNoCase(names);
}

bool SortedNamesContain(const std::vector<CString>& names, LPCWSTR name)
{
    return std::binary_search(names.begin(), names.end(), CString(name), LessNoCase);
}
