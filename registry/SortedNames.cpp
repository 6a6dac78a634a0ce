#include "registry/SortedNames.h"

#include <algorithm>
#include <new>

#include "base/Text.h"
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

bool ReadSortedSubkeyNames(CShdRegKey& key, std::vector<CString>& names,
                           bool (CShdRegKey::*enumerate)(DWORD, CString&))
{
    if (enumerate == nullptr)
        enumerate = &CShdRegKey::EnumSubkeyFast;
    names.clear();
    CString name;
    try {
        for (DWORD index = 0; (key.*enumerate)(index, name); ++index)
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
