#pragma once

#include <vector>

#include "base/CString.h"

// The names of a subkey path, as the registry reads it: empty names (a
// leading, trailing or doubled backslash) are passed over.
std::vector<CString> SplitSubkeyPath(LPCWSTR path);
