#include "tests/settings/SettingsTestSupport.h"

#include <algorithm>

#include "base/Utf8.h"
#include "registry/KeyOperations.h"
#include "registry/RegKey.h"

CSavedKey::CSavedKey(HKEY root, LPCWSTR path, LPCWSTR scratchName) : m_root(root), m_path(path), m_copy(scratchName)
{
    CShdRegKey key;
    m_existed = key.Open(root, path);
    if (m_existed) {
        EXPECT_TRUE(CopyKeyTree(root, path, m_copy.Handle(), TEXT("copy")));
    }
    EXPECT_TRUE(DeleteKeyTree(root, path));
}

CSavedKey::~CSavedKey()
{
    EXPECT_TRUE(DeleteKeyTree(m_root, m_path));
    if (m_existed) {
        EXPECT_TRUE(CopyKeyTree(m_copy.Handle(), TEXT("copy"), m_root, m_path));
    }
}

namespace {

void Collect(HKEY parent, const CString& path, const std::string& prefix, std::vector<std::string>& lines)
{
    CShdRegKey key;
    if (!key.Open(parent, path))
        return;
    CString name;
    DWORD type = 0;
    for (DWORD index = 0; key.EnumValueName(index, name, type); ++index) {
        DWORD number = 0;
        CString text;
        std::string data = "type " + std::to_string(type);
        if (key.ReadDword(name, number))
            data = "#" + std::to_string(number);
        else if (type == REG_SZ && key.ReadString(name, text))
            data = ToUtf8(text);
        lines.push_back(prefix + "[" + ToUtf8(name) + "]=" + data);
    }
    std::vector<CString> subkeys;
    for (DWORD index = 0; key.EnumSubkey(index, name); ++index)
        subkeys.push_back(name);
    for (const CString& subkey : subkeys)
        Collect(key.GetHandle(), subkey, prefix + "\\" + ToUtf8(subkey), lines);
}

}  // namespace

std::string DescribeTree(HKEY root, LPCWSTR path)
{
    std::vector<std::string> lines;
    Collect(root, path, "", lines);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}
