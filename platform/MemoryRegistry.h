#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"

// A registry held in memory with the semantics of the real one, as far as the
// program can observe them (the conformance tests hold it to Wine's): four
// predefined roots; key and value names compared without regard to case but
// kept as first written; key classes; subkeys and values enumerated in
// case-insensitive order; ERROR_MORE_DATA with the needed length where the
// system reports it; keys with subkeys refuse deletion; handles to deleted
// keys answer ERROR_KEY_DELETED. Thread-safe: one lock around every call.
class CMemoryRegistry {
public:
    CMemoryRegistry();
    ~CMemoryRegistry();
    CMemoryRegistry(const CMemoryRegistry&) = delete;
    CMemoryRegistry& operator=(const CMemoryRegistry&) = delete;

    LONG OpenKey(HKEY parent, LPCWSTR subKey, HKEY* result);
    LONG CreateKey(HKEY parent, LPCWSTR subKey, LPCWSTR className, HKEY* result, DWORD* disposition);
    LONG CloseKey(HKEY key);
    LONG FlushKey(HKEY key);
    LONG QueryValue(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size);
    LONG SetValue(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size);
    LONG EnumKey(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength);
    LONG EnumValue(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data, DWORD* size);
    LONG QueryInfoKey(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys, DWORD* maxSubKeyLength,
                      DWORD* values, DWORD* maxValueNameLength, DWORD* maxValueLength);
    // The last-write time is a count of the changes made to the whole
    // registry, taken when the key last changed: later means changed later.
    LONG QueryKeyStamp(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime);
    LONG DeleteKey(HKEY parent, LPCWSTR subKey);
    LONG DeleteValue(HKEY key, LPCWSTR name);

    // Handles opened and not yet closed (tests check that nothing leaks).
    size_t OpenHandleCount() const;

private:
    struct SValue {
        CString name;
        DWORD type = REG_NONE;
        std::vector<BYTE> data;
    };
    struct SNode {
        CString name;
        CString className;
        SNode* parent = nullptr;
        bool deleted = false;
        uint64_t lastWrite = 0;
        std::vector<SValue> values;
        std::vector<std::shared_ptr<SNode>> subkeys;
    };

    LONG Resolve(HKEY key, std::shared_ptr<SNode>* node) const;
    // The node of `subKey` below `parent`.
    LONG Find(HKEY parent, LPCWSTR subKey, std::shared_ptr<SNode>* node) const;
    HKEY NewHandle(const std::shared_ptr<SNode>& node);
    static std::shared_ptr<SNode> FindSubkey(const SNode& node, const CString& name, size_t* insertAt);
    static SValue* FindValue(SNode& node, const CString& name, size_t* insertAt);
    static LONG CopyName(const CString& source, LPWSTR name, DWORD* nameLength);
    // Marks the node as written now.
    void Touch(SNode& node) { node.lastWrite = ++m_changes; }

    mutable std::mutex m_lock;
    std::shared_ptr<SNode> m_roots[4];
    std::map<HKEY, std::shared_ptr<SNode>> m_handles;
    uint64_t m_changes = 0;
};
