#pragma once

#include "base/WinTypes.h"

// The handheld's flavour and system version decide which soft-key bars the
// program builds.

// Major and minor version, each clamped to 99, as binary-coded decimal:
// 4.20 is 0x0420, 5.00 is 0x0500.
DWORD PackOsVersion(DWORD major, DWORD minor);

// The packed version assumed when the system does not tell its own.
const DWORD kFallbackOsVersion = 0x0300;
// The first system version whose soft-key bars are made from menus on every
// flavour.
const DWORD kMenuBarsFromMenusVersion = 0x0500;

// Whether a platform type names the Smartphone flavour (any case).
bool IsSmartphonePlatformType(LPCWSTR platformType);

// A dialog names a menu and an equivalent menu-bar resource; only a
// Smartphone below 5.00 takes the menu-bar resource.
bool UsesMenuBarResource(bool isSmartphone, DWORD packedOsVersion);
