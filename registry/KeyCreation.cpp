#include "registry/KeyCreation.h"

#include "base/CString.h"
#include "registry/RegKey.h"

ECreateKeyResult CreateSubkey(HKEY root, LPCWSTR parentPath, LPCWSTR name, LPCWSTR className)
{
    if (CString(name).Find(TEXT("\\")) >= 0)
        return ECreateKeyResult::InvalidName;
    CShdRegKey parent(true);
    if (!parent.Open(root, parentPath))
        return ECreateKeyResult::ParentUnavailable;
    // Opening first tells an existing key (in any letter case) from a new
    // one, which creating alone would not: it opens existing keys too.
    CShdRegKey existing;
    if (existing.Open(parent.GetHandle(), name)) {
        existing.Close(false);
        parent.Close(false);
        return ECreateKeyResult::AlreadyExists;
    }
    // The class can only be given as the key is made.
    CShdRegKey created(true);
    if (!created.Create(parent.GetHandle(), name, className))
        return ECreateKeyResult::CreateFailed;
    return ECreateKeyResult::Created;
}

LPCWSTR CreateKeyRefusal(ECreateKeyResult result)
{
    switch (result) {
    case ECreateKeyResult::InvalidName:
        return TEXT("Invalid key name");
    case ECreateKeyResult::ParentUnavailable:
        return TEXT("Unable to open parent key");
    case ECreateKeyResult::AlreadyExists:
        return TEXT("Key with this name already exists");
    case ECreateKeyResult::CreateFailed:
        return TEXT("Unable to create key");
    default:
        return nullptr;
    }
}
