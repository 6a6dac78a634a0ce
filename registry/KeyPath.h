#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// Splits a full key path ("HKLM\Software\X") at its first backslash into a
// root (long or short name) and the subkey path below it; no backslash means
// the whole text is the root name. False, with a null root, when the root
// name is unknown.
bool ParseFullKeyPath(LPCWSTR text, HKEY& root, CString& subkeyPath);

// The long root name, then "\" and the subkey path when that is not empty.
// Empty for an unknown root.
CString FullKeyName(HKEY root, LPCWSTR subkeyPath);

// The path of a subkey: the parent's path, "\" and the name; directly under
// a root (an empty parent path), the name alone.
CString ChildKeyPath(LPCWSTR parentPath, LPCWSTR name);
