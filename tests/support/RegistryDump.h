#pragma once

#include <string>

#include "platform/WinTypes.h"

// A key's subtree as text for tests to compare: one line per key (its path
// relative to the dumped key, "." for the key itself) and, indented under
// it, one line per value: name, type in hex, and the data bytes in hex. Keys
// and values appear in name order, whatever order the registry keeps. An
// absent key dumps as "(missing)".
std::string DumpTree(HKEY root, LPCWSTR path);
