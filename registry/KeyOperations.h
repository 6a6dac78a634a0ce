#pragma once

#include <functional>

#include "base/CString.h"
#include "base/WinTypes.h"

// The compound key operations the registry itself lacks. Roots may be the
// predefined roots or open key handles; paths are below them, without
// leading or trailing backslash.

// Copies a key with its class, values and whole subtree to the target,
// creating it (an existing target is written into). Best effort: a value or
// subkey that cannot be copied does not stop the copy; the result is false
// if anything was missed. A target inside the source is refused, since the
// copy would never end.
bool CopyKeyTree(HKEY sourceRoot, LPCWSTR sourcePath, HKEY targetRoot, LPCWSTR targetPath);

// Deletes a key with its whole subtree, removing as much as it can. True if
// the key can no longer be opened afterwards (so a missing key is a success).
// A root key (an empty path) is left alone: false.
bool DeleteKeyTree(HKEY root, LPCWSTR path);

// True if key A is key B or lies below it (equal paths only with allowEqual),
// comparing without regard to case. An empty path B matches only an empty
// path A.
bool IsSameOrDescendant(HKEY rootA, LPCWSTR pathA, HKEY rootB, LPCWSTR pathB, bool allowEqual);

// A free name for a copy placed beside its source: the source name without a
// " (n)" suffix, then " (2)", " (3)", ... up to " (32767)"; the first that
// `exists` rejects is taken. False, with an empty name, if all are taken.
bool MakeUniqueName(LPCWSTR sourceName, const std::function<bool(const CString&)>& exists, CString& uniqueName);
