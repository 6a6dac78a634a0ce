#pragma once

#include <map>
#include <memory>
#include <vector>

#include "base/CString.h"
#include "platform/ForwardingPlatform.h"

// A registry that can be changed without changing anything: reads go to the
// registry of another platform, writes (new keys, values, deletions) land in
// a layer held in memory above it, and later reads see the layer first. The
// other platform is only ever read. Everything but the registry passes
// through. What the layer changes, measured against the registry below, is
// Changes().
//
// Each key is looked up below at most once for its existence, and its
// subkeys and values are each listed at most once, when something needs
// them; from the third lookup of keys below one parent, the parent's subkeys
// are listed instead. Keys made in the layer are never looked up below their
// first new ancestor, and a key whose values the layer only set or deleted is
// asked below for those values alone. Used by one thread at a time.
class COverlayPlatform : public CForwardingPlatform {
public:
    enum class EChange { KeyCreated, KeyDeleted, ValueAdded, ValueChanged, ValueDeleted };
    struct SData {
        DWORD type = REG_NONE;
        std::vector<BYTE> bytes;
    };
    // One difference. `before` is set for changed and deleted values, `after`
    // for added and changed ones; `valueName` is empty for keys and for the
    // default value (a value change tells them apart by its kind).
    struct SChange {
        EChange kind = EChange::KeyCreated;
        HKEY root = nullptr;
        CString path;
        CString valueName;
        SData before;
        SData after;
    };

    explicit COverlayPlatform(IPlatform& below);
    ~COverlayPlatform() override;

    // The differences between this registry and the one below, keys in
    // case-insensitive depth-first order, each key before its values and
    // subkeys. Values of a deleted key are not listed: they go with it.
    std::vector<SChange> Changes();
    // Bytes the layer holds (what was changed, and the keys read whole).
    size_t MemoryUsed() const;

    LONG RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD options, REGSAM sam, HKEY* result) override;
    LONG RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD options, REGSAM sam, HKEY* result,
                         DWORD* disposition) override;
    LONG RegCloseKey(HKEY key) override;
    LONG RegFlushKey(HKEY key) override;
    LONG RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size) override;
    LONG RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size) override;
    LONG RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength) override;
    LONG RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                       DWORD* size) override;
    LONG RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys, DWORD* maxSubKeyLength,
                          DWORD* values, DWORD* maxValueNameLength, DWORD* maxValueLength) override;
    // The layer's view of a key keeps what it read below, so its own count
    // of changes stands for the last-write time.
    LONG RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime) override;
    LONG RegDeleteKeyW(HKEY parent, LPCWSTR subKey) override;
    LONG RegDeleteValueW(HKEY key, LPCWSTR name) override;

private:
    struct SValue {
        CString name;
        SData data;
        bool deleted = false;  // in the layer: hides the value below
    };
    enum class EState { AsBelow, Present, Absent };
    struct SNode {
        CString name;
        SNode* parent = nullptr;
        HKEY root = nullptr;
        EState state = EState::AsBelow;
        int below = -1;        // whether the key exists below: -1 not asked yet
        bool hidesBelow = false;  // deleted (and maybe made again): nothing below shows
        unsigned generation = 0;  // counts deletions, so that old handles see theirs
        DWORD changes = 0;        // of the key's values and subkeys in the layer
        CString className;
        std::vector<std::unique_ptr<SNode>> children;  // sorted by name
        std::vector<SValue> values;                    // the layer's, sorted by name
        // The key as read below, once.
        int lookups = 0;  // of subkeys below, before they were listed
        bool subkeysRead = false;
        bool valuesRead = false;
        CString belowClass;
        std::vector<CString> belowSubkeys;
        std::vector<SValue> belowValues;
        // What enumeration shows, rebuilt after a change.
        bool viewValid = false;
        std::vector<CString> viewSubkeys;
        std::vector<const SValue*> viewValues;
    };
    struct SHandle {
        SNode* node;
        unsigned generation;
    };

    LONG Resolve(HKEY key, SNode** node);
    // The existing key `subKey` below the key of a handle.
    LONG FindExisting(HKEY parent, LPCWSTR subKey, SNode** node);
    SNode* Child(SNode& node, const CString& name);
    CString PathOf(const SNode& node) const;
    bool Exists(SNode& node);
    bool ExistsBelow(SNode& node);
    // The key below, opened for reading; null when it cannot be.
    HKEY OpenBelow(const SNode& node);
    // The same for a listing made once: null as well when `done` was set,
    // which it sets.
    HKEY OpenToRead(SNode& node, bool& done);
    void ReadSubkeys(SNode& node);
    void ReadValues(SNode& node);
    // The values below of the names the layer changed, in name order.
    std::vector<SValue> ReadChangedValues(SNode& node);
    const SValue* FindView(SNode& node, const CString& name);
    // The layer's own entry for a value, made when there is none.
    SValue& OwnValue(SNode& node, const CString& name);
    void BuildView(SNode& node);
    void Changed(SNode& node);
    HKEY NewHandle(SNode& node);
    void CollectChanges(SNode& node, std::vector<SChange>& changes);
    void CollectValueChanges(SNode& node, std::vector<SChange>& changes);

    std::unique_ptr<SNode> m_roots[4];
    std::map<HKEY, SHandle> m_handles;
    ULONG_PTR m_nextHandle = 0x1000;
};
