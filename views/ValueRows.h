#pragma once

#include <vector>

#include "base/CString.h"
#include "base/WinTypes.h"

// The value shown with the cut look: the source of cut values on the
// program's own clipboard.
struct SCutValue {
    HKEY root = nullptr;
    CString path;
    CString valueName;
};

// One row of the value list.
struct SValueRow {
    CString name;
    int image = 0;
    CString dataText;
};

// The rows of a key's values, ordered by name without regard to case. A
// value whose data cannot be read keeps its row with an empty text; one whose
// type cannot be queried gets none. `cut` (may be null) marks the one value
// shown with its cut image, when it lies in this very key. False, with no
// rows, when the key cannot be opened.
bool LoadValueRows(HKEY root, LPCWSTR path, const SCutValue* cut, std::vector<SValueRow>& rows);
