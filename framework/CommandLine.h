#pragma once

#include <cstddef>

#include "base/CString.h"
#include "base/WinTypes.h"

// Reads the next argument of a command line from `position` (advanced past
// it) within the first `length` characters of `text`. Arguments are
// separated by blanks (only the space character); a double quote toggles
// quoting, so blanks inside quotes belong to the argument. An argument that
// begins with a double quote is unquoted: that quote and a closing one at the
// end go, and each doubled quote inside stands for one. Any other argument is
// kept as typed, inner quotes included. False, with an empty token, at the
// end of the text.
bool ReadCommandLineToken(LPCWSTR text, size_t& position, size_t length, CString& token);
