#include "tests/support/RegistryDump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "base/Text.h"
#include "base/Utf8.h"
#include "registry/RegKey.h"

namespace {

bool ByName(const CString& a, const CString& b)
{
    return CompareNoCase(a, b) < 0;
}

void DumpKey(HKEY parent, const CString& path, const CString& shownName, std::string& out)
{
    CShdRegKey key;
    if (!key.Open(parent, path))
        return;
    CString name;
    out += ToUtf8(shownName);
    if (key.GetClass(name) && !name.IsEmpty())
        out += " (" + ToUtf8(name) + ")";
    out += "\n";
    std::vector<CString> names;
    DWORD type = 0;
    for (DWORD index = 0; key.EnumValueName(index, name, type); ++index)
        names.push_back(name);
    std::sort(names.begin(), names.end(), ByName);
    for (const CString& valueName : names) {
        CShdBinaryBuffer data;
        key.ReadValue(valueName, type, data);
        out += "  \"" + ToUtf8(valueName) + "\" " + ToUtf8(CString::Formatted(TEXT("%x:"), type));
        for (size_t i = 0; i < data.GetSize(); ++i)
            out += ToUtf8(CString::Formatted(TEXT(" %02x"), data.GetData()[i]));
        out += "\n";
    }
    std::vector<CString> subkeys;
    for (DWORD index = 0; key.EnumSubkey(index, name); ++index)
        subkeys.push_back(name);
    std::sort(subkeys.begin(), subkeys.end(), ByName);
    for (const CString& subkey : subkeys)
        DumpKey(key.GetHandle(), subkey, shownName == TEXT(".") ? subkey : shownName + TEXT("\\") + subkey, out);
}

}  // namespace

std::string DumpTree(HKEY root, LPCWSTR path)
{
    std::string out;
    DumpKey(root, path, TEXT("."), out);
    return out.empty() ? "(missing)" : out;
}

void WriteTestValue(HKEY parent, const CString& path, const CString& name, DWORD type,
                    const std::vector<BYTE>& data)
{
    CShdRegKey key;
    ASSERT_TRUE(key.Create(parent, path, nullptr));
    ASSERT_TRUE(key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
}
