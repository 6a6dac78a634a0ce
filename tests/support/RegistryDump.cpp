#include "tests/support/RegistryDump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
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
        out += DumpValue(valueName, type, data.GetData(), data.GetSize());
    }
    std::vector<CString> subkeys;
    for (DWORD index = 0; key.EnumSubkey(index, name); ++index)
        subkeys.push_back(name);
    std::sort(subkeys.begin(), subkeys.end(), ByName);
    for (const CString& subkey : subkeys)
        DumpKey(key.GetHandle(), subkey, shownName == TEXT(".") ? subkey : shownName + TEXT("\\") + subkey, out);
}

}  // namespace

std::string DumpValue(const CString& name, DWORD type, const BYTE* data, size_t size)
{
    std::string out = "  \"" + ToUtf8(name) + "\" " + ToUtf8(CString::Formatted(TEXT("%x:"), type));
    for (size_t i = 0; i < size; ++i)
        out += ToUtf8(CString::Formatted(TEXT(" %02x"), data[i]));
    return out + "\n";
}

namespace {

// Each key of a dump with its values, by name (the text between the quotes).
using CDumpKeys = std::map<std::string, std::map<std::string, std::string>>;

CDumpKeys ParseDump(const std::string& dump)
{
    CDumpKeys keys;
    std::istringstream lines(dump);
    std::string line, key;
    while (std::getline(lines, line)) {
        if (line.rfind("  \"", 0) == 0) {
            const size_t close = line.find("\" ", 3);
            keys[key][line.substr(3, close - 3)] = line.substr(2);
        } else if (line != "(missing)") {
            key = line.substr(0, line.find(" ("));
            keys[key];
        }
    }
    return keys;
}

}  // namespace

std::set<std::string> DumpDifference(const std::string& before, const std::string& after)
{
    const CDumpKeys old = ParseDump(before);
    const CDumpKeys now = ParseDump(after);
    std::set<std::string> lines;
    const auto add = [&](const char* change, const std::string& key, const std::string& name,
                         const std::string& data) {
        lines.insert(std::string(change) + "|" + key + "|" + name + "|" + data);
    };
    for (const auto& [key, values] : old) {
        if (now.count(key) == 0)
            add("Key deleted", key, "", "");
    }
    static const std::map<std::string, std::string> kNoValues;
    for (const auto& [key, values] : now) {
        const auto oldKey = old.find(key);
        if (oldKey == old.end())
            add("Key created", key, "", "");
        const auto& oldValues = oldKey == old.end() ? kNoValues : oldKey->second;
        for (const auto& [name, line] : values) {
            const auto oldValue = oldValues.find(name);
            if (oldValue == oldValues.end())
                add("Value added", key, name, line);
            else if (oldValue->second != line)
                add("Value changed", key, name, oldValue->second + " " + line);
        }
        for (const auto& [name, line] : oldValues) {
            if (values.count(name) == 0)
                add("Value deleted", key, name, line);
        }
    }
    return lines;
}

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
