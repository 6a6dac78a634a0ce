#pragma once

#include "base/WinTypes.h"
#include "platform/RegistryRootKeys.h"

// "HKEY_LOCAL_MACHINE" and so on; null for any other value.
LPCWSTR RootLongName(HKEY root);
// "HKLM" and so on; empty for any other value.
LPCWSTR RootShortName(HKEY root);
// A long or short root name, compared without regard to case and not
// trimmed; null when the text names no root.
HKEY ParseRootName(LPCWSTR text);
// As ParseRootName, accepting only the long names (as .reg files need).
HKEY ParseRootLongName(LPCWSTR text);
