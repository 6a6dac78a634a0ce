#include "views/ValueRows.h"

#include "base/BinaryBuffer.h"
#include "base/Text.h"
#include "registry/RegKey.h"
#include "registry/SortedNames.h"
#include "views/ValueText.h"

bool LoadValueRows(HKEY root, LPCWSTR path, const SCutValue* cut, std::vector<SValueRow>& rows)
{
    rows.clear();
    CShdRegKey key;
    if (!key.Open(root, path))
        return false;

    std::vector<CString> names;
    CString name;
    DWORD type = REG_NONE;
    const CShdRegKey::SListing listing = key.QueryListing();
    for (DWORD index = 0; index < listing.values && key.EnumValueName(index, name, type, listing.longestValueName);
         ++index)
        names.push_back(name);
    SortNamesNoCase(names);

    const bool cutHere = cut != nullptr && cut->root == root && CompareNoCase(cut->path, path) == 0;
    CShdBinaryBuffer data;
    for (const CString& valueName : names) {
        SValueRow row;
        row.name = valueName;
        if (key.ReadValue(valueName, type, data)) {
            row.dataText = ValueDataText(type, data.GetData(), data.GetSize());
        } else if (!key.GetValueType(valueName, type)) {
            continue;
        }
        row.image = ValueImage(type, cutHere && CompareNoCase(cut->valueName, valueName) == 0);
        rows.push_back(row);
    }
    return true;
}
