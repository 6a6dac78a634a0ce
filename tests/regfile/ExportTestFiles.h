#pragma once

#include <string>

#include "base/CString.h"

// The files that the export tests expect, committed under data/; empty when
// the file cannot be read.
std::string ReadExpectedFile(const char* name);

// Exports a key of HKEY_CURRENT_USER to `file` to the end; true if the export
// ran and succeeded.
bool ExportKey(const CString& file, bool unicode, const CString& path);
