#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// Key paths as the search walks them: components joined with "\" and
// compared without regard to case.

// The order in which the search visits keys: component by component, a
// shorter component before a longer one it begins; a path before the paths
// below it. A null path sorts before every other, an empty one included.
// Returns <0, 0 or >0.
int ComparePaths(LPCWSTR a, LPCWSTR b);

// Splits a path at its first "\": the first component and the rest (empty
// when there is no backslash).
void SplitFirstComponent(const CString& path, CString& first, CString& rest);
