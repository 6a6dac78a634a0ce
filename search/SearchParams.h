#pragma once

#include "framework/CString.h"

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
