#include "tests/settings/KeySnapshot.h"

#include "registry/RegKey.h"
#include "tests/support/ScratchKey.h"

CKeySnapshot::CKeySnapshot(HKEY root, LPCWSTR path) : m_root(root), m_path(path), m_key(new SKey)
{
    m_key->name = m_path;
    if (!Read(root, path, *m_key))
        m_key.reset();
}

CKeySnapshot::~CKeySnapshot()
{
    DeleteTreeForTests(m_root, m_path);
    if (m_key != nullptr)
        Write(m_root, *m_key);
}

bool CKeySnapshot::Read(HKEY parent, LPCWSTR path, SKey& key)
{
    CShdRegKey handle;
    if (!handle.Open(parent, path))
        return false;
    handle.GetClass(key.className);
    CString name;
    DWORD type = 0;
    CShdBinaryBuffer data;
    for (DWORD index = 0; handle.EnumValue(index, name, type, data); ++index)
        key.values.push_back({name, type, std::vector<BYTE>(data.GetData(), data.GetData() + data.GetSize())});
    for (DWORD index = 0; handle.EnumSubkey(index, name); ++index) {
        std::unique_ptr<SKey> subkey(new SKey);
        subkey->name = name;
        if (Read(handle.GetHandle(), name, *subkey))
            key.subkeys.push_back(std::move(subkey));
    }
    return true;
}

void CKeySnapshot::Write(HKEY parent, const SKey& key)
{
    CShdRegKey handle(true);
    if (!handle.Create(parent, key.name, key.className.IsEmpty() ? nullptr : key.className.GetString()))
        return;
    for (const SValue& value : key.values)
        handle.WriteValue(value.name, value.type, value.data.data(), static_cast<DWORD>(value.data.size()));
    for (const auto& subkey : key.subkeys)
        Write(handle.GetHandle(), *subkey);
}
