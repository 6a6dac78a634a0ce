#include "platform/MemoryRegistry.h"

#include <algorithm>
#include <cstring>

#include "base/Text.h"
#include "platform/RegistryRootKeys.h"
#include "platform/SubkeyPath.h"

CMemoryRegistry::CMemoryRegistry()
{
    for (auto& root : m_roots)
        root = std::make_shared<SNode>();
}

CMemoryRegistry::~CMemoryRegistry() = default;

LONG CMemoryRegistry::Resolve(HKEY key, std::shared_ptr<SNode>* node) const
{
    if (IsPredefinedRoot(key)) {
        *node = m_roots[RootValueFromKey(key) - kRootClassesRoot];
        return ERROR_SUCCESS;
    }
    const auto found = m_handles.find(key);
    if (found == m_handles.end())
        return ERROR_INVALID_HANDLE;
    *node = found->second;
    return found->second->deleted ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

LONG CMemoryRegistry::Find(HKEY parent, LPCWSTR subKey, std::shared_ptr<SNode>* node) const
{
    const LONG status = Resolve(parent, node);
    if (status != ERROR_SUCCESS)
        return status;
    for (const CString& name : SplitSubkeyPath(subKey)) {
        *node = FindSubkey(**node, name, nullptr);
        if (!*node)
            return ERROR_FILE_NOT_FOUND;
    }
    return ERROR_SUCCESS;
}

HKEY CMemoryRegistry::NewHandle(const std::shared_ptr<SNode>& node)
{
    // Any unique non-null value serves as a handle; heap cells are unique.
    HKEY handle = reinterpret_cast<HKEY>(new char);
    m_handles.emplace(handle, node);
    return handle;
}

// Subkeys and values are kept in the program's own case-insensitive order,
// which is the order in which Wine's registry enumerates them.
std::shared_ptr<CMemoryRegistry::SNode> CMemoryRegistry::FindSubkey(const SNode& node, const CString& name,
                                                                     size_t* insertAt)
{
    const auto position = std::lower_bound(
        node.subkeys.begin(), node.subkeys.end(), name,
        [](const std::shared_ptr<SNode>& item, const CString& key) { return CompareNoCase(item->name, key) < 0; });
    if (insertAt != nullptr)
        *insertAt = static_cast<size_t>(position - node.subkeys.begin());
    if (position != node.subkeys.end() && CompareNoCase((*position)->name, name) == 0)
        return *position;
    return nullptr;
}

CMemoryRegistry::SValue* CMemoryRegistry::FindValue(SNode& node, const CString& name, size_t* insertAt)
{
    const auto position = std::lower_bound(
        node.values.begin(), node.values.end(), name,
        [](const SValue& item, const CString& key) { return CompareNoCase(item.name, key) < 0; });
    if (insertAt != nullptr)
        *insertAt = static_cast<size_t>(position - node.values.begin());
    return position != node.values.end() && CompareNoCase(position->name, name) == 0 ? &*position : nullptr;
}

LONG CMemoryRegistry::CopyName(const CString& source, LPWSTR name, DWORD* nameLength)
{
    // A name that exactly fills the buffer leaves no room for its NUL; the
    // system then reports ERROR_MORE_DATA and leaves the length as given.
    if (source.GetLength() >= *nameLength)
        return ERROR_MORE_DATA;
    std::memcpy(name, source.GetString(), (source.GetLength() + 1) * sizeof(WCHAR));
    *nameLength = static_cast<DWORD>(source.GetLength());
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::OpenKey(HKEY parent, LPCWSTR subKey, HKEY* result)
{
    std::lock_guard<std::mutex> lock(m_lock);
    *result = nullptr;
    std::shared_ptr<SNode> node;
    const LONG status = Find(parent, subKey, &node);
    if (status != ERROR_SUCCESS)
        return status;
    *result = NewHandle(node);
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::CreateKey(HKEY parent, LPCWSTR subKey, LPCWSTR className, HKEY* result, DWORD* disposition)
{
    std::lock_guard<std::mutex> lock(m_lock);
    *result = nullptr;
    std::shared_ptr<SNode> node;
    const LONG status = Resolve(parent, &node);
    if (status != ERROR_SUCCESS)
        return status;
    DWORD outcome = REG_OPENED_EXISTING_KEY;
    for (const CString& name : SplitSubkeyPath(subKey)) {
        size_t insertAt = 0;
        std::shared_ptr<SNode> child = FindSubkey(*node, name, &insertAt);
        if (!child) {
            child = std::make_shared<SNode>();
            child->name = name;
            child->parent = node.get();
            node->subkeys.insert(node->subkeys.begin() + static_cast<std::ptrdiff_t>(insertAt), child);
            Touch(*node);
            Touch(*child);
            outcome = REG_CREATED_NEW_KEY;
        } else {
            outcome = REG_OPENED_EXISTING_KEY;
        }
        node = child;
    }
    // Only a key made here takes the class given; one that existed keeps its
    // own, as on the device.
    if (outcome == REG_CREATED_NEW_KEY)
        node->className = className;
    if (disposition != nullptr)
        *disposition = outcome;
    *result = NewHandle(node);
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::CloseKey(HKEY key)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (IsPredefinedRoot(key))
        return ERROR_SUCCESS;
    const auto found = m_handles.find(key);
    if (found == m_handles.end())
        return ERROR_INVALID_HANDLE;
    m_handles.erase(found);
    delete reinterpret_cast<char*>(key);
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::FlushKey(HKEY key)
{
    std::lock_guard<std::mutex> lock(m_lock);
    std::shared_ptr<SNode> node;
    return Resolve(key, &node);
}

LONG CMemoryRegistry::QueryValue(HKEY key, LPCWSTR name, DWORD* type, BYTE* data, DWORD* size)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (data != nullptr && size == nullptr)
        return ERROR_INVALID_PARAMETER;
    std::shared_ptr<SNode> node;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    const SValue* value = FindValue(*node, CString(name), nullptr);
    if (value == nullptr)
        return ERROR_FILE_NOT_FOUND;
    const DWORD needed = static_cast<DWORD>(value->data.size());
    if (data != nullptr) {
        if (needed > *size) {
            status = ERROR_MORE_DATA;
        } else if (needed != 0) {
            std::memcpy(data, value->data.data(), needed);
        }
    }
    if (type != nullptr)
        *type = value->type;
    if (size != nullptr)
        *size = needed;
    return status;
}

LONG CMemoryRegistry::SetValue(HKEY key, LPCWSTR name, DWORD type, const BYTE* data, DWORD size)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (data == nullptr && size != 0)
        return ERROR_NOACCESS;
    std::shared_ptr<SNode> node;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    size_t insertAt = 0;
    SValue* value = FindValue(*node, CString(name), &insertAt);
    if (value == nullptr) {
        value = &*node->values.insert(node->values.begin() + static_cast<std::ptrdiff_t>(insertAt), SValue());
        value->name = name;
    }
    value->type = type;
    value->data.assign(data, data + size);
    Touch(*node);
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::EnumKey(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (nameLength == nullptr)
        return ERROR_INVALID_PARAMETER;
    std::shared_ptr<SNode> node;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    if (index >= node->subkeys.size())
        return ERROR_NO_MORE_ITEMS;
    return CopyName(node->subkeys[index]->name, name, nameLength);
}

LONG CMemoryRegistry::EnumValue(HKEY key, DWORD index, LPWSTR name, DWORD* nameLength, DWORD* type, BYTE* data,
                                DWORD* size)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (nameLength == nullptr || (data != nullptr && size == nullptr))
        return ERROR_INVALID_PARAMETER;
    std::shared_ptr<SNode> node;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    if (index >= node->values.size())
        return ERROR_NO_MORE_ITEMS;
    const SValue& value = node->values[index];
    if (name != nullptr)
        status = CopyName(value.name, name, nameLength);
    if (status == ERROR_SUCCESS && data != nullptr) {
        if (value.data.size() > *size)
            status = ERROR_MORE_DATA;
        else if (!value.data.empty())
            std::memcpy(data, value.data.data(), value.data.size());
    }
    if (type != nullptr)
        *type = value.type;
    if (size != nullptr)
        *size = static_cast<DWORD>(value.data.size());
    return status;
}

LONG CMemoryRegistry::QueryInfoKey(HKEY key, LPWSTR className, DWORD* classLength, DWORD* subKeys,
                                   DWORD* maxSubKeyLength, DWORD* values, DWORD* maxValueNameLength,
                                   DWORD* maxValueLength)
{
    std::lock_guard<std::mutex> lock(m_lock);
    std::shared_ptr<SNode> node;
    LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    if (className != nullptr && classLength != nullptr) {
        // The system reports a class that does not fit with the length it
        // needs (without its NUL) and ERROR_MORE_DATA.
        if (node->className.GetLength() >= *classLength) {
            status = ERROR_MORE_DATA;
        } else {
            std::memcpy(className, node->className.GetString(), (node->className.GetLength() + 1) * sizeof(WCHAR));
        }
    }
    if (classLength != nullptr)
        *classLength = static_cast<DWORD>(node->className.GetLength());
    if (subKeys != nullptr)
        *subKeys = static_cast<DWORD>(node->subkeys.size());
    if (maxSubKeyLength != nullptr) {
        size_t longest = 0;
        for (const auto& child : node->subkeys)
            longest = std::max(longest, child->name.GetLength());
        *maxSubKeyLength = static_cast<DWORD>(longest);
    }
    if (values != nullptr)
        *values = static_cast<DWORD>(node->values.size());
    size_t longestName = 0;
    size_t longestData = 0;
    for (const SValue& value : node->values) {
        longestName = std::max(longestName, value.name.GetLength());
        longestData = std::max(longestData, value.data.size());
    }
    if (maxValueNameLength != nullptr)
        *maxValueNameLength = static_cast<DWORD>(longestName);
    if (maxValueLength != nullptr)
        *maxValueLength = static_cast<DWORD>(longestData);
    return status;
}

LONG CMemoryRegistry::QueryKeyStamp(HKEY key, DWORD* subKeys, DWORD* values, FILETIME* lastWriteTime)
{
    std::lock_guard<std::mutex> lock(m_lock);
    std::shared_ptr<SNode> node;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    if (subKeys != nullptr)
        *subKeys = static_cast<DWORD>(node->subkeys.size());
    if (values != nullptr)
        *values = static_cast<DWORD>(node->values.size());
    if (lastWriteTime != nullptr) {
        lastWriteTime->dwLowDateTime = static_cast<DWORD>(node->lastWrite);
        lastWriteTime->dwHighDateTime = static_cast<DWORD>(node->lastWrite >> 32);
    }
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::DeleteKey(HKEY parent, LPCWSTR subKey)
{
    std::lock_guard<std::mutex> lock(m_lock);
    if (subKey == nullptr)
        return ERROR_INVALID_PARAMETER;
    std::shared_ptr<SNode> node;
    const LONG status = Find(parent, subKey, &node);
    if (status != ERROR_SUCCESS)
        return status;
    // An empty path names the parent itself. Roots and keys that still have
    // subkeys cannot be deleted.
    if (node->parent == nullptr || !node->subkeys.empty())
        return ERROR_ACCESS_DENIED;
    auto& siblings = node->parent->subkeys;
    siblings.erase(std::find(siblings.begin(), siblings.end(), node));
    Touch(*node->parent);
    node->deleted = true;
    node->parent = nullptr;
    return ERROR_SUCCESS;
}

LONG CMemoryRegistry::DeleteValue(HKEY key, LPCWSTR name)
{
    std::lock_guard<std::mutex> lock(m_lock);
    std::shared_ptr<SNode> node;
    const LONG status = Resolve(key, &node);
    if (status != ERROR_SUCCESS)
        return status;
    SValue* value = FindValue(*node, CString(name), nullptr);
    if (value == nullptr)
        return ERROR_FILE_NOT_FOUND;
    node->values.erase(node->values.begin() + (value - node->values.data()));
    Touch(*node);
    return ERROR_SUCCESS;
}

size_t CMemoryRegistry::OpenHandleCount() const
{
    std::lock_guard<std::mutex> lock(m_lock);
    return m_handles.size();
}
