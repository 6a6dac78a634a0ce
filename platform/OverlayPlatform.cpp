#include "platform/OverlayPlatform.h"

#include <algorithm>
#include <cstring>

#include "base/Text.h"
#include "platform/RegistryRootKeys.h"
#include "platform/SubkeyPath.h"

namespace {

bool NameLess(const CString& a, const CString& b)
{
    return CompareNoCase(a, b) < 0;
}

template <typename T, typename Name>
auto LowerBound(T& items, const CString& name, Name nameOf)
{
    return std::lower_bound(items.begin(), items.end(), name,
                            [&](const auto& item, const CString& key) { return NameLess(nameOf(item), key); });
}

// As the system: a name that fills the buffer leaves no room for its NUL.
LONG CopyName(const CString& source, LPWSTR name, DWORD* nameLength)
{
    if (source.GetLength() >= *nameLength)
        return ERROR_MORE_DATA;
    std::memcpy(name, source.GetString(), (source.GetLength() + 1) * sizeof(WCHAR));
    *nameLength = static_cast<DWORD>(source.GetLength());
    return ERROR_SUCCESS;
}

LONG CopyData(const std::vector<BYTE>& source, BYTE* data, DWORD* size)
{
    if (data == nullptr)
        return ERROR_SUCCESS;
    if (source.size() > *size)
        return ERROR_MORE_DATA;
    if (!source.empty())
        std::memcpy(data, source.data(), source.size());
    return ERROR_SUCCESS;
}

size_t TextBytes(const CString& text)
{
    return (text.GetLength() + 1) * sizeof(WCHAR);
}

}  // namespace

COverlayPlatform::COverlayPlatform(IPlatform& below) : CForwardingPlatform(below)
{
    for (DWORD i = 0; i < kRootCount; ++i) {
        m_roots[i] = std::make_unique<SNode>();
        m_roots[i]->root = RootKeyFromValue(kRootClassesRoot + i);
        m_roots[i]->below = 1;
    }
}

COverlayPlatform::~COverlayPlatform() = default;

LONG COverlayPlatform::Resolve(HKEY key, SNode** node)
{
    if (IsPredefinedRoot(key)) {
        *node = m_roots[RootValueFromKey(key) - kRootClassesRoot].get();
        return ERROR_SUCCESS;
    }
    const auto found = m_handles.find(key);
    if (found == m_handles.end())
        return ERROR_INVALID_HANDLE;
    *node = found->second.node;
    return found->second.generation == (*node)->generation && Exists(**node) ? ERROR_SUCCESS : ERROR_KEY_DELETED;
}

COverlayPlatform::SNode* COverlayPlatform::Child(SNode& node, const CString& name)
{
    const auto position = LowerBound(node.children, name, [](const std::unique_ptr<SNode>& c) { return c->name; });
    if (position != node.children.end() && CompareNoCase((*position)->name, name) == 0)
        return position->get();
    auto child = std::make_unique<SNode>();
    child->name = name;
    child->parent = &node;
    child->root = node.root;
    return node.children.insert(position, std::move(child))->get();
}

CString COverlayPlatform::PathOf(const SNode& node) const
{
    if (node.parent == nullptr)
        return CString();
    CString path = PathOf(*node.parent);
    if (!path.IsEmpty())
        path += TEXT("\\");
    path += node.name;
    return path;
}

bool COverlayPlatform::Exists(SNode& node)
{
    if (node.parent == nullptr || node.state == EState::Present)
        return true;
    if (node.state == EState::Absent)
        return false;
    return Exists(*node.parent) && !node.parent->hidesBelow && ExistsBelow(node);
}

bool COverlayPlatform::ExistsBelow(SNode& node)
{
    if (node.below >= 0)
        return node.below == 1;
    SNode& parent = *node.parent;
    if (!ExistsBelow(parent)) {
        node.below = 0;
        return false;
    }
    // A file goes through the subkeys of a key one after another: listing
    // them costs one call a subkey, asking for each costs two.
    if (!parent.subkeysRead && ++parent.lookups > 2)
        ReadSubkeys(parent);
    if (parent.subkeysRead) {
        node.below = std::binary_search(parent.belowSubkeys.begin(), parent.belowSubkeys.end(), node.name, NameLess);
    } else {
        const HKEY key = OpenBelow(node);
        node.below = key != nullptr ? 1 : 0;
        if (key != nullptr)
            m_inner.RegCloseKey(key);
    }
    return node.below == 1;
}

HKEY COverlayPlatform::OpenBelow(const SNode& node)
{
    HKEY key = nullptr;
    return m_inner.RegOpenKeyExW(node.root, PathOf(node), 0, 0, &key) == ERROR_SUCCESS ? key : nullptr;
}

HKEY COverlayPlatform::OpenToRead(SNode& node, bool& done)
{
    if (done || !ExistsBelow(node))
        return nullptr;
    done = true;
    return OpenBelow(node);
}

// A key that cannot be read below reads as empty.
void COverlayPlatform::ReadSubkeys(SNode& node)
{
    const HKEY key = OpenToRead(node, node.subkeysRead);
    if (key == nullptr)
        return;
    DWORD longest = 0;
    m_inner.RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &longest, nullptr, nullptr, nullptr);
    std::vector<WCHAR> name(longest + 1);
    for (DWORD index = 0;;) {
        DWORD length = static_cast<DWORD>(name.size());
        const LONG status = m_inner.RegEnumKeyExW(key, index, name.data(), &length);
        if (status == ERROR_MORE_DATA) {
            name.resize(name.size() * 2);
        } else if (status == ERROR_SUCCESS) {
            node.belowSubkeys.emplace_back(name.data(), length);
            ++index;
        } else {
            break;
        }
    }
    m_inner.RegCloseKey(key);
    std::sort(node.belowSubkeys.begin(), node.belowSubkeys.end(), NameLess);
}

void COverlayPlatform::ReadValues(SNode& node)
{
    const HKEY key = OpenToRead(node, node.valuesRead);
    if (key == nullptr)
        return;
    // Most keys have no class or a short one: one query usually serves.
    std::vector<WCHAR> name(64);
    DWORD classLength = 0, longestName = 0, longestData = 0;
    LONG status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        classLength = static_cast<DWORD>(name.size());
        status = m_inner.RegQueryInfoKeyW(key, name.data(), &classLength, nullptr, nullptr, nullptr, &longestName,
                                          &longestData);
        if (status == ERROR_MORE_DATA)
            name.resize(std::max<size_t>(classLength + 1, name.size() * 2));
    }
    if (status == ERROR_SUCCESS)
        node.belowClass = CString(name.data(), classLength);
    name.resize(std::max<size_t>(name.size(), longestName + 1));
    std::vector<BYTE> data(std::max<DWORD>(longestData, 1));
    for (DWORD index = 0;;) {
        DWORD length = static_cast<DWORD>(name.size());
        DWORD type = REG_NONE;
        DWORD size = static_cast<DWORD>(data.size());
        status = m_inner.RegEnumValueW(key, index, name.data(), &length, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            name.resize(name.size() * 2);
            data.resize(std::max<size_t>(size, data.size() * 2));
        } else if (status == ERROR_SUCCESS) {
            node.belowValues.push_back({CString(name.data(), length), {type, {data.begin(), data.begin() + size}}});
            ++index;
        } else {
            break;
        }
    }
    m_inner.RegCloseKey(key);
    std::sort(node.belowValues.begin(), node.belowValues.end(),
              [](const SValue& a, const SValue& b) { return NameLess(a.name, b.name); });
}

std::vector<COverlayPlatform::SValue> COverlayPlatform::ReadChangedValues(SNode& node)
{
    std::vector<SValue> values;
    const HKEY key = ExistsBelow(node) ? OpenBelow(node) : nullptr;
    if (key == nullptr)
        return values;
    std::vector<BYTE> data(256);
    for (const SValue& changed : node.values) {
        DWORD type = REG_NONE;
        DWORD size = static_cast<DWORD>(data.size());
        LONG status = m_inner.RegQueryValueExW(key, changed.name, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            data.resize(size);
            status = m_inner.RegQueryValueExW(key, changed.name, &type, data.data(), &size);
        }
        if (status == ERROR_SUCCESS)
            values.push_back({changed.name, {type, {data.begin(), data.begin() + size}}});
    }
    m_inner.RegCloseKey(key);
    return values;
}

const COverlayPlatform::SValue* COverlayPlatform::FindView(SNode& node, const CString& name)
{
    const auto nameOf = [](const SValue& value) { return value.name; };
    const auto own = LowerBound(node.values, name, nameOf);
    if (own != node.values.end() && CompareNoCase(own->name, name) == 0)
        return own->deleted ? nullptr : &*own;
    if (node.hidesBelow || !ExistsBelow(node))
        return nullptr;
    ReadValues(node);
    const auto below = LowerBound(node.belowValues, name, nameOf);
    return below != node.belowValues.end() && CompareNoCase(below->name, name) == 0 ? &*below : nullptr;
}

COverlayPlatform::SValue& COverlayPlatform::OwnValue(SNode& node, const CString& name)
{
    auto position = LowerBound(node.values, name, [](const SValue& value) { return value.name; });
    if (position == node.values.end() || CompareNoCase(position->name, name) != 0) {
        position = node.values.insert(position, SValue());
        position->name = name;
    }
    return *position;
}

void COverlayPlatform::BuildView(SNode& node)
{
    if (node.viewValid)
        return;
    node.viewValid = true;
    node.viewSubkeys.clear();
    node.viewValues.clear();
    const bool showsBelow = !node.hidesBelow && ExistsBelow(node);
    if (showsBelow) {
        ReadSubkeys(node);
        ReadValues(node);
        for (const CString& name : node.belowSubkeys) {
            const auto child = LowerBound(node.children, name, [](const std::unique_ptr<SNode>& c) { return c->name; });
            const bool gone = child != node.children.end() && CompareNoCase((*child)->name, name) == 0 &&
                              (*child)->state == EState::Absent;
            if (!gone)
                node.viewSubkeys.push_back(name);
        }
        for (const SValue& value : node.belowValues) {
            if (FindView(node, value.name) == &value)
                node.viewValues.push_back(&value);
        }
    }
    for (const auto& child : node.children) {
        if (child->state == EState::Present && (!showsBelow || child->below != 1))
            node.viewSubkeys.push_back(child->name);
    }
    for (const SValue& value : node.values) {
        if (!value.deleted)
            node.viewValues.push_back(&value);
    }
    std::sort(node.viewSubkeys.begin(), node.viewSubkeys.end(), NameLess);
    std::sort(node.viewValues.begin(), node.viewValues.end(),
              [](const SValue* a, const SValue* b) { return NameLess(a->name, b->name); });
}

void COverlayPlatform::Changed(SNode& node)
{
    node.viewValid = false;
    ++node.changes;
}

HKEY COverlayPlatform::NewHandle(SNode& node)
{
    // Any unique value off the predefined roots serves as a handle.
    const HKEY handle = reinterpret_cast<HKEY>(m_nextHandle);
    m_nextHandle += 4;
    m_handles.emplace(handle, SHandle{&node, node.generation});
    return handle;
}

LONG COverlayPlatform::FindExisting(HKEY parent, LPCWSTR subKey, SNode** node)
{
    const LONG status = Resolve(parent, node);
    if (status != ERROR_SUCCESS)
        return status;
    for (const CString& name : SplitSubkeyPath(subKey)) {
        *node = Child(**node, name);
        if (!Exists(**node))
            return ERROR_FILE_NOT_FOUND;
    }
    return ERROR_SUCCESS;
}

LONG COverlayPlatform::RegOpenKeyExW(HKEY parent, LPCWSTR subKey, DWORD, REGSAM, HKEY* result)
{
    *result = nullptr;
    SNode* node = nullptr;
    const LONG status = FindExisting(parent, subKey, &node);
    if (status != ERROR_SUCCESS)
        return status;
    *result = NewHandle(*node);
    return ERROR_SUCCESS;
}

LONG COverlayPlatform::RegCreateKeyExW(HKEY parent, LPCWSTR subKey, LPCWSTR className, DWORD, REGSAM,
                                       HKEY* result, DWORD* disposition)
{
    *result = nullptr;
    SNode* node = nullptr;
    const LONG status = Resolve(parent, &node);
    if (status != ERROR_SUCCESS)
        return status;
    DWORD outcome = REG_OPENED_EXISTING_KEY;
    for (const CString& name : SplitSubkeyPath(subKey)) {
        SNode* child = Child(*node, name);
        outcome = REG_OPENED_EXISTING_KEY;
        if (!Exists(*child)) {
            // Asked now, while the answer is cheap, for the changes later.
            ExistsBelow(*child);
            child->state = EState::Present;
            child->hidesBelow = true;
            child->className = className != nullptr ? className : TEXT("");
            Changed(*child);
            Changed(*node);
            outcome = REG_CREATED_NEW_KEY;
        }
        node = child;
    }
    if (disposition != nullptr)
        *disposition = outcome;
    *result = NewHandle(*node);
    return ERROR_SUCCESS;
}

LONG COverlayPlatform::RegCloseKey(HKEY key)
{
    if (IsPredefinedRoot(key))
        return ERROR_SUCCESS;
    return m_handles.erase(key) == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LONG COverlayPlatform::RegFlushKey(HKEY key)
{
    SNode* node = nullptr;
    return Resolve(key, &node);
}

LONG COverlayPlatform::RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size)
{
    if (data != nullptr && size == nullptr)
        return ERROR_INVALID_PARAMETER;
    SNode* node = nullptr;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    const SValue* value = FindView(*node, CString(name));
    if (value == nullptr)
        return ERROR_FILE_NOT_FOUND;
    status = CopyData(value->data.bytes, data, size);
    if (type != nullptr)
        *type = value->data.type;
    if (size != nullptr)
        *size = static_cast<DWORD>(value->data.bytes.size());
    return status;
}

LONG COverlayPlatform::RegSetValueExW(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    if (data == nullptr && size != 0)
        return ERROR_NOACCESS;
    SNode* node = nullptr;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    SValue& value = OwnValue(*node, CString(name));
    value.data = {type, {data, data + size}};
    value.deleted = false;
    Changed(*node);
    return ERROR_SUCCESS;
}

LONG COverlayPlatform::RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength)
{
    if (nameLength == nullptr)
        return ERROR_INVALID_PARAMETER;
    SNode* node = nullptr;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    BuildView(*node);
    if (index >= node->viewSubkeys.size())
        return ERROR_NO_MORE_ITEMS;
    return CopyName(node->viewSubkeys[index], name, nameLength);
}

LONG COverlayPlatform::RegEnumValueW(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                                     DWORD* size)
{
    if (nameLength == nullptr || (data != nullptr && size == nullptr))
        return ERROR_INVALID_PARAMETER;
    SNode* node = nullptr;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    BuildView(*node);
    if (index >= node->viewValues.size())
        return ERROR_NO_MORE_ITEMS;
    const SValue& value = *node->viewValues[index];
    if (name != nullptr)
        status = CopyName(value.name, name, nameLength);
    if (status == ERROR_SUCCESS)
        status = CopyData(value.data.bytes, data, size);
    if (type != nullptr)
        *type = value.data.type;
    if (size != nullptr)
        *size = static_cast<DWORD>(value.data.bytes.size());
    return status;
}

LONG COverlayPlatform::RegQueryInfoKeyW(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                        DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                        DWORD* maxValueLength)
{
    SNode* node = nullptr;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    BuildView(*node);
    if (node->state != EState::Present)
        ReadValues(*node);
    const CString& keyClass = node->state == EState::Present ? node->className : node->belowClass;
    if (className != nullptr && classLength != nullptr) {
        if (keyClass.GetLength() >= *classLength)
            status = ERROR_MORE_DATA;
        else
            std::memcpy(className, keyClass.GetString(), TextBytes(keyClass));
    }
    if (classLength != nullptr)
        *classLength = static_cast<DWORD>(keyClass.GetLength());
    size_t longestSubkey = 0, longestName = 0, longestData = 0;
    for (const CString& name : node->viewSubkeys)
        longestSubkey = std::max(longestSubkey, name.GetLength());
    for (const SValue* value : node->viewValues) {
        longestName = std::max(longestName, value->name.GetLength());
        longestData = std::max(longestData, value->data.bytes.size());
    }
    if (subKeys != nullptr)
        *subKeys = static_cast<DWORD>(node->viewSubkeys.size());
    if (maxSubKeyLength != nullptr)
        *maxSubKeyLength = static_cast<DWORD>(longestSubkey);
    if (values != nullptr)
        *values = static_cast<DWORD>(node->viewValues.size());
    if (maxValueNameLength != nullptr)
        *maxValueNameLength = static_cast<DWORD>(longestName);
    if (maxValueLength != nullptr)
        *maxValueLength = static_cast<DWORD>(longestData);
    return status;
}

LONG COverlayPlatform::RegQueryKeyStampW(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime)
{
    const LONG status = RegQueryInfoKeyW(key, nullptr, nullptr, subKeys, nullptr, values, nullptr, nullptr);
    SNode* node = nullptr;
    if (status == ERROR_SUCCESS && lastWriteTime != nullptr && Resolve(key, &node) == ERROR_SUCCESS)
        *lastWriteTime = {node->changes, node->generation};
    return status;
}

LONG COverlayPlatform::RegDeleteKeyW(HKEY parent, LPCWSTR subKey)
{
    if (subKey == nullptr)
        return ERROR_INVALID_PARAMETER;
    SNode* node = nullptr;
    const LONG status = FindExisting(parent, subKey, &node);
    if (status != ERROR_SUCCESS)
        return status;
    // Roots and keys that still have subkeys cannot be deleted.
    BuildView(*node);
    if (node->parent == nullptr || !node->viewSubkeys.empty())
        return ERROR_ACCESS_DENIED;
    ExistsBelow(*node);
    node->state = EState::Absent;
    node->hidesBelow = true;
    node->values.clear();
    ++node->generation;
    Changed(*node);
    Changed(*node->parent);
    return ERROR_SUCCESS;
}

LONG COverlayPlatform::RegDeleteValueW(HKEY key, LPCWSTR name)
{
    SNode* node = nullptr;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    const CString valueName(name);
    if (FindView(*node, valueName) == nullptr)
        return ERROR_FILE_NOT_FOUND;
    SValue& value = OwnValue(*node, valueName);
    value.data = SData();
    value.deleted = true;
    Changed(*node);
    return ERROR_SUCCESS;
}

std::vector<COverlayPlatform::SChange> COverlayPlatform::Changes()
{
    std::vector<SChange> changes;
    for (auto& root : m_roots)
        CollectChanges(*root, changes);
    return changes;
}

void COverlayPlatform::CollectChanges(SNode& node, std::vector<SChange>& changes)
{
    if (node.state == EState::Absent) {
        if (ExistsBelow(node))
            changes.push_back({EChange::KeyDeleted, node.root, PathOf(node), CString(), {}, {}});
    } else if (node.state == EState::Present && !ExistsBelow(node)) {
        changes.push_back({EChange::KeyCreated, node.root, PathOf(node), CString(), {}, {}});
        CollectValueChanges(node, changes);
    } else if (node.hidesBelow || !node.values.empty()) {
        CollectValueChanges(node, changes);
    }
    for (auto& child : node.children)
        CollectChanges(*child, changes);
}

// The key's values below against those it shows now, both in name order.
// Unless the key hides what is below, only the names the layer changed can
// differ, and only those are asked for below.
void COverlayPlatform::CollectValueChanges(SNode& node, std::vector<SChange>& changes)
{
    std::vector<SValue> changedBefore;
    std::vector<const SValue*> changedAfter;
    const bool whole = node.hidesBelow || node.valuesRead;
    if (whole) {
        ReadValues(node);
        BuildView(node);
    } else {
        changedBefore = ReadChangedValues(node);
        for (const SValue& value : node.values) {
            if (!value.deleted)
                changedAfter.push_back(&value);
        }
    }
    const std::vector<SValue>& before = whole ? node.belowValues : changedBefore;
    const std::vector<const SValue*>& after = whole ? node.viewValues : changedAfter;
    const CString path = PathOf(node);
    size_t b = 0, a = 0;
    while (b < before.size() || a < after.size()) {
        const int order = b == before.size()  ? 1
                          : a == after.size() ? -1
                                              : CompareNoCase(before[b].name, after[a]->name);
        if (order < 0) {
            changes.push_back({EChange::ValueDeleted, node.root, path, before[b].name, before[b].data, {}});
            ++b;
        } else if (order > 0) {
            changes.push_back({EChange::ValueAdded, node.root, path, after[a]->name, {}, after[a]->data});
            ++a;
        } else {
            const SData& old = before[b].data;
            const SData& now = after[a]->data;
            if (old.type != now.type || old.bytes != now.bytes)
                changes.push_back({EChange::ValueChanged, node.root, path, after[a]->name, old, now});
            ++b;
            ++a;
        }
    }
}

size_t COverlayPlatform::MemoryUsed() const
{
    size_t bytes = sizeof(*this) + m_handles.size() * (sizeof(HKEY) + sizeof(SHandle) + 32);
    std::vector<const SNode*> pending;
    for (const auto& root : m_roots)
        pending.push_back(root.get());
    const auto valueBytes = [](const SValue& value) {
        return sizeof(SValue) + TextBytes(value.name) + value.data.bytes.capacity();
    };
    while (!pending.empty()) {
        const SNode& node = *pending.back();
        pending.pop_back();
        bytes += sizeof(SNode) + TextBytes(node.name) + TextBytes(node.className) + TextBytes(node.belowClass) +
                 node.children.capacity() * sizeof(void*) + node.viewValues.capacity() * sizeof(void*);
        for (const SValue& value : node.values)
            bytes += valueBytes(value);
        for (const SValue& value : node.belowValues)
            bytes += valueBytes(value);
        for (const CString& name : node.belowSubkeys)
            bytes += sizeof(CString) + TextBytes(name);
        for (const CString& name : node.viewSubkeys)
            bytes += sizeof(CString) + TextBytes(name);
        for (const auto& child : node.children)
            pending.push_back(child.get());
    }
    return bytes;
}
