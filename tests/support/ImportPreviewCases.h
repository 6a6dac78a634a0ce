#pragma once

#include <string>

// Generated .reg files for the import preview's tests: version 5, keys
// under HKEY_CURRENT_USER\Software\QuendaTests\Preview (the scratch key
// "Preview"), drawn by `seed` from a small set of names so that two files
// meet on the same keys and values: keys made, keys deleted with their
// subtrees and made again, values added, changed to other data and types,
// and deleted, some of them missing. `tail` ends the file.
std::string PreviewCaseFile(unsigned seed, const char* tail);

// A value line that stops an import with a syntax error.
extern const char kPreviewSyntaxErrorTail[];
