#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// The criteria of a search, copied by value into the finder and kept by the
// settings between runs. The defaults are those of a fresh installation.
struct SSearchParams {
    CString searchString;
    bool keyNames = true;
    bool valueNames = true;
    bool valueData = true;
    bool caseSensitive = false;
    bool wholeStringOnly = false;
    // Data of REG_SZ and REG_EXPAND_SZ.
    bool typeStrings = true;
    bool typeMultiStrings = true;
    bool typeDwords = true;
    // Data of every other type.
    bool typeBinary = true;

    void Reset() { *this = SSearchParams(); }
};

// Why the criteria cannot start a search ("Search string can't be empty.",
// "You should specify at least one item type to search for."), or null when
// they can. Data of no ticked type is allowed: it simply matches nothing.
LPCWSTR CheckSearchParams(const SSearchParams& params);
