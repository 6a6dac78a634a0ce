#pragma once

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

// Writes a value into the key `path` below `parent`, creating the key.
void WriteTestValue(HKEY parent, const CString& path, const CString& name, DWORD type,
                    const std::vector<BYTE>& data);
