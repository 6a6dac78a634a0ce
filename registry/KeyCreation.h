#pragma once

#include "base/WinTypes.h"

// What came of an attempt to create a subkey.
enum class ECreateKeyResult {
    Created,
    InvalidName,        // the name holds a backslash
    ParentUnavailable,  // the parent key cannot be opened
    AlreadyExists,      // a subkey of that name opens (the empty name opens the parent)
    CreateFailed,       // the registry refused to create it
};

// Creates the subkey `name` of (root, parentPath) with the class
// `className`, flushing it and its parent. Only a backslash makes a name
// invalid here: length, blanks and other characters are the registry's
// business.
ECreateKeyResult CreateSubkey(HKEY root, LPCWSTR parentPath, LPCWSTR name, LPCWSTR className);

// The words that refuse a name; null for Created.
LPCWSTR CreateKeyRefusal(ECreateKeyResult result);
