#pragma once

#include "base/CString.h"

// Runs a command line (a program of the Wine prefix, such as reg.exe) without
// a window and waits for it (thirty seconds at most); its exit code, or -1 if
// it could not start or had to be stopped.
long RunProcess(const CString& commandLine);
