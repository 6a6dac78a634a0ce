#pragma once

#include <windows.h>

#include <string>

#include "base/CString.h"

// What the Windows benchmarks share: a clock, a timed run of a system
// command (reg.exe) and a count of a subtree's keys and values.

double Milliseconds(const LARGE_INTEGER& from, const LARGE_INTEGER& to);

// Milliseconds of one run of a command line, from the start of its process to
// its end, output discarded; -1 if it could not run or did not exit with 0.
double TimeCommand(std::wstring command);

// Milliseconds of one import of `file` by Quenda's importer, or -1 (after
// saying why) if it failed.
double TimeImport(const CString& file);

void CountTree(HKEY parent, const CString& path, unsigned& keys, unsigned& values);
// The count of HKCU\path's subtree; false, after saying so, when the key
// does not exist (the benchmark's script did not set it up).
bool CountBenchmarkTree(const CString& path, unsigned& keys, unsigned& values);
