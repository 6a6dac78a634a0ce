#pragma once

#include <string>
#include <vector>

#include "framework/CString.h"
#include "platform/WinTypes.h"
#include "search/RegFinder.h"

// A match as a short readable line: "HKCU\A\B" for a key, "HKCU\A\B|name"
// for a value, with `prefix` and its backslash taken off the key path, and
// " (pass 2)" after a match found once the search left its first root.
std::string Describe(const CRegFinder::SSearchPosition& match, const CString& prefix = CString());

// Runs steps until one finds nothing, and describes every match.
std::vector<std::string> FindAll(CRegFinder& finder, const CString& prefix = CString());

// Creates a key (and its parents) below an open key or a root; PutString
// also writes a string value into it.
void PutKey(HKEY parent, const char* path);
void PutString(HKEY parent, const char* path, const char* name);

// A start at a key, or at one of its values when a value name is given.
SStartPosition StartAt(HKEY root, const CString& keyPath, const char* valueName = nullptr, bool subtreeOnly = false);

// Criteria that test only names, for the text given.
SSearchParams NameSearch(const char* text);
