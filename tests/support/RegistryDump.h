#pragma once

#include <set>
#include <string>
#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"

// A key's subtree as text for tests to compare: one line per key (its path
// relative to the dumped key, "." for the key itself, then its class in
// parentheses if it has one) and, indented under it, one line per value:
// name, type in hex, and the data bytes in hex. Keys and values appear in
// name order, whatever order the registry keeps. An absent key dumps as
// "(missing)".
std::string DumpTree(HKEY root, LPCWSTR path);
// One value's line of the dump.
std::string DumpValue(const CString& name, DWORD type, const BYTE* data, size_t size);
// What turned the dump `before` into `after`, as lines "change|key|value|data":
// "Key created", "Key deleted", "Value added", "Value changed" or "Value
// deleted"; the key as the dump shows it; the value's name (keys: empty);
// the dump's value line, without its indent, old before new. A deleted key's
// values go with it; a created key's are added.
std::set<std::string> DumpDifference(const std::string& before, const std::string& after);

// Writes a value into the key `path` below `parent`, creating the key.
void WriteTestValue(HKEY parent, const CString& path, const CString& name, DWORD type,
                    const std::vector<BYTE>& data);
