#include "framework/SystemInfo.h"

#include <algorithm>

#include "base/Text.h"

DWORD PackOsVersion(DWORD major, DWORD minor)
{
    major = std::min<DWORD>(major, 99);
    minor = std::min<DWORD>(minor, 99);
    return ((major / 10) << 12) | ((major % 10) << 8) | ((minor / 10) << 4) | (minor % 10);
}

bool IsSmartphonePlatformType(LPCWSTR platformType)
{
    return platformType != nullptr && CompareNoCase(platformType, TEXT("Smartphone")) == 0;
}

bool UsesMenuBarResource(bool isSmartphone, DWORD packedOsVersion)
{
    return isSmartphone && packedOsVersion < kMenuBarsFromMenusVersion;
}
