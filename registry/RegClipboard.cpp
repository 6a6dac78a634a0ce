#include "registry/RegClipboard.h"

#include "base/Text.h"
#include "registry/KeyOperations.h"

bool CRegClipboard::Put(EKind kind, HKEY root, LPCWSTR path, LPCWSTR valueName)
{
    Clear();
    const bool isKey = kind == kCutKey || kind == kCopiedKey;
    if (kind == kEmpty || root == nullptr || (isKey && (path == nullptr || *path == 0)))
        return false;
    m_kind = kind;
    m_root = root;
    m_path = path;
    m_valueName = isKey || valueName == nullptr ? TEXT("") : valueName;
    return true;
}

void CRegClipboard::Clear()
{
    if (m_kind != kEmpty && m_observer != nullptr)
        m_observer->OnClipboardClearing(m_kind);
    m_kind = kEmpty;
    m_root = nullptr;
    m_path.Empty();
    m_valueName.Empty();
}

bool CRegClipboard::HoldsValueOf(HKEY root, LPCWSTR path, LPCWSTR valueName) const
{
    return HoldsValue() && root == m_root && CompareNoCase(m_path, path) == 0 &&
           CompareNoCase(m_valueName, valueName) == 0;
}

bool CRegClipboard::HoldsSomethingIn(HKEY root, LPCWSTR path) const
{
    return m_kind != kEmpty && IsSameOrDescendant(m_root, m_path, root, path, true);
}
