#include "registry/RegistryRoots.h"

#include "base/Text.h"

namespace {

struct SRootNames {
    DWORD value;
    LPCWSTR longName;
    LPCWSTR shortName;
};

const SRootNames kRootNames[kRootCount] = {
    {kRootClassesRoot, TEXT("HKEY_CLASSES_ROOT"), TEXT("HKCR")},
    {kRootCurrentUser, TEXT("HKEY_CURRENT_USER"), TEXT("HKCU")},
    {kRootLocalMachine, TEXT("HKEY_LOCAL_MACHINE"), TEXT("HKLM")},
    {kRootUsers, TEXT("HKEY_USERS"), TEXT("HKU")},
};

const SRootNames* FindRoot(HKEY root)
{
    for (const SRootNames& names : kRootNames) {
        if (RootKeyFromValue(names.value) == root)
            return &names;
    }
    return nullptr;
}

HKEY ParseRoot(LPCWSTR text, bool acceptShortNames)
{
    if (text == nullptr)
        return nullptr;
    for (const SRootNames& names : kRootNames) {
        if (CompareNoCase(text, names.longName) == 0 ||
            (acceptShortNames && CompareNoCase(text, names.shortName) == 0))
            return RootKeyFromValue(names.value);
    }
    return nullptr;
}

}  // namespace

LPCWSTR RootLongName(HKEY root)
{
    const SRootNames* names = FindRoot(root);
    return names != nullptr ? names->longName : nullptr;
}

LPCWSTR RootShortName(HKEY root)
{
    const SRootNames* names = FindRoot(root);
    return names != nullptr ? names->shortName : TEXT("");
}

HKEY ParseRootName(LPCWSTR text)
{
    return ParseRoot(text, true);
}

HKEY ParseRootLongName(LPCWSTR text)
{
    return ParseRoot(text, false);
}
