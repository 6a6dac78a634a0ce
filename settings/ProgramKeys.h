#pragma once

#include "base/WinTypes.h"

// The program's own keys under HKEY_LOCAL_MACHINE. The installation writes
// "InstallDir" into the first; the program keeps its settings and bookmarks
// in the other two.
inline const LPCWSTR kProgramKeyPath = TEXT("SOFTWARE\\Marrowick\\Quenda");
inline const LPCWSTR kSettingsKeyPath = TEXT("SOFTWARE\\Marrowick\\Quenda\\Settings");
inline const LPCWSTR kBookmarksKeyPath = TEXT("SOFTWARE\\Marrowick\\Quenda\\Bookmarks");
