#pragma once

#include <cstdint>

// Simple case mappings of UTF-16 code units (generated into CaseFoldTable.cpp).
namespace casefold {
extern const uint8_t kUpperIndex[256];
extern const uint16_t kUpperDeltas[][256];
extern const uint8_t kLowerIndex[256];
extern const uint16_t kLowerDeltas[][256];
}  // namespace casefold
