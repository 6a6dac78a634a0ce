#pragma once

#include <memory>
#include <vector>

#include "framework/BinaryBuffer.h"
#include "framework/CString.h"
#include "platform/WinTypes.h"

// A key with its whole subtree (or its absence), read into memory when
// constructed and put back by the destructor, so that tests which must work
// on fixed keys of the real registry (the program's own key, the .reg file
// association) leave them as they found them.
class CKeySnapshot {
public:
    CKeySnapshot(HKEY root, LPCWSTR path);
    ~CKeySnapshot();
    CKeySnapshot(const CKeySnapshot&) = delete;
    CKeySnapshot& operator=(const CKeySnapshot&) = delete;

private:
    struct SValue {
        CString name;
        DWORD type;
        std::vector<BYTE> data;
    };
    struct SKey {
        CString name;
        CString className;
        std::vector<SValue> values;
        std::vector<std::unique_ptr<SKey>> subkeys;
    };

    static bool Read(HKEY parent, LPCWSTR path, SKey& key);
    static void Write(HKEY parent, const SKey& key);

    HKEY m_root;
    CString m_path;
    std::unique_ptr<SKey> m_key;
};
