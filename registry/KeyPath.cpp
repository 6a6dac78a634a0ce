#include "registry/KeyPath.h"

#include "registry/RegistryRoots.h"

bool ParseFullKeyPath(LPCWSTR text, HKEY& root, CString& subkeyPath)
{
    const CString path(text);
    const int separator = path.Find('\\');
    subkeyPath = separator < 0 ? CString() : path.Mid(static_cast<size_t>(separator) + 1);
    root = ParseRootName(separator < 0 ? path : path.Left(static_cast<size_t>(separator)));
    if (root == nullptr)
        subkeyPath.Empty();
    return root != nullptr;
}

CString FullKeyName(HKEY root, LPCWSTR subkeyPath)
{
    const LPCWSTR rootName = RootLongName(root);
    if (rootName == nullptr)
        return CString();
    CString name(rootName);
    if (subkeyPath != nullptr && *subkeyPath != 0) {
        name += TEXT("\\");
        name += subkeyPath;
    }
    return name;
}

CString ChildKeyPath(LPCWSTR parentPath, LPCWSTR name)
{
    CString path(parentPath != nullptr ? parentPath : TEXT(""));
    if (!path.IsEmpty())
        path += TEXT("\\");
    path += name != nullptr ? name : TEXT("");
    return path;
}
