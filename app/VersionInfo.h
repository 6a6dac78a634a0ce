#pragma once

#include <cstddef>

#include "base/WinTypes.h"

struct SFileVersion {
    int major = 0;
    int minor = 0;
    int patch = 0;
    int build = 0;
};

// Finds the fixed part of a version resource (its signature 0xFEEF04BD on a
// 32-bit boundary) and reads the file version from it; false, with zeros,
// when the data holds none.
bool ReadFixedFileVersion(const BYTE* data, size_t size, SFileVersion& version);
