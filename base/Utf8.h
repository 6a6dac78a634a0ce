#pragma once

#include <string>

#include "base/CString.h"

// Conversions between the program's UTF-16 text and UTF-8, for file names on
// Linux and for test output. Unpaired surrogates become U+FFFD.
std::string ToUtf8(LPCWSTR text, size_t length);
std::string ToUtf8(const CString& text);
CString FromUtf8(const std::string& text);

// Lets GoogleTest print CString values readably.
void PrintTo(const CString& text, std::ostream* out);
